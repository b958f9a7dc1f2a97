// Fit files: the text to the letter, what comes back, and what becomes of files that are old,
// partial, shuffled or damaged.
#include "fit/fitfile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <functional>
#include <limits>

#include "crystal/hklcode.h"
#include "support/smallfiles.h"
#include "support/support.h"
#include "workspace/text.h"

namespace {

// Each line as its format has it.
const std::string kText = ReadFile(QUILLAGRAM_SOURCE "/tests/fit/whole.txt");

struct Fit {
  FitParameters p;
  PeakTable peaks;
  int npeaks = 3;
  Table<float, 3> scanwave{{7, 8, 9}};
  Table<float, 9> wavelen{{1, 2, 3, 4, 5, 6, 7, 8, 9}};
  bool operator==(const Fit&) const = default;
};

// What kText holds.
Fit Written() {
  Fit f;
  FitParameters& p = f.p;
  p.laueclass = 16;
  p.centering = 7;
  p.ncycles = 12;
  p.nbkgcycles = 1;
  p.everynth = 3;
  p.fitposmode = 1;
  p.fitfwhmmode = 2;
  p.maxshift = 0.25f;
  p.nfwhmpeak = 8;
  p.diagdamp = 1.025f;
  p.minfwhmsep = 0.15f;
  p.fitmin2th = 10.5f;
  p.fitmax2th = 120;
  f.scanwave = {{1.54059f, 1.54441f, 0.497f}};
  p.bgorder = 7;
  p.tthzerorefine = 1;
  p.fwhmrefine = {{1, 0, 1, 0, 1, 0}};
  p.fwhmtie = {{0, 1, 0}};
  p.shaperefine = {{0, 1, 0, 1, 0, 1}};
  p.shapetie = {{1, 0, 1}};
  p.cellrefine = {{1, 1, 0, 0, 0, 1}};
  p.cell = {{4.15686f, 5.25f, -6.5f, 90, 91.125f, 120}};
  p.cellesd = {{1e-4f, 2e-4f, 0, 0, 0.003f, 0}};
  p.fwhmleft = {{0.01f, -0.005f, 0.0025f}};
  p.fwhmright = {{0.02f, -0.006f, 0.0035f}};
  p.shapeleft = {{0.5f, 0.001f, 0}};
  p.shaperight = {{0.625f, 0.002f, -0.00001f}};
  p.tthzero = -0.0125f;
  p.bgcoef = {{1520.3f, -310.2f, 55, 0, 1000.5f, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}};
  const float rows[2][7] = {{21.358f, 5230, 0.0812f, 0.5f, 0.079f, 0.48f, 6},
                            {130, 12, 0.25f, 1, 0.2f, 0.9f, 48}};
  const PeakField fields[] = {ptth, pint, pfwhm, pshape, pfwhmr, pshaper, pmult};
  for (int row : {1, 2})
    for (int k = 0; k < 7; ++k) f.peaks(fields[k], row) = rows[row - 1][k];
  f.peaks(phkl, 1) = static_cast<float>(101 + 200 * 100 + 40000 * 100);
  f.peaks(phkl, 2) = static_cast<float>(98 + 200 * 101 + 40000 * 110);
  f.npeaks = 2;
  return f;
}

// The fit that a load of kText gives.
Fit Loaded() {
  Fit f = Written();
  f.p.cellesd = {};  // never read
  f.wavelen = {{1.54059f, 1.54441f, 0.497f, 4, 5, 6, 7, 8, 9}};
  return f;
}

// The lines of kText up to the reflections, and what the fit is without each.
struct SectionLoss {
  const char* key;
  void (*apply)(Fit&);
};
// clang-format off
constexpr SectionLoss kLosses[] = {
    {"LATT", [](Fit& f) { f.p.laueclass = f.p.centering = 1; }},
    {"LSCT", [](Fit& f) {
       f.p.ncycles = 25;
       f.p.nbkgcycles = f.p.fitposmode = f.p.fitfwhmmode = 2;
       f.p.everynth = 1;
     }},
    {"LSPR", [](Fit& f) {
       f.p.maxshift = 0.3f;
       f.p.nfwhmpeak = 6;
       f.p.diagdamp = 1;
       f.p.minfwhmsep = 0.1f;
       f.p.fitmin2th = f.p.fitmax2th = 0;
     }},
    {"ELAM", [](Fit& f) {
       f.scanwave = {{1.54058f, 1.54433f, 0}};
       f.wavelen = {{1.54058f, 1.54433f, 0, 4, 5, 6, 7, 8, 9}};
     }},
    {"GLOB", [](Fit& f) { f.p.bgorder = f.p.tthzerorefine = 0; }},
    {"HWTC", [](Fit& f) { f.p.fwhmrefine = {}; f.p.fwhmtie = {}; }},
    {"PKSC", [](Fit& f) { f.p.shaperefine = {}; f.p.shapetie = {}; }},
    {"CELC", [](Fit& f) { f.p.cellrefine = {}; }},
    {"CELL", [](Fit& f) { f.p.cell = FitParameters().cell; }},
    {"SDCE", [](Fit&) {}},
    {"HWTH", [](Fit& f) { f.p.fwhmleft = f.p.fwhmright = {}; }},
    {"PKSH", [](Fit& f) { f.p.shapeleft = f.p.shaperight = {}; }},
    {"ZETT", [](Fit& f) { f.p.tthzero = 0; }},
    {"BKGR", [](Fit& f) { std::fill_n(f.p.bgcoef.cells.begin(), 5, 0.0f); }},
    {"BKGR", [](Fit& f) { std::fill_n(f.p.bgcoef.cells.begin() + 5, 5, 0.0f); }},
    {"BKGR", [](Fit& f) { std::fill_n(f.p.bgcoef.cells.begin() + 10, 5, 0.0f); }},
};
// clang-format on
constexpr std::size_t kSections = std::size(kLosses);

// The rows from `first` on, as they are in a fit that has read nothing.
void DropRows(Fit& f, int first) {
  for (int field = ptth; field <= pmult; ++field)
    for (int row = first; row <= 2; ++row) f.peaks(field, row) = 0;
  f.npeaks = first > 1 ? first - 1 : 200;
}

std::string Joined(const std::vector<std::string>& lines, const std::string& end = "\n") {
  std::string text;
  for (const std::string& line : lines) text += line + end;
  return text;
}

class FitFile : public testing::Test {
 protected:
  std::string Write(const Fit& f) { return WriteFit(path_, f.p, f.peaks, f.npeaks, f.scanwave); }
  RecordFailure Load(Fit& f) {
    return ReadFit(path_, f.p, f.peaks, f.npeaks, f.scanwave, f.wavelen);
  }
  // What a text makes of a fit that holds the defaults of a new one.
  Fit Read(const std::string& text) {
    std::filesystem::remove(path_);  // writing over a file waits for the disk
    WriteFile(path_, text);
    Fit f;
    EXPECT_EQ(Load(f).text, "");
    return f;
  }
  TempDir dir_;
  const std::string path_ = dir_.file("the.fit");
};

TEST_F(FitFile, ToTheLetterAndBack) {
  ASSERT_EQ(Write(Written()), "");
  EXPECT_EQ(ReadFile(path_), kText);
  EXPECT_EQ(Read(kText), Loaded());
}

TEST_F(FitFile, OrderEndsAndBlanksDoNotMatter) {
  std::vector<std::string> lines = LinesOf(kText);
  const std::string once = Joined(lines);
  EXPECT_EQ(Read(Joined(lines, "\r\n")), Loaded());
  EXPECT_EQ(Read(Joined(lines, "\n\n  \n")), Loaded());
  EXPECT_EQ(Read(once + "END\nREFL  " + lines.back().substr(6)), Loaded());
  // Lines of one key keep their order among each other.
  std::ranges::stable_sort(lines, std::greater{},
                           [](const std::string& line) { return line.substr(0, 4); });
  ASSERT_NE(Joined(lines), once);
  EXPECT_EQ(Read(Joined(lines)), Loaded());
}

TEST_F(FitFile, NumbersInFreeForm) {
  const Fit f = Read(
      "cell\t5.4307123456789 5.43071,5\t9.0E1,90,120\n"
      "LSCT      10000 20000 30000 2 1\n"
      "REFL      1 1 1 1234567890.5 28.442 0.1 0.5 0.1 0.5 8 77\n"
      "REFL      (2 2 0) 55.5; 47.3; .1; .5; .1; .5; 12 Si\n"
      "REFL      3,1,1,30\n");
  EXPECT_EQ(f.p.cell, (Table<float, 6>{{5.4307123456789f, 5.43071f, 5, 90, 90, 120}}));
  EXPECT_EQ((std::array{f.p.ncycles, f.p.nbkgcycles, f.p.everynth, f.p.fitfwhmmode}),
            (std::array{10000, 20000, 30000, 1}));
  ASSERT_EQ(f.npeaks, 3);
  EXPECT_EQ(f.peaks(pint, 1), 1234567890.5f);
  EXPECT_EQ(f.peaks(pmult, 1), 8);
  EXPECT_EQ(f.peaks(phkl, 2), static_cast<float>(102 + 200 * 102 + 40000 * 100));
  EXPECT_EQ(f.peaks(pmult, 2), 12);
  EXPECT_EQ(f.peaks(pint, 3), 30);
  EXPECT_EQ(f.peaks(ptth, 3), 0);
  // Where other characters stand, the columns count.
  EXPECT_EQ(Read("LATT          5    2 classes").p.laueclass, 5);
  EXPECT_EQ(Read("LATT          5    2 classes").p.centering, 2);
  EXPECT_EQ(Read("LATT       5  2  classes").p.laueclass, 1);
}

// A line with each of its fields in turn replaced by what is no number, too large for one, or too
// large to be meant.
std::vector<std::string> Damaged(const std::string& line) {
  std::vector<std::string> all;
  for (std::size_t at = line.find_first_not_of(' ', 10); at != std::string::npos;) {
    const std::size_t end = std::min(line.find(' ', at), line.size());
    for (const char* bad : {"x", "NaN", "****", "1e39", "-2e12", "9999999999999"})
      all.push_back(line.substr(0, at) + bad + line.substr(end));
    at = line.find_first_not_of(' ', end);
  }
  return all;
}

TEST_F(FitFile, DefaultsSectionBySection) {
  const std::vector<std::string> lines = LinesOf(kText);
  for (std::size_t k = 0; k < kSections; ++k) {
    ASSERT_EQ(lines[k].substr(0, 4), kLosses[k].key);
    Fit without = Loaded();
    kLosses[k].apply(without);
    std::vector<std::string> changed = lines;
    for (const std::string& bad : Damaged(lines[k])) {
      changed[k] = bad;
      EXPECT_EQ(Read(Joined(changed)), without) << bad;
    }
    changed[k] = "";
    if (changed[k + 1].starts_with("BKGR")) continue;  // of others, the next would take its place
    EXPECT_EQ(Read(Joined(changed)), without) << lines[k];
  }
  // At a bad reflection the list ends.
  std::vector<std::string> changed = lines;
  changed.push_back(lines.back());
  Fit one = Loaded();
  DropRows(one, 2);
  for (const std::string& bad : Damaged(lines.back())) {
    changed[lines.size() - 1] = bad;
    EXPECT_EQ(Read(Joined(changed)), one) << bad;
  }
}

TEST_F(FitFile, ChoicesThatDoNotExist) {
  for (const char* number : {"-2147483648", "-1", "0", "17", "2147483647"}) {
    SCOPED_TRACE(number);
    std::string text;
    for (const std::string& line : LinesOf(kText)) {
      text += line.substr(0, 10);
      for (int k = 0; k < 10; ++k) text += std::string(" ") + number;
      text += "\n";
    }
    const Fit f = Read(text);
    const FitParameters& p = f.p;
    const int on = number != std::string("0"), terms = number[0] == '-' || !on ? 0 : 15;
    EXPECT_EQ((std::array{p.laueclass, p.centering, p.fitposmode, p.fitfwhmmode, p.bgorder,
                          p.tthzerorefine}),
              (std::array{1, 1, 2, 2, terms, on}));
    for (const auto& boxes : {p.cellrefine, p.fwhmrefine, p.shaperefine})
      EXPECT_EQ(boxes, (Table<int, 6>{{on, on, on, on, on, on}}));
    for (const auto& boxes : {p.fwhmtie, p.shapetie})
      EXPECT_EQ(boxes, (Table<int, 3>{{on, on, on}}));
    const Hkl r = UnpackHkl(nint(f.peaks(phkl, 1)));
    EXPECT_TRUE(std::abs(r.h) <= 100 && std::abs(r.k) <= 100 && std::abs(r.l) <= 100);
  }
}

TEST_F(FitFile, EqualWavelengthsHaveNoRatio) {
  Fit f = Read("ELAM      1.5406 1.5415 0.5");
  EXPECT_EQ(f.scanwave, (Table<float, 3>{{1.5406f, 1.5415f, 0}}));
  EXPECT_EQ(f.wavelen(3), 0.5f);  // taken before
  f = Read("ELAM      1.5406 1.5395 0.5");
  EXPECT_EQ(f.scanwave(3), 0.5f);
}

TEST_F(FitFile, ReflectionsAreCounted) {
  std::string text;
  for (int k = 1; k <= 205; ++k) text += "REFL      1,0,0,5," + std::to_string(k) + "\n";
  Fit all = Read(text);
  EXPECT_EQ(all.npeaks, 200);
  EXPECT_EQ(all.peaks(ptth, 200), 200);
  EXPECT_EQ(all.peaks(ptth, 201), 0);
  all.npeaks = 201;
  ASSERT_EQ(Write(all), "");
  EXPECT_EQ(LinesOf(ReadFile(path_)).size(), 217u);
  // Without any the list counts as full, of what it held.
  WriteFile(path_, "ZETT      0\nEND");
  Fit f = Written();
  Load(f);
  EXPECT_EQ(f.npeaks, 200);
  EXPECT_EQ(f.peaks, Written().peaks);
}

// What fills its columns, or more, is set wider: all that is read again.
TEST_F(FitFile, LargeNumbersComeBack) {
  Fit f = Loaded();
  f.p.ncycles = 123456;
  f.p.bgcoef(2) = -10000000;
  f.p.cell(3) = 12345.5f;
  f.peaks(pint, 1) = 100000;
  f.peaks(pint, 2) = 1e9f;
  f.peaks(phkl, 2) = 0;  // a peak without indices: -100 in each
  ASSERT_EQ(Write(f), "");
  EXPECT_EQ(Read(ReadFile(path_)), f);
}

TEST_F(FitFile, FailuresAreTold) {
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  const std::string kept = "the file of before";
  for (const float bad : {nan, 1e30f, -INFINITY}) {
    WriteFile(path_, kept);
    Fit f = Written();
    f.p.cell(1) = bad;
    EXPECT_TRUE(Write(f).starts_with("no room for a number in the line CELL  ")) << bad;
    f = Written();
    f.peaks(pshape, 2) = bad;
    EXPECT_TRUE(Write(f).starts_with("no room for a number in the line REFL  ")) << bad;
    EXPECT_EQ(ReadFile(path_), kept);
  }
  EXPECT_EQ(WriteFit(dir_.path(), {}, {}, 0, {}), "Is a directory");
  {
    const SmallFiles limit(100);
    EXPECT_EQ(Write(Written()), "File too large");
    EXPECT_EQ(ReadFile(path_), kept);
  }

  Fit f = Written();
  for (const char* foreign : {"", "10.00 123\n10.02 130\n"}) {
    WriteFile(path_, foreign);
    EXPECT_EQ(Load(f).text, "Error reading recfile");
    EXPECT_EQ(f, Written());
  }
  std::filesystem::remove(path_);
  EXPECT_EQ(Load(f).text, "Error opening " + path_);
  EXPECT_EQ(Load(f).reason, "No such file or directory");
  EXPECT_EQ(f, Written());
}

}  // namespace
