// CIF, XML and archives: what they hold by their definitions, what real ones hold, hostile ones.
#include <gtest/gtest.h>

#include "patternfiles/import/dates.h"
#include "patternfiles/import/import.h"
#include "patternfiles/import/markup.h"
#include "patternfiles/import/utf8.h"
#include "support/support.h"
#ifdef QUILLAGRAM_LIBZIP
#include <zip.h>
#endif

namespace {

using Texts = std::vector<std::string>;
using Values = std::vector<double>;

Imported ImportText(const std::string& text) {
  const TempDir dir;
  WriteFile(dir.file("some.dat"), text);
  return ImportFile(dir.file("some.dat"));
}

// The only scan of a file.
MeasuredScan ScanOf(const std::string& text) {
  const Imported imported = ImportText(text);
  EXPECT_EQ(imported.trouble, "") << text;
  EXPECT_EQ(imported.file.scans.size(), 1u) << text;
  return imported.file.scans.empty() ? MeasuredScan{} : imported.file.scans[0];
}

void ExpectNear(const Values& values, const Values& expected) {
  ASSERT_EQ(values.size(), expected.size());
  for (std::size_t i = 0; i < values.size(); ++i) EXPECT_NEAR(values[i], expected[i], 1e-9) << i;
}

// A file that lies beside this one.
std::string Sample(const std::string& name) {
  return ReadFile(QUILLAGRAM_SOURCE "/tests/patternfiles/import/samples/" + name);
}

constexpr double kStep = 0.02;

// Three points from 10 degrees on, 5, 7 and 6 counts, Cu radiation.
constexpr const char* kCif =
    "# a comment\ndata_quartz\n_diffrn_radiation_wavelength 1.5406\nloop_\n_pd_meas_2theta_scan\n"
    "_pd_meas_counts_total\n10.00 5\n10.02 7\n10.04 6\n";
const std::string kXrdml = Sample("scan.xrdml");

#ifdef QUILLAGRAM_LIBZIP
struct Entry {
  std::string name, text;
};

std::string Zipped(const std::vector<Entry>& entries) {
  const TempDir dir;
  int error = 0;
  zip_t* archive = zip_open(dir.file("zip").c_str(), ZIP_CREATE, &error);
  for (const Entry& entry : entries)
    zip_file_add(archive, entry.name.c_str(),
                 zip_source_buffer(archive, entry.text.data(), entry.text.size(), 0), 0);
  zip_close(archive);
  return ReadFile(dir.file("zip"));
}

const std::string kRawData = Sample("rawdata.xml");
const std::string kContainer = Sample("container.xml");
constexpr const char* kProfile = "10.00\t5.0\t1.0\n10.02\t7.0\t1.0\n10.04\t6.0\t1.0\n";
const std::string kConditions = Sample("conditions.xml");

std::string Brml(const std::string& rawdata) {
  return Zipped(
      {{"Experiment0/DataContainer.xml", kContainer}, {"Experiment0/RawData0.xml", rawdata}});
}
std::string Rasx(const std::string& profile, const std::string& conditions = kConditions) {
  return Zipped({{"root.xml", "<Root/>"},
                 {"Data0/Profile0.txt", profile},
                 {"Data0/MesurementConditions0.xml", conditions}});
}
#endif

void ExpectQuartz(const MeasuredScan& scan) {
  ExpectNear(scan.x, {10, 10 + kStep, 10 + 2 * kStep});
  ExpectNear(scan.counts, {5, 7, 6});
  EXPECT_TRUE(scan.axis == ScanAxis::TwoTheta && scan.esd.empty() && scan.label.empty());
  EXPECT_EQ(scan.wavelengths[0], 1.5406);
}

// One scan in all formats, with every code and every end of lines.
TEST(MarkedUp, OneScanInAllFormats) {
  using Format = std::string (*)(const std::string&);
  const struct {
    std::string text, date;
    Format wrapped;
    double ratio;
  } formats[] = {
#ifdef QUILLAGRAM_GEMMI
      {kCif, "", [](const std::string& text) { return text; }, 0},
#endif
#ifdef QUILLAGRAM_PUGIXML
      {kXrdml, "2024-03-08 11:13:20", [](const std::string& text) { return text; }, 0.5},
#endif
#ifdef QUILLAGRAM_LIBZIP
      {kRawData, "2013-09-17 11:34:33", Brml, 0.5},
      {kProfile, "2021-03-16 13:10:14", [](const std::string& text) { return Rasx(text); }, 0},
#endif
  };
  for (const auto& format : formats)
    for (const std::string& text :
         {format.text, "\xEF\xBB\xBF" + format.text, Replaced(format.text, "\n", "\r\n"),
          Replaced(format.text, "\n", "\r"), Utf16(format.text, false), Utf16(format.text, true)}) {
      const MeasuredScan scan = ScanOf(format.wrapped(text));
      ExpectQuartz(scan);
      EXPECT_EQ(scan.date, format.date);
      EXPECT_EQ(scan.ratio, format.ratio);
      if (format.text == kCif) continue;
      EXPECT_EQ(scan.wavelengths[1], 1.5444);
      EXPECT_EQ(scan.sample, "quartz");
      EXPECT_NEAR(scan.seconds, 2.5, 1e-9);
    }
}

TEST(MarkedUp, Texts) {
  // Letters of two, three and four bytes, and half of a pair of surrogates.
  const std::string_view little(
      "\xFF\xFE"
      "\xC5\0\x1A\x20\x35\xD8\x4F\xDD\x35\xD8"
      "a\0",
      14);
  const std::string_view big(
      "\xFE\xFF"
      "\0\xC5\x20\x1A\xD8\x35\xDD\x4F\xD8\x35"
      "\0a",
      14);
  for (const std::string_view bytes : {little, big})
    EXPECT_EQ(AsUtf8(bytes), "\u00C5\u201A\U0001D54F?a");
  EXPECT_EQ(AsUtf8(big.substr(0, 8)), "\u00C5\u201A?");
  const Texts dates[] = {{"2005-09-17T20:43:43.25+02:00", "2005-09-17 20:43:43"},
                         {" 2005-09-17 20:43Z", "2005-09-17 20:43:00"},
                         {"2005-09-17\n", "2005-09-17"},
                         {"17.9.2005 20:43", "2005-09-17 20:43:00"},
                         {"9/17/2005 8:43:10 PM", "2005-09-17 20:43:10"},
                         {"soon", ""},
                         {"10/04/96", "1996-10-04"},
                         {"12/05/2020", "2020-12-05"},
                         {"25/12/2003 7:05", "2003-12-25 07:05:00"},
                         {"04-Mar-2010", "2010-03-04"},
                         {"69/1/1", ""},
                         {"12/31/69 24:00", "2069-12-31"},
                         {"99/99/1999", ""}};
  for (const Texts& each : dates) EXPECT_EQ(IsoDate(each[0]), each[1]);
}

#ifdef QUILLAGRAM_GEMMI
TEST(MarkedUp, CifByNames) {
  const struct {
    const char *items, *x, *counts, *esd;
    ScanAxis axis = ScanAxis::TwoTheta;
  } cases[] = {
      // A range, and brackets that count in the last digits. Calculated ones are none.
      {"_pd_meas_2theta_range_min 5\n_pd_meas_2theta_range_max 5.2\n_pd_meas_2theta_range_inc 0.1\n"
       "loop_ _pd_calc_intensity_total _pd_meas_intensity_total 1 12.5(4) 2 9(3) 3 1250(12)\n",
       "5 5.1 5.2", "12.5 9 1250", "0.4 3 12"},
      // Without a step; with an end that is amiss by less than a step; the processed range where
      // the other has another number of points.
      {"_pd_meas_2theta_range_min 5\n_pd_meas_2theta_range_max 6\nloop_ _pd_meas_counts_total 1 2 "
       "3",
       "5 5.5 6", "1 2 3", ""},
      {"_pd_meas_2theta_range_min 0\n_pd_meas_2theta_range_max 100\n_pd_meas_2theta_range_inc 48\n"
       "loop_ _pd_meas_counts_total 1 2 3",
       "0 48 96", "1 2 3", ""},
      {"_pd_meas_2theta_range_min 5\n_pd_meas_2theta_range_inc 0.1\n_pd_meas_2theta_range_max 9\n"
       "_pd_proc_2theta_range_min 6\n_pd_proc_2theta_range_inc 0.5\n_pd_proc_2theta_range_max 7\n"
       "loop_ _pd_proc_intensity_net 1 2 3",
       "6 6.5 7", "1 2 3", ""},
      // Unknown values drop their points; counts that are all unknown give way to the next kind.
      // Weights stand for e.s.d.s only where nothing else does.
      {"loop_ _pd_proc_2theta_corrected _pd_meas_counts_total _pd_proc_intensity_total\n"
       "_pd_proc_ls_weight\n1.5 ? 10 0.25  2.5 ? . 0.25  3.5 . 30 0.04  4.5 ? 49 0 ? ? 8 1",
       "1.5 3.5 4.5", "10 30 49", "2 5 7"},
      {"loop_ _pd_meas_angle_2theta _pd_meas_intensity_total _pd_proc_ls_weight 1 100(7) 0.25\n",
       "1", "100", "7"},
      // The newer names, with a column of uncertainties, in capitals; an exponent, a plus.
      {"loop_ _pd_meas.2theta_scan _PD_MEAS.INTENSITY_TOTAL _pd_meas.intensity_total_su\n"
       "+1.0 1.2e3 30 2.0 '9' 3 3 12 4",
       "1 2 3", "1200 9 12", "30 3 4"},
      {"_pd_meas_overall.2theta_range_min 5 _pd_meas_overall.2theta_range_inc 1\n"
       "loop_ _pd_meas.counts_total 1 2",
       "5 6", "1 2", ""},
      // Positions in a loop of their own; spacings only where no angles are.
      {"loop_ _pd_meas_2theta_scan 1 2\nloop_ _pd_proc_d_spacing _pd_meas_counts_total 9 4 8 5",
       "1 2", "4 5", ""},
      {"loop_ _pd_proc_d_spacing _pd_meas_counts_total 9 4 8 5", "9 8", "4 5", "", ScanAxis::D},
      {"loop_ _pd_proc_recip_len_Q _pd_proc_intensity_net 1 4 2 5", "1 2", "4 5", "", ScanAxis::Q},
      // A name that comes twice, one without a value, a loop without rows.
      {"_pd_meas_2theta_range_inc 1\n_pd_meas_2theta_range_inc 2\n_cell_length_a\n"
       "_pd_meas_2theta_range_min 3\nloop_ _pd_meas_2theta_scan _x\nloop_ _pd_meas_counts_total 1 "
       "2",
       "3 4", "1 2", ""},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.items);
    const MeasuredScan scan = ScanOf(std::string("data_x\n") + each.items);
    ExpectNear(scan.x, NumbersIn(each.x, ""));
    ExpectNear(scan.counts, NumbersIn(each.counts, ""));
    ExpectNear(scan.esd, NumbersIn(each.esd, ""));
    EXPECT_EQ(scan.axis, each.axis);
  }
  // A step that has been rounded gives way to the end of the range.
  std::string rounded =
      "data_x\n_pd_proc_2theta_range_min 0\n_pd_proc_2theta_range_max 100\n"
      "_pd_proc_2theta_range_inc 0.97\nloop_\n_pd_meas_counts_total\n";
  for (int i = 0; i <= 100; ++i) rounded += "7\n";
  EXPECT_NEAR(ScanOf(rounded).x[50], 50, 1e-9);
}

