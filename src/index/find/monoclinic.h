// What both searches for monoclinic cells do with a trial metric.
#pragma once

#include "index/find/searches.h"

// Coefficients of h^2, k^2, l^2 and hl.
struct MonoclinicForm {
  double a, b, c, e;
};

bool PassesFirst(const MonoclinicForm& form, const SearchLines& lines);
// The second check.
void Try(const MonoclinicForm& form, const SearchLines& lines, TrialList& list);
