// A simulated series: patterns of which is known what they were made of.
#pragma once

#include <span>
#include <string>
#include <vector>

struct Grid {
  double start, step;  // degrees two-theta
  int points;
};

struct Frame {
  std::vector<double> truth;   // in the order of the columns of its kind
  std::vector<double> counts;  // expected ones, at the points of the grid
};

struct SeriesKind {
  const char* name;
  const char* text;
  int count;  // of patterns, unless the caller says otherwise
  Grid grid;
  std::vector<std::string> columns;
  // The frame at `at`, which runs from 0 to 1 over the series; `number` counts from 0.
  Frame (*frame)(double at, int number, std::span<const double> tth);
};

extern const std::vector<SeriesKind> kSeriesKinds;
