// Structures on the plot: which are open, and their lines.
#include "multi/structures.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

#include "crystal/laue.h"
#include "multi/structure.h"
#include "patternfiles/import/bytes.h"
#include "plot/structureticks.h"  // for StructureLabel
#include "toolkit/toolkit.h"
#include "workspace/paths.h"
#include "workspace/slots.h"
#include "workspace/text.h"

#ifndef QUILLAGRAM_GEMMI
CrystalStructure ReadStructure(std::string_view, const std::string&) {
  throw std::runtime_error("this program has been built without gemmi, which reads structures");
}
#endif

namespace {

constexpr int kMostMiB = 8;
constexpr double kFirstTth = 0.1, kLastTth = 179.9;  // of a line
constexpr int kNamedLines = 3;

// ---- Lines ----

double SpacingAt(double tth) { return ws.structurewave / 2 / std::sin(tth / 2 / RadToDeg); }
double TthAt(double d) { return TwoRadToDeg * std::asin(std::min(1.0, ws.structurewave / 2 / d)); }

// Takes wavelength and range of the pattern; false if they are those of before.
bool TakePattern() {
  const float wave = ws.wavelen(1) > 0 ? float{ws.wavelen(1)} : CuKalpha1;
  const float from = FirstTth(SlotInput), to = LastTth(SlotInput);
  const bool same = wave == ws.structurewave && from == ws.structurefrom && to == ws.structureto;
  ws.structurewave = wave;
  ws.structurefrom = from;
  ws.structureto = to;
  return !same;
}

void PutLines(int k, const std::vector<PowderLine>& lines) {
  ws.nstructureline(k) = static_cast<int>(lines.size());
  std::ranges::transform(lines, ws.structuretth.row(k).begin(), &PowderLine::tth);
  std::ranges::transform(lines, ws.structureint.row(k).begin(), &PowderLine::intensity);
  std::ranges::transform(lines, ws.structurehkl.row(k).begin(),
                         [](const PowderLine& line) { return PackHkl(line.hkl); });
}

// Of structure k. Returns the two-theta up to which they go, where they are too many for the whole
// range.
std::optional<double> WorkOutLines(int k) {
  const double from = std::max(kFirstTth, double{ws.structurefrom});
  const double to = std::min(kLastTth, double{ws.structureto});
  PutLines(k, {});
  if (!(from < to)) return {};
  const double shortest = SpacingAt(to);
  const StructureReflections found =
      ws.structures[k - 1]->reflections(ws.structurewave, shortest, SpacingAt(from));
  PutLines(k, PowderLines(found.rows, ws.structurewave, MaxStructureLines));
  if (found.shortest > shortest) return TthAt(found.shortest);
  return {};
}

// Where a wavelength gives no numbers there are no lines.
void WorkOutAgain(int k) {
  try {
    WorkOutLines(k);
  } catch (const std::exception&) {
    PutLines(k, {});
  }
}

// What can be read of a place of the list.
void PutTexts(int k) {
  static const CrystalStructure none;
  const CrystalStructure& structure = k <= ws.nstructure ? *ws.structures[k - 1] : none;
  ws.structurename(k) = structure.name;
  ws.structureformula(k) = structure.formula;
  ws.structuregroup(k) = structure.group;
}

// ---- Texts ----

std::string Degrees(double tth) { return Fixed(tth, 2); }

// "104", and with blanks where that would not be clear; "?" for indices without a code.
std::string IndicesText(int code) {
  if (code == 0) return "?";
  const Hkl hkl = UnpackHkl(code);
  const auto digit = [](int index) { return index >= 0 && index <= 9; };
  const char* gap = digit(hkl.h) && digit(hkl.k) && digit(hkl.l) ? "" : " ";
  return std::to_string(hkl.h) + gap + std::to_string(hkl.k) + gap + std::to_string(hkl.l);
}

// "(R -3 c:H)" behind a blank, nothing where no group is known.
std::string GroupText(int k) {
  return ws.structuregroup(k).empty() ? "" : " (" + ws.structuregroup(k) + ")";
}

// "corundum Al2O3 (R -3 c:H): 104 at 35.15 (100), ..."
std::string StrongestText(int k) {
  std::vector<int> lines(ws.nstructureline(k));
  std::iota(lines.begin(), lines.end(), 1);
  std::ranges::stable_sort(lines, std::ranges::greater{},
                           [k](int i) { return float{ws.structureint(k, i)}; });
  lines.resize(std::min<std::size_t>(lines.size(), kNamedLines));
  std::string text;
  for (const int i : lines)
    text += (text.empty() ? "" : ", ") + IndicesText(ws.structurehkl(k, i)) + " at " +
            Degrees(ws.structuretth(k, i)) + " (" + Fixed(ws.structureint(k, i), 0) + ")";
  if (text.empty())
    text = "no lines from " + Degrees(ws.structurefrom) + " to " + Degrees(ws.structureto);
  return StructureLabel(k) + GroupText(k) + ": " + text;
}

// ---- Opening ----

// Whether it is open now; what there is to say of it is added to the notes.
bool OpenOne(const std::string& path, std::string& notes) {
  if (!AcceptPath(path)) return false;
  const int k = ws.nstructure + 1;
  try {
    ws.structures[k - 1] =
        std::make_shared<const CrystalStructure>(ReadStructure(BytesOf(path, kMostMiB), path));
    const std::optional<double> upto = WorkOutLines(k);
    ws.nstructure = k;
    PutTexts(k);
    notes += (notes.empty() ? "" : "; ") + StrongestText(k);
    if (upto) notes += ", no lines worked out beyond " + Degrees(*upto);
    return true;
  } catch (const std::exception& failure) {
    ws.structures[k - 1] = nullptr;
    MessageBoxError("Error", FileMessage("Error reading structure", path, failure.what()));
    return false;
  }
}

}  // namespace

