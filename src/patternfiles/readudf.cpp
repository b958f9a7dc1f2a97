// The udf format: keys up to RawScan, then counts, eight a line.
//
//   SampleIdent,Sample5 ,/
//   DiffrType,STADI ,/
//   LabdaAlpha1, 1.540598,/
//   LabdaAlpha2, 1.544426,/
//   RatioAlpha21, 0.50000,/
//   FileDateTime,11-mar-2025 12:27,/
//   DataAngleRange,   5.0000,  79.9800,/
//   ScanStepSize,     0.020,/
//   ScanStepTime,    43.605,/
//   RawScan
//       3482,    3438,    3397,    3350,    3270,    3417,    3228,    3303
//        651,     680,     650,     656,/
//
// A value ends in front of the first slash of its line and the character before that.
#include "patternfiles/patternfiles.h"

#include "patternfiles/readcommon.h"
#include "workspace/text.h"
#include "workspace/workspace.h"

namespace {

constexpr int kFields = 8;
constexpr std::string_view kDataKey = "RawScan";

struct Header {
  float start = 0, stop = 0, step = 0, steptime = 0;
  std::string diffractometer;
};

// Takes what a header line holds. Date, sample and instrument replace the current pattern's for
// every slot, the wavelengths for slot 1 only.
void ReadHeaderLine(std::string_view line, int slot, Header& header) {
  const int end = FindText(line, "/") - 2;
  if (HasKey(line, "DataAngleRange")) {
    ReadRecord<"(2f10.0)">(Columns(line, 16, end), header.start, header.stop);
  } else if (HasKey(line, "ScanStepSize")) {
    ReadRecord<"(f9.0)">(Columns(line, 14, end), header.step);
  } else if (HasKey(line, "ScanStepTime")) {
    ReadRecord<"(13x,f8.0)">(line, header.steptime);
  } else if (HasKey(line, "FileDateTime")) {
    ws.scandate = Field(Columns(line, 14, end));
  } else if (HasKey(line, "SampleIdent")) {
    ws.sampleid = Field(Columns(line, 13, end));
  } else if (HasKey(line, "DiffrType")) {
    ws.instrument = header.diffractometer = Field(Columns(line, 11, end));
  } else if (slot != SlotInput) {
    return;
  } else if (HasKey(line, "LabdaAlpha1")) {
    if (ReadRecord<"(12x,f10.0)">(line, ws.scanwave(1))) StateWavelength(slot);
  } else if (HasKey(line, "LabdaAlpha2")) {
    ReadRecord<"(12x,f10.0)">(line, ws.scanwave(2));
  } else if (HasKey(line, "RatioAlpha21")) {
    ReadRecord<"(13x,f10.0)">(line, ws.scanwave(3));
  }
}

}  // namespace

int ReadUdf(int slot, const std::string& path) {
  ClearCounts(slot);
  LineReader in(path);
  if (!in.IsOpen()) return ReadFailure("File error", "Error opening udf file", in);
  Header header;
  std::string line;
  do {
    if (!in.Read(line, RowWidth))
      return ReadFailure("File Error", "Error reading udf file", in, NoLine(kDataKey));
    ReadHeaderLine(line, slot, header);
  } while (!HasKey(line, kDataKey));
  if (header.step != 0)
    SetExposure(header.steptime * ((header.stop - header.start) / header.step + 1.0f));

  const int last = ReadCountRows(in, slot, FormatOf<"(8f9.0)">(), kFields, PointLimit);
  if (!CutAtLastPoint(slot, last))
    return ReadFailure("File Error", "Nothing read from udf file", in, NoPoints(last));
  ws.wavelen(slot) = ws.scanwave(1);
  FillGrid(slot, ws.npts(slot), header.start, header.step);
  if (slot != SlotInput) return 1;

  ws.instrument = Field("Stoe " + std::string(Trim(header.diffractometer)));
  SetExposure(header.steptime * static_cast<float>(ws.npts(SlotInput)));
  FinishInput(ws.sampleid);
  return 1;
}