TEST(MarkedUp, CifBlocks) {
  const std::string points = "loop_ _pd_meas_2theta_scan _pd_meas_counts_total 1 2 3 4\n";
  // Wavelength and sample of the phases that name a pattern; what two tell is nobody's.
  const Imported imported = ImportText(
      "data_global\n_publ_section_title ?\n"
      "data_phase\n_chemical_name_common 'zinc oxide'\n_pd_block_diffractogram_id B\n"
      "loop_ _diffrn_radiation_wavelength_wt _diffrn_radiation_wavelength\n"
      "0.2 1.3922 0.5 1.5444 1.0 1.5406\n_cell_length_a 3.25\n"
      "data_other\n_diffrn_radiation_wavelength 0.7\n"
      "data_A\n_pd_block_id A\n_pd_meas_step_count_time 3\n"
      "_pd_meas_datetime_initiated 2012-05-04T09:30\n" +
      points + "data_B\n_pd_block_id B\n" + points +
      "data_tof\nloop_ _pd_meas_time_of_flight\n"
      "_pd_meas_intensity_total _pd_proc_d_spacing 4000 5 2.1 4002 6 2.0\n");
  ASSERT_EQ(imported.file.scans.size(), 2u) << imported.trouble;
  EXPECT_EQ(imported.file.note, "left out: a time-of-flight pattern, which has no angles");
  const MeasuredScan &a = imported.file.scans[0], &b = imported.file.scans[1];
  EXPECT_TRUE(a.label == "A" && b.label == "B");
  EXPECT_EQ(a.wavelengths[0], 0);
  EXPECT_EQ(a.seconds, 3);
  EXPECT_EQ(a.date, "2012-05-04 09:30:00");
  EXPECT_EQ(a.sample, "zinc oxide");
  EXPECT_EQ(b.wavelengths, (std::array{1.5406, 1.5444}));
  EXPECT_EQ(b.ratio, 0.5);
  // Without weights the first one counts; what is no doublet is no second one.
  const std::string waves = "data_A\nloop_ _diffrn_radiation_wavelength\n";
  EXPECT_EQ(ScanOf(waves + "1.5406 1.5444\n" + points).wavelengths, (std::array{1.5406, 1.5444}));
  EXPECT_EQ(ScanOf(waves + "0.4100 1.5406 ?\n" + points).wavelengths, (std::array{0.41, 0.0}));
  // A pattern that names its phase.
  const std::string linked =
      "data_p\n_pd_phase_name zinc\n_pd_block_id P\ndata_q\n_pd_phase_name tin\n_pd_block_id Q\n";
  EXPECT_EQ(ScanOf(linked + "data_A\n_pd_phase_block_id Q\n" + points).sample, "tin");
  EXPECT_EQ(ScanOf(linked + "data_A\n_pd_block_diffractogram_id P\n" + points).sample, "zinc");
  EXPECT_EQ(ScanOf(linked + "data_A\n" + points).sample, "");
}