Outcome OpenStructures(std::span<const std::string> paths) {
  const std::size_t room = MaxStructures - ws.nstructure;
  if (room == 0) {
    MessageBoxError("Error", "Eight structures are open: close one first");
    return Outcome::Failed;
  }
  TakePattern();
  std::string notes;
  int opened = 0;
  for (const std::string& path : paths.first(std::min(paths.size(), room)))
    opened += OpenOne(path, notes);
  if (opened == 0) return Outcome::Failed;
  if (paths.size() > room)
    notes += "; " + std::to_string(opened) + " of " + std::to_string(paths.size()) +
             " files opened: there is room for eight";
  WindowOutStatusBar(3, notes);
  return Outcome::Done;
}

Outcome CloseStructure(int k) {
  if (k > ws.nstructure) return Outcome::Idle;
  const auto begin = ws.structures.begin();
  if (k > 0) std::move(begin + k, begin + ws.nstructure, begin + k - 1);
  const int left = k == 0 ? 0 : ws.nstructure - 1;
  std::fill(begin + left, ws.structures.end(), nullptr);
  ws.nstructure = left;
  for (int j = 1; j <= MaxStructures; ++j) {
    PutTexts(j);
    j <= left ? WorkOutAgain(j) : PutLines(j, {});
  }
  return Outcome::Done;
}

Outcome UseCellInFit(int k) {
  if (k < 1 || k > ws.nstructure) return Outcome::Idle;
  const CrystalStructure& structure = *ws.structures[k - 1];
  ws.cell = structure.cell;
  ws.laueclass = structure.laueclass;
  ws.centering = structure.centering;
  WindowOutStatusBar(3, "Cell of " + structure.name + GroupText(k) +
                            " goes to Peak fit: " + LaueClassOf(ws.laueclass).label + ", " +
                            CenteringOf(ws.centering).label);
  return Outcome::Done;
}

void FollowPatternByStructures() {
  if (ws.nstructure == 0 || !TakePattern()) return;
  for (int k = 1; k <= ws.nstructure; ++k) WorkOutAgain(k);
}
