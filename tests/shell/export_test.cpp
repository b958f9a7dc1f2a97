// Peaks, results and solutions as csv files.
#include <gtest/gtest.h>

#include <algorithm>

#include "peaks/peaklist.h"
#include "shell/shell.h"
#include "support/support.h"
#include "workspace/csv.h"
#include "workspace/menuids.h"
#include "workspace/workspace.h"

namespace {

class ExportTables : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    WriteFile(dir.file("flat.xy"), "20 1\n21 2\n22 3\n");
    OpenFile(dir.file("flat.xy"));
    Events();
  }
  std::string Exported(int id) {
    const std::string path = dir.file("table.csv");
    RunMenu(id, "file " + path);
    return ReadFile(path);
  }
  TempDir dir;
};

TEST(Csv, QuotesWhatNeedsIt) {
  const std::string cells[] = {"plain", "a,b", "say \"x\"", "", "two\nlines"};
  EXPECT_EQ(CsvLine(cells), "plain,\"a,b\",\"say \"\"x\"\"\",,\"two\nlines\"");
}

TEST_F(ExportTables, NeedWhatTheyHold) {
  const struct {
    int id;
    int& count;
    const char* word;
  } cases[] = {{MenuExportPeaks, ws.npeaks, "Needs peaks"},
               {MenuExportFit, ws.fitnpar, "Needs a refinement"},
               {MenuExportSolutions, ws.nsolutions, "Needs solutions"}};
  for (const auto& c : cases) {
    EXPECT_TRUE(HintOf(c.id).starts_with(c.word));
    c.count = 1;
    ShowMenuState();
    EXPECT_EQ(HintOf(c.id), "");
    RunMenu(c.id, "file " + dir.file("none/table.csv"));
    const auto events = Events();
    EXPECT_NE(events.back().find(dir.file("none/table.csv") + ": No such file"), std::string::npos)
        << events.back();
  }
}

// In rising two-theta, whatever the order of the list, and kept by that.
TEST_F(ExportTables, Peaks) {
  RelistPeaks(2, PeakPicked);
  ws.peaks(ptth, 1) = 60;
  ws.peaks(ptth, 2) = 20.25f;
  EXPECT_FALSE(PeaksAreKept());
  const std::string text = Exported(MenuExportPeaks);
  EXPECT_TRUE(text.starts_with("No.,2theta (deg.),")) << text;
  EXPECT_LT(text.find(",20.25,"), text.find(",60,"));
  EXPECT_EQ(std::ranges::count(text, '\r'), 3);
  EXPECT_TRUE(PeaksAreKept());
}

TEST_F(ExportTables, FitResults) {
  ws.fitnpar = 4;
  ws.laueclass = 5;
  ws.cell = {{4.5f, 5, 6.25f, 90, 90, 90}};
  ws.cellesd = {{0.5f}};
  ws.volumeesd = 2;
  ws.tthzero = -0.125f;
  ws.fwhmleft = {{1, 2, 3}};
  ws.fwhmright = {{4, 5, 6}};
  ws.fwhmesd(5) = 0.25f;
  ws.shaperight = {{0.5f, 0, 0}};
  ws.shapeesd(4) = 0.75f;
  ws.bgorder = 2;
  ws.bgcoef(2) = 7;
  ws.bgesd(2) = 0.0625f;
  ws.fitrwp = 0.25f;
  ws.fitpoints = 99;
  ws.fitcorrelation = 0.5f;
  ws.fitcorrelated = "a, c";
  const std::string text = Exported(MenuExportFit);
  EXPECT_TRUE(text.starts_with("name,value,e.s.d.,unit\r\nLaue class,mmm,,\r\n")) << text;
  for (const char* const line :
       {"a,4.5,0.5,A", "b,5,,A", "gamma,90,,deg.", "volume,140.625,2,A^3",
        "two-theta zero,-0.125,,deg.", "U left,1,,deg.^2", "V right,5,0.25,deg.^2",
        "g1 right,0.5,0.75,", "background 2,7,0.0625,counts", "Rwp,0.25,,", "points,99,,",
        "parameters,4,,", "\"correlation of a, c\",0.5,,"})
    EXPECT_NE(text.find(std::string("\n") + line + "\r\n"), std::string::npos) << line;
  EXPECT_EQ(text.find("background 3"), std::string::npos);
  // The button of their dialog writes the same.
  RunMenu(MenuFitResults, "press \"Save CSV...\"\nfile " + dir.file("button.csv") + "\npress OK");
  EXPECT_EQ(ReadFile(dir.file("button.csv")), text);
}

TEST_F(ExportTables, Solutions) {
  ws.nsolutions = 2;
  for (int field = sola; field <= solnix; ++field) {
    ws.solutions(1, field) = static_cast<float>(field);
    ws.solutions(2, field) = static_cast<float>(field) + 0.5f;
  }
  const std::string text = Exported(MenuExportSolutions);
  EXPECT_TRUE(text.starts_with("no.,a (A),")) << text;
  EXPECT_TRUE(
      text.ends_with("\r\n1,1,2,3,4,5,6,7,8,9\r\n2,1.5,2.5,3.5,4.5,5.5,6.5,7.5,8.5,9.5\r\n"))
      << text;
}

}  // namespace