TEST(MarkedUp, CifWithoutPattern) {
  const Texts cases[] = {
      {"loop_ _atom_site_label _atom_site_fract_x Zn 0.3", "holds a crystal structure"},
      {"loop_ _pd_proc_d_spacing _pd_calc_intensity_total 1 2", "a calculated pattern"},
      {"loop_ _pd_meas_time_of_flight _pd_meas_counts_total 1 2", "holds a time-of-flight"},
      {"loop_ _pd_proc_energy_detection _pd_meas_counts_total 1 2", "an energy-dispersive"},
      {"loop_ _pd_meas_counts_total 1 2", "counts without positions"},
      {"_pd_meas_2theta_range_min 1\n_pd_meas_2theta_range_max 9\n_pd_meas_2theta_range_inc 0.5\n"
       "loop_ _pd_meas_counts_total 1 2",
       "counts without positions"},
      {"loop_ _pd_meas_2theta_scan _pd_meas_counts_total 1 many", "\"many\" where a number"},
      {"loop_ _pd_meas_2theta_scan _pd_meas_counts_total 1 2 3", "line 2 is no CIF: Wrong number"},
      {"_cell_length_a 3\n4", "line 3 is no CIF"},
      {"_cell_length_a\n;\nno end", "is no CIF: unterminated text field"},
      {"_cell_length_a 3", "it holds no pattern"},
  };
  for (const Texts& each : cases) {
    const Imported imported = ImportText("data_x\n" + each[0]);
    EXPECT_NE(imported.trouble.find(each[1]), std::string::npos) << imported.trouble;
    EXPECT_EQ(imported.format, "powder CIF");
  }
}
#endif

