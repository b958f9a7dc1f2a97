// The road through an indexing engine: what it gets to read, what is told and left behind, and what
// a solution does to the pattern.
#include "index/driver.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "crystal/hklcode.h"
#include "index/inputfiles.h"
#include "shell/shell.h"
#include "shell/undo.h"
#include "solutionlistings.h"
#include "support/smallfiles.h"
#include "support/support.h"

namespace {

using Lines = std::vector<std::string>;
namespace fs = std::filesystem;

constexpr int kPlotIto = 40123;

// The engine's part: it keeps what it got, and ends as it was told to.
std::string input;
EngineEnd end;
EngineEnd Start(const std::string& inputname, const std::string& outputname, const EngineReport&) {
  input = ReadFile(inputname);
  WriteFile(outputname, "1a listing\n");
  return end;
}
EngineEnd Lose(const std::string& inputname, const std::string&, const EngineReport&) {
  fs::remove(inputname);
  return {};
}

// What the user is told in boxes, and the programs started.
Lines Told() {
  Lines told = Events();
  std::erase_if(told, [](const std::string& event) { return event.starts_with("status"); });
  return told;
}

class Driver : public testing::Test {
 protected:
  void SetUp() override {
    FreshWorkspace();
    fs::current_path(dir_.path());
    ws.editorpath = "edit";
    ws.patternloaded = 1;
    ws.patternstem = "halite";
    ws.peakfilename = "p.pks";
    input.clear();
    end = {};
    PutGrid(SlotInput, 20, 0.02f, 3001, [](double) { return 100; });  // to 80 degrees
    SetMenuLoaded(1);
    Events();
  }
  void TearDown() override { fs::current_path("/"); }
  Outcome Run(int number, const std::string& peaks, decltype(&Start) start = Start) {
    WriteFile("p.pks", peaks);
    return Run(number, start);
  }
  Outcome Run(int number, decltype(&Start) start = Start) {
    EngineOf(number).putdefaults(ws);
    IndexingEngine engine = EngineOf(number);
    engine.start = start;
    return RunEngine(engine);
  }

