// What is looked at of a series: a picture of all its files, or one of its patterns.
#pragma once

#include <string>
#include <vector>

#include "series/levels.h"
#include "series/series.h"
#include "workspace/command.h"

// As SeriesKind, and the pattern of the chosen file; the values of ws.seriesview.
enum SeriesView { ViewMap = 1, ViewWaterfall, ViewColumn, ViewPattern };

struct SeriesLook {
  CountScale scale = CountScale::SquareRoot;  // weak lines and strong ones are seen
  std::vector<int> numbers{};                 // places of the columns that can be drawn
};

// Takes note of the files and rows that there are: what can be drawn of them, and the fields that
// others can read. Columns that are gone are drawn no more.
void NoteSeries(const Series& series, SeriesLook& look);

// Each puts a picture into the place of the pattern; false, with a word in the status bar, where
// there is nothing to be seen or the user has stopped it.
bool ShowPicture(Series& series, CountScale scale, SeriesView view);

// Opens the pattern of a file, from 1, unless it is the present one, as a step of its own. The part
// of the axis that is shown stays from one file to the next. False, with the reason in the status
// bar, for one that cannot be opened.
bool ShowFile(const Series& series, int row, const UndoStep& step);

// "120 files, frame_001.xy to frame_120.xy", or a shorter text where that is too long; blank for no
// file.
std::string FilesText(const Series& series, int letters);
