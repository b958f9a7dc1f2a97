// XML of PANalytical instruments, in all of its versions.
//
//   <xrdMeasurements>
//     <sample><id/><name>quartz</name></sample>
//     <xrdMeasurement>
//       <usedWavelength intended="K-Alpha 1">
//         <kAlpha1>1.5405980</kAlpha1> <kAlpha2>1.5444260</kAlpha2> <kBeta>1.3922500</kBeta>
//         <ratioKAlpha2KAlpha1>0.5</ratioKAlpha2KAlpha1>
//       <scan scanAxis="Gonio">
//         <header> <startTimeStamp>2024-03-08T11:13:20-06:00</startTimeStamp>
//         <dataPoints>
//           <positions axis="2Theta"> <startPosition>5</startPosition> <endPosition>...
//           <commonCountingTime>133.620</commonCountingTime>
//           <beamAttenuationFactors>1 1 120.5</beamAttenuationFactors>
//           <counts>1426 1457 1459</counts>, or <intensities>
//
// In place of two positions there may be a list of them, or one that all points have in common.
#include <algorithm>
#include <cmath>

#include "patternfiles/import/dates.h"
#include "patternfiles/import/markup.h"
#include "patternfiles/import/textlines.h"
#include "patternfiles/import/xml/xmltree.h"
#include "workspace/text.h"

