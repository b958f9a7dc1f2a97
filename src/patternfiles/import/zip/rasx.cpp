// Archives of Rigaku's newer program: a folder a scan, with points and conditions.
//
//   Data0/Profile0.txt                two-theta, counts, factor of the attenuator, parted by tabs
//   Data0/MesurementConditions0.xml   so it is spelt
//     <GeneralInformation> <SystemName>SmartLab</SystemName> <SampleName>quartz</SampleName>
//     <HWConfigurations> <XrayGenerator> <WavelengthKalpha1>1.540593</WavelengthKalpha1>
//                                        <WavelengthKalpha2>1.544414</WavelengthKalpha2>
//     <ScanInformation> <AxisName>TwoThetaTheta</AxisName> <StartTime>2021-03-16T13:10:14Z</...>
//                       <Step>0.02</Step> <Speed>10</Speed> <SpeedUnit>deg/min</SpeedUnit>
#include <algorithm>
#include <cmath>

#include "patternfiles/import/dates.h"
#include "patternfiles/import/markup.h"
#include "patternfiles/import/textlines.h"
#include "patternfiles/import/utf8.h"
#include "patternfiles/import/xml/xmltree.h"
#include "patternfiles/import/zip/archive.h"
#include "workspace/text.h"

namespace {

// A factor of 0 stands for none. Lines of headings, if there are any, are marked.
void TakePoints(std::string_view text, const std::string& name, MeasuredScan& scan) {
  bool attenuated = false;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find_first_of("\r\n", at), text.size());
    const std::string_view line = Stripped(text.substr(at, end - at));
    at = end + 1;
    if (line.empty() || line[0] == '#' || line[0] == '*') continue;
    const std::vector<double> row = NumbersIn(line, "lines of " + name);
    if (row.size() < 2) throw NotReadable("a line of " + name + " has no counts");
    const double factor = row.size() > 2 && row[2] > 0 ? row[2] : 1;
    attenuated |= factor != 1;
    scan.x.push_back(row[0]);
    scan.counts.push_back(row[1] * factor);
    scan.esd.push_back(factor * std::sqrt(std::max(row[1], 1.0)));
  }
  if (!attenuated) scan.esd.clear();
}

// Of a continuous scan the speed is stated, by the minute as a rule, of others the time itself.
double SecondsOf(pugi::xml_node information) {
  const double speed = ValueOf(Child(information, "Speed"));
  const std::string unit = Squeezed(Told(information, "SpeedUnit"));
  const double step = std::abs(ValueOf(Child(information, "Step")));
  if (!(speed > 0) || !std::isfinite(step)) return 0;
  if (unit.find("min") != unit.npos) return step / speed * 60;
  return unit.starts_with("s") ? speed : 0;
}

// False for scans of other axes.
bool Describe(pugi::xml_node conditions, MeasuredScan& scan, ScanList& scans) {
  const auto told = [&](const char* name) { return OnOneLine(TextOf(Below(conditions, name))); };
  const pugi::xml_node information = Below(conditions, "ScanInformation");
  const std::string axis = told("AxisName");
  if (!axis.empty() && !NamesTwoTheta(axis)) {
    scans.LeaveOut("a scan of " + axis);
    return false;
  }
  scan.wavelengths = {ValueOf(Below(conditions, "WavelengthKalpha1")),
                      ValueOf(Below(conditions, "WavelengthKalpha2"))};
  scan.sample = told("SampleName");
  scan.instrument = told("SystemName");
  scan.date = IsoDate(told("StartTime"));
  scan.seconds = SecondsOf(information);
  if (Squeezed(told("IntensityUnit")) == "cps") scans.Note("its intensities are counts per second");
  return true;
}

}  // namespace

MeasuredFile ImportRasx(const ImportSource& source) {
  Archive archive(source.bytes);
  const auto profiles = archive.Like("Profile", ".txt");
  // Both are numbered alike; some versions may spell it right.
  auto conditions = archive.Like("MesurementConditions", ".xml");
  for (const Archive::Entry& entry : archive.Like("MeasurementConditions", ".xml"))
    conditions.push_back(entry);
  ScanList scans;
  for (const Archive::Entry& profile : profiles) {
    MeasuredScan scan;
    const auto told = std::ranges::find(conditions, profile.numbers, &Archive::Entry::numbers);
    pugi::xml_document tree;
    if (told != conditions.end()) ParseXml(archive.Read(*told), tree);
    if (!Describe(tree, scan, scans)) continue;
    if (profiles.size() > 1) scan.label = profile.name.substr(0, profile.name.find_first_of("/\\"));
    TakePoints(AsUtf8(archive.Read(profile)), profile.name, scan);
    scans.Add(std::move(scan));
  }
  return scans.Done("it holds no profile");
}
