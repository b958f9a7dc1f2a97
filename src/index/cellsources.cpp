// The indexing engines as sources of cells for the search.
#include "index/cellsources.h"

#include <stdlib.h>  // for mkdtemp

#include <cctype>
#include <filesystem>
#include <memory>
#include <system_error>

#include "patternfiles/writecommon.h"  // for WritePadded
#include "workspace/text.h"

namespace {

namespace fs = std::filesystem;

// A directory for the files of a run, that nobody else can read.
class RunDirectory {
 public:
  RunDirectory() {
    std::error_code failure;
    path_ = (fs::temp_directory_path(failure) / "quillagram-XXXXXX").string();
    if (failure)
      reason_ = failure.message();
    else if (!mkdtemp(path_.data()))
      reason_ = SystemReason();
  }
  ~RunDirectory() {
    std::error_code failure;
    if (reason_.empty()) fs::remove_all(path_, failure);
  }
  RunDirectory(const RunDirectory&) = delete;
  RunDirectory& operator=(const RunDirectory&) = delete;
  std::string File(const char* name) const { return path_ + "/" + name; }
  const std::string& Reason() const { return reason_; }  // blank: it is there

 private:
  std::string path_, reason_;
};

struct EngineTask {
  const IndexingEngine& engine;
  std::vector<float> lines;
  Indexing parameters;
};

// Why the input is not there; blank if it is.
std::string WriteInput(const EngineTask& task, const std::string& path) {
  LineWriter file(path);
  for (const std::string& record : task.engine.records(task.lines, task.parameters))
    WritePadded(file, record);
  return file.Close() ? "" : file.Reason();
}

std::vector<ProposedCell> CellsOf(const IndexingEngine& engine, const std::string& path) {
  const auto solutions = std::make_unique<SolutionTable>();
  LineReader listing(path);
  const int count = engine.readsolutions(listing, *solutions);
  std::string letters;
  if (engine.readcenterings) {
    LineReader again(path);
    letters = engine.readcenterings(again);
  }
  letters.resize(static_cast<std::size_t>(count), ' ');
  std::vector<ProposedCell> cells;
  for (int row = 1; row <= count; ++row) {
    ProposedCell cell{.cell = {},
                      .centering = UpperChar(letters[static_cast<std::size_t>(row - 1)])};
    std::ranges::copy(solutions->row(row).first(solgamma), cell.cell.begin());
    cells.push_back(cell);
  }
  return cells;
}

std::vector<ProposedCell> Propose(const EngineTask& task, std::string& failure,
                                  const std::function<bool()>& stopped) {
  const RunDirectory directory;
  const std::string input = directory.File(task.engine.input),
                    output = directory.File(task.engine.output);
  failure = directory.Reason();
  if (failure.empty()) failure = WriteInput(task, input);
  if (!failure.empty()) return {};
  const EngineEnd end =
      task.engine.start(input, output, [&](const std::string&) { return !stopped(); });
  if (end.status == kNoListing && !end.run.complaints.empty())
    failure = end.run.complaints.front().text;
  return CellsOf(task.engine, output);
}

}  // namespace

CellSource EngineSource(const IndexingEngine& engine, std::span<const ObservedLine> lines,
                        float wavelength, std::string& failure) {
  EngineTask task{.engine = engine, .lines = {}, .parameters = {}};
  for (const ObservedLine& line : lines)
    if (line.tth > engine.leasttth) task.lines.push_back(static_cast<float>(line.tth));
  task.parameters.*engine.wavelength = wavelength;
  task.parameters.peakfilename = "Find cell";
  engine.putdefaults(task.parameters);
  if (engine.mostlines)
    task.lines.resize(
        std::min(task.lines.size(), static_cast<std::size_t>(task.parameters.*engine.mostlines)));
  return {engine.name, [task = std::move(task), &failure](const std::function<bool()>& stopped) {
            return Propose(task, failure, stopped);
          }};
}
