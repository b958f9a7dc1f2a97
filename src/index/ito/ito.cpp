// A run of ITO: one problem after the other.
#include "index/ito/ito.h"

#include "index/ito/latticestage.h"
#include "index/ito/solutions.h"
#include "index/ito/zerocheck.h"
#include "index/ito/zonelist.h"
#include "workspace/text.h"

namespace {

void Complain(ItoRun& run, const char* text, const std::string& path, const std::string& reason) {
  run.complaints.push_back({"File Error", FileMessage(text, path, reason)});
}

void RunProblem(ItoProblem& problem, Listing& listing, ItoRun& run) {
  if (problem.cards.zerocheck) ZeroCheck(problem, listing);
  std::vector<Zone> zones;
  if (problem.trials.empty()) zones = FindZones(problem, listing, run);
  std::vector<Lattice> accepted = LatticeStage(problem, zones, listing, run);
  if (!accepted.empty()) PutSolutions(std::move(accepted), problem, listing, run);
}

}  // namespace

void ItoEngine(int& status, const std::string& inputname, const std::string& outputname,
               ItoRun& run) {
  status = 0;
  LineReader input(inputname);
  if (!input.IsOpen()) {
    Complain(run, "Error opening ITO input file", inputname, input.Reason());
    return;
  }
  Listing listing(outputname);
  if (!listing.IsOpen()) {
    Complain(run, "Error opening ITO output file", outputname, listing.Reason());
    return;
  }
  ItoProblem problem;
  while (!run.stopped) {
    const ItoReading reading = ReadProblem(input, problem, listing);
    if (reading == ItoReading::End) break;
    ++run.problems;
    run.nlines = static_cast<int>(problem.lines.size());
    if (reading == ItoReading::Run) RunProblem(problem, listing, run);
  }
  if (run.stopped) listing.Lines("0the run has been stopped: what is above is not all");
  if (!listing.Close())
    Complain(run, "Error writing ITO output file", outputname, listing.Reason());
}