#ifdef QUILLAGRAM_PUGIXML
std::string XrdmlWith(const std::string& from, const std::string& to) {
  return Replaced(kXrdml, from, to);
}

TEST(MarkedUp, XrdmlPositions) {
  const std::string ends = "<startPosition>10</startPosition><endPosition>10.04</endPosition>";
  const std::string listed = "<listPositions>1 1.5 3</listPositions>";
  ExpectNear(ScanOf(XrdmlWith(ends, listed)).x, {1, 1.5, 3});
  ExpectQuartz(ScanOf(XrdmlWith("Gonio", "Omega-2Theta")));
  EXPECT_EQ(ImportText(XrdmlWith(ends, "<listPositions>43 43 43</listPositions>")).trouble,
            "it holds a scan of Gonio at a fixed two-theta");
  // Every name with a prefix.
  const std::string prefixed = Replaced(Replaced(kXrdml, "<", "<q:"), "<q:/", "</q:");
  ExpectQuartz(ScanOf(Replaced(prefixed, "<q:?", "<?")));
  // A rocking curve; as many positions as counts.
  const std::string fixed =
      Replaced(XrdmlWith(ends, "<commonPosition>43.2</commonPosition>"), "\"Gonio\"", "\"Omega\"");
  EXPECT_EQ(ImportText(fixed).trouble, "it holds a scan of Omega at a fixed two-theta");
  EXPECT_EQ(ImportText(XrdmlWith("5 7\n6", "5 7")).file.scans[0].x.size(), 2u);
  EXPECT_EQ(ImportText(Replaced(XrdmlWith(ends, listed), "5 7\n6", "5 7")).trouble,
            "it has 3 positions for 2 counts");
  EXPECT_EQ(ImportText(XrdmlWith("5 7\n6", "5 7,5 x6")).trouble,
            "<counts> hold \"x6\" where a number should be");
  EXPECT_EQ(ImportText(XrdmlWith("</scan>", "")).trouble.substr(0, 17), "line 11 is no XML");
  EXPECT_EQ(ImportText(XrdmlWith("counts", "rates")).trouble, "it holds no scan with counts");
}

