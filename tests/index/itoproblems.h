// Input of ITO for tests: lines, cards, and what the reader makes of them.
#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "index/ito/problem.h"
#include "support/support.h"

inline bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

inline constexpr double kWave = 1.5;
inline constexpr double kPi = 3.14159265358979324;

inline double TwoThetaAt(double q) { return 2 * std::asin(kWave * std::sqrt(q) / 200) * 180 / kPi; }
inline double QAt(double twotheta) {
  return std::pow(200 / kWave * std::sin(twotheta * kPi / 360), 2);
}

// q of 100, 140, ...
inline std::vector<double> EvenQ(int n, double first = 100, double step = 40) {
  std::vector<double> q;
  for (int i = 0; i < n; ++i) q.push_back(first + step * i);
  return q;
}

// One value to a card, in its first ten columns.
inline std::string LineCards(const std::vector<double>& values) {
  std::string cards;
  for (double v : values) cards += WriteRecord<"(f10.4)">(v) + "\n";
  return cards + "\n";
}

// The first columns of a parameter card without the printed manual, up to and with the wavelength.
inline const std::string kParameters = "9004 0 0 0               1.5  ";

struct ReadResult {
  ItoReading reading = ItoReading::End;
  ItoProblem problem;
  std::string listing;  // of all problems up to this one
};

// All that the reader gives up to the end.
inline std::vector<ReadResult> ReadProblems(const std::string& input) {
  const TempDir directory;
  WriteFile(directory.file("ito.inp"), input);
  LineReader reader(directory.file("ito.inp"));
  std::vector<ReadResult> results;
  Listing listing(directory.file("ito.out"));
  do {
    results.emplace_back();
    results.back().reading = ReadProblem(reader, results.back().problem, listing);
  } while (results.back().reading != ItoReading::End);
  listing.Close();
  results.back().listing = ReadFile(directory.file("ito.out"));
  return results;
}

// A problem with the cards behind its title, up to the end card.
inline ReadResult ReadOne(const std::string& cards) {
  auto results = ReadProblems("quartz\n" + cards + "end\n");
  results.front().listing = results.back().listing;
  return results.front();
}
