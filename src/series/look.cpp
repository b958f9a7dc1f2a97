// What is looked at of a series.
#include "series/look.h"

#include <algorithm>

#include "multi/structures.h"
#include "patternfiles/patternfiles.h"
#include "plot/guestview.h"
#include "plot/zoomhistory.h"
#include "series/columns.h"
#include "series/picture.h"
#include "toolkit/toolkit.h"
#include "workspace/slots.h"
#include "workspace/snapshot.h"
#include "workspace/text.h"

namespace {

void TellOf(const std::string& text) { WindowOutStatusBar(3, text); }

// What a list tells of its files holds for those without a row, and where a row has failed, too.
SeriesTable ListedColumn(const FileList& list, std::size_t column) {
  SeriesTable table{{list.columns[column]}, {}};
  for (const FileList::File& file : list.files) table.rows.push_back({file.cells[column]});
  return table;
}

// Without a name nothing.
SeriesValues ValuesOf(const Series& series, const std::string& name) {
  if (name.empty()) return {};
  const std::size_t files = series.list.files.size();
  const auto listed = std::ranges::find(series.list.columns, name);
  if (listed == series.list.columns.end())
    return ValuesOf(series.table, series.table.ColumnOf(name), files);
  const auto column = static_cast<std::size_t>(listed - series.list.columns.begin());
  return ValuesOf(ListedColumn(series.list, column), 0, files);
}

bool CanBeDrawn(const Series& series, const SeriesLook& look, const std::string& name) {
  return std::ranges::find(look.numbers, series.table.ColumnOf(name)) != look.numbers.end();
}

// The map is kept for the next time.
bool HasMap(Series& series) {
  if (series.map) return true;
  std::vector<std::string> paths;
  for (const FileList::File& file : series.list.files) paths.push_back(file.path);
  auto map = ReadSeriesMap(
      paths, [](float done) { return WProgress(3, "Reading the patterns of the series", done); });
  if (!map) {
    TellOf("The patterns have not been read");
    return false;
  }
  if (map->tth.empty()) {
    TellOf("None of the files can be read as a pattern");
    return false;
  }
  TellOf(map->note);
  series.map = std::make_shared<const SeriesMap>(std::move(*map));
  return true;
}

// What is shown of the axis of two-theta, of the pattern or of all of them, unless it is all of it.
std::optional<ZoomView> ZoomAcross() {
  const auto guest = Guest();
  if (ws.xaxismode != AxisTth || (guest && ws.seriesview == ViewColumn)) return {};
  if (!guest && (ws.viewmode != 1 || ws.npts(SlotInput) < 1)) return {};
  const Range all = guest ? guest->whole.x : Range{FirstTth(SlotInput), LastTth(SlotInput)};
  const bool part = ws.viewxmin > all.lo || ws.viewxmax < all.hi;
  return part ? std::optional(ViewNow()) : std::nullopt;
}

void KeepZoom(const ZoomView& zoom) {
  if (zoom.viewxmin > LastTth(SlotInput) || zoom.viewxmax < FirstTth(SlotInput)) return;
  ws.viewxmin = ws.plotxmin = zoom.viewxmin;
  ws.viewxmax = ws.plotxmax = zoom.viewxmax;
}

// Blank, or why it cannot be loaded. Its boxes are held: going through a series is not to stop at
// each file that is none.
std::string FailureToLoad(const std::string& path) {
  HoldBoxes boxes;
  if (OpenPattern(path) == Outcome::Done) return "";
  const auto told = boxes.Take();
  return told.empty() ? "It cannot be opened" : OnOneLine(told[0]);
}

// The same; then all is as it was.
std::string Open(const std::string& path, const UndoStep& step) {
  const auto zoom = ZoomAcross();
  if (Guest()) KeepOwnLimits();
  const Snapshot before = TakeSnapshot();
  const std::string failure = FailureToLoad(path);
  if (!failure.empty()) {
    RestoreSnapshot(before);
    return failure;
  }
  ws.plotmask = PlotInput;
  if (zoom) KeepZoom(*zoom);
  const Snapshot opened = TakeSnapshot(&before);
  RestoreSnapshot(before);
  step("Open " + NameIn(path));
  RestoreSnapshot(opened);
  // Going through a series leaves the recent files alone.
  ws.recentpending = 0;
  NotePointsKept(path);
  FollowPattern();
  FollowPatternByStructures();
  return "";
}

// Why the row of the table has failed, or what the import has done, or where it stands.
std::string WordOf(const Series& series, std::size_t row) {
  if (row < series.table.rows.size() && HasFailed(series.table, row)) {
    const int failed = series.table.ColumnOf(kFailedColumn);
    return series.table.rows[row][static_cast<std::size_t>(failed)];
  }
  if (!ws.importnote.empty()) return ws.importnote;
  return std::to_string(row + 1) + " of " + std::to_string(series.list.files.size());
}

bool HasEsd(const SeriesTable& table, int column) {
  return table.ColumnOf(table.columns[static_cast<std::size_t>(column)] + " esd") >= 0;
}

// At first the first column of the recipe is drawn, along the first one of the list. Of a table
// alone the list's columns are those in front of the first with an e.s.d.
void ChooseColumns(const Series& series, const SeriesLook& look) {
  const auto& listed = series.list.columns;
  const auto measured =
      std::ranges::find_if(look.numbers, [&](int column) { return HasEsd(series.table, column); });
  const bool alone = listed.empty() && measured != look.numbers.end();
  for (const int column : look.numbers) {
    const std::string& name = series.table.columns[static_cast<std::size_t>(column)];
    const bool told = alone ? column < *measured : std::ranges::find(listed, name) != listed.end();
    std::string& field = told ? ws.seriesalong : ws.seriescolumn;
    if (field.empty() && name != kDateColumn) field = name;
  }
}

}  // namespace

