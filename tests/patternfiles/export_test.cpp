// Patterns for other programs: what csv, xye and powder CIF hold, and that it comes back.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "patternfiles/export/ciftext.h"
#include "patternfiles/export/export.h"
#include "patternfiles/import/formats.h"
#include "patternfiles/import/import.h"
#include "patternfiles/samples.h"
#include "shell/shell.h"
#include "support/smallfiles.h"
#include "support/support.h"
#include "workspace/menuids.h"
#include "workspace/slots.h"

namespace {

using Lines = std::vector<std::string>;

std::string Joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

class Export : public testing::Test {
 protected:
  void SetUp() override { FreshWorkspace(); }
  void Open(const std::string& name, const std::string& content) {
    WriteFile(dir.file(name), content);
    OpenFile(dir.file(name));
    ASSERT_EQ(ws.patternpath, dir.file(name));
    Events();
  }
  // Where sines are plain: d is 1, 1 / sqrt 2 and 1 / sqrt 3 wavelengths.
  void OpenThree() { Open("three.xy", "60 100\n90 200.5\n120 -3\n"); }
  void Curve(int slot, std::initializer_list<float> counts, int first = 1) {
    ws.npts(slot) = static_cast<int>(counts.size());
    std::ranges::copy(counts, ws.yval.row(slot).begin());
    for (int i = 1; i <= ws.npts(slot); ++i)
      ws.xval(AxisTth, slot, i) = ws.xval(AxisTth, SlotInput, first + i - 1);
  }
  // The columns in front of d and q.
  std::string Csv() {
    std::string text;
    for (const std::string& line : PatternAsCsv(SlotInput)) {
      const std::size_t q = line.rfind(','), d = line.rfind(',', q - 1);
      text += line.substr(0, d) + "\n";
    }
    return text;
  }
  // The line of an item, or blank.
  std::string Item(const std::string& tag) {
    for (const std::string& line : PatternAsPdCif())
      if (line.starts_with(tag + " ")) return line.substr(tag.size() + 1);
    return "";
  }
  std::string Told(int id, const std::string& path) {
    const Command& command = *FindCommand(id);
    return WhatIsDone(command, {.number = command.number, .path = path});
  }
  TempDir dir;
};

TEST_F(Export, CsvHasTheCurvesOnShow) {
  OpenThree();
  const Lines plain = PatternAsCsv(SlotInput);
  ASSERT_EQ(plain.size(), 4u);
  EXPECT_EQ(plain[0], "two_theta,counts,d,q");
  for (int i = 1; i <= 3; ++i) {
    float tth = 0, counts = 0, d = 0, q = 0;
    ASSERT_EQ(std::sscanf(plain[i].c_str(), "%f,%f,%f,%f", &tth, &counts, &d, &q), 4);
    EXPECT_EQ(tth, ws.xval(AxisTth, SlotInput, i));
    EXPECT_EQ(counts, ws.yval(SlotInput, i));
    EXPECT_NEAR(d, 1.54056 / std::sqrt(i), 1e-6);
    EXPECT_NEAR(q, 2 * std::acos(-1) / 1.54056 * std::sqrt(i), 1e-5);
  }

  // The axes of a truncated slot stay where they are.
  RunMenu(MenuTruncate, "set 1022 90\npress OK");
  EXPECT_EQ(PatternAsCsv(SlotInput)[1], plain[2]);
  OpenThree();

  // Curves of an earlier pattern lie in the slots still; they count once they are drawn.
  Curve(SlotBackground, {80, 0, 90.25f});
  Curve(SlotRefined, {0, 150, 10});
  EXPECT_EQ(Csv(), "two_theta,counts\n60,100\n90,200.5\n120,-3\n");
  const char* const background =
      "two_theta,counts,background\n60,100,80\n90,200.5,0\n120,-3,90.25\n";
  for (const int mask : {PlotInput + PlotBackground, static_cast<int>(PlotNet)}) {
    ws.plotmask = mask;
    EXPECT_EQ(Csv(), background);
  }
  ws.plotmask = PlotInput + PlotRefined;
  EXPECT_EQ(Csv(),
            "two_theta,counts,calculated,difference\n60,100,,\n90,200.5,150,50.5\n120,-3,10,-13\n");

  // The background of a refinement is its polynomial: 100 + 10 t, from 60 to 100 degrees.
  ws.plotmask = PlotInput + PlotRefined + PlotResidual;
  ws.fitnpar = 3;
  ws.chebyused = 2;
  ws.chebycoef(1) = 100;
  ws.chebycoef(2) = 10;
  ws.chebyxmin = 60;
  ws.chebyxmax = 100;
  EXPECT_EQ(Csv(),
            "two_theta,counts,background,calculated,difference\n"
            "60,100,90,,\n90,200.5,105,150,50.5\n120,-3,,10,-13\n");
  ws.fitnpar = 0;  // of an earlier fit
  EXPECT_EQ(Csv().substr(0, 30), "two_theta,counts,calculated,di");

  // A fit of an overlay has points of its own, here from the second on.
  ws.plotmask = PlotInput;
  Curve(SlotRefined, {150, 10}, 2);
  ws.fitshown = 1;
  EXPECT_EQ(Csv(),
            "two_theta,counts,calculated,difference\n60,100,,\n90,200.5,150,50.5\n120,-3,10,-13\n");
  ws.fitshown = 0;
  ws.plotmask = PlotInput + PlotRefined;
  EXPECT_EQ(Csv(), "two_theta,counts\n60,100\n90,200.5\n120,-3\n") << "not on these points";
}

TEST_F(Export, OverlaysAreColumnsOrFilesOfTheirOwn) {
  OpenThree();
  WriteFile(dir.file("a,\"b\".xy"), "60 1\n90 2\n120 3\n");
  WriteFile(dir.file("apart.xy"), "60 8\n61 7\n");
  RunMenu(40040, "file \"" + dir.file("a,\"\"b\"\".xy") + "\" " + dir.file("apart.xy"));
  ASSERT_EQ(ws.noverlay, 2);
  ws.wavelen(SlotOverlay + 1) = 2;
  ws.xval(AxisTth, SlotOverlay + 1, 2) = 0;  // no d belongs to it
  ComputeXAxes();
  Events();
  const std::string all = dir.file("all.csv"), apart = dir.file("\u00e4 1.csv");
  RunMenu(MenuExportCsv, "file " + all + "\nfile \"" + apart + "\"");
  const std::string text = ReadFile(all);
  EXPECT_TRUE(text.starts_with("two_theta,counts,d,q,\"a,\"\"b\"\"\"\r\n60,100,1.5405")) << text;
  EXPECT_TRUE(text.ends_with(",3\r\n")) << text;
  EXPECT_EQ(ReadFile(apart), "two_theta,counts,d,q\r\n60,8,2,3.1415925\r\n0,7,,\r\n");
  EXPECT_EQ(Told(MenuExportCsv, all), "Saved all.csv, 3 points");

  // One of them may be left out, and without the first name there is nothing.
  Events();
  RunMenu(MenuExportCsv, "file " + dir.file("first.csv") + "\nfile");
  const Lines events = Events();
  EXPECT_NE(std::ranges::find_if(
                events, [](const auto& e) { return e.starts_with("select\tExport overlay 2"); }),
            events.end());
  EXPECT_EQ(ReadFile(dir.file("first.csv")), text);
  RunMenu(MenuExportCsv, "file");
}

TEST_F(Export, XyeHasWeightsOfCounting) {
  OpenThree();
  const std::string path = dir.file("three.xye");
  RunMenu(MenuExportXye, "file " + path);
  EXPECT_EQ(ReadFile(path), "60 100 10\n90 200.5 14.159802\n120 -3 1\n");
  EXPECT_EQ(
      Told(MenuExportXye, path),
      "Saved three.xye, 3 points; e.s.d.s are square roots, but the intensities are no counts");
  ws.yval(SlotInput, 2) = 0;
  ws.yval(SlotInput, 3) = 9;
  EXPECT_FALSE(PointsAreKept());
  RunMenu(MenuExportXye, "file " + path);
  EXPECT_EQ(ReadFile(path), "60 100 10\n90 0 1\n120 9 3\n");
  EXPECT_EQ(Told(MenuExportXye, path), "Saved three.xye, 3 points");
  EXPECT_TRUE(PointsAreKept());
}

// They go out as they came in, as long as the points are those of the file.
TEST_F(Export, EsdsThatTheFileHasStated) {
  OpenThree();
  StateEsds({2.5f, 12, 0.0625f});
  EXPECT_EQ(Joined(PatternAsXye()), "60 100 2.5\n90 200.5 12\n120 -3 0.0625\n");
  EXPECT_EQ(ExportRemark(ExportXye), "");
  const std::string cif = Joined(PatternAsPdCif());
  EXPECT_EQ(cif.substr(cif.find("loop_")),
            "loop_\n_pd_meas_intensity_total\n100.0(25)\n200.5(120)\n-3.000(63)\n");
  ws.yval(SlotInput, 1) = 4;
  EXPECT_EQ(PatternAsXye()[0], "60 4 2");
}

TEST_F(Export, PdCifOfCountsOnAnEvenGrid) {
  for (const FormatSample& sample : FormatSamples())
    if (std::string(sample.extension) == "txt") Open("my scan.txt", sample.text());
  ws.instrument = "D8 | \u2116 7";
  const std::string text = Joined(PatternAsPdCif());
  EXPECT_TRUE(text.starts_with("#\\#CIF_1.1\ndata_my_scan\n_audit_creation_method Quillagram\n"));
  const std::string id = Item("_pd_block_id");
  EXPECT_EQ(id.substr(0, 11), Item("_audit_creation_date") + "T");
  EXPECT_EQ(id.substr(16), "|my_scan|Quillagram|D8_____7");
  EXPECT_EQ(text.substr(text.find("_pd_spec")),
            "_pd_spec_description 'my scan'\n"
            "_pd_meas_datetime_initiated 2014-07-05T09:30:00\n"
            "_diffrn_measurement_device_type 'D8 | &#x2116; 7'\n"
            "_diffrn_radiation_probe x-ray\n"
            "loop_\n_diffrn_radiation_wavelength_id\n_diffrn_radiation_wavelength\n"
            "_diffrn_radiation_wavelength_wt\n1 1.7889 1\n2 1.7928 0.5\n"
            "_pd_meas_number_of_points 3\n_pd_meas_2theta_range_min 5\n"
            "_pd_meas_2theta_range_max 5.04\n_pd_meas_2theta_range_inc 0.02\n\n"
            "loop_\n_pd_meas_counts_total\n126\n131\n140\n");
  // Neither stripping nor another wavelength leaves the second line.
  ws.alpha2enabled = 0;
  EXPECT_EQ(Item("_diffrn_radiation_wavelength"), "1.7889");
  ws.alpha2enabled = 1;
  ws.axiswave = ws.statedwave = 1.25f;
  EXPECT_EQ(Item("_diffrn_radiation_wavelength"), "1.25");
}

TEST_F(Export, PdCifOfIntensitiesOnAnUnevenGrid) {
  Open("uneven.xy", "10 1\n10.02 2\n10.0401 3\n");
  EXPECT_EQ(Item("_pd_meas_2theta_range_inc"), "");
  ws.yval(SlotInput, 1) = 1.5f;
  ws.plotmask = PlotInput + PlotBackground + PlotRefined;
  Curve(SlotRefined, {0, 2.5f, 0.5f});
  Curve(SlotBackground, {1, 1, 0.25f});
  const std::string text = Joined(PatternAsPdCif());
  EXPECT_EQ(text.substr(text.find("_diffrn")),
            "_diffrn_radiation_probe x-ray\n_pd_meas_number_of_points 3\n\n"
            "loop_\n_pd_meas_2theta_scan\n_pd_meas_intensity_total\n_pd_calc_intensity_total\n"
            "_pd_proc_intensity_bkg_calc\n10 1.5 . 1\n10.02 2 2.5 1\n10.0401 3 0.5 0.25\n");
  RunMenu(MenuExportPdCif, "file " + dir.file("out.cif"));
  EXPECT_EQ(Told(MenuExportPdCif, dir.file("out.cif")),
            "Saved out.cif, 3 points; no wavelength, as none is stated");
}

// Of an even grid the step is told with the digits that it takes.
TEST_F(Export, PdCifGridsLeadToTheSamePoints) {
  OpenThree();
  for (const auto& [first, step] :
       {std::pair(3.0042f, 0.0083556f), {10.0f, 0.02f}, {5.01f, 0.0167113f}, {0.5f, 0.005f}}) {
    PutGrid(SlotInput, first, step, 8000, [](double) { return 1; });
    const std::string inc = Item("_pd_meas_2theta_range_inc");
    EXPECT_LE(inc.size(), 11u);
    const double from = std::atof(Item("_pd_meas_2theta_range_min").c_str());
    for (int i = 1; i <= 8000; ++i)
      ASSERT_NEAR(ws.xval(AxisTth, SlotInput, i), from + (i - 1) * std::atof(inc.c_str()), 2.1e-5);
    ws.xval(AxisTth, SlotInput, 7000) += step / 50;
    EXPECT_EQ(Item("_pd_meas_2theta_range_inc"), "") << step;
  }
}

TEST_F(Export, PdCifHoldsTheRefinedCell) {
  OpenThree();
  EXPECT_EQ(Item("_cell_length_a"), "");
  ws.fitnpar = 4;
  ws.cell = {{4.758906f, 4.758906f, 12.990937f, 90, 90, 120}};
  ws.cellesd = {{0.000004f, 0.000004f, 0.000015f}};
  ws.volumeesd = 0.006f;
  ws.fitrp = 0.0512f;
  ws.fitrwp = 0.024f;
  EXPECT_EQ(Item("_cell_length_a"), "4.758906(4)");
  EXPECT_EQ(Item("_cell_length_c"), "12.990937(15)");
  EXPECT_EQ(Item("_cell_angle_gamma"), "120.0000");
  EXPECT_EQ(Item("_cell_volume"), "254.792(6)");  // a^2 c sqrt(3) / 2
  EXPECT_EQ(Item("_pd_proc_ls_prof_wR_factor"), "0.02400");
  ws.fitposmode = 1;  // positions by themselves tell of no cell
  EXPECT_EQ(Item("_cell_length_a"), "");
}

TEST(CifText, LettersValuesAndNames) {
  const struct {
    const char *text, *letters;
  } letters[] = {
      {"M\u00fcller \u03b1-\u00c5\u0393\u00df", "M\\\"uller \\a-\\%A\\G\\&s"},
      {"\u00e9\u00f1\u00f8\u00fd\u00c0\u00ff\u03c9\u00b5", "\\'e\\~n\\/o\\'y\\`A\\\"y\\w\\m"},
      {"\u4e2d\u00d7\u00e6", "&#x4E2D;&#xD7;&#xE6;"},
      {" a\tb\x7f\n", "a b"},
      {"latin \xe4", "latin &#xFFFD;"}};
  for (const auto& c : letters) EXPECT_EQ(CifLetters(c.text), c.letters);

  const struct {
    const char *value, *line;
  } items[] = {{"plain-1", "_t plain-1"},
               {"", "_t ?"},
               {"?", "_t '?'"},
               {"two words", "_t 'two words'"},
               {"_tag", "_t '_tag'"},
               {"Loop_x", "_t 'Loop_x'"},
               {"it's", "_t it's"},
               {"the dog's life", "_t 'the dog's life'"},
               {"dogs' life", "_t \"dogs' life\""},
               {"a' b\" c", "_t\n;a' b\" c\n;"},
               {"no '1'#2", "_t \"no '1'#2\""}};
  for (const auto& c : items) EXPECT_EQ(Joined(CifItem("_t", c.value)), c.line + std::string("\n"));
  // A long text is folded at blanks, and no line of it may look like its end.
  const std::string words = std::string(70, 'a') + " ;" + std::string(60, 'b') + " " + "c";
  EXPECT_EQ(Joined(CifItem("_t", words)),
            "_t\n;" + std::string(70, 'a') + "\n ;" + std::string(60, 'b') + " c\n;\n");
  for (const std::string& line : CifItem("_t", std::string(5000, 'x')))
    EXPECT_LE(line.size(), 2048u);
  EXPECT_EQ(CifItem("_t", std::string(77, 'x')).size(), 1u);
  EXPECT_EQ(CifItem("_t", std::string(78, 'x')).size(), 3u);

  EXPECT_EQ(CifBlockHead("Si \u00e4(1).a"), "data_Si___1_.a");
  EXPECT_EQ(CifBlockHead(""), "data_pattern");
  EXPECT_EQ(CifBlockHead(std::string(100, 'n')).size(), 80u);
}

TEST(CifText, Dates) {
  const struct {
    const char *text, *date;
  } cases[] = {{"2014-01-31 12:00:05", "2014-01-31T12:00:05"},
               {"05/07/2014  09:30", "2014-07-05T09:30"},
               {"04-Mar-2010 20:59:14", "2010-03-04T20:59:14"},
               {"1-dec-2010", "2010-12-01"},
               {"2014-01-31 12", "2014-01-31"},
               {"2014-01-31 12:75", "2014-01-31"},
               {"31/13/2014", ""},
               {"04-ARA-2010", ""},  // across two months
               {"yesterday", ""},
               {"", ""}};
  for (const auto& c : cases) EXPECT_EQ(CifDate(c.text), c.date) << c.text;
}

// What cannot be written leaves the file of before, and the points count as unsaved.
TEST_F(Export, FailuresAreTold) {
  OpenThree();
  const std::string path = dir.file("old.csv");
  WriteFile(path, "old");
  ws.yval(SlotInput, 1) = 5;
  for (const int id : {MenuExportCsv, MenuExportXye, MenuExportPdCif}) {
    Events();
    {
      const SmallFiles full(8);
      RunMenu(id, "file " + path);
    }
    EXPECT_EQ(ReadFile(path), "old");
    const std::string box =
        "box\tFile Error\tError exporting pattern\\n" + path + ": File too large";
    const Lines events = Events();
    EXPECT_NE(std::ranges::find(events, box), events.end()) << id;
    EXPECT_FALSE(PointsAreKept());
  }
  RunMenu(MenuExportCsv, "file " + dir.file(std::string(250, 'n')));
  EXPECT_EQ(Events().back().substr(0, 4), "box\t");
  ws.npts(SlotInput) = 0;
  RunMenu(MenuExportPdCif);
  EXPECT_EQ(Events().back(), "box\tError\tThere are no points to export");
}

// ---- The same by other roads ----

constexpr const char* kUneven = "20 100\n20.5 120.25\n21.2 7\n";

// The files of a pattern with everything in it.
std::vector<std::string> ExportedCifs(const TempDir& dir) {
  std::vector<std::string> paths;
  for (const FormatSample& sample : FormatSamples()) {
    const std::string path =
        dir.file("s'\u00e4 " + std::string(sample.extension) + "." + sample.extension);
    WriteFile(path, sample.text());
    OpenFile(path);
    paths.push_back(dir.file(std::string(sample.extension) + "_out.cif"));
    RunMenu(MenuExportPdCif, "file " + paths.back());
  }
  WriteFile(dir.file("uneven.xy"), kUneven);
  OpenFile(dir.file("uneven.xy"));
  ws.fitnpar = 1;
  ws.plotmask = PlotInput + PlotBackground;
  std::ranges::fill(ws.yval.row(SlotBackground), 2.0f);
  paths.push_back(dir.file("uneven_out.cif"));
  RunMenu(MenuExportPdCif, "file " + paths.back());
  return paths;
}

TEST_F(Export, PdCifPassesTheDictionaries) {
  std::string files;
  for (const std::string& path : ExportedCifs(dir)) files += " " + path;
  const std::string python = "/usr/bin/python3 ";
  if (std::system((python + "-c 'import gemmi' 2>/dev/null").c_str()) != 0)
    GTEST_SKIP() << "needs python3-gemmi";
  const std::string check = python + QUILLAGRAM_SOURCE "/tools/checkcif.py ";
  EXPECT_EQ(std::system((check + files).c_str()), 0);
  for (const char* const wrong :
       {"_pd_meas_2theta_rangs_min 5\n", "_cell_volume big\n", "_pd_meas_number_of_points 2\n",
        "_pd_block_id 'a b'\n", "loop_\n_pd_meas_counts_total\n"}) {
    WriteFile(dir.file("wrong.cif"), "data_a\n" + std::string(wrong));
    EXPECT_NE(std::system((check + dir.file("wrong.cif") + " > /dev/null").c_str()), 0) << wrong;
  }
}

// Once this build has a reader that takes such a file.
bool CanImport(std::span<const ImportFormat> formats, const std::string& bytes) {
  return std::ranges::any_of(
      formats, [&](const ImportFormat& one) { return one.read && one.recognises(bytes); });
}

TEST_F(Export, ComesBackByTheImport) {
  Open("uneven.xy", kUneven);
  ws.statedwave = ws.axiswave = 1.25f;
  int readers = 0;
  for (const auto& [id, name] : {std::pair(MenuExportCsv, "back.csv"),
                                 {MenuExportXye, "back.xye"},
                                 {MenuExportPdCif, "back.cif"}}) {
    const std::string path = dir.file(name);
    RunMenu(id, "file " + path);
    const auto formats = id == MenuExportPdCif ? MarkedUpFormats() : TextFormats();
    if (!CanImport(formats, ReadFile(path))) continue;
    ++readers;
    const Imported imported = ImportFile(path);
    ASSERT_EQ(imported.file.scans.size(), 1u) << name << ": " << imported.trouble;
    const MeasuredScan& scan = imported.file.scans.front();
    ASSERT_EQ(scan.x.size(), 3u);
    for (int i = 1; i <= 3; ++i) {
      EXPECT_EQ(static_cast<float>(scan.x[i - 1]), ws.xval(AxisTth, SlotInput, i));
      EXPECT_EQ(static_cast<float>(scan.counts[i - 1]), ws.yval(SlotInput, i));
    }
    EXPECT_EQ(scan.esd.size(), id == MenuExportXye ? 3u : 0u);
    EXPECT_NEAR(scan.wavelengths[0], id == MenuExportPdCif ? 1.25 : 0, 1e-6);
  }
  if (readers == 0) GTEST_SKIP() << "this build has no reader of them";
}

// The strict readers: xye is an xy to them, and they refuse a standard pdCIF rather than to lose
// the first point of its loop.
TEST_F(Export, StrictReadersTakeItWholeOrNotAtAll) {
  Open("uneven.xy", kUneven);
  RunMenu(MenuExportXye, "file " + dir.file("back.xye"));
  ASSERT_EQ(ReadAs("xy", SlotScratch, dir.file("back.xye")), 1);
  EXPECT_TRUE(std::ranges::equal(TthOf(SlotScratch), TthOf(SlotInput)));
  EXPECT_TRUE(std::ranges::equal(IntensityOf(SlotScratch), IntensityOf(SlotInput)));
  for (const std::string& path : ExportedCifs(dir)) EXPECT_EQ(ReadAs("cif", SlotScratch, path), 0);
}

}  // namespace