// The attenuator multiplies what has been counted; intensities show where it moves whether they
// have its factors in them.
TEST(MarkedUp, XrdmlAttenuators) {
  const std::string three = "<counts unit=\"counts\">5 7\n6</counts>";
  const std::string factors = "<beamAttenuationFactors>1 30 30</beamAttenuationFactors>";
  const struct {
    std::string points;
    const char *counts, *esd;
  } cases[] = {
      {factors + "<counts>900 36 25</counts>", "900 1080 750", "30 180 150"},
      {factors + "<intensities>900 36 25</intensities>", "900 1080 750", "30 180 150"},
      {factors + "<intensities>900 1080 750</intensities>", "900 1080 750", "30 180 150"},
      // Counts are never taken for what they are not.
      {factors + "<counts>900 1080 750</counts>", "900 32400 22500",
       "30 985.9006035093 821.5838362577"},
      {"<beamAttenuationFactors>2</beamAttenuationFactors><counts>4 9 0</counts>", "8 18 0",
       "4 6 2"},
      {"<beamAttenuationFactors>1 1 1</beamAttenuationFactors><counts>4 9 0</counts>", "4 9 0", ""},
  };
  for (const auto& each : cases) {
    SCOPED_TRACE(each.points);
    const Imported imported = ImportText(XrdmlWith(three, each.points));
    ASSERT_EQ(imported.file.scans.size(), 1u) << imported.trouble;
    ExpectNear(imported.file.scans[0].counts, NumbersIn(each.counts, ""));
    ExpectNear(imported.file.scans[0].esd, NumbersIn(each.esd, ""));
    EXPECT_EQ(imported.file.note.empty(), std::string(each.esd).empty());
  }
  EXPECT_EQ(ImportText(XrdmlWith("<counts unit",
                                 "<beamAttenuationFactors>1 2</beamAttenuationFactors>"
                                 "<counts unit"))
                .trouble,
            "it has 2 attenuation factors for 3 counts");
  EXPECT_EQ(ImportText(XrdmlWith("<counts unit",
                                 "<beamAttenuationFactors>0</beamAttenuationFactors><counts unit"))
                .trouble,
            "it has an attenuation factor that is not above 0");
}

