// What is exported of the points: columns of numbers.
#pragma once

#include <span>
#include <string>
#include <vector>

struct Column {
  std::string head;
  std::vector<float> values;  // not a number where there is none
};

std::vector<float> CopyOf(std::span<const float> values);

// By the points of slot 1; empty without the curve.
std::vector<float> ShownBackground();
std::vector<float> ShownCalculated();
// Whether all points of slot 1 are whole numbers, and none below 0.
bool HasCounts();
// The overlays, from 1, whose two-theta values are not those of slot 1.
std::vector<int> OverlaysApart();
