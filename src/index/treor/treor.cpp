#include "index/treor/treor.h"

#include <algorithm>
#include <span>

#include "index/treor/accept.h"
#include "index/treor/keywords.h"
#include "index/treor/lines.h"
#include "index/treor/listing.h"
#include "index/treor/searches.h"
#include "workspace/text.h"

namespace {

constexpr int kTitleWidth = 80;
// What a negative volume asks for.
constexpr int kSteppedMono = 135, kSteppedMonoset = 7;

constexpr int kMostResumed = 100;  // searches that end at each candidate

constexpr float kHalf = 0.5f, kWhole = 1;

// Searches that fill one list of candidates, and the part of the largest volume that they go up to.
struct Pass {
  CrystalSystem system;
  std::span<const Stage> stages;
  float part;
  bool isagain = false;  // the second volume after all systems: SELECT holds no longer
};

constexpr Stage kCubic[] = {Stage::Cubic};
constexpr Stage kTetragonal[] = {Stage::Tetragonal};
constexpr Stage kHexagonal[] = {Stage::Hexagonal};
constexpr Stage kOrthorhombic[] = {Stage::OrthorhombicZone, Stage::Orthorhombic};
constexpr Stage kMonoclinic[] = {Stage::Monoclinic020, Stage::MonoclinicZone, Stage::Monoclinic};
constexpr Stage kMonoclinicAgain[] = {Stage::MonoclinicZone, Stage::Monoclinic};
constexpr Stage kGeneralMonoclinic[] = {Stage::Monoclinic};
constexpr Stage kTriclinicZone[] = {Stage::TriclinicZone};
constexpr Stage kTriclinic[] = {Stage::TriclinicZone, Stage::Triclinic};

using enum CrystalSystem;
constexpr Pass kPasses[] = {
    {Cubic, kCubic, kWhole},           {Tetragonal, kTetragonal, kWhole},
    {Hexagonal, kHexagonal, kWhole},   {Orthorhombic, kOrthorhombic, kWhole},
    {Monoclinic, kMonoclinic, kWhole}, {Triclinic, kTriclinic, kWhole},
};

constexpr Pass kSteppedPasses[] = {
    {Cubic, kCubic, kHalf},
    {Cubic, kCubic, kWhole},
    {Tetragonal, kTetragonal, kHalf},
    {Tetragonal, kTetragonal, kWhole},
    {Hexagonal, kHexagonal, kHalf},
    {Hexagonal, kHexagonal, kWhole},
    {Orthorhombic, kOrthorhombic, kHalf},
    {Orthorhombic, kOrthorhombic, kWhole},
    {Monoclinic, kMonoclinic, kHalf},
    {Triclinic, kTriclinicZone, kHalf},
    {Monoclinic, kMonoclinicAgain, kWhole, true},
    {Triclinic, kTriclinic, kWhole},
};

struct StageRow {
  const char* name;
  void (*search)(TreorSearch&);
  bool (*wanted)(const TreorOptions&);
};

bool WantsCubic(const TreorOptions& o) { return o.omit == 0 && o.cubic.sum > 0; }
bool WantsTetragonal(const TreorOptions& o) { return o.omit == 0 && o.tetragonal.sum > 0; }
bool WantsOrthorhombic(const TreorOptions& o) { return o.orthorhombic(1).sum > 0; }
bool Wants020(const TreorOptions& o) { return o.mono > 0 && o.shorttest == 0; }
bool WantsMonoclinicZone(const TreorOptions& o) { return o.mono != 0; }
bool WantsMonoclinic(const TreorOptions& o) { return o.mono > 0; }
bool WantsTriclinic(const TreorOptions& o) { return o.tric != 0; }

// In the order of Stage.
constexpr StageRow kStages[] = {
    {"cubic", SearchCubic, WantsCubic},
    {"tetragonal", SearchTetragonal, WantsTetragonal},
    {"hexagonal", SearchHexagonal, WantsTetragonal},
    {"orthorhombic, dominant zone", SearchOrthorhombicZone, WantsOrthorhombic},
    {"orthorhombic", SearchOrthorhombic, WantsOrthorhombic},
    {"monoclinic, (020)", SearchMonoclinic020, Wants020},
    {"monoclinic, dominant zone", SearchMonoclinicZone, WantsMonoclinicZone},
    {"monoclinic", SearchMonoclinic, WantsMonoclinic},
    {"triclinic, dominant zone", SearchTriclinicZone, WantsTriclinic},
    {"triclinic", SearchTriclinic, WantsTriclinic},
};

const StageRow& RowOf(Stage stage) { return kStages[static_cast<int>(stage)]; }

void RunStage(TreorSearch& search, Stage stage) {
  const StageRow& row = RowOf(stage);
  search.stage = WriteRecord<"(a,',',f8.0,' A**3')">(row.name, search.limits.stagevol);
  ListStage(search, stage);
  row.search(search);
  ListStageEnd(search.listing, stage);
}

// Refines what the searches find. True if that has solved the pattern.
bool AcceptAny(TreorSearch& search, std::span<const Stage> stages) {
  search.candidates.clear();
  for (const Stage stage : stages)
    if (RowOf(stage).wanted(search.options) && search.GoOn()) RunStage(search, stage);
  for (const TreorCandidate& candidate : search.candidates)
    if (search.GoOn() && AcceptCandidate(search, candidate)) return true;
  return false;
}

// True if the pass has solved the pattern.
bool RunPass(TreorSearch& search, const Pass& pass) {
  const auto wanted = [&](Stage stage) { return RowOf(stage).wanted(search.options); };
  if (std::ranges::none_of(pass.stages, wanted) || !search.GoOn()) return false;
  SetVolume(search.limits, search.options.vol * pass.part);
  ListSystem(search, pass.system);
  if (pass.isagain) search.options.select = 0;
  if (AcceptAny(search, pass.stages)) return true;
  // A search that ends at each candidate goes on behind it.
  for (int n = 0; n < kMostResumed && search.handedover > 0 && search.GoOn(); ++n)
    if (AcceptAny(search, kGeneralMonoclinic)) return true;
  search.handedover = 0;
  return false;
}

bool RunPasses(TreorSearch& search, std::span<const Pass> passes) {
  return std::ranges::any_of(passes, [&](const Pass& pass) { return RunPass(search, pass); });
}

// Title, lines and control lines. False if they are not valid.
bool ReadControl(LineReader& input, TreorSearch& search) {
  search.listing.Lines(search.title);
  return ReadLines(input, search) && ReadKeywords(input, search.options);
}

// A negative volume asks for the searches of all systems in two steps.
void SetStepped(TreorOptions& options) {
  if (options.vol >= 0) return;
  options.vol = -options.vol;
  options.stepped = true;
  options.mono = kSteppedMono;
  options.monoset = kSteppedMonoset;
  options.tric = 1;
}

void RunDataSet(TreorSearch& search) {
  SetStepped(search.options);
  PrepareLines(search);
  SetLimits(search);
  ListOptions(search);
  search.run.nlines = static_cast<int>(search.all.size());
  const bool stepped = search.options.stepped;
  search.run.solved = stepped ? RunPasses(search, kSteppedPasses) : RunPasses(search, kPasses);
  ListCounts(search);
  if (search.run.stopped)
    ListStopped(search.listing);
  else if (!search.run.solved && !stepped)
    ListFailure(search);
}

void Complain(TreorRun& run, int& status, const std::string& text, const std::string& path,
              const std::string& reason) {
  status = 1;
  run.complaints.push_back({"File Error", FileMessage(text, path, reason)});
}

void RunDataSets(LineReader& input, Listing& listing, TreorRun& run, int& status) {
  for (int resume = 1; resume > 0 && !run.stopped;) {
    TreorSearch search{run, listing};
    // The last data set may have promised one more.
    if (!input.Read(search.title, kTitleWidth) && run.datasets > 0) return;
    ++run.datasets;
    if (!ReadControl(input, search)) {
      ListControlError(listing);
      run.complaints.push_back({"PWINL Error", "Error"});
      status = 2;
      return;
    }
    RunDataSet(search);
    resume = search.options.resume;
  }
}

}  // namespace

bool TreorSearch::GoOn() {
  if (run.report && !run.stopped) run.stopped = !run.report(stage);
  return !run.stopped;
}

void Treor90Engine(int& status, const std::string& inputname, const std::string& outputname,
                   TreorRun& run) {
  status = 0;
  LineReader input(inputname);
  if (!input.IsOpen())
    return Complain(run, status, "Error opening TREOR90 input file", inputname, input.Reason());
  Listing listing(outputname);
  if (!listing.IsOpen())
    return Complain(run, status, "Error opening TREOR90 output file", outputname, listing.Reason());
  listing.Put<"(' VERSION JANUARY 1990 ')">();
  RunDataSets(input, listing, run, status);
  if (!listing.Close())
    Complain(run, status, "Error writing TREOR90 output file", outputname, listing.Reason());
}
