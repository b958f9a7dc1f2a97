// What the dialog of series chooses to be seen.
#pragma once

#include <cstddef>
#include <string>

#include "series/seriesdialog.h"

// Views are those of SeriesView.

// Shows a picture of the series; false, with a word in the status bar, where there is nothing to be
// seen.
bool ShowView(SeriesDialog& dialog, int view);
// The picture on show, with what has become of table and choices.
void RefreshPicture(SeriesDialog& dialog);

// Each shows what has been chosen, or leaves the view as it was where there is nothing to be seen.
void ChooseView(SeriesDialog& dialog, int view);
// A file, by its number from 1.
void ChooseRow(SeriesDialog& dialog, int row);
// A column that can be drawn, by its number from 1, for one of the fields of `ws` that name
// columns.
void ChooseColumn(SeriesDialog& dialog, std::string& field, int number);
// The head of a column of the table, from 1: its column is shown, or, if it is on show, the others
// are drawn along it, and then along the number of the file again.
void ChooseHead(SeriesDialog& dialog, std::size_t column);
