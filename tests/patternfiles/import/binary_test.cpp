// Binary files of instruments, written here place by place.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "patternfiles/import/formats.h"
#include "patternfiles/import/import.h"
#include "support/support.h"

namespace {

using Uint = std::uint32_t;
using Short = std::uint16_t;

// A file of zeros with values at places, which grows with them.
struct Bytes : std::string {
  explicit Bytes(std::size_t size) : std::string(size, '\0') {}
  template <class T>
  Bytes& Put(std::size_t place, T value) {
    resize(std::max(size(), place + sizeof value));
    std::memcpy(data() + place, &value, sizeof value);
    return *this;
  }
  Bytes& Text(std::size_t place, const std::string& text) {
    resize(std::max(size(), place + text.size()));
    replace(place, text.size(), text);
    return *this;
  }
  // Behind what is there.
  template <class T = float>
  Bytes& Counts(const std::vector<T>& counts, const std::string& between = "") {
    for (const T count : counts) Put(size(), count) += between;
    return *this;
  }
  Bytes& Add(const Bytes& more) { return Text(size(), more); }
};

Bytes Range1(float start, Uint following, const std::vector<float>& counts) {
  Bytes range(152);
  range.Put(0, Uint(counts.size())).Put(4, 2.5f).Put(8, 0.25f).Put(20, start).Put(24, -1e6f);
  range.Text(36, "Quartz").Text(43, "x").Put(68, 1.5406f).Put(72, -1e6f).Put(148, following);
  return range.Counts(counts);
}
Bytes Raw1(const char* mark = "") {
  Bytes file(0);
  return file.Text(0, "RAW ")
      .Add(Range1(10, 1, {5, 7, 9}))
      .Text(168, mark)
      .Add(Range1(60, 0, {1, 2}));
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
  range += std::string(40, 'x');
  return range.Counts({11, 22, 33}, std::string(record ? record - 4 : 0, '\1'));
}
Bytes Raw3(double alpha1 = 1.5406) {
  Bytes file(712);
  file.Text(0, "RAW1.01").Put(8, Uint(1)).Put(12, Uint(3)).Text(16, "03/04/10");
  file.Text(26, "20:59:14").Text(326, "Gr\xfcn ").Put(616, 1.5418).Put(624, alpha1);
  file.Put(632, 1.54439).Put(648, 0.5);
  return file.Add(Range3(5, 0.02, 0, 0)).Add(Range3(40, 0.1, 3, 4)).Add(Range3(90, -0.5, 2, 12));
}

Bytes Range4(Uint kind, const char* type, double start, const std::vector<float>& counts,
             Uint record = 4) {
  Bytes range(160);
  range.Put(0, kind).Text(32, type).Put(72, start).Put(80, 0.02).Put(88, Uint(counts.size()));
  range.Put(92, 0.5f).Put(112, 0.7107).Put(136, record).Put(140, Uint(64));
  range.Put(160, Uint(50)).Put(164, Uint(64)).Text(172, "2Theta").Put(216, start);
  return range.Counts(counts, std::string(record - 4, '\1'));
}
// Between the parts stands one of an unknown kind, which looks like both.
Bytes Head4(double mean) {
  Bytes file(61), sample(42), source(112), unknown(112);
  file.Text(0, "RAW4.00").Text(12, "04/12/2019").Text(24, "07:08:09");
  sample.Put(0, Uint(10)).Put(4, Uint(42)).Text(12, "SAMPLEID").Text(36, "Rutile");
  source.Put(0, Uint(30)).Put(4, Uint(112)).Put(72, mean).Put(80, 1.5406).Put(88, 1.54439);
  unknown.Text(0, "ABCD").Put(4, Uint(112)).Text(12, "SAMPLEID").Text(36, "none");
  unknown.Put(72, 1.0).Put(80, 1.0).Put(88, 1.0);
  source.Put(104, 0.5);
  return file.Add(unknown).Add(sample).Add(unknown).Add(source).Add(unknown);
}
Bytes Raw4() {
  return Head4(1.5418)
      .Add(Range4(0, "Locked Coupled", 10, {4, 5, 6}))
      .Add(Range4(160, "Rocking Curve", 20, {9, 9, 9}))
      .Add(Range4(160, "Detector Scan", 60, {7, 8}, 12));
}

// Four steps of 0.02 from 5 degrees on.
Bytes Rd(const char* mark, int points) {
  Bytes file(mark[1] == '3' ? 250 : 810);
  file.Text(0, mark).Put(84, char(5)).Put(94, 1.54056).Put(102, 1.54439).Put(110, 0.5);
  file.Text(146, "Corundum").Put(214, 0.02).Put(222, 5.0).Put(230, 5.08);
  std::vector<Short> roots{100, 127, 1012, 65535, 10};
  roots.resize(points);
  return file.Counts(roots);
}

Imported Import(const std::string& bytes) {
  const TempDir dir;
  WriteFile(dir.file("pattern"), bytes);
  return ImportFile(dir.file("pattern"));
}

struct Scan {
  const char* label;
  double first, last;
  std::vector<double> counts;
};

TEST(BinaryFiles, TellWhatTheyHold) {
  const std::vector<Scan> rd{{"", 5.01, 5.07, {100, 161, 10241, 42948362}}},
      still{{"", 5, 5.08, {100, 161, 10241, 42948362, 1}}},
      raw1{{"range 1", 10, 10.5, {5, 7, 9}}, {"range 2", 60, 60.25, {1, 2}}},
      raw2{{"range 1", 20, 21, {3, 1, 2}}, {"range 2, 298 K", 20, 21, {3, 1, 2}}},
      raw3{{"range 1", 5, 5.04, {11, 22, 33}}, {"range 2", 89, 90, {33, 22, 11}}},
      raw4{{"range 1", 10, 10.04, {4, 5, 6}}, {"range 2", 60, 60.02, {7, 8}}};
  const char *none = "", *rocking = "left out: a rocking curve", *gruen = "Gr\xc3\xbcn";
  const struct {
    std::string bytes;
    std::vector<Scan> scans;
    double seconds, alpha1, alpha2, ratio;
    const char *sample, *date, *note;
  } cases[] = {
      // clang-format off
      {Raw1(), raw1, 2.5, 1.5406, 0, 0, "Quartz", none, none},
      {Raw1("RAW "), raw1, 2.5, 1.5406, 0, 0, "Quartz", none, none},
      {Raw2(), raw2, 4, 1.5406, 1.54439, 0.5, none, "1996-10-14 09:30:05", none},
      {Raw3(), raw3, 12, 1.5406, 1.54439, 0.5, gruen, "2010-03-04 20:59:14", rocking},
      {Raw3(0), raw3, 12, 1.5418, 1.54439, 0.5, gruen, "2010-03-04 20:59:14", rocking},
      {Raw4(), raw4, 0.5, 1.5406, 1.54439, 0.5, "Rutile", "2019-04-12 07:08:09", rocking},
      // One that states more bytes for a point than there are.
      {Head4(1.5418).Add(Range4(0, "", 10, {4, 5, 6})).Put(Head4(1).size() + 136, Uint(12)),
       {{"", 10, 10.04, {4, 5, 6}}}, 0.5, 1.5406, 1.54439, 0.5, "Rutile", "2019-04-12 07:08:09",
       none},
      // Wavelengths beside their mean are none; each range tells one too. A range may be empty.
      {Head4(3).Add(Range4(160, "", 10, {4})).Add(Range4(0, "", 20, {})), {{"", 10, 10, {4}}},
       0.5, 0.7107, 0, 0, "Rutile", "2019-04-12 07:08:09", none},
      {Rd("V3RD", 4), rd, 0, 1.54056, 1.54439, 0.5, "Corundum", none, none},
      {Rd("V5RD", 4), rd, 0, 1.54056, 1.54439, 0.5, "Corundum", none, none},
      {Rd("V3RD", 5), still, 0, 1.54056, 1.54439, 0.5, "Corundum", none, none},
      // clang-format on
  };
  for (const auto& expected : cases) {
    const Imported imported = Import(expected.bytes);
    SCOPED_TRACE(imported.format);
    EXPECT_EQ(imported.trouble, "");
    EXPECT_EQ(imported.file.note, expected.note);
    ASSERT_EQ(imported.file.scans.size(), expected.scans.size());
    for (std::size_t i = 0; i < expected.scans.size(); ++i) {
      const MeasuredScan& scan = imported.file.scans[i];
      EXPECT_EQ(scan.label, expected.scans[i].label);
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
  EXPECT_EQ(Import(Rd("V3RD", 4)).file.scans.at(0).instrument, "Philips X'Pert MPD");
}

// What is there comes in, and the note tells what is missing.
TEST(BinaryFiles, CutOff) {
  const char* header = "it ends within a header";
  const struct {
    std::string bytes;
    std::size_t size, scans;
    const char *note, *trouble;
  } cases[] = {
      // clang-format off
      {Raw1(), 4 + 152 + 9, 1, "the file ends behind 2 of 3 points", ""},
      {Raw1(), 4 + 152, 0, "the file ends behind 0 of 3 points", "no points in it"},
      {Raw1(), 4 + 152 + 12 + 20, 1,
       "range 2 and what follows could not be read: it ends within a header", ""},
      {Raw4(), Raw4().size() - 12, 2,
       "the file ends behind 1 of 2 points; left out: a rocking curve", ""},
      {Rd("V3RD", 4), 250 + 7, 1, "the file ends behind 3 of 4 points", ""},
      {Raw1(), 4 + 151, 0, "", header},
      {Raw2(), 201, 0, "", header},
      {Raw3(), 712 + 240, 0, "", header},
      {Raw4(), Head4(1).size(), 0, "", header},
      {Rd("V5RD", 4), 237, 0, "", header},
      // clang-format on
  };
  for (const auto& expected : cases) {
    const Imported imported = Import(expected.bytes.substr(0, expected.size));
    EXPECT_EQ(imported.file.scans.size(), expected.scans);
    EXPECT_EQ(imported.file.note, expected.note);
    EXPECT_EQ(imported.trouble, expected.trouble);
  }
}

TEST(BinaryFiles, RefusedWithAReason) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const std::string more(600, '\0'), zip = std::string("PK\3\4") + more.substr(0, 26);
  const std::pair<std::string, const char*> cases[] = {
      {Raw3().Put(712, Uint(303)), "header of a range is too short"},
      {Raw2().Put(256, Short(47)), "header of a range is too short"},
      {Raw3().Put(712 + 16, nan), "no angles"},
      {Raw2().Put(256 + 12, 100.f).Put(256 + 16, 200.f), "no angles"},
      {Raw3().Put(712 + 176, 0.0), "of one position"},
      {Head4(1).Add(Range4(0, "Phi Scan", 10, {1, 2})), "it holds a scan of phi"},
      {Rd("V3RD", 4).Put(214, 0.0), "no steps"},
      {Rd("V3RD", 4).Put(230, 1e300), "no steps"},
      {Rd("V3RD", 4).Put(230, 5.0), "no steps"},
      {"\x89HDF\r\n\x1a\n" + more, "HDF5"},
      {"{\nHeaderID = EH:000001 ;\n" + more, "area detector"},
      {"\xd2\x04" + more.substr(0, 126) + "mar research", "area detector"},
      {"FORMAT :  100" + std::string(67, ' ') + "VERSION:  18", "area detector"},
      {"%PDF-1.4\n" + more, "a document"},
      {zip + "[Content_Types].xml" + more, "an office program"},
      {zip + "scan.xy" + more, "unpack it first"},
      {"\x1f\x8b\x08" + more, "unpack it first"},
      {"BZh91AY&SY", "unpack it first"},
      {"RAW_1.06Powdat" + more, "Stoe"},
      {"FI" + more, "Rigaku"},
  };
  for (const auto& [bytes, trouble] : cases) {
    const Imported imported = Import(bytes);
    EXPECT_TRUE(imported.file.scans.empty());
    EXPECT_NE(imported.trouble.find(trouble), std::string::npos) << imported.trouble;
  }
}

TEST(BinaryFiles, LeaveTheOthersAlone) {
  for (const char* bytes : {"RAW data of quartz\n5 1\n", "RAW2 of 3\n5 1\n", "FIRST scan\n5 1\n",
                            "{5 1}\n", "BM 20\n5 1\n", "FORMAT : xy\n5 1\n", "mar research\n5 1\n",
                            "PK\3\4Experiment0/RawData0.xml", "PK\3\4Data0/Profile0.txt"})
    for (const ImportFormat& format : BinaryFormats())
      EXPECT_FALSE(format.recognises(bytes)) << format.name << ": " << bytes;
}

TEST(BinaryFiles, MoreThanTheLimits) {
  Bytes file(256), range(48);
  file.Text(0, "RAW2").Put(4, Short(1001));
  range.Put(0, Short(48)).Put(2, Short(1)).Put(16, 20.f).Counts({1});
  for (int i = 0; i < 1001; ++i) file.Add(range);
  const Imported many = Import(file);
  EXPECT_EQ(many.file.scans.size(), 1000u);
  EXPECT_EQ(many.file.note,
            "range 1001 and what follows could not be read: it holds more than 1000 scans");

  for (const Uint points : {4'000'000, 4'000'001}) {
    Bytes large = Bytes(0).Text(0, "RAW ").Add(Range1(10, 0, {}));
    large.Put(4, points).Put(4 + 8, 1e-5f).resize(156 + 4 * std::size_t{points});
    EXPECT_EQ(Import(large).trouble,
              points > 4'000'000 ? "it holds more than 4 million points" : "");
  }
}

}  // namespace
