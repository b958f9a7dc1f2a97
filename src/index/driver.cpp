// A run of an indexing engine: its input file, the run, and what is left of it.
#include "index/driver.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <system_error>

#include "index/inputfiles.h"
#include "patternfiles/writecommon.h"  // for WritePadded
#include "toolkit/toolkit.h"
#include "workspace/record.h"
#include "workspace/text.h"

namespace {

void TellCount(int count) {
  if (ws.debugmode) MessageBoxInfo("Progress", WriteRecord<"(a,i5)">("qpeaks = ", count));
}

// The lines for the engine; none after a box.
std::optional<std::vector<float>> LinesFor(const IndexingEngine& engine) {
  constexpr const char* kCannotOpen = "Error opening peak file";
  LineReader file(ws.peakfilename);
  if (!file.IsOpen()) {
    MessageBoxError("File Error",
                    ws.peakfilename.empty()
                        ? std::string(kCannotOpen) +
                              "\nNo file is named: save the peaks first, Peak search > Save peaks"
                        : FileMessage(kCannotOpen, ws.peakfilename, file.Reason()));
    return {};
  }
  std::vector<float> lines = ReadPeakLines(file, engine.leasttth);
  TellCount(static_cast<int>(lines.size()));
  if (!engine.mostlines) return lines;
  const int most = std::max(ws.*engine.mostlines, 0);
  lines.resize(std::min(lines.size(), static_cast<std::size_t>(most)));
  TellCount(static_cast<int>(lines.size()));
  return lines;
}

bool WriteInput(const IndexingEngine& engine, std::span<const float> lines) {
  LineWriter file(engine.input);
  const bool begun = file.IsOpen();
  for (const std::string& record : engine.records(lines, ws)) WritePadded(file, record);
  if (file.Close()) return true;
  if (begun) IOsDeleteFile(engine.input);  // what a full disk has left of it
  MessageBoxError("File Error", FileMessage(engine.cannotwrite, engine.input, file.Reason()));
  return false;
}

void DeleteInput(const IndexingEngine& engine) {
  IOsDeleteFile(engine.input);
  if (const int error = WInfoError(1); error != 0)
    MessageBoxError("Error", FileMessage(engine.cannotdelete, engine.input,
                                         std::generic_category().message(error)));
}

// The listing is long: what came out of the run is told beside the plot.
std::string ResultOf(const IndexingEngine& engine, const EngineEnd& end) {
  if (end.run.stopped) return "stopped";
  if (end.status == kNoListing) return "no listing";
  LineReader listing(engine.output);
  const auto solutions = std::make_unique<SolutionTable>();
  const int count = engine.readsolutions(listing, *solutions);
  if (count == 0) return "no solutions";
  const std::string cells = std::to_string(count);
  if (!end.passed) return "no solution passed, " + cells + " came near";
  const std::string text = cells + (count == 1 ? " solution" : " solutions");
  return engine.bestfirst || count == 1 ? text : text + ", the last one passed";
}

void TellResult(const IndexingEngine& engine, const EngineEnd& end) {
  WindowOutStatusBar(3, std::string(engine.name) + ": " + ResultOf(engine, end));
}

bool Report(const std::string& stage) { return WProgress(3, stage); }

}  // namespace

Outcome RunEngine(const IndexingEngine& engine) {
  const auto lines = LinesFor(engine);
  if (!lines) return Outcome::Failed;
  if (ws.debugmode && engine.onlycounts) return Outcome::Done;
  if (!WriteInput(engine, *lines)) return Outcome::Failed;
  ws.indexoutfile = engine.output;
  const EngineEnd end = engine.start(engine.input, engine.output, Report);
  if (end.status == kNoListing) ws.indexoutfile.clear();
  if (!end.run.stopped) {
    for (const Complaint& complaint : end.run.complaints)
      MessageBoxError(complaint.caption, complaint.text);
    if (end.status != kNoListing) IOsCommandOnFile(ws.editorpath, ws.indexoutfile);
  }
  DeleteInput(engine);
  TellResult(engine, end);
  if (end.run.stopped) return Outcome::Cancelled;
  return end.status == 0 ? Outcome::Done : Outcome::Failed;
}
