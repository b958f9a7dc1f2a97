// Binary files of instruments, written here place by place.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <limits>

#include "patternfiles/import/formats.h"
#include "patternfiles/import/import.h"
#include "support/support.h"

namespace {

// A file of zeros with values at places; it grows with them.
class Bytes {
 public:
  explicit Bytes(std::size_t size) : all(size, '\0') {}
  template <class T>
  Bytes& Put(std::size_t place, T value) {
    if (all.size() < place + sizeof value) all.resize(place + sizeof value);
    std::memcpy(all.data() + place, &value, sizeof value);
    return *this;
  }
  Bytes& Text(std::size_t place, const std::string& text) {
    all.resize(std::max(all.size(), place + text.size()));
    all.replace(place, text.size(), text);
    return *this;
  }
  Bytes& Counts(const std::vector<float>& counts) {
    for (const float count : counts) Put(all.size(), count);
    return *this;
  }
  Bytes& Add(const Bytes& more) {
    all += more.all;
    return *this;
  }
  std::string all;
};

using Uint = std::uint32_t;
using Short = std::uint16_t;

Bytes Range1(float start, Uint following, const std::vector<float>& counts) {
  Bytes range(152);
  range.Put(0, Uint(counts.size())).Put(4, 2.5f).Put(8, 0.25f).Put(20, start).Put(24, -1e6f);
  range.Text(36, "Quartz").Put(68, 1.5406f).Put(72, 1.54439f).Put(148, following);
  return range.Counts(counts);
}
Bytes Raw1() {
  return Bytes(0).Text(0, "RAW ").Add(Range1(10, 1, {5, 7, 9})).Add(Range1(60, 0, {1, 2}));
}

Bytes Raw2() {
  Bytes file(256);
  file.Text(0, "RAW2").Put(4, Short(2)).Text(168, "14-Oct-1996 09:30:05");
  file.Put(190, 1.5406f).Put(194, 1.54439f).Put(198, 0.5f);
  for (const int size : {48, 80}) {
    Bytes range(size);
    range.Put(0, Short(size)).Put(2, Short(3)).Put(8, 4.f).Put(12, 0.5f).Put(16, 20.f);
    file.Add(range.Put(46, Short(size == 80 ? 298 : 0)).Counts({3, 1, 2}));
  }
  return file;
}

Bytes Range3(double start, double step, Uint scantype, Uint record) {
  Bytes range(304);
  range.Put(0, Uint(304)).Put(4, Uint(3)).Put(8, start / 2).Put(16, start).Put(176, step);
  range.Put(192, 12.f).Put(196, scantype).Put(240, 1.5418).Put(252, record).Put(256, Uint(40));
  range.Text(range.all.size(), std::string(40, 'x'));
  for (const float count : {11.f, 22.f, 33.f})
    range.Counts({count}).Text(range.all.size(), std::string(record ? record - 4 : 0, '\1'));
  return range;
}
Bytes Raw3() {
  Bytes file(712);
  file.Text(0, "RAW1.01").Put(8, Uint(1)).Put(12, Uint(3)).Text(16, "03/04/10");
  file.Text(26, "20:59:14").Text(326, "Gr\xfcn ").Put(616, 1.5418).Put(624, 1.5406);
  file.Put(632, 1.54439).Put(648, 0.5);
  return file.Add(Range3(5, 0.02, 0, 0)).Add(Range3(40, 0.1, 3, 4)).Add(Range3(90, -0.5, 2, 12));
}

Bytes Range4(const std::string& type, double start, const std::vector<float>& counts) {
  Bytes range(160);
  range.Put(0, Uint(start < 50 ? 0 : 160)).Text(32, type).Put(72, start).Put(80, 0.02);
  range.Put(88, Uint(counts.size())).Put(92, 0.5f).Put(112, 0.7107).Put(136, Uint(4));
  range.Put(140, Uint(64)).Put(160, Uint(50)).Put(164, Uint(64)).Text(172, "2Theta");
  return range.Put(216, start).Counts(counts);
}
Bytes Raw4(double mean = 1.5418) {
  Bytes file(61), sample(44), source(120);
  file.Text(0, "RAW4.00").Text(12, "04/12/2019").Text(24, "07:08:09");
  sample.Put(0, Uint(10)).Put(4, Uint(44)).Text(12, "SAMPLEID").Text(36, "Rutile");
  source.Put(0, Uint(30)).Put(4, Uint(120)).Put(72, mean).Put(80, 1.5406).Put(88, 1.54439);
  source.Put(104, 0.5);
  return file.Add(sample).Add(source);
}
Bytes TwoRanges4() {
  return Raw4()
      .Add(Range4("Locked Coupled", 10, {4, 5, 6}))
      .Add(Range4("Rocking Curve", 20, {9, 9, 9}))
      .Add(Range4("Detector Scan", 60, {7, 8}));
}

// Four steps of 0.02 from 5 degrees on.
Bytes Rd(const char* mark, int roots) {
  Bytes file(mark[1] == '3' ? 250 : 810);
  file.Text(0, mark).Put(84, char(5)).Put(94, 1.54056).Put(102, 1.54439).Put(110, 0.5);
  file.Text(146, "Corundum").Put(214, 0.02).Put(222, 5.0).Put(230, 5.08);
  for (const int root : {100, 127, 1012, 65535, 10}) {
    if (roots-- > 0) file.Put(file.all.size(), Short(root));
  }
  return file;
}

struct Scan {
  const char* label;
  double first, last;
  std::vector<double> counts;
};
struct Case {
  const char* name;
  Bytes file;
  std::vector<Scan> scans;
  double seconds, alpha1, alpha2, ratio;
  const char *sample, *date, *note;
};

Imported Import(const std::string& bytes) {
  const TempDir dir;
  WriteFile(dir.file("pattern"), bytes);
  return ImportFile(dir.file("pattern"));
}

TEST(BinaryFiles, TellWhatTheyHold) {
  const std::vector<Scan> rd{{"", 5.01, 5.07, {100, 161, 10241, 42948362}}},
      still{{"", 5, 5.08, {100, 161, 10241, 42948362, 1}}};
  const Case cases[] = {
      {"RAW 1",
       Raw1(),
       {{"range 1", 10, 10.5, {5, 7, 9}}, {"range 2", 60, 60.25, {1, 2}}},
       2.5,
       1.5406,
       1.54439,
       0,
       "Quartz",
       "",
       ""},
      {"RAW 1, each range marked",
       Bytes(0)
           .Text(0, "RAW ")
           .Add(Range1(10, 1, {5}))
           .Text(160, "RAW ")
           .Add(Range1(60, 0, {1, 2})),
       {{"range 1", 10, 10, {5}}, {"range 2", 60, 60.25, {1, 2}}},
       2.5,
       1.5406,
       1.54439,
       0,
       "Quartz",
       "",
       ""},
      {"RAW 2",
       Raw2(),
       {{"range 1", 20, 21, {3, 1, 2}}, {"range 2, 298 K", 20, 21, {3, 1, 2}}},
       4,
       1.5406,
       1.54439,
       0.5,
       "",
       "1996-10-14 09:30:05",
       ""},
      {"RAW 3",
       Raw3(),
       {{"range 1", 5, 5.04, {11, 22, 33}}, {"range 2", 89, 90, {33, 22, 11}}},
       12,
       1.5406,
       1.54439,
       0.5,
       "Gr\xc3\xbcn",
       "2010-03-04 20:59:14",
       "left out: a rocking curve"},
      {"RAW 4",
       TwoRanges4(),
       {{"range 1", 10, 10.04, {4, 5, 6}}, {"range 2", 60, 60.02, {7, 8}}},
       0.5,
       1.5406,
       1.54439,
       0.5,
       "Rutile",
       "2019-04-12 07:08:09",
       "left out: a rocking curve"},
      // A mean that is none casts doubt on the places; the range tells a wavelength too.
      {"RAW 4, odd source",
       Raw4(3).Add(Range4("", 10, {4})),
       {{"", 10, 10, {4}}},
       0.5,
       0.7107,
       0,
       0,
       "Rutile",
       "2019-04-12 07:08:09",
       ""},
      {"V3RD", Rd("V3RD", 4), rd, 0, 1.54056, 1.54439, 0.5, "Corundum", "", ""},
      {"V5RD", Rd("V5RD", 4), rd, 0, 1.54056, 1.54439, 0.5, "Corundum", "", ""},
      {"V3RD, standing still", Rd("V3RD", 5), still, 0, 1.54056, 1.54439, 0.5, "Corundum", "", ""},
  };
  for (const Case& expected : cases) {
    SCOPED_TRACE(expected.name);
    const Imported imported = Import(expected.file.all);
    EXPECT_EQ(imported.trouble, "");
    EXPECT_EQ(imported.file.note, expected.note);
    ASSERT_EQ(imported.file.scans.size(), expected.scans.size());
    for (std::size_t i = 0; i < expected.scans.size(); ++i) {
      const MeasuredScan& scan = imported.file.scans[i];
      EXPECT_EQ(scan.label, expected.scans[i].label);
      ASSERT_EQ(scan.x.size(), scan.counts.size());
      EXPECT_EQ(scan.counts, expected.scans[i].counts);
      EXPECT_NEAR(scan.x.front(), expected.scans[i].first, 1e-6);
      EXPECT_NEAR(scan.x.back(), expected.scans[i].last, 1e-6);
      EXPECT_FLOAT_EQ(scan.seconds, expected.seconds);
      EXPECT_FLOAT_EQ(scan.wavelengths[0], expected.alpha1);
      EXPECT_FLOAT_EQ(scan.wavelengths[1], expected.alpha2);
      EXPECT_FLOAT_EQ(scan.ratio, expected.ratio);
      EXPECT_EQ(scan.sample, expected.sample);
      EXPECT_EQ(scan.date, expected.date);
    }
  }
}

// What is there comes in, and the note tells what is missing.
TEST(BinaryFiles, CutOff) {
  const std::string one = Raw1().all, two = TwoRanges4().all, rd = Rd("V3RD", 4).all;
  const struct {
    std::string bytes;
    std::size_t scans, points;  // of the first
    const char *note, *trouble;
  } cases[] = {
      {one.substr(0, 4 + 152 + 9), 1, 2, "the file ends behind 2 of 3 points", ""},
      {one.substr(0, 4 + 152 + 12 + 20), 1, 3,
       "range 2 and what follows could not be read: it ends within a header", ""},
      {two.substr(0, two.size() - 4), 2, 3,
       "the file ends behind 1 of 2 points; left out: a rocking curve", ""},
      {rd.substr(0, rd.size() - 2), 1, 3, "the file ends behind 3 of 4 points", ""},
      {one.substr(0, 150), 0, 0, "", "it ends within a header"},
      {Raw2().all.substr(0, 250), 0, 0, "", "it ends within a header"},
      {Raw3().all.substr(0, 712), 0, 0, "", "it ends within a header"},
      {Raw4().all, 0, 0, "", "it ends within a header"},
      {one.substr(0, 4 + 152), 0, 0, "the file ends behind 0 of 3 points", "no points in it"},
  };
  for (const auto& expected : cases) {
    const Imported imported = Import(expected.bytes);
    ASSERT_EQ(imported.file.scans.size(), expected.scans) << imported.trouble;
    EXPECT_EQ(imported.trouble, expected.trouble);
    EXPECT_EQ(imported.file.note, expected.note);
    if (expected.scans == 0) continue;
    EXPECT_EQ(imported.file.scans[0].x.size(), expected.points);
  }
}

TEST(BinaryFiles, RefusedWithAReason) {
  const auto with = [](Bytes file, const std::function<void(Bytes&)>& change) {
    change(file);
    return file.all;
  };
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const std::string bytes(600, '\0');
  const struct {
    std::string bytes, trouble;
  } cases[] = {
      {with(Raw3(), [](Bytes& f) { f.Put(712, Uint(8)); }), "header of a range is too short"},
      {with(Raw3(), [&](Bytes& f) { f.Put(712 + 16, nan); }), "no angles"},
      {with(Raw3(), [](Bytes& f) { f.Put(712 + 176, 0.0); }), "of one position"},
      {with(Raw2(), [](Bytes& f) { f.Put(256 + 12, 1e30f); }), "no angles"},
      {with(Raw2(), [](Bytes& f) { f.Put(256, Short(0)); }), "header of a range is too short"},
      {Raw4().Add(Range4("Phi", 10, {1, 2})).all, "it holds a scan of phi"},
      {with(Rd("V3RD", 4), [](Bytes& f) { f.Put(214, 0.0); }), "no steps"},
      {with(Rd("V3RD", 4), [](Bytes& f) { f.Put(230, 1e300); }), "no steps"},
      {"\x89HDF\r\n\x1a\n" + bytes, "HDF5"},
      {"{\nHeaderID = EH:000001 ;\nByteOrder = LowByteFirst ;\n" + bytes, "area detector"},
      {"###CBF: VERSION 1.5\r\n" + bytes, "area detector"},
      {"%PDF-1.4\n" + bytes, "a document"},
      {"PK\3\4" + std::string(26, '\0') + "[Content_Types].xml" + bytes, "an office program"},
      {"PK\3\4" + std::string(26, '\0') + "scan.xy" + bytes, "unpack it first"},
      {"\x1f\x8b\x08" + bytes, "unpack it first"},
      {"RAW_1.06Powdat" + bytes, "Stoe"},
      {"FI" + bytes, "Rigaku"},
  };
  for (const auto& expected : cases) {
    const Imported imported = Import(expected.bytes);
    EXPECT_TRUE(imported.file.scans.empty());
    EXPECT_NE(imported.trouble.find(expected.trouble), std::string::npos) << imported.trouble;
  }
}

TEST(BinaryFiles, LeaveTheOthersAlone) {
  for (const char* text : {"RAW data of quartz\n5 1\n6 2\n", "FIRST scan\n5 1\n6 2\n", "{5 1}\n",
                           "BM 20\n5 1\n6 2\n", "RAW2 of 3\n5 1\n6 2\n", "FORMAT : xy\n5 1\n"})
    for (const ImportFormat& format : BinaryFormats())
      EXPECT_FALSE(format.recognises(text)) << text;
  for (const char* name : {"Experiment0/RawData0.xml", "Data0/Profile0.txt"})
    for (const ImportFormat& format : BinaryFormats())
      EXPECT_FALSE(format.recognises(std::string("PK\3\4") + name)) << name;
}

// No file makes a reader take more than its bytes hold.
TEST(BinaryFiles, MoreThanTheLimits) {
  Bytes file(256);
  file.Text(0, "RAW2").Put(4, Short(1200));
  Bytes range(48);
  range.Put(0, Short(48)).Put(2, Short(1)).Put(16, 20.f).Counts({1});
  for (int i = 0; i < 1200; ++i) file.Add(range);
  const Imported many = Import(file.all);
  EXPECT_EQ(many.file.scans.size(), 1000u);
  EXPECT_NE(many.file.note.find("more than 1000 scans"), std::string::npos) << many.file.note;

  Bytes large = Bytes(0).Text(0, "RAW ").Add(Range1(10, 0, {}));
  large.Put(4, Uint(4'000'001)).Put(4 + 8, 1e-5f).all.resize(156 + 4 * 4'000'001);
  EXPECT_EQ(Import(large.all).trouble, "it holds more than 4 million points");
}

}  // namespace