 private:
  TempDir dir_;
};

std::string Padded(const Lines& records) {
  std::string text;
  for (std::string record : records) {
    record.resize(256, ' ');
    text += record + '\n';
  }
  return text;
}

const std::string kPeaks =
    "   27.370    2217.7   0.0713   0.5000\n"
    "   31.704   10000.0   0.0731   0.5000\n"
    "    45.45\n";

// A title that ITO would take for the end of its input would hide the lines.
TEST_F(Driver, NamesAFileThatIsCalledLikeTheEnd) {
  for (const std::string name : {"end.pks", "bend.pks"}) {
    WriteFile(name, kPeaks);
    ws.peakfilename = name;
    EXPECT_EQ(Run(EngineIto), Outcome::Done);
    EXPECT_EQ(input.substr(0, name.size() + 3), "./" + name + ' ');
  }
}

// What has no room in its columns comes out as asterisks.
TEST_F(Driver, WritesTheInputOfTheEngine) {
  const Lines lines{"   27.3700", "   31.7040", "   45.4500"};
  EXPECT_EQ(Run(EngineIto, kPeaks), Outcome::Done);
  EXPECT_EQ(input,
            Padded({"p.pks", "9004 0 0 0 3.00 4.50   1.54056", "    0.0000         4        14",
                    lines[0], lines[1], lines[2], "", "end"}));
  ws.itotol1 = 2.25f;
  ws.itotol2 = 100;
  ws.itowave = 0.7107f;
  ws.itozero = -0.125f;
  ws.itofom = 20;
  ws.itolines = 12;
  ws.itomaxlines = 2;
  Run(EngineIto, kPeaks);
  EXPECT_EQ(input, Padded({"p.pks", "9004 0 0 0 2.25*****   0.71070",
                           "   -0.1250        20        12", lines[0], lines[1], "", "end"}));
  Run(EngineTreor, kPeaks);
  EXPECT_EQ(input,
            Padded({"p.pks", lines[0], lines[1], lines[2], "", "CHOICE=3,", "WAVE=1.54056,",
                    "VOL=-2000,", "NIX=1,", "MERIT=10,", "D1=0.00020,", "D2=0.00040,", "END*"}));
  ws.treform = 1;
  ws.trewave = 123;
  ws.trevol = 1234.5f;
  ws.treedge = 7;
  ws.trenix = 100;
  ws.tremerit = 8;
  ws.tred1 = 0.00015f;
  Run(EngineTreor, kPeaks);
  EXPECT_EQ(input,
            Padded({"p.pks", lines[0], lines[1], lines[2], "", "CHOICE=0,", "WAVE=********,",
                    "VOL=1235,", "NIX=**,", "MERIT=8,", "D1=0.00015,", "D2=0.00040,", "END*"}));
  EXPECT_EQ(Told(), (Lines{"command\tedit ito.out", "command\tedit ito.out",
                           "command\tedit treor.out", "command\tedit treor.out"}));
  EXPECT_FALSE(fs::exists("ito.inp") || fs::exists("treor90.tre"));
  EXPECT_EQ(ws.indexoutfile, "treor.out");
}

// A list ends in front of what is no two-theta. Ten columns count.
TEST(PeakLines, EndAtWhatIsNoPeak) {
  const TempDir dir;
  std::string many;
  for (int i = 0; i < 201; ++i) many += "   " + std::to_string(10 + 0.5 * i).substr(0, 6) + "\n";
  const struct {
    std::string text;
    std::size_t ito, treor;
  } cases[] = {
      {"", 0, 0},
      {"TwoTheta\n27.37\n", 0, 0},
      {"\n27.37\n", 0, 0},
      {"27.37\r\n31.70\r\n45.45", 3, 3},
      {"27.37\n1.0001\n", 2, 2},
      {"27.37\n1.0\n31.7\n", 1, 3},
      {"27.37\n0.5\n", 1, 2},
      {"27.37\n0.0\n31.7\n", 1, 1},
      {"27.37\n-3\n31.7\n", 1, 1},
      {"27.37\n180\n180.01\n31.7\n", 2, 2},
      {"27.37\nNaN\n31.7\n", 1, 1},
      {"27.37\n1e30\n31.7\n", 1, 1},
      {"27.37\n         9876\n", 2, 2},  // 9 in column 10
      {"45\n31\n31\n27\n", 4, 4},
      {std::string("\0\xff\x80\n27.37\n", 10), 0, 0},
      {many, 200, 200},
  };
  for (const auto& c : cases) {
    WriteFile(dir.file("p"), c.text);
    LineReader ito(dir.file("p")), treor(dir.file("p"));
    EXPECT_EQ(ReadPeakLines(ito, 1).size(), c.ito) << c.text;
    EXPECT_EQ(ReadPeakLines(treor, 0).size(), c.treor) << c.text;
  }
  WriteFile(dir.file("p"), "  27370   \n         9876\n");
  LineReader whole(dir.file("p"));
  EXPECT_TRUE(ReadPeakLines(whole, 1).empty()) << "a number without a point is whole";
}

TEST_F(Driver, TellsWhatFails) {
  const std::string reason = ": No such file or directory";
  EXPECT_EQ(Run(EngineIto), Outcome::Failed);
  EXPECT_EQ(Told(), (Lines{"box\tFile Error\tError opening peak file\\np.pks" + reason}));
  EXPECT_EQ(ws.indexoutfile, "");
  EXPECT_EQ(Run(EngineIto, kPeaks, Lose), Outcome::Done);
  EXPECT_EQ(Run(EngineTreor, kPeaks, Lose), Outcome::Done);
  EXPECT_EQ(Told(), (Lines{"command\tedit ito.out",
                           "box\tError\tError deleting ITO input file\\nito.inp" + reason,
                           "command\tedit treor.out",
                           "box\tError\tError deleting TREOR input file\\ntreor90.tre" + reason}));
  for (const char* name : {"ito.inp", "treor90.tre"}) {
    fs::create_directory(name);
    WriteFile(std::string(name) + "/file", "");
  }
  EXPECT_EQ(Run(EngineIto), Outcome::Failed);
  EXPECT_EQ(Run(EngineTreor), Outcome::Failed);
  const Lines told = Told();
  ASSERT_EQ(told.size(), 2u);
  EXPECT_TRUE(told[0].starts_with("box\tFile Error\tError opening ito input file\\nito.inp: "));
  EXPECT_TRUE(
      told[1].starts_with("box\tFile Error\tError opening TREOR input file\\ntreor90.tre: "));
  for (const char* name : {"ito.inp", "treor90.tre"}) fs::remove_all(name);
  {
    const SmallFiles full(1000);
    EXPECT_EQ(Run(EngineIto), Outcome::Failed);
    EXPECT_EQ(Told(), (Lines{"box\tFile Error\tError opening ito input file\\nito.inp: File too "
                             "large"}));
    EXPECT_FALSE(fs::exists("ito.inp"));
  }
  EXPECT_EQ(input, "");
}

// Status 1 leaves nothing to look at, 2 a listing that says what is wrong.
TEST_F(Driver, HearsHowTheEngineEnded) {
  end.run.complaints = {{"PWINL Error", "Error"}, {"ITO", "3 lines"}};
  const Lines boxes{"box\tPWINL Error\tError", "box\tITO\t3 lines"};
  const Lines edited{boxes[0], boxes[1], "command\tedit ito.out"};
  for (const auto& [status, outcome, told] :
       {std::tuple(0, Outcome::Done, edited), std::tuple(1, Outcome::Failed, boxes),
        std::tuple(2, Outcome::Failed, edited)}) {
    end.status = status;
    EXPECT_EQ(Run(EngineIto, kPeaks), outcome) << status;
    EXPECT_EQ(Told(), told) << status;
    EXPECT_EQ(WStatusText(3), status == 1 ? "ITO: no listing" : "ITO: no solutions");
    EXPECT_EQ(ws.indexoutfile, status == 1 ? "" : "ito.out");
    EXPECT_FALSE(fs::exists("ito.inp"));
  }
  end.run.stopped = true;
  end.status = 0;
  EXPECT_EQ(Run(EngineIto, kPeaks), Outcome::Cancelled);
  EXPECT_EQ(Told(), Lines{});
  EXPECT_EQ(WStatusText(3), "ITO: stopped");
  EXPECT_EQ(ReadFile("ito.out"), "1a listing\n");
  EXPECT_FALSE(fs::exists("ito.inp"));
}

// ---- Solutions ----

// The second cell is that of halite, or has an angle that closes no corner.
std::string Halite(const char* angle) {
  std::string text = listings::Ito(2);
  text.replace(
      text.find("    6.000    7.000    8.000   90.000   91.000   92.000"), 54,
      listings::Text("%9.3f%9.3f%9.3f%9s%9s%9s", 5.64, 5.64, 5.64, "90.000", "90.000", angle));
  return text;
}

TEST_F(Driver, PutsTheChosenCellOnThePlot) {
  WriteFile("ito.out", Halite("90.000"));
  ws.indexoutfile = "ito.out";
  ws.itowave = 1.5406f;
  ws.laueclass = 16;
  ws.zeroshift = 0.5f;
  ws.viewxmax = 30;
  for (int field = ptth; field <= pmult; ++field) ws.peaks(field, 1) = 7;
  const Snapshot before = TakeSnapshot();
  RunMenu(kPlotIto, "set 1751 3,2\npress Cancel");
  EXPECT_EQ(TakeSnapshot(&before), before);
  EXPECT_EQ(ws.selsolution, 0);
  EXPECT_EQ(UndoTitle(), "");
  RunMenu(kPlotIto, "set 1751 3,2\npress OK");
  EXPECT_EQ(std::vector(ws.cell.cells.begin(), ws.cell.cells.end()),
            (std::vector<float>{5.64f, 5.64f, 5.64f, 90, 90, 90}));
  // Sums of three squares from 2 to 22.
  ASSERT_EQ(ws.npeaks, 19);
  EXPECT_NEAR(ws.peaks(ptth, 1), 22.273 + 0.5, 0.002);
  EXPECT_NEAR(ws.peaks(ptth, 2), 27.367 + 0.5, 0.002);
  EXPECT_NEAR(ws.peaks(ptth, 19), 79.674 + 0.5, 0.002);
  EXPECT_EQ(ws.peaks(phkl, 1), PackHkl({0, 1, 1}));
  for (int field : {int{pint}, int{pfwhm}, int{pshape}, int{pfwhmr}, int{pshaper}, int{pmult}})
    EXPECT_EQ(ws.peaks(field, 1), 7);
  EXPECT_EQ(ws.viewxmax, 80);

  WriteFile("ito.out", Halite("180.000"));
  RunMenu(kPlotIto, "set 1751 1,2\npress OK");
  EXPECT_EQ(ws.npeaks, 0);
  EXPECT_EQ(ws.cell(6), 180);
  EXPECT_EQ(ws.plotmask, 33);
  ws.npts(SlotInput) = 0;
  WriteFile("ito.out", listings::Ito(1));
  RunMenu(kPlotIto, "press OK");
  EXPECT_EQ(ws.npeaks, 0);
  EXPECT_EQ(ws.cell(6), 92);
}

}  // namespace