void NoteSeries(const Series& series, SeriesLook& look) {
  look.numbers = NumberColumns(series.table);
  for (std::string* name : {&ws.seriescolumn, &ws.seriesalong, &ws.seriessecond})
    if (!CanBeDrawn(series, look, *name)) name->clear();
  if (ws.seriescolumn.empty()) ChooseColumns(series, look);
  ws.nseriesfile = static_cast<int>(series.list.files.size());
  ws.nseries = static_cast<int>(series.table.rows.size());
  ws.nseriesfailed = 0;
  for (std::size_t row = 0; row < series.table.rows.size(); ++row)
    ws.nseriesfailed += HasFailed(series.table, row);
  ws.seriesrow = std::min(ws.seriesrow, ws.nseriesfile);
  ws.seriestable = series.tablepath;
}

bool ShowPicture(Series& series, CountScale scale, SeriesView view) {
  constexpr int kTitleLetters = 80;
  if (view == ViewColumn && ws.seriescolumn.empty()) {
    TellOf("No column of numbers yet");
    return false;
  }
  if (view != ViewColumn && !HasMap(series)) return false;
  SeriesPicture picture{.kind = static_cast<SeriesKind>(view),
                        .title = FilesText(series, kTitleLetters),
                        .map = series.map,
                        .scale = scale,
                        .coloured = true,
                        .along = ValuesOf(series, ws.seriesalong),
                        .column = ValuesOf(series, ws.seriescolumn),
                        .second = ValuesOf(series, ws.seriessecond)};
  ShowSeries(picture);
  ws.viewmode = GuestViewMode;
  ws.seriesview = view;
  return true;
}

bool ShowFile(const Series& series, int row, const UndoStep& step) {
  const std::string& path = series.list.files[static_cast<std::size_t>(row - 1)].path;
  ws.seriesrow = row;
  const std::string failure = path == ws.patternpath ? "" : Open(path, step);
  const std::string word = failure.empty() ? WordOf(series, static_cast<std::size_t>(row - 1)) : "";
  TellOf(NameIn(path) + ": " + (failure.empty() ? word : failure));
  if (!failure.empty()) return false;
  ws.viewmode = 1;
  ws.seriesview = ViewPattern;
  return true;
}

std::string FilesText(const Series& series, int letters) {
  const auto& files = series.list.files;
  if (files.empty()) return "";
  const std::string count = std::to_string(files.size()) + (files.size() == 1 ? " file" : " files"),
                    first = NameIn(files.front().path);
  const std::string whole = count + ", " + first + " to " + NameIn(files.back().path);
  if (files.size() == 1) return count + ", " + first;
  return Cut(whole, letters).size() == whole.size() ? whole : count + " from " + first;
}
