// Archives of Bruker's newer program: a range is an entry of XML, with points as texts of numbers.
//
//   Experiment0/RawData0.xml
//     <RawData>
//       <TimeStampStarted>2013-09-17T11:34:33+02:00</TimeStampStarted>
//       ... <WaveLengthAlpha1 Value="1.5406"/> <WaveLengthAlpha2 Value="1.5444"/>
//           <WaveLengthRatio Value="0.5"/>
//       <DataRoutes> <DataRoute RouteFlag="Final">
//         <ScanInformation> <ScanAxes>
//           <ScanAxisInfo AxisId="TwoTheta"> <Start>10</Start> <Stop>90</Stop>
//                                            <Increment>0.02</Increment>
//         <DataViews>
//           <RawDataView xsi:type="FixedRawDataView" Start="0" Length="1"
//           LogicName="MeasuredTime"/> <RawDataView xsi:type="FixedRawDataView" Start="1"
//           Length="1"
//                        LogicName="AbsorptionFactor"/>
//           <RawDataView xsi:type="VaryingRawDataView" Start="2" Length="2"/>
//           <RawDataView xsi:type="RecordedRawDataView" Start="4" Length="1"/>
//         <Datum>0.5,1,10,5,1234</Datum>
//
// The varying columns are the axes in the order of their list; versions differ in what else they
// tell of them. Sample and wavelengths may stand in entries beside.
#include <algorithm>
#include <cmath>

#include "patternfiles/import/dates.h"
#include "patternfiles/import/markup.h"
#include "patternfiles/import/textlines.h"
#include "patternfiles/import/xml/xmltree.h"
#include "patternfiles/import/zip/archive.h"
#include "workspace/text.h"

