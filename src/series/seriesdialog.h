// What the dialog of series shows.
#pragma once

#include <string>
#include <vector>

#include "series/look.h"
#include "series/series.h"

enum SeriesControl {
  Grid = 1900,
  FieldRecipe,
  ButtonRecipe,
  FieldFiles,
  ButtonFiles,
  FieldTable,
  ButtonTable,
  BoxChain,
  FieldRestart,
  ChoiceMap,
  ChoiceWaterfall,
  ChoiceColumn,
  ChoicePattern,
  ChoiceLinear,
  ChoiceSquareRoot,
  ChoiceLogarithm,
  FieldColumn,
  NameOfColumn,
  FieldAlong,
  NameOfAlong,
  FieldSecond,
  NameOfSecond,
  FieldRow,
  NameOfRow,
  NameOfScale,
  ButtonRun,
  ButtonOther,
  ButtonNoOther,
  FieldChunk,
  FieldOther,
};
inline constexpr int SeriesDialogNumber = 148;

// The series, what is looked at of it, and how much of it the table of the dialog holds.
struct SeriesDialog {
  Series series;
  SeriesLook look;
  UndoStep step{};             // while it stands
  bool again = false;          // the next run goes on doing failed rows again
  std::size_t page = 0;        // the row at the top of the table, from 0
  std::vector<int> columns{};  // of the series' table, from the third one on
  std::vector<std::string> heads{};
};

// Loads it, to be shown beside the plot.
void LoadSeriesDialog(SeriesDialog& dialog);

// All of it; what can be used; the rows of the page; which columns are drawn; the number of the
// file; the view.
void ShowSeriesDialog(SeriesDialog& dialog);
void ShowSeriesStates(const SeriesDialog& dialog);
void ShowSeriesRows(SeriesDialog& dialog);
void ShowColumnNames(const SeriesDialog& dialog);
void ShowFileNumber(const SeriesDialog& dialog);
void ShowSeriesView();

// Picks a row, from 0, on its page of the table.
void PickSeriesRow(SeriesDialog& dialog, std::size_t row);

// Which of the columns that can be drawn has the name, from 1; 0: none. And back, the last one for
// a number beyond.
int NumberOfColumn(const SeriesDialog& dialog, const std::string& name);
std::string NameOfColumnNumber(const SeriesDialog& dialog, int number);
