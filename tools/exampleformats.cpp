// The file formats of the example patterns.
#include <string>

#include "examples.h"
#include "workspace/lines.h"
#include "workspace/record.h"

namespace {

void WriteXy(LineWriter& out, const Pattern& p) {
  for (std::size_t i = 0; i < p.counts.size(); ++i)
    out.Write(WriteRecord<"(f8.4,i10)">(p.tth[i], p.counts[i]));
}

void WriteChi(LineWriter& out, const Pattern& p) {
  out.Write(p.example.file);
  out.Write("2-Theta Angle (Degrees)");
  out.Write("Intensity");
  out.Write(WriteRecord<"(i8)">(static_cast<int>(p.counts.size())));
  for (std::size_t i = 0; i < p.counts.size(); ++i)
    out.Write(WriteRecord<"(e15.7,e15.7)">(p.tth[i], static_cast<double>(p.counts[i])));
}

void WriteDat(LineWriter& out, const Pattern& p) {
  out.Write(WriteRecord<"(f7.4,',',f6.4,',',f7.4)">(p.tth[0], p.example.step, p.example.stop()));
  std::string line;
  for (std::size_t i = 0; i < p.counts.size(); ++i) {
    line += WriteRecord<"(f8.0)">(p.counts[i]);
    if ((i + 1) % 10 != 0) continue;
    out.Write(line);
    line.clear();
  }
}

void WriteGdf(LineWriter& out, const Pattern& p) {
  out.Write("Simulated focusing camera");
  out.Write("");
  out.Write("    1");
  out.Write(p.example.text);
  out.Write("");
  out.Write("");
  out.Write("7/15/2024 12:00");
  out.Write("1800");
  out.Write("");
  out.Write("<detector>simulated<detector>");
  out.Write(WriteRecord<"(f10.3)">(p.tth[0]));
  out.Write(WriteRecord<"(f10.3)">(p.example.stop()));
  out.Write(WriteRecord<"(f10.3)">(p.example.step));
  for (int i = 14; i <= 16; ++i) out.Write("");
  for (int count : p.counts) out.Write(WriteRecord<"(i8)">(count));
}

void WriteTxt(LineWriter& out, const Pattern& p) {
  out.Write("[Data source]");
  out.Write("Date=7/15/2024");
  out.Write("Time=09:30:00");
  out.Write(WriteRecord<"('Alpha1=',f7.5)">(p.example.wavelength));
  out.Write(WriteRecord<"('Alpha2=',f7.5)">(p.example.wavelength2));
  out.Write("AlphaRatio=0.50000");
  out.Write("Time=0.5");
  out.Write(WriteRecord<"('Increment=',f6.4)">(p.example.step));
  out.Write(WriteRecord<"('Start=',f7.4)">(p.tth[0]));
  out.Write("[Data]");
  out.Write("     Angle,       Counts,");
  for (std::size_t i = 0; i < p.counts.size(); ++i)
    out.Write(WriteRecord<"(f10.4,',',i13)">(p.tth[i], p.counts[i]));
}

void WriteUxd(LineWriter& out, const Pattern& p) {
  out.Write("_FILEVERSION=2");
  out.Write("_DATEMEASURED='15-Jul-2024 09:30:00'");
  out.Write(WriteRecord<"('_WL1=',f7.5)">(p.example.wavelength));
  out.Write(WriteRecord<"('_WL2=',f7.5)">(p.example.wavelength2));
  out.Write("_WLRATIO=0.5");
  out.Write("_STEPTIME=2.000000");
  out.Write(WriteRecord<"('_STEPSIZE=',f6.4)">(p.example.step));
  out.Write(WriteRecord<"('_START=',f7.4)">(p.tth[0]));
  out.Write("_2THETACOUNTS");
  for (std::size_t i = 0; i < p.counts.size(); ++i)
    out.Write(WriteRecord<"(f12.4,i12)">(p.tth[i], p.counts[i]));
}

void WriteUdf(LineWriter& out, const Pattern& p) {
  out.Write(std::string("SampleIdent,") + p.example.file + " simulated,/");
  out.Write("DiffrType,simulated,/");
  out.Write(WriteRecord<"('LabdaAlpha1, ',f7.5,',/')">(p.example.wavelength));
  out.Write(WriteRecord<"('LabdaAlpha2, ',f7.5,',/')">(p.example.wavelength2));
  out.Write("RatioAlpha21, 0.50000,/");
  out.Write(WriteRecord<"('DataAngleRange, ',f8.4,', ',f8.4,',/')">(p.tth[0], p.example.stop()));
  out.Write(WriteRecord<"('ScanStepSize, ',f6.4,',/')">(p.example.step));
  out.Write("FileDateTime,15-Jul-2024 09:30,/");
  out.Write("ScanStepTime, 1.00,/");
  out.Write("RawScan");
  std::string line;
  for (std::size_t i = 0; i < p.counts.size(); ++i) {
    line += WriteRecord<"(i8,',')">(p.counts[i]);
    if ((i + 1) % 8 != 0) continue;
    out.Write(i + 1 == p.counts.size() ? line + "/" : line);
    line.clear();
  }
}

void WriteCif(LineWriter& out, const Pattern& p) {
  out.Write(std::string("# ") + p.example.text + ", simulated");
  out.Write("data_rutile");
  out.Write(WriteRecord<"('_diffrn_radiation_wavelength ',f10.5)">(p.example.wavelength));
  out.Write(WriteRecord<"('_pd_meas_2theta_range_min ',f10.5)">(p.tth[0]));
  out.Write(WriteRecord<"('_pd_meas_2theta_range_max ',f10.5)">(p.example.stop()));
  out.Write(WriteRecord<"('_pd_meas_2theta_range_inc ',f10.5)">(p.example.step));
  out.Write("loop_");
  out.Write("  _pd_meas_intensity_total");
  out.Write("# readers pass over the line behind the name");
  for (int count : p.counts) out.Write(WriteRecord<"(i10)">(count));
  out.Write("#--eof--");
}

void WriteXrdml(LineWriter& out, const Pattern& p) {
  out.Write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
  out.Write("<xrdMeasurements>");
  out.Write(" <usedWavelength intended=\"K-Alpha 1\">");
  out.Write(
      WriteRecord<"('  <kAlpha1 unit=\"Angstrom\">',f7.5,'</kAlpha1>')">(p.example.wavelength));
  out.Write(
      WriteRecord<"('  <kAlpha2 unit=\"Angstrom\">',f7.5,'</kAlpha2>')">(p.example.wavelength2));
  out.Write("  <ratioKAlpha2KAlpha1>0.5000</ratioKAlpha2KAlpha1>");
  out.Write(" </usedWavelength>");
  out.Write(" <endTimeStamp>2024-07-15T09:30:00+01:00</endTimeStamp>");
  out.Write(" <dataPoints>");
  out.Write("  <positions axis=\"2Theta\" unit=\"deg\">");
  out.Write(WriteRecord<"('   <startPosition>',f8.4,'</startPosition>')">(p.tth[0]));
  out.Write(WriteRecord<"('   <endPosition>',f8.4,'</endPosition>')">(p.example.stop()));
  out.Write("  </positions>");
  out.Write("  <commonCountingTime unit=\"seconds\">1.00</commonCountingTime>");
  std::string line = "  <intensities unit=\"counts\">";
  for (std::size_t i = 0; i < p.counts.size(); ++i)
    line += (i > 0 ? " " : "") + std::to_string(p.counts[i]);
  out.Write(line + "</intensities>");
  out.Write(" </dataPoints>");
  out.Write("</xrdMeasurements>");
}

constexpr struct {
  const char* extension;
  void (*write)(LineWriter&, const Pattern&);
} kFormats[] = {{".xy", WriteXy},   {".chi", WriteChi}, {".dat", WriteDat},
                {".gdf", WriteGdf}, {".txt", WriteTxt}, {".uxd", WriteUxd},
                {".udf", WriteUdf}, {".cif", WriteCif}, {".xrdml", WriteXrdml}};

}  // namespace

bool WritePattern(const std::string& directory, const Pattern& pattern) {
  const std::string file = pattern.example.file;
  for (const auto& format : kFormats) {
    if (!file.ends_with(format.extension)) continue;
    LineWriter out(directory + "/" + file);
    format.write(out, pattern);
    return out.Close();
  }
  return false;
}