namespace {

std::vector<double> Numbers(pugi::xml_node parent, const std::string& name) {
  return NumbersIn(TextOf(Child(parent, name)), "<" + name + ">");
}

double Number(pugi::xml_node parent, const char* name) { return ValueOf(Child(parent, name)); }

std::vector<double> Grid(double first, double last, std::size_t n) {
  std::vector<double> grid;
  for (std::size_t i = 0; n > 1 && i < n; ++i)
    grid.push_back(first + static_cast<double>(i) * (last - first) / static_cast<double>(n - 1));
  return grid;
}

// Without positions if two-theta stands still, or is not told.
void TakePositions(pugi::xml_node points, MeasuredScan& scan) {
  pugi::xml_node axis = Child(points, "positions");
  while (axis && !NamesTwoTheta(Told(axis, "axis"))) axis = NextLike(axis);
  const std::size_t n = scan.counts.size();
  scan.x = Numbers(axis, "listPositions");
  if (scan.x.empty()) scan.x = Grid(Number(axis, "startPosition"), Number(axis, "endPosition"), n);
  if (std::ranges::all_of(scan.x, [&](double x) { return x == scan.x[0]; })) scan.x.clear();
  if (scan.x.size() != n && !scan.x.empty())
    throw NotReadable("it has " + std::to_string(scan.x.size()) + " positions for " +
                      std::to_string(n) + " counts");
}

// How far neighbours lie apart where the attenuator moves, once with its factors and once without.
bool AreSmootherWith(const std::vector<double>& factors, const std::vector<double>& counts) {
  double with = 0, without = 0;
  for (std::size_t i = 1; i < counts.size(); ++i) {
    if (factors[i] == factors[i - 1] || !(counts[i] > 0) || !(counts[i - 1] > 0)) continue;
    const double jump = std::log(counts[i] / counts[i - 1]);
    without += std::abs(jump);
    with += std::abs(jump + std::log(factors[i] / factors[i - 1]));
  }
  return with <= without;
}

// What is called counts is as it was counted. What is called intensities may have its factors in
// it already, and tells so where the attenuator moves.
void Unattenuate(pugi::xml_node points, MeasuredScan& scan, ScanList& scans) {
  std::vector<double> factors = Numbers(points, "beamAttenuationFactors");
  if (factors.empty()) factors = Numbers(points, "commonBeamAttenuationFactor");
  if (factors.size() == 1) factors.assign(scan.counts.size(), factors[0]);
  if (factors.empty() || std::ranges::all_of(factors, [](double f) { return f == 1; })) return;
  if (factors.size() != scan.counts.size())
    throw NotReadable("it has " + std::to_string(factors.size()) + " attenuation factors for " +
                      std::to_string(scan.counts.size()) + " counts");
  if (!std::ranges::all_of(factors, [](double f) { return f > 0 && std::isfinite(f); }))
    throw NotReadable("it has an attenuation factor that is not above 0");
  const bool ascounted = Child(points, "counts") || AreSmootherWith(factors, scan.counts);
  for (std::size_t i = 0; i < factors.size(); ++i) {
    const double counted = ascounted ? scan.counts[i] : scan.counts[i] / factors[i];
    scan.esd.push_back(factors[i] * std::sqrt(std::max(counted, 1.0)));
    scan.counts[i] = factors[i] * counted;
  }
  scans.Note(ascounted ? "counts are multiplied with the factors of the beam attenuator"
                       : "the file has multiplied its counts with the factors of the beam "
                         "attenuator");
}

void TakeTime(pugi::xml_node points, MeasuredScan& scan, ScanList& scans) {
  scan.seconds = Number(points, "commonCountingTime");
  for (const char* name : {"countingTimes", "countingTime"}) {
    const std::vector<double> times = Numbers(points, name);
    if (times.empty()) continue;
    scan.seconds = times[0];
    if (std::ranges::any_of(times, [&](double each) { return each != times[0]; }))
      scans.Note("the counting time changes within a scan");
  }
}

// "298.2 K": the first number of what is marked as a temperature.
std::string Temperature(pugi::xml_node scan) {
  const pugi::xml_node marked = scan.find_node([](pugi::xml_node node) {
    const auto tells = [](std::string_view text) {
      return Squeezed(text).find("temperature") != std::string::npos;
    };
    return tells(node.name()) || std::ranges::any_of(node.attributes(), [&](const auto& attribute) {
             return tells(attribute.value());
           });
  });
  for (pugi::xml_node node : {marked, marked.first_child()}) {
    const std::string_view text = TextOf(node);
    const auto value = NumberOf(text.substr(0, text.find_first_of(" \t\r\n")));
    if (value) return Fixed(*value, 1) + " " + std::string(Told(marked, "unit"));
  }
  return "";
}

// The doublet is there whatever has been intended, but for a monochromator of K beta.
void TakeWavelengths(pugi::xml_node used, MeasuredScan& scan) {
  if (Squeezed(Told(used, "intended")) == "k-beta") {
    scan.wavelengths = {Number(used, "kBeta"), 0};
    return;
  }
  const pugi::xml_node ratio = Child(used, "ratioKAlpha2KAlpha1");
  scan.ratio = ValueOf(ratio);
  scan.wavelengths = {Number(used, "kAlpha1"),
                      ratio && scan.ratio == 0 ? 0 : Number(used, "kAlpha2")};
}

void AddScan(pugi::xml_node node, MeasuredScan scan, ScanList& scans) {
  const pugi::xml_node points = Child(node, "dataPoints"), header = Child(node, "header");
  for (const char* name : {"counts", "intensities"})
    if (scan.counts.empty()) scan.counts = Numbers(points, name);
  if (scan.counts.empty()) return;
  TakePositions(points, scan);
  if (scan.x.empty())
    return scans.LeaveOut("a scan of " + OnOneLine(Told(node, "scanAxis")) +
                          " at a fixed two-theta");
  Unattenuate(points, scan, scans);
  TakeTime(points, scan, scans);
  scan.date = IsoDate(Told(header, "startTimeStamp"));
  scan.instrument = OnOneLine(Told(Child(header, "source"), "instrumentControlSoftware"));
  const std::string temperature = Temperature(node);
  if (!temperature.empty()) scan.label += (scan.label.empty() ? "" : ", ") + temperature;
  scans.Add(std::move(scan));
}

std::string SampleOf(pugi::xml_node parent) {
  const pugi::xml_node sample = Child(parent, "sample");
  const std::string_view name = Told(sample, "name");
  return OnOneLine(name.empty() ? Told(sample, "id") : name);
}

}  // namespace

MeasuredFile ImportXrdml(const ImportSource& source) {
  pugi::xml_document tree;
  ParseXml(source.bytes, tree);
  const pugi::xml_node root = Child(tree, "xrdMeasurements");
  const pugi::xml_node first = Child(root, "xrdMeasurement");
  const bool several = NextLike(first) || NextLike(Child(first, "scan"));
  ScanList scans;
  int number = 0;
  for (pugi::xml_node measurement = first; measurement; measurement = NextLike(measurement)) {
    MeasuredScan common;
    common.sample = SampleOf(Child(measurement, "sample") ? measurement : root);
    TakeWavelengths(Child(measurement, "usedWavelength"), common);
    for (pugi::xml_node scan = Child(measurement, "scan"); scan; scan = NextLike(scan)) {
      if (several) common.label = "scan " + std::to_string(++number);
      AddScan(scan, common, scans);
    }
  }
  return scans.Done("it holds no scan with counts");
}
