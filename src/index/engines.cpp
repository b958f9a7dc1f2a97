// The indexing engines, and what tells one from the other.
#include "index/driver.h"
#include "index/inputdialogs.h"
#include "index/inputfiles.h"
#include "index/ito/ito.h"
#include "index/listings.h"
#include "index/treor/treor.h"

namespace {

constexpr int kFewLines = 10;

std::string LinesOfUse(int count) {
  return std::to_string(count) + (count == 1 ? " line is" : " lines are") + " of use";
}

// Whatever ITO complains about is one of its files. What is wrong with its cards and lines is told
// in the listing only.
EngineEnd StartIto(const std::string& input, const std::string& output,
                   const EngineReport& report) {
  int status = 0;
  ItoRun run;
  run.report = report;
  ItoEngine(status, input, output, run);
  if (!run.complaints.empty()) return {kNoListing, std::move(run)};
  if (run.problems == 0)
    run.complaints.push_back({"ITO", "A card of the input cannot be read: see the listing"});
  else if (run.nlines < kItoLeastLines)
    run.complaints.push_back(
        {"ITO", LinesOfUse(run.nlines) + ", and ITO needs " + std::to_string(kItoLeastLines)});
  return {status, std::move(run)};
}

EngineEnd StartTreor(const std::string& input, const std::string& output,
                     const EngineReport& report) {
  int status = 0;
  TreorRun run;
  run.report = report;
  Treor90Engine(status, input, output, run);
  if (run.complaints.empty() && !run.stopped && run.nlines < kFewLines)
    run.complaints.push_back(
        {"TREOR90", LinesOfUse(run.nlines) + ": a cell that fits so few may do so by accident"});
  const bool solved = run.solved;
  return {status, std::move(run), solved};
}

// In the order of EngineNumber.
constexpr IndexingEngine kEngines[] = {
    {.name = "ITO",
     .input = "ito.inp",
     .output = "ito.out",
     .cannotwrite = "Error opening ito input file",
     .cannotdelete = "Error deleting ITO input file",
     .leasttth = 1,
     .mostlines = &Indexing::itomaxlines,
     .onlycounts = false,
     .wavelength = &Indexing::itowave,
     .bestfirst = true,
     .records = ItoInput,
     .readsolutions = ReadItoSolutions,
     .readcenterings = ReadItoCenterings,
     .dialog = kItoDialog,
     .putdefaults = PutItoDefaults,
     .start = StartIto},
    {.name = "TREOR90",
     .input = "treor90.tre",
     .output = "treor.out",
     .cannotwrite = "Error opening TREOR input file",
     .cannotdelete = "Error deleting TREOR input file",
     .leasttth = 0,
     .mostlines = nullptr,
     .onlycounts = true,
     .wavelength = &Indexing::trewave,
     .bestfirst = false,
     .records = TreorInput,
     .readsolutions = ReadTreorSolutions,
     .readcenterings = nullptr,
     .dialog = kTreorDialog,
     .putdefaults = PutTreorDefaults,
     .start = StartTreor},
};

}  // namespace

const IndexingEngine& EngineOf(int number) { return kEngines[number]; }
