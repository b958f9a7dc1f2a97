// What the readers of CIF, XML and archives share: texts, numbers and the list of scans.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "patternfiles/import/formats.h"
#include "patternfiles/import/measured.h"

MeasuredFile ImportPdCif(const ImportSource& source);
MeasuredFile ImportXrdml(const ImportSource& source);
MeasuredFile ImportBrml(const ImportSource& source);
MeasuredFile ImportRasx(const ImportSource& source);

// What one text in memory may have, be it a file or an entry of an archive: its tree takes some
// thirty times as much.
constexpr std::size_t kMostMarkup = std::size_t{64} << 20;

// Parted by blanks, commas, semicolons or line ends. Throws NotReadable "WHERE hold ...".
std::vector<double> NumbersIn(std::string_view text, const std::string& where);
// Letters in lower case, without blanks.
std::string Squeezed(std::string_view text);
// "2Theta-Omega", "TwoThetaTheta"
bool NamesTwoTheta(std::string_view axis);

// The scans of a file, as many as a file may have, and why others are left out.
class ScanList {
 public:
  // Throws NotReadable above 1000 scans and 4 million points.
  void Add(MeasuredScan scan);
  // "a scan of Phi", or what is no sound scan at all.
  void LeaveOut(const std::string& what, bool sound = true) {
    leftout_.push_back(what);
    sound_ = sound_ && sound;
  }
  void Note(const std::string& text);
  // Throws if nothing but what is left out has been found, NoPattern where that is sound; or, with
  // `nothing`, not even that.
  MeasuredFile Done(const std::string& nothing);

 private:
  MeasuredFile file_;
  std::vector<std::string> leftout_;
  bool sound_ = true;
  std::size_t points_ = 0;
};