TEST(MarkedUp, XrdmlScans) {
  // Three scans and a measurement of its own, with temperatures; one of Phi is left out.
  const std::string whole = kXrdml, end = "</xrdMeasurement>";
  const std::size_t begin = whole.find("<scan "), length = whole.find(end) - begin;
  const std::string scan = whole.substr(begin, length);
  const std::string hot = Replaced(scan, "<counts",
                                   "<nonAmbientValues type=\"Temperature\" unit=\"K\">"
                                   "573.15 573.2 573.1</nonAmbientValues><countingTimes>2 2 4"
                                   "</countingTimes><counts");
  const std::string phi = Replaced(Replaced(scan, "\"2Theta\"", "\"Phi\""), "Gonio", "Phi");
  const Imported imported = ImportText(XrdmlWith(
      end, hot + phi + end +
               "<xrdMeasurement>"
               "<usedWavelength intended=\"K-Beta\"><kAlpha1>1.5406</kAlpha1><kBeta>1.39</kBeta>"
               "</usedWavelength>" +
               scan + end));
  const auto& scans = imported.file.scans;
  ASSERT_EQ(scans.size(), 3u) << imported.trouble;
  EXPECT_EQ(scans[0].label, "scan 1");
  EXPECT_EQ(scans[1].label, "scan 2, 573.1 K");
  EXPECT_EQ(scans[2].label, "scan 4");
  EXPECT_EQ(scans[2].wavelengths, (std::array{1.39, 0.0}));
  EXPECT_EQ(scans[2].sample, "quartz");
  EXPECT_EQ(scans[1].seconds, 2);
  EXPECT_EQ(imported.file.note,
            "the counting time changes within a scan; left out: a scan of Phi "
            "at a fixed two-theta");
  // As many as a file may have, and one more.
  std::string many;
  for (int i = 0; i < 999; ++i) many += scan;
  EXPECT_EQ(ImportText(XrdmlWith(end, many + end)).file.scans.size(), 1000u);
  EXPECT_EQ(ImportText(XrdmlWith(end, many + scan + end)).trouble, "it holds more than 1000 scans");
}
#endif

#ifdef QUILLAGRAM_LIBZIP
std::string RawDataWith(const std::string& from, const std::string& to) {
  return Replaced(kRawData, from, to);
}

