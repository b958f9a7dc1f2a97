// Texts, numbers and the list of scans of the readers of CIF, XML and archives.
#include "patternfiles/import/markup.h"

#include <algorithm>

#include "patternfiles/import/textlines.h"
#include "workspace/text.h"

namespace {

constexpr std::string_view kBetweenNumbers = " \t\r\n,;";

}  // namespace

std::vector<double> NumbersIn(std::string_view text, const std::string& where) {
  std::vector<double> numbers;
  for (std::size_t at = 0; (at = text.find_first_not_of(kBetweenNumbers, at)) != text.npos;) {
    const std::size_t end = std::min(text.find_first_of(kBetweenNumbers, at), text.size());
    const auto value = NumberOf(text.substr(at, end - at));
    if (!value) {
      constexpr int kShown = 20;
      throw NotReadable(where + " hold \"" + OnOneLine(Cut(text.substr(at, end - at), kShown)) +
                        "\" where a number should be");
    }
    numbers.push_back(*value);
    at = end;
  }
  return numbers;
}

std::string Squeezed(std::string_view text) {
  std::string squeezed = LowerText(text);
  std::erase_if(squeezed, [](char c) { return c == ' ' || c == '_' || c == '\t'; });
  return squeezed;
}

bool NamesTwoTheta(std::string_view axis) {
  const std::string name = Squeezed(axis);
  for (const char* known : {"2theta", "twotheta", "2\xCE\xB8", "gonio"})
    if (name.find(known) != name.npos) return true;
  return false;
}

void ScanList::Add(MeasuredScan scan) {
  points_ += scan.counts.size();
  CheckPoints(points_);
  CheckScans(file_.scans.size() + 1);
  file_.scans.push_back(std::move(scan));
}

void ScanList::Note(const std::string& text) {
  if (file_.note.find(text) != file_.note.npos) return;
  if (!file_.note.empty()) file_.note += "; ";
  file_.note += text;
}

MeasuredFile ScanList::Done(const std::string& nothing) {
  if (file_.scans.empty()) {
    if (leftout_.empty()) throw NotReadable(nothing);
    if (!sound_) throw NotReadable("it holds " + leftout_[0]);
    throw NoPattern("it holds " + leftout_[0]);
  }
  if (!leftout_.empty()) {
    const std::string many = leftout_.size() > 1 ? " and more of the kind" : "";
    Note("left out: " + leftout_[0] + many);
  }
  return std::move(file_);
}
