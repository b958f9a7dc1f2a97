// What all searches do with a trial cell: limits first, then the lines, then the list.
#pragma once

#include "index/treor/hits.h"
#include "index/treor/run.h"

class Trials {
 public:
  // The volume limit moves with the cells found: in the general triclinic search always, in the
  // others of oblique cells if the run goes by steps.
  Trials(TreorSearch& search, Stage stage, CrystalSystem system);
  // The number of lines if the cell is within the limits of its volume and indexes enough of them:
  // it is a candidate then. Else 0.
  int Test(const Constants& constants);
  // Whether the last candidate has found a place in the list.
  bool IsStored() const { return stored_; }
  // As the search's; to be asked for every few trials.
  bool GoOn();
  const SearchLimits& Limits() const { return limits_; }

 private:
  TreorSearch& search_;
  Stage stage_;
  CrystalSystem system_;
  bool moves_;
  SearchLimits limits_;
  HitCounter counter_;
  long asked_ = 0;  // calculated lines when GoOn asked
  int calls_ = 0;   // of GoOn since then
  bool stored_ = false;
  int found_ = 0;          // cells since the limit moved,
  float foundvolume_ = 0;  // and their volumes together

  bool AllowsProduct(float product) const;
  void MoveLimit(float volume);
};

// True if the search has the lines it needs.
inline bool HasLines(const TreorSearch& search, int n) {
  return search.Lines() >= n && search.options.use > 0;
}
