// Reading a pattern file by what it holds.
//
// A reader of the format that the extension names comes first, but the import looks at the file
// too: where both find the same points the reader's stand, to the bit, otherwise those of the file.
#include <algorithm>
#include <cmath>
#include <optional>

#include "patternfiles/import/formats.h"
#include "patternfiles/import/import.h"
#include "patternfiles/import/prepared.h"
#include "patternfiles/patternfiles.h"
#include "patternfiles/readcommon.h"
#include "toolkit/toolkit.h"
#include "workspace/slots.h"
#include "workspace/snapshot.h"
#include "workspace/text.h"

namespace {

// What nothing but columns of numbers tells of is known less well than by a reader of another
// extension.
bool IsColumns(const std::string& format) {
  const auto text = TextFormats();
  return text.empty() || format == text.back().name;
}

bool KnowsColumns(const PatternFormat& format) {
  return format.read == ReadXy || format.read == ReadChi;
}

bool HasPoints(int slot, const PreparedPattern& pattern) {
  constexpr float kHalfAStep = 0.5F, kRounding = 1e-3F;
  const std::span<const float> x = TthOf(slot), y = IntensityOf(slot);
  if (x.size() != pattern.tth.size()) return false;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const float step = i + 1 < x.size() ? x[i + 1] - x[i] : i > 0 ? x[i] - x[i - 1] : 0;
    if (!(std::abs(x[i] - pattern.tth[i]) <= kHalfAStep * step)) return false;
    if (!(std::abs(y[i] - pattern.counts[i]) <= kRounding * std::abs(y[i]) + kRounding))
      return false;
  }
  return true;
}

// By the reader of its extension; false if there is none, or it finds other points than the import
// has found. Then all is as it was.
bool ReadByExtension(int slot, const std::string& path, const Imported& imported) {
  const PatternFormat* format = FindFormatByExtension(path);
  if (!format || imported.file.scans.size() > 1) return false;
  const Snapshot before = TakeSnapshot();
  const DropBoxes boxes;
  if (format->read(slot, path) != 0) {
    PreparedPattern same;
    if (!imported.file.scans.empty())
      same = Prepared(imported.file.scans.front(), CuKalpha1, MaxPoints);
    if (!HasPoints(slot, same)) same = {};
    const bool trusted =
        imported.file.scans.empty() || (IsColumns(imported.format) && !KnowsColumns(*format));
    if (slot == SlotInput) StateEsds(same.esd);
    if (trusted || !same.tth.empty()) return true;
  }
  RestoreSnapshot(before);
  return false;
}

// What the readers of slot 1 leave beside its points.
void PutHeader(const MeasuredScan& scan, float wavelength) {
  for (int other = SlotBackground; other <= MaxSlots; ++other) ClearCounts(other);
  const bool stated = scan.wavelengths[0] > 0;
  ws.scanwave(1) = wavelength;
  ws.scanwave(2) = scan.wavelengths[1] > 0 ? static_cast<float>(scan.wavelengths[1])
                   : stated                ? wavelength
                                           : CuKalpha2;
  ws.scanwave(3) = static_cast<float>(scan.ratio);
  if (stated) StateWavelength(SlotInput);
  ws.instrument = Field(scan.instrument);
  ws.scandate = Field(scan.date);
  SetExposure(static_cast<float>(scan.seconds) * static_cast<float>(ws.npts(SlotInput)));
  FinishInput(scan.sample.empty() ? ws.stem20 : Field(scan.sample));
}

// Of the file, or of the choice, or the usual one.
float WavelengthOf(const MeasuredScan& scan, const ScanChoice& choice) {
  if (scan.wavelengths[0] > 0) return static_cast<float>(scan.wavelengths[0]);
  return choice.wavelength > 0 ? choice.wavelength : CuKalpha1;
}

std::string Joined(const std::string& one, const std::string& other) {
  return one + (one.empty() || other.empty() ? "" : "; ") + other;
}

// False if no point of it is left.
bool PutScan(int slot, const MeasuredScan& scan, const Imported& imported,
             const ScanChoice& choice) {
  const float wavelength = WavelengthOf(scan, choice);
  const PreparedPattern pattern = Prepared(scan, wavelength, MaxPoints);
  if (pattern.tth.empty()) return false;
  ClearCounts(slot);
  std::ranges::copy(pattern.tth, ws.xval.row(AxisTth, slot).begin());
  std::ranges::copy(pattern.counts, ws.yval.row(slot).begin());
  ws.npts(slot) = static_cast<int>(pattern.tth.size());
  ws.wavelen(slot) = wavelength;
  if (slot != SlotInput) return true;
  PutHeader(scan, wavelength);
  ws.importnote = Joined(imported.file.note, pattern.note);
  StateEsds(pattern.esd);
  return true;
}

int Refuse(const std::string& path, const Imported& imported, std::string reason) {
  if (reason.find(imported.format) == reason.npos) reason += " (" + imported.format + ")";
  MessageBoxError("Error", FileMessage("Unrecognized file type", path, reason));
  return 0;
}

// The scan that is wanted of the file.
MeasuredScan Chosen(const MeasuredFile& file, const ScanChoice& choice) {
  std::vector<MeasuredScan> scans;
  for (std::size_t number : choice.scans) {
    if (number < 1 || number > file.scans.size())
      throw NotReadable("it has no scan " + std::to_string(number));
    scans.push_back(file.scans[number - 1]);
    if (!choice.sum) break;
  }
  return SumOf(scans);
}

// What nobody can read is told by who knows the file: the import where it has recognised it, else
// the reader of its extension.
int RefuseUnread(int slot, const std::string& path, const Imported& imported) {
  const bool recognised = !imported.format.empty() && !IsColumns(imported.format);
  const PatternFormat* format = recognised ? nullptr : FindFormatByExtension(path);
  return format ? format->read(slot, path) : Refuse(path, imported, imported.trouble);
}

// All that look at the file see the same bytes, even if it changes meanwhile.
int ReadScans(int slot, const std::string& path, const ScanChoice& choice) {
  const auto file =
      choice.imported ? choice.imported : std::make_shared<const Imported>(ImportFile(path));
  const Imported& imported = *file;
  const HeldFile held(path, imported.bytes);
  if (imported.isnopattern) return Refuse(path, imported, imported.trouble);
  if (ReadByExtension(slot, path, imported)) return 1;
  if (imported.file.scans.empty()) return RefuseUnread(slot, path, imported);
  try {
    if (PutScan(slot, Chosen(imported.file, choice), imported, choice)) return 1;
  } catch (const NotReadable& failure) {
    return Refuse(path, imported, failure.what());
  }
  return Refuse(path, imported, "none of its points has a two-theta");
}

}  // namespace

int ReadAny(int slot, const std::string& path) { return ReadScans(slot, path, {}); }

int ReadPattern(const PatternFormat& format, int slot, const std::string& path,
                const ScanChoice& choice) {
  return format.filetype == FileTypeAny ? ReadScans(slot, path, choice) : format.read(slot, path);
}
