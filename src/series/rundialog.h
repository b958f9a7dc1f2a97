// "Run" in the dialog of series.
#pragma once

#include "series/seriesdialog.h"

// Runs the program of series, with the table shown as it grows. A table of others is left alone or,
// if the user says so, put aside; files that have failed are done again on demand.
void RunSeriesOf(SeriesDialog& dialog);