TEST(MarkedUp, BrmlColumns) {
  // Columns in another order, which is told, and the absorber's factor; the angles are known by
  // where they begin.
  std::string turned = RawDataWith("Start=\"1\" Length=\"1\" LogicName=\"AbsorptionFactor\"",
                                   "Start=\"4\" Length=\"1\" LogicName=\"AbsorptionFactor\"");
  turned = Replaced(turned, "Start=\"2\" Length=\"2\"", "Start=\"1\" Length=\"2\"");
  turned = Replaced(turned, "Start=\"4\" Length=\"1\"/>", "Start=\"3\" Length=\"1\"/>");
  const std::size_t begin = turned.find("<Datum>"), end = turned.find("</DataRoute>");
  const std::string points = "<Datum>2,5,10,4,1</Datum><Datum>2,5.01,10.02,9,10</Datum>";
  const Imported imported = ImportText(Brml(turned.replace(begin, end - begin, points)));
  ASSERT_EQ(imported.file.scans.size(), 1u) << imported.trouble;
  const MeasuredScan& scan = imported.file.scans[0];
  ExpectNear(scan.x, {10, 10.02});
  ExpectNear(scan.counts, {4, 90});
  ExpectNear(scan.esd, {2, 30});
  EXPECT_EQ(scan.seconds, 2);
  EXPECT_NE(imported.file.note.find("absorber"), std::string::npos);
  // What a column is may stand in its view; the sample beside the wavelengths.
  std::string inside = RawDataWith("LogicName=\"AbsorptionFactor\"/>",
                                   "><Fixed LogicName=\"AbsorptionFactor\"/></RawDataView>");
  inside = Replaced(Replaced(inside, ",1,10,", ",2,10,"), "<Tube>", "<Tube SampleName=\"zinc\">");
  const MeasuredScan weak = ScanOf(Brml(inside));
  ExpectNear(weak.counts, {10, 7, 6});
  ExpectQuartz(ScanOf(Brml(RawDataWith("<Datum>2.5,1", "<Datum>2.5,0"))));
  EXPECT_EQ(weak.sample, "zinc");
  // Without views the columns are the usual ones; a relative range goes by the order of the axes.
  std::string bare = kRawData;
  bare.erase(bare.find("<DataViews>"), bare.find("</DataViews>") + 12 - bare.find("<DataViews>"));
  ExpectQuartz(ScanOf(Brml(bare)));
  ExpectQuartz(ScanOf(Brml(RawDataWith("<Start>10</Start>", "<Start>-1</Start>"))));
  // A detector with channels that stands still.
  std::string still = RawDataWith("Start=\"4\" Length=\"1\"", "Start=\"2\" Length=\"3\"");
  still = Replaced(still, "<RawDataView xsi:type=\"VaryingRawDataView\" Start=\"2\" Length=\"2\"/>",
                   "");
  still.replace(still.find("<Datum>"), still.find("</DataRoute>") - still.find("<Datum>"),
                "<Datum>60,1,5,7,6</Datum>");
  ExpectQuartz(ScanOf(Brml(still)));
}

TEST(MarkedUp, BrmlRanges) {
  // In the order of their numbers; of a range with a final state only that.
  const std::string route =
      "<DataRoute RouteFlag=\"Measured\"><Datum>1,1,1,1,1</Datum></DataRoute>";
  const std::string second = RawDataWith("<DataRoutes>", "<DataRoutes>" + route);
  const std::string tenth = RawDataWith("<Start>10<", "<Start>10.02<");
  const std::string rocking = RawDataWith("\"TwoTheta\"", "\"Omega\"");
  const Imported imported = ImportText(Zipped({{"Experiment0/RawData10.xml", rocking},
                                               {"Experiment0\\RawData2.xml", second},
                                               {"Experiment0/RawData11.xml", tenth},
                                               {"../../RawData0.xml", kRawData}}));
  ASSERT_EQ(imported.file.scans.size(), 3u) << imported.trouble;
  for (const MeasuredScan& scan : imported.file.scans) ExpectNear(scan.counts, {5, 7, 6});
  EXPECT_EQ(imported.file.scans[2].label, "range 3");
  EXPECT_EQ(imported.file.note, "left out: a scan of Omega");
  const struct {
    std::string rawdata, trouble;
  } refused[] = {
      {rocking, "it holds a scan of Omega"},
      {RawDataWith("Recorded", "Varying"), "it holds points without counts"},
      {RawDataWith("Start=\"4\" Length=\"1\"", "Start=\"3\" Length=\"2\""),
       "it holds snapshots of a detector with channels"},
      {RawDataWith(",5.01,7", ",7"),
       "points of Experiment0/RawData0.xml are not all of as many numbers"},
      {RawDataWith("Datum", "Data"), "it holds no points"},
      {"<RawData><DataRoute><Datum>5</Datum></DataRoute></RawData>",
       "it holds points without counts"},
  };
  for (const auto& each : refused) EXPECT_EQ(ImportText(Brml(each.rawdata)).trouble, each.trouble);
}