namespace {

struct AngleRange {
  double start = 0, increment = 0;
  std::size_t place = 0;  // of the axis among those of the scan
};

// What the numbers of a point are; -1 for what there is none of.
struct Columns {
  int time = -1, factor = -1, angle = -1, counts = -1, channels = 1;
  std::vector<int> axes;
};

// Names of the axes that move, and what is told of two-theta.
struct Axes {
  std::vector<std::string> names;
  std::optional<AngleRange> angles;
};

Axes AxesOf(pugi::xml_node route) {
  Axes axes;
  for (pugi::xml_node axis = Below(route, "ScanAxisInfo"); axis; axis = NextLike(axis)) {
    std::string name;
    for (const char* key : {"AxisId", "AxisName", "VisibleName"})
      if (name.empty()) name = OnOneLine(Told(axis, key));
    if (NamesTwoTheta(name) && !axes.angles)
      axes.angles = {ValueOf(Child(axis, "Start")), ValueOf(Child(axis, "Increment")),
                     axes.names.size()};
    axes.names.push_back(name);
  }
  return axes;
}

// A column or a number of columns; -1 for what is none.
int Place(pugi::xml_node view, const char* name, int width) {
  const double number = NumberOf(Told(view, name)).value_or(-1);
  return number >= 0 && number <= width ? static_cast<int>(number) : -1;
}

// Of the view itself, or of what stands in it.
std::string_view LogicName(pugi::xml_node view) {
  if (view.attribute("LogicName")) return view.attribute("LogicName").value();
  const auto named = [](pugi::xml_node node) { return bool(node.attribute("LogicName")); };
  return view.find_node(named).attribute("LogicName").value();
}

Columns ColumnsOf(pugi::xml_node route, int width) {
  Columns columns;
  pugi::xml_node view = Below(route, "RawDataView");
  constexpr int kFewest = 3;
  if (!view && width >= kFewest) {  // the usual ones
    columns = {0, 1, -1, width - 1, 1, {}};
    for (int i = 2; i < width - 1; ++i) columns.axes.push_back(i);
  }
  for (; view; view = NextLike(view)) {
    const int start = Place(view, "Start", width), length = Place(view, "Length", width);
    if (start < 0 || length < 1 || start + length > width) continue;
    const std::string kind(Told(view, "type")), name = Squeezed(LogicName(view));
    const auto is = [&](const char* which) { return kind.find(which) != kind.npos; };
    if (name == "measuredtime") columns.time = start;
    if (name == "absorptionfactor") columns.factor = start;
    const int places = width - static_cast<int>(columns.axes.size());
    for (int i = 0; is("Varying") && i < std::min(length, places); ++i)
      columns.axes.push_back(start + i);
    if (!is("Recorded") || columns.counts >= 0) continue;
    columns.counts = start;
    columns.channels = length;
  }
  return columns;
}

// The one that begins where two-theta does, or else the one at its place among the axes; -1 if
// there is none such.
int AngleColumn(const Columns& columns, const Axes& axes, const std::vector<double>& firstpoint) {
  constexpr double kClose = 0.05;  // degrees
  if (axes.names.empty()) return columns.axes.empty() ? -1 : columns.axes[0];
  if (!axes.angles) return -1;
  std::vector<int> close;
  for (const int column : columns.axes)
    if (std::abs(firstpoint[column] - axes.angles->start) < kClose) close.push_back(column);
  if (close.size() == 1) return close[0];
  return columns.axes.size() == axes.names.size() ? columns.axes[axes.angles->place] : -1;
}

// Of the absorber; 0 stands for none.
double FactorOf(const std::vector<double>& row, const Columns& columns) {
  return columns.factor >= 0 && row[columns.factor] > 0 ? row[columns.factor] : 1;
}

void AddPoint(const std::vector<double>& row, const Columns& columns,
              const std::optional<AngleRange>& angles, MeasuredScan& scan) {
  const double factor = FactorOf(row, columns);
  for (int channel = 0; channel < columns.channels; ++channel) {
    const double counted = row[columns.counts + channel];
    const double grid =
        angles ? angles->start + static_cast<double>(scan.x.size()) * angles->increment : 0;
    scan.x.push_back(columns.angle >= 0 ? row[columns.angle] : grid);
    scan.counts.push_back(counted * factor);
    scan.esd.push_back(factor * std::sqrt(std::max(counted, 1.0)));
  }
}

// What a route holds instead of a pattern; blank for a pattern.
std::string WhatElse(const Columns& columns, const Axes& axes, bool manypoints) {
  if (columns.counts < 0) return "points without counts";
  if (!axes.angles && !axes.names.empty()) return "a scan of " + axes.names[0];
  if (columns.channels > 1 && manypoints) return "snapshots of a detector with channels";
  if (columns.angle >= 0) return "";
  return axes.angles && axes.angles->increment != 0 ? "" : "counts without positions";
}

void AddRoute(pugi::xml_node route, const std::string& entry, MeasuredScan scan, ScanList& scans) {
  const pugi::xml_node first = Child(route, "Datum");
  if (!first) return;
  const std::vector<double> point = NumbersIn(TextOf(first), "points of " + entry);
  const Axes axes = AxesOf(route);
  Columns columns = ColumnsOf(route, static_cast<int>(point.size()));
  columns.angle = AngleColumn(columns, axes, point);
  const std::string other = WhatElse(columns, axes, bool(NextLike(first)));
  if (!other.empty()) return scans.LeaveOut(other);
  if (columns.time >= 0) scan.seconds = point[columns.time];
  bool absorbed = false;
  for (pugi::xml_node datum = first; datum; datum = NextLike(datum)) {
    const std::vector<double> row = NumbersIn(TextOf(datum), "points of " + entry);
    if (row.size() != point.size())
      throw NotReadable("points of " + entry + " are not all of as many numbers");
    absorbed |= FactorOf(row, columns) != 1;
    AddPoint(row, columns, axes.angles, scan);
  }
  if (absorbed)
    scans.Note("counts are multiplied with the factors of the absorber");
  else
    scan.esd.clear();
  scans.Add(std::move(scan));
}

// What the first node tells that is called so, by its own name, as its "Name", or by an attribute.
std::string_view Anywhere(const pugi::xml_document& tree, const char* name) {
  const pugi::xml_node node = tree.find_node([&](pugi::xml_node each) {
    return IsNamed(each, name) || each.attribute("Name").value() == std::string_view(name) ||
           each.attribute(name);
  });
  for (const std::string_view told : {Told(node, name), TextOf(node), Told(node, "Value")})
    if (!told.empty()) return told;
  return {};
}

MeasuredScan Described(const pugi::xml_document& tree) {
  MeasuredScan scan;
  const auto value = [&](const char* name) { return NumberOf(Anywhere(tree, name)).value_or(0); };
  scan.wavelengths = {value("WaveLengthAlpha1"), value("WaveLengthAlpha2")};
  if (!(scan.wavelengths[0] > 0)) scan.wavelengths[0] = value("WaveLengthAverage");
  scan.ratio = value("WaveLengthRatio");
  scan.sample = OnOneLine(Anywhere(tree, "SampleName"));
  scan.date = IsoDate(Anywhere(tree, "TimeStampStarted"));
  return scan;
}

// What one of them leaves open the other may tell.
MeasuredScan Together(MeasuredScan scan, const MeasuredScan& other) {
  if (!(scan.wavelengths[0] > 0)) {
    scan.wavelengths = other.wavelengths;
    scan.ratio = other.ratio;
  }
  if (scan.sample.empty()) scan.sample = other.sample;
  if (scan.date.empty()) scan.date = other.date;
  return scan;
}

// The routes of a range; of one with final states only those.
void AddRange(const pugi::xml_document& tree, const std::string& entry, const MeasuredScan& told,
              ScanList& scans) {
  const MeasuredScan common = Together(Described(tree), told);
  const auto isfinal = [](pugi::xml_node route) { return Told(route, "RouteFlag") == "Final"; };
  const pugi::xml_node first = Below(tree, "DataRoute");
  pugi::xml_node final = first;
  while (final && !isfinal(final)) final = NextLike(final);
  for (pugi::xml_node route = first; route; route = NextLike(route))
    if (!final || isfinal(route)) AddRoute(route, entry, common, scans);
}

}  // namespace

MeasuredFile ImportBrml(const ImportSource& source) {
  Archive archive(source.bytes);
  MeasuredScan told;  // of all ranges
  for (const char* name : {"MeasurementContainer", "DataContainer"})
    for (const Archive::Entry& entry : archive.Like(name, ".xml")) {
      pugi::xml_document tree;
      ParseXml(archive.Read(entry), tree);
      told = Together(told, Described(tree));
    }
  ScanList scans;
  for (const Archive::Entry& entry : archive.Like("RawData", ".xml")) {
    pugi::xml_document tree;
    ParseXml(archive.Read(entry), tree);
    AddRange(tree, entry.name, told, scans);
  }
  MeasuredFile file = scans.Done("it holds no points");
  for (std::size_t i = 0; file.scans.size() > 1 && i < file.scans.size(); ++i)
    file.scans[i].label = "range " + std::to_string(i + 1);
  return file;
}
