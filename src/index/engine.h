// What the two indexing engines share: they read a file of cards, write a listing, and keep all
// that belongs to a run in one struct of the caller, so that several can run at once.
#pragma once

#include <functional>
#include <string>
#include <vector>

// Told in a few words how far a run has come; false asks it to end. A run that is asked to end
// closes its listing with what it holds so far.
using EngineReport = std::function<bool(const std::string& stage)>;

// What the user has to be told in a box.
struct Complaint {
  std::string caption, text;
};

struct EngineRun {
  EngineReport report{};                // none: nobody wants to know
  std::vector<Complaint> complaints{};  // in the order in which they came up
  bool stopped = false;                 // by the report
};