TEST(MarkedUp, RasxScans) {
  // A factor multiplies, 0 stands for none.
  const MeasuredScan scan =
      ScanOf(Rasx("\xEF\xBB\xBF"
                  "1.0 4 1\r\n2.0 9 0\r\n\r\n3.0 4 10"));
  ExpectNear(scan.x, {1, 2, 3});
  ExpectNear(scan.counts, {4, 9, 40});
  ExpectNear(scan.esd, {2, 3, 20});
  std::vector<Entry> entries;
  for (int i = 0; i < 401; ++i) {
    const std::string folder = "Data" + std::to_string(i) + "/";
    entries.push_back({folder + "Profile0.txt", "1 " + std::to_string(i) + "\n2 7\n"});
    entries.push_back({folder + "MesurementConditions0.xml", kConditions});
  }
  entries[5].text = Replaced(kConditions, "TwoThetaTheta", "Chi");
  const Imported imported = ImportText(Zipped(entries));
  ASSERT_EQ(imported.file.scans.size(), 400u) << imported.trouble;
  EXPECT_EQ(imported.file.note, "left out: a scan of Chi");
  EXPECT_EQ(imported.file.scans[11].label, "Data12");
  EXPECT_EQ(imported.file.scans[11].counts[0], 12);
  EXPECT_EQ(ImportText(Rasx("1 2\n3\n")).trouble, "a line of Data0/Profile0.txt has no counts");
  EXPECT_EQ(ImportText(Rasx("")).trouble, "no points in it");
}

TEST(MarkedUp, Archives) {
  EXPECT_EQ(ImportText(Zipped({{"RawDatasheet.xml", "<a/>"}, {"RawData.xml", "<a/>"}})).trouble,
            "it is an archive without a pattern that is known");
  const std::string whole = Rasx(kProfile);
  EXPECT_TRUE(
      ImportText(whole.substr(0, whole.size() / 2)).trouble.starts_with("its archive is damaged"));
  std::string broken = whole;
  broken[whole.find("Profile0.txt") + 14] ^= 1;
  EXPECT_TRUE(ImportText(broken).trouble.starts_with("its \"Data0/Profile0.txt\" is damaged"));
  // One that unpacks to far more than it is, and one of many entries.
  EXPECT_TRUE(
      ImportText(Rasx(std::string((64 << 20) + 1, ' '))).trouble.ends_with("256 MiB in all"));
  std::vector<Entry> entries(5001, {"", kProfile});
  for (std::size_t i = 0; i < entries.size(); ++i)
    entries[i].name = "Data" + std::to_string(i) + "/Profile0.txt";
  EXPECT_EQ(ImportText(Zipped(entries)).trouble, "it is an archive of more than 5000 entries");
}
#endif

// Headings and texts that only look like it.
TEST(MarkedUp, OthersAreLeftAlone) {
  for (const char* text :
       {"data_1\n10 5\n10.1 6\n", "PK says <xrdMeasurements>\n1 2\n",
        "<html>about xrdMeasurements</html>", "loop_\n_pd_meas_counts_total\n5\n"})
    for (const char* ours : {"CIF", "XRDML", "zip"})
      EXPECT_EQ(ImportText(text).format.find(ours), std::string::npos) << text;
}

}  // namespace
