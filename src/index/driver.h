// The road from a peak file through an indexing engine to a cell on the plot.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "index/engine.h"
#include "toolkit/resources.h"
#include "workspace/command.h"
#include "workspace/lines.h"
#include "workspace/workspace.h"

// How an engine came to its end.
struct EngineEnd {
  int status = 0;
  EngineRun run{};
  bool passed = true;  // false: no solution came up to what was required
};
inline constexpr int kNoListing = 1;  // status of a run that has left nothing to look at

// What tells one engine from the other.
struct IndexingEngine {
  const char* name;
  const char *input, *output;              // its files in the current directory
  const char *cannotwrite, *cannotdelete;  // the input file
  float leasttth;                          // a peak that is not above ends the list
  int Indexing::*mostlines;                // handed to the engine; null: all
  bool onlycounts;                         // with Debug on: tells the number of lines and ends
  float Indexing::*wavelength;             // of the run
  bool bestfirst;                          // in the listing; else trial cells come as they are met
  // Of the input file, with the parameters of the run.
  std::vector<std::string> (*records)(std::span<const float> lines, const Indexing& parameters);
  int (*readsolutions)(LineReader& listing, SolutionTable& solutions);  // from the listing
  // The centerings of the solutions, as letters in small type; null: the listing has none.
  std::string (*readcenterings)(LineReader& listing);
  const DialogResource& dialog;
  void (*putdefaults)(Indexing& parameters);  // into what holds nothing to begin with
  EngineEnd (*start)(const std::string& input, const std::string& output,
                     const EngineReport& report);
};

enum EngineNumber { EngineIto, EngineTreor };
const IndexingEngine& EngineOf(int number);

// The controls that the dialogs of both engines have.
enum InputControls { FieldPeakFile = 1701, ButtonBrowse };

// Asks for the parameters of a run. What "Browse" has found stays after Cancel.
Outcome AskEngineInput(const IndexingEngine& engine);
// Writes the input file, runs the engine, starts the editor on the listing, and removes the input
// file. A run that was stopped leaves its listing without a word.
Outcome RunEngine(const IndexingEngine& engine);

// Asks for a listing, which `indexoutfile` then names, while that is blank. Done unless the
// selector was cancelled.
Outcome AskListing(const char* title);
// Reads the solutions of the listing and lets the user choose; `selsolution` tells the choice.
// Always Done, so that what has been entered stays: ApplySolution tells how it ended.
Outcome AskSolution(const IndexingEngine& engine);
// The chosen cell becomes that of the fit, and its lines in the pattern the peak list.
Outcome ApplySolution(const IndexingEngine& engine);
void TellSolution();
