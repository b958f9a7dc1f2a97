// Peaks, results and solutions as csv files.
#include "fit/fit.h"
#include "index/index.h"
#include "peaks/peaktable.h"
#include "shell/shell.h"
#include "workspace/csv.h"
#include "workspace/paths.h"
#include "workspace/workspace.h"

namespace {

struct ExportedTable {
  const char* nameend;  // behind the pattern's
  const char* title;
  std::string (*write)(const std::string& path);  // tells what has failed
};

// By TableExport.
constexpr ExportedTable kTables[] = {
    {"_peaks.csv", "Export peak list",
     [](const std::string& path) { return WritePeakTable(path, PeaksBy(ColumnTth)); }},
    {"_fit.csv", "Export fit results",
     [](const std::string& path) {
       return WriteLines(path, FitResultCsv(), "Error writing fit results");
     }},
    {"_solutions.csv", "Export solutions",
     [](const std::string& path) {
       return WriteLines(path, SolutionLines(), "Error writing solutions");
     }},
};

}  // namespace

Outcome AskTableExport(Arguments& arguments) {
  const ExportedTable& table = kTables[arguments.number];
  arguments.path = ws.patternstem + table.nameend;
  WSelectFile("Comma-separated values|*.csv|", FileSave, arguments.path, table.title);
  return Answered(!arguments.path.empty());
}

Outcome ExportOneTable(const Arguments& arguments) {
  if (!AcceptPath(arguments.path)) return Outcome::Failed;
  return kTables[arguments.number].write(arguments.path).empty() ? Outcome::Done : Outcome::Failed;
}
