// The program-wide Workspace, its reset and its derived axes.
#include "workspace/workspace.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <span>
#include <tuple>

Workspace ws;

void ResetWorkspace() {
  static_cast<PerPattern&>(ws) = {};
  static_cast<Indexing&>(ws) = {};
  static_cast<Scripting&>(ws) = {};
}

void ComputeSlotAxes(int slot, float wavelength) {
  for (int i = 1; i <= ws.npts(slot); ++i) {
    const float tth = ws.xval(AxisTth, slot, i);
    float d = 0;
    if (tth > 0) d = (wavelength * 0.5f) / std::sin(tth * 0.5f / RadToDeg);
    ws.xval(AxisD, slot, i) = d;
    ws.xval(AxisQ, slot, i) = d > 0 ? 6.283185f / d : 0.0f;
  }
}

namespace {

void LayOnPattern(int slot) {
  for (int axis = AxisTth; axis <= AxisQ; ++axis)
    std::ranges::copy(ws.xval.row(axis, SlotInput).first(ws.npts(SlotInput)),
                      ws.xval.row(axis, slot).begin());
}

}  // namespace

void ComputeXAxes() {
  ws.axiswave = ws.wavelen(1);
  ComputeSlotAxes(SlotInput, ws.axiswave);
  LayOnPattern(SlotBackground);
  LayOnPattern(SlotNet);
  if (ws.fitshown)
    ComputeSlotAxes(SlotRefined, ws.axiswave);
  else
    LayOnPattern(SlotRefined);
  for (int k = 1; k <= ws.noverlay; ++k)
    ComputeSlotAxes(SlotOverlay + k - 1, ws.wavelen(SlotOverlay + k - 1));
}

namespace {

// Bit for bit, by the method of Fowler, Noll and Vo.
constexpr std::uint64_t kEmpty = 0xcbf29ce484222325;
std::uint64_t Digest(std::uint64_t before, float value) {
  return (before ^ std::bit_cast<std::uint32_t>(value)) * 0x100000001b3;
}

// Of two-theta and counts.
std::uint64_t PointsDigest() {
  std::uint64_t digest = kEmpty;
  for (const std::span<float> row : {ws.xval.row(AxisTth, SlotInput), ws.yval.row(SlotInput)})
    for (const float value : row.first(ws.npts(SlotInput))) digest = Digest(digest, value);
  return digest;
}

// Of the rows in any order.
std::uint64_t PeaksDigest() {
  std::uint64_t sum = 0;
  for (int row = 1; row <= std::min(ws.npeaks, MaxPeaks); ++row) {
    std::uint64_t digest = kEmpty;
    for (int field = ptth; field <= pshaper; ++field) digest = Digest(digest, ws.peaks(field, row));
    sum += digest;
  }
  return sum;
}

bool IsKept(std::uint64_t digest) {
  return std::ranges::any_of(ws.kept, [=](const auto& file) { return file.second == digest; });
}

}  // namespace

void NotePointsKept(const std::string& path) { ws.kept[path] = PointsDigest(); }
bool PointsAreKept() { return IsKept(PointsDigest()); }

void StateEsds(std::vector<float> esds) {
  ws.statedesd = std::move(esds);
  if (!ws.statedesd.empty()) ws.statedesddigest = PointsDigest();
}

std::span<const float> StatedEsds() {
  const bool theirs = ws.statedesd.size() == static_cast<std::size_t>(ws.npts(SlotInput)) &&
                      ws.statedesddigest == PointsDigest();
  return theirs ? std::span<const float>(ws.statedesd) : std::span<const float>();
}

void NotePeaksKept(const std::string& path) { ws.kept[path] = PeaksDigest(); }
bool PeaksAreKept() {
  const auto origins = std::span(ws.peakorigin.cells).first(std::clamp(ws.npeaks, 0, MaxPeaks));
  const auto made = [](int origin) { return origin == PeakPicked || origin == PeakFitted; };
  return std::ranges::none_of(origins, made) || IsKept(PeaksDigest());
}

int ActiveSlot() {
  if (ws.plotmask & PlotInput) return SlotInput;
  if (ws.plotmask & PlotRefined) return SlotRefined;
  if (ws.plotmask & PlotNet) return SlotNet;
  if (ws.plotmask & PlotBackground) return SlotBackground;
  return SlotInput;
}

bool StructureTables::operator==(const StructureTables& other) const {
  const auto head = [](const StructureTables& t) {
    return std::tie(t.nstructure, t.structures, t.structurename, t.structureformula,
                    t.structuregroup, t.nstructureline, t.structurewave, t.structurefrom,
                    t.structureto, t.structurescale);
  };
  return head(*this) == head(other) && (nstructure == 0 || (structuretth == other.structuretth &&
                                                            structureint == other.structureint &&
                                                            structurehkl == other.structurehkl));
}

int CountsEnd(int slot) {
  static constexpr std::array<float, 500> kEmptyBlock{};
  constexpr int block = kEmptyBlock.size();
  static_assert(MaxPoints % block == 0);
  const float* const counts = ws.yval.row(slot).data();
  int end = MaxPoints;
  while (end > 0 && std::memcmp(counts + end - block, kEmptyBlock.data(), sizeof kEmptyBlock) == 0)
    end -= block;
  while (end > 0 && std::bit_cast<std::uint32_t>(counts[end - 1]) == 0) --end;
  return end;
}

void ClearCounts(int slot) { std::ranges::fill(ws.yval.row(slot).first(CountsEnd(slot)), 0.0f); }

void EndOverlayFit() {
  if (ws.fitshown == 0) return;
  ws.fitshown = 0;
  ws.profrvalue = 0;
  ClearCounts(SlotRefined);
  LayOnPattern(SlotRefined);
  ws.npts(SlotRefined) = ws.npts(SlotInput);
}

void ClearPeakFit() {
  EndOverlayFit();
  static_cast<PeakTables&>(ws) = {};
  static_cast<FitParameters&>(ws) = FitParameters{};
  ws.fwhmleft = ws.fwhmright = ws.caglmin;
  ws.shapeleft = ws.shaperight = ws.shapemin;
  ClearCounts(SlotRefined);
  ws.plotmask = PlotInput;
}
