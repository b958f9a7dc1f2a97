// Text files as instruments, programs and people write them.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "patternfiles/import/import.h"
#include "support/support.h"

namespace {

Imported Import(const std::string& text) {
  const TempDir directory;
  const std::string path = directory.file("a.file");
  WriteFile(path, text);
  return ImportFile(path);
}

// The scans of a text as "label: x x x = counts +- esd", parted by slashes.
std::string Told(const Imported& imported) {
  std::ostringstream told;
  if (!imported.trouble.empty()) told << "trouble: " << imported.trouble;
  for (const MeasuredScan& scan : imported.file.scans) {
    if (&scan != imported.file.scans.data()) told << " / ";
    if (!scan.label.empty()) told << scan.label << ": ";
    if (scan.axis != ScanAxis::TwoTheta) told << (scan.axis == ScanAxis::D ? "d " : "q ");
    for (const double x : scan.x) told << x << ' ';
    told << '=';
    for (const double y : scan.counts) told << ' ' << y;
    if (!scan.esd.empty()) told << " +-";
    for (const double e : scan.esd) told << ' ' << e;
  }
  return told.str();
}

struct Sample {
  const char* text;
  const char* told;
};

void ExpectTold(std::initializer_list<Sample> samples) {
  for (const Sample& sample : samples)
    EXPECT_EQ(Told(Import(sample.text)), sample.told) << sample.text;
}

// Separators, decimal signs, line ends and marks of texts: all the same three points.
TEST(ImportColumns, WaysOfWriting) {
  const char* points = "5 5.5 6 = 131 99.5 12";
  for (const std::string text : {
           "5.0 131\n5.5 99.5\n6.0 12\n",
           "5.0,131\r\n5.5,99.5\r\n6.0,12",
           "5.0, 131,\n5.5, 99.5,\n6.0, 12,\n",
           "5,0;131\n5,5;99,5\n6,0;12\n",
           "5,0 131\r5,5 99,5\r6,0 12\r",
           "5,0\t131\n5,5\t99,5\n6,0\t12\n",
           "\"5,0\",\"131\"\n\"5,5\",\"99,5\"\n\"6,0\",\"12\"\n",
           "2theta;I\n5,0;131\n5,5;99,5\n6,0;12\n",
           "| 2theta | I |\n|--|--|\n| 5.0 | 131 |\n| 5.5 | 99.5 |\n| 6 | 12 |\n",
           "+5.0D+00  1.31d2\n 5.5E0 .995e+2\n 6.  12.\n",
           "\xEF\xBB\xBF"
           "5.0 131\n5.5 99.5\n6.0 12\n",
           "; words\n# 1 2\n// 3 4\n' 5 6\n! 7 8\n/* 9 10\n*/\n_KEY\n5 131\n\n5.5 99.5\n6 12\n",
           "3 2 1\n5 131\n5.5 99.5\n6 12\n",
           "12 mg sample 3\n5 131\n5.5 99.5\n6 12\n3 points in all\n",
           "6 12\n5.5 99.5\n5 131\n",
           "5 131\n# lamp changed 5.2 7\n5.5 99.5\n5.8 NaN\n6 12\n",
           "5 131\n6 12\n5.5 99.5\n",
           "2-Theta,Intensity\n(deg),(counts)\n5,131\n5.5,99.5\n6,12\n",
       })
    EXPECT_EQ(Told(Import(text)), points) << text;
  EXPECT_EQ(Told(Import(Utf16("5.0\t131\r\n5.5\t99.5\r\n6.0\t12\r\n"))), points);
  EXPECT_EQ(Told(Import(std::string("A longer title\n\0\n5 131\n5.5 99.5\0\n6 12\n", 38))), points);
}

TEST(ImportColumns, HeadingsChoose) {
  ExpectTold({
      {"\"x\",\"y_calc\",\"y_bkg\",\"y_obs\",\"weight\",\"Q\"\n5,9,1,7,.1,.3\n6,8,1,6,.1,.4\n"
       "7,8,1,5,.1,.5\n",
       "5 6 7 = 7 6 5"},
      {"T\n 2Theta\tYobs\tYcal\tYobs-Ycal\tBackg\tPosr\t(hkl)\n5\t7\t9\t-2\t1\t5.5\t(1 0 0)\n"
       "6\t6\t8\t-2\t1\n7\t5\t7\t-2\t1\n8\t4\t7\t-3\t1\n",
       "5 6 7 8 = 7 6 5 4"},
      {"[Scan points]\nAngle,TimePerStep,Intensity,ESD\n5,10,7,2\n6,10,6,2\n7,10,5,2\n",
       "5 6 7 = 7 6 5 +- 2 2 2"},
      {"# q_nm^-1   I   sigma_I\n5 7 2\n6 6 2\n7 5 2\n", "q 0.5 0.6 0.7 = 7 6 5 +- 2 2 2"},
      {"# I(Q)  Q (A^-1) error\n7 .5 2\n6 .6 2\n5 .7 2\n", "q 0.5 0.6 0.7 = 7 6 5 +- 2 2 2"},
      {"d-spacing\tIntensity\n7\t7\n6\t6\n5\t5\n", "d 5 6 7 = 5 6 7"},
      {"d (nm);counts\n0.7;7\n0.6;6\n0.5;5\n", "d 5 6 7 = 5 6 7"},
      {"[Data]\n 2\xCE\xB8, Theta, Det1Disc1,\n5, 2.5, 7,\n6, 3, 6,\n7, 3.5, 5,\n",
       "5 6 7 = 7 6 5"},
      {"x.tif\nQ (Inverse Angstroms)\nIntensity\n   3\n.5 7\n.6 6\n.7 5\n",
       "q 0.5 0.6 0.7 = 7 6 5"},
      {"x.tif\nRadial Distance (mm)\nIntensity\n   3\n5 7\n6 6\n7 5\n",
       "trouble: its positions are no angles but \"Radial Distance (mm)\""},
      {"Time-of-flight (us),Counts\n5,7\n6,6\n7,5\n",
       "trouble: its positions are no angles but \"Time-of-flight (us)\""},
      {"Nr,2theta,Si\n1,5,7\n2,6,6\n3,7,5\n", "5 6 7 = 7 6 5"},
      {"Nr   2 Theta   Si 640\n1 5 7\n2 6 6\n3 7 5\n", "5 6 7 = 7 6 5"},
      // A sentence of as many words as there are columns is no heading.
      {"diffraction angle data\n5 70 2\n6 60 3\n7 50 2\n", "5 6 7 = 70 60 50 +- 2 3 2"},
  });
}

// A third column without a name: e.s.d., calculated counts, positions of another pattern, a
// constant.
TEST(ImportColumns, ThirdColumn) {
  ExpectTold({
      {"5 100 10\n6 400 20\n7 225 15\n8 0 0\n", "5 6 7 8 = 100 400 225 0 +- 10 20 15 0"},
      {"5 100 101\n6 400 395\n7 225 230\n", "5 6 7 = 100 400 225"},
      {"5 100 1\n6 400 2\n7 225 3\n", "5 6 7 = 100 400 225"},
      {"5 100 9\n6 400 8\n7 225 7\n", "5 6 7 = 100 400 225"},
      {"5 100 1\n6 400 1\n7 225 1\n", "5 6 7 = 100 400 225"},
      {"5 100 -1\n6 400 3\n7 225 1\n", "5 6 7 = 100 400 225"},
      {"5 100 10 3\n6 400 20 3\n7 225 15 3\n", "5 6 7 = 100 400 225"},
      {"x1\ty1\tx2\ty2\n5\t9\t1\t7\n6\t8\t2\t8\n7\t7\t3\t6\n\t\t4\t9\n", "5 6 7 = 9 8 7"},
  });
}

TEST(ImportColumns, SeveralScans) {
  ExpectTold({
      {"5 1\n6 2\n7 3\n5 4\n6 5\n7 6\n", "scan 1: 5 6 7 = 1 2 3 / scan 2: 5 6 7 = 4 5 6"},
      {"7 1\n6 2\n5 3\n7 4\n6 5\n5 6\n", "scan 1: 5 6 7 = 3 2 1 / scan 2: 5 6 7 = 6 5 4"},
      {"# tth I\n5 1\n6 2\n7 3\n\n# tth I\n8 4\n9 5\n10 6\n",
       "scan 1: 5 6 7 = 1 2 3 / scan 2: 8 9 10 = 4 5 6"},
      {"# tth I\n5 1\n6 2\n7 3\n\n# tth I\n9 1\n8 2\n7 3\n9 4\n8 5\n7 6\n",
       "scan 1: 5 6 7 = 1 2 3 / scan 2: 7 8 9 = 3 2 1 / scan 3: 7 8 9 = 6 5 4"},
      {"[Data]\n Angle, PSD,\n5, 1,\n6, 2,\n7, 3,\n[RangeHeader]\n[Data]\n Angle, PSD,\n8, 4,\n"
       "9, 5,\n",
       "scan 1: 5 6 7 = 1 2 3 / scan 2: 8 9 = 4 5"},
      {"Start=5\nStep=0.5\n1\n2\n3\n4\n5\n6\n7\n8\n9\n8\n",
       "5 5.5 6 6.5 7 7.5 8 8.5 9 9.5 = 1 2 3 4 5 6 7 8 9 8"},
  });
}

TEST(ImportColumns, WhatIsNoPattern) {
  std::string zigzag, centi;
  for (int i = 0; i < 50; ++i) {
    zigzag += std::to_string(i * 37 % 50) + " 1\n";
    centi += std::to_string(500 + i) + " 1\n";
  }
  EXPECT_EQ(Told(Import(zigzag)), "trouble: the positions in its lines neither rise nor fall");
  EXPECT_EQ(Told(Import(centi)), "trouble: its positions are no angles, as 525.0 among them");
  EXPECT_EQ(Told(Import("Dear all,\nthis is 1 of 2.\n5 6\n7 8\n")),
            "trouble: no lines of numbers in it");
  EXPECT_EQ(Told(Import("1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n1\n20\n3\n4\n5\n6\n7\n8\n")),
            "trouble: its lines hold one number each, and positions are missing");
  std::string scans;
  for (int i = 0; i < 1001; ++i) scans += "5 1\n6 1\n7 1\n8 1\n9 1\n10 1\n";
  EXPECT_EQ(Told(Import(scans)), "trouble: it holds more than 1000 scans");
  EXPECT_FALSE(Import("\x01\x02\x03\x04 5 6\n7 8\n9 10\n").trouble.empty());
}

// What headings tell, in many words.
TEST(ImportColumns, Keys) {
  struct Told {
    const char* line;
    double alpha1 = 0, alpha2 = 0, ratio = 0, seconds = 0;
    const char *sample = "", *date = "";
  };
  for (const Told& told : std::initializer_list<Told>{
           {"# Wavelength: 4.066e-11 m", .4066},
           {"! lambda = 0.15406 nm", 1.5406},
           {"Wavelength (nm); 0,15406", 1.5406},
           {"Calibrated wavelength 0.4139 A", .4139},
           {"wave 0", 0},
           {"K-Alpha1 wavelength,1.540598\nK-Alpha2 wavelength,1.544426\n"
            "Ratio K-Alpha2/K-Alpha1,0.5\nK-Beta wavelength,1.39\nScan step time,43.6\n"
            "Sample identification,\"Tin, red\",\nFile date and time,11/Jan/2012 10:22\n",
            1.540598, 1.544426, .5, 43.6, "Tin, red", "2012-01-11 10:22:00"},
           {"Date=08/20/2019\nTime=11:07:58\nAlpha1=1.5406\nAlpha2=1.54439\nAlphaRatio=0.5\nTime=5",
            1.5406, 1.54439, .5, 5, "", "2019-08-20 11:07:58"},
           {"[VarInfo]\nType=SITE\nValue=Ulm\n[VarInfo]\nType=SAMPLEID\nFlags=0\nValue=Tin", 0, 0,
            0, 0, "Tin"},
           {"Sample: Gr\xC3\xBCn", 0, 0, 0, 0, "Gr\xC3\xBCn"},
           {"Sample: Gr\xFCn", 0, 0, 0, 0, "Gr\xC3\xBCn"},
           {"Sample: \xE0\xB8\x81", 0, 0, 0, 0, "\xE0\xB8\x81"},
           {"# Date: 2020-02-30x", 0, 0, 0, 0, "", "2020-02-30"},
           {"# Date: Mar/4/88 1:05 pm", 0, 0, 0, 0, "", "1988-03-04 13:05:00"},
           {"# Date: 32.1.2020", 0, 0, 0, 0, ""},
       }) {
    SCOPED_TRACE(told.line);
    const Imported imported = Import(std::string(told.line) + "\n5 1\n6 2\n7 3\n");
    ASSERT_EQ(imported.file.scans.size(), 1u) << imported.trouble;
    const MeasuredScan& scan = imported.file.scans[0];
    EXPECT_DOUBLE_EQ(scan.wavelengths[0], told.alpha1);
    EXPECT_DOUBLE_EQ(scan.wavelengths[1], told.alpha2);
    EXPECT_DOUBLE_EQ(scan.ratio, told.ratio);
    EXPECT_DOUBLE_EQ(scan.seconds, told.seconds);
    EXPECT_EQ(scan.sample, told.sample);
    EXPECT_EQ(scan.date, told.date);
  }
}

TEST(ImportText, Uxd) {
  const std::string file = "_FILEVERSION=2\n_SAMPLE='Tin'\n_WL1=1.5406\n_WL2=1.54439\n";
  ExpectTold({
      {"_FILEVERSION=2\n_DRIVE='COUPLED'\n_STEPSIZE=0.5\n_THETA=2.5\n_2THETA=5\n_COUNTS\n1 2\n3\n"
       "; (Data for Range number 2)\n_DRIVE='COUPLED'\n_STEPSIZE=0.25\n_START=8\n_2THETA=7.9\n"
       "_CPS\n4.5,5\n",
       "range 1: 5 5.5 6 = 1 2 3 / range 2: 8 8.25 = 4.5 5"},
      {"_DRIVE='COUPLED'\n_TEMPERATURE=25\n_2THETACOUNTS\n5.0 1 ; dark\n5.5 2\n",
       "temperature 25.0: 5 5.5 = 1 2"},
      {"_DRIVE='2THETA'\n_2THETACPSTIME\n5.0 1 .5\n5.5 2 .5\n", "5 5.5 = 1 2"},
      {"_DRIVE='PHI'\n_2THETACOUNTS\n0 1\n5 2\n_DRIVE='COUPLED'\n_2THETACOUNTS\n10 3\n", "10 = 3"},
      {"_DRIVE='PHI'\n_2THETACPS\n0 1\n", "trouble: its ranges run over PHI, not over two-theta"},
      {"_DRIVE='COUPLED'\n_COUNTS\n1 2\n", "trouble: range 1 tells no start or no step"},
      {"_DRIVE='COUPLED'\n_2THETACOUNTS\n5 1\nbroken\n",
       "trouble: line 4 holds no numbers where counts should be"},
  });
  const Imported two = Import(file +
                              "_DRIVE='COUPLED'\n_STEPTIME=2\n_2THETACOUNTS\n5 1\n"
                              "_DRIVE='COUPLED'\n_2THETACOUNTS\n6 1\n");
  ASSERT_EQ(two.file.scans.size(), 2u);
  EXPECT_EQ(two.file.scans[1].sample, "Tin");
  EXPECT_EQ(two.file.scans[1].wavelengths[1], 1.54439);
  EXPECT_EQ(two.file.scans[0].seconds, 2);
  EXPECT_EQ(two.file.scans[1].seconds, 0);
}

TEST(ImportText, Udf) {
  const std::string head = "SampleIdent,Tin, red ,/\nDataAngleRange,  5.0, 6.0,/\n";
  const Imported udf = Import(head + "ScanStepSize, 0.5,/\nRawScan\n 1, 2\n 30/\n99\n");
  EXPECT_EQ(Told(udf), "5 5.5 6 = 1 2 30");
  EXPECT_EQ(udf.file.scans[0].sample, "Tin, red");
  EXPECT_EQ(Told(Import(head + "RawScan\n1/\n")), "trouble: it tells no first angle or no step");
  EXPECT_EQ(Told(Import(head + "ScanStepSize, 0.5,/\n")), "trouble: it ends in front of RawScan");
}

TEST(ImportText, SmallFormats) {
  const std::string lines = "plate\ntext\n 7251\nfluorite\n\nCu\n7/15/2014 12:00\n9\n\n>1.00<\n";
  const Imported gdf = Import(lines + " 5.0\n 6.0\n 0.5\n14\n15\n16\n1\n2\n3\n");
  EXPECT_EQ(Told(gdf), "5 5.5 6 = 1 2 3");
  EXPECT_EQ(gdf.file.scans[0].date, "2014-07-15 12:00:00");
  const std::string cpi = "SIETRONICS XRD SCAN\n5.0\n6.0\n0.5\nCu\n1.54056\n7-1-1988\n0.6\nCaF2\n";
  const Imported sietronics = Import(cpi + "SCANDATA\n1\n2\n3\n");
  EXPECT_EQ(Told(sietronics), "5 5.5 6 = 1 2 3");
  EXPECT_EQ(sietronics.file.scans[0].wavelengths[0], 1.54056);
  EXPECT_EQ(sietronics.file.scans[0].date, "1988-01-07");
  EXPECT_EQ(sietronics.file.scans[0].sample, "CaF2");
  EXPECT_EQ(Told(Import(cpi)), "trouble: its heading tells no first angle, no step or no SCANDATA");
}

// Each bank stands for corundum at 5, 5.5, 6 and 6.5 degrees.
TEST(ImportText, Gsas) {
  const auto bank = [](const std::string& kind, const std::string& lines) {
    return Told(Import("corundum\n# wavelength 1.5\nBANK 1 4 1 CONST 500.0 50.0 0 0 " + kind +
                       '\n' + lines));
  };
  const std::string points = "5 5.5 6 6.5 = 9 100 36 16", esds = " +- 3 10 6 4";
  EXPECT_EQ(bank("STD", "     9.  100.   36.   16.\n"), points);
  EXPECT_EQ(bank("STD", "       9     100      36      16\n"), points);
  EXPECT_EQ(bank("STD", " 1     9 4   100 1    3625    16\n"), points + " +- 3 5 6 0.8");
  EXPECT_EQ(bank("STD", "9 100 36 16 99\n"), points);
  EXPECT_EQ(bank("ESD", "      9.     3.0     100    10.0      36       6\n      16       4\n"),
            points + esds);
  EXPECT_EQ(bank("ESD", "9.0000003.000000100.000010.00000\n36 6 16 4\n"), points + esds);
  EXPECT_EQ(bank("FXYE", "500 9 3\n# remark\n550 100 10\n600 36 6\n650 16 4\n"), points + esds);
  EXPECT_EQ(bank("FXY", "500 9\n550 100\n600 36\n650 16\n"), points);
  EXPECT_EQ(bank("ALT",
                 "   16000 9.0000 3.00   17600100.00010.00   1920036.0000 6.00"
                 "   2080016.0000 4.00\n"),
            points + esds);
  EXPECT_EQ(bank("FXY", "500 9\nBANK 2 1 1 CONS 700 50 0 0 STD\n       7\n"),
            "bank 1: 5 = 9 / bank 2: 7 = 7");
  EXPECT_EQ(bank("ESD", "words\n"), "trouble: line 4 holds no numbers where counts should be");
  EXPECT_EQ(bank("RALF", "1 2\n"), "trouble: bank 1 holds counts of an unknown kind, RALF");
  for (const char* steps : {"SLOG", "TIME_MAP", "RALF"})
    EXPECT_EQ(Told(Import(std::string("t\nBANK 1 4 1 ") + steps + " 500 50 0 0 FXYE\n1 2 3\n")),
              "trouble: bank 1 was measured by time of flight");
  EXPECT_EQ(Told(Import("t\nBANK 1 1e30 1 CONST 500 50 0 0 STD\n 9\n")),
            "trouble: bank 1 tells no number of points");
}

// A scan of 60 points from 5 degrees, of which the test looks at the first.
TEST(ImportText, StartStepStop) {
  std::string ten, one, pairs, touching, halves, roots;
  for (int i = 0; i < 60; ++i) {
    const int counts = 100 + i % 7 * 1000, detectors = 1 + i % 20;
    const std::string end = i % 10 == 9 ? "\n" : "";
    char text[64];
    std::snprintf(text, sizeof text, "%8d", counts);
    ten += text + end;
    one += std::to_string(counts) + '\n';
    std::snprintf(text, sizeof text, "%2d%6d", 1 + i % 9, counts);
    pairs += text + end;
    std::snprintf(text, sizeof text, "%2d%06d", detectors, counts);
    touching += text + end;
    std::snprintf(text, sizeof text, "%8.1f", std::sqrt(counts));
    roots += text + end;
  }
  halves = ten + roots;
  const auto first = [](const std::string& text) {
    const Imported imported = Import(text);
    if (imported.file.scans.size() != 1) return "trouble: " + imported.trouble;
    const MeasuredScan& scan = imported.file.scans[0];
    std::ostringstream told;
    told << scan.x.size() << ' ' << scan.x[0] << ' ' << scan.x.back() << ' ' << scan.counts[1];
    if (!scan.esd.empty()) told << ' ' << scan.esd[1];
    return told.str() + ' ' + scan.sample;
  };
  const std::string scan = "60 5 6.18 1100 ";
  EXPECT_EQ(first("   5.000    .020   6.180  Tin, red\n" + ten), scan + "Tin, red");
  EXPECT_EQ(first("Tin\nlambda 1.5\n5 .02 6.18 1000\n" + one), scan + "Tin");
  EXPECT_EQ(first("  5.0000  0.0200006.1800\n" + ten), scan);
  EXPECT_EQ(first("5 .02 6.18\n" + ten + "end\n"), scan);
  EXPECT_EQ(first("/* a\nremark */ 5 .02 6.18\n" + one), scan + "/* a");
  EXPECT_EQ(first("Tin\n5\n.02\n6.18\n" + one), scan + "Tin");
  EXPECT_EQ(first("5\n.02\n7.18\n" + one),
            "trouble: its lines hold one number each, and positions are missing");
  EXPECT_EQ(first("5 .02 6.18\n" + pairs), scan.substr(0, 14) + " 23.4521 ");
  EXPECT_EQ(first("5 .02 6.18\n" + touching), scan.substr(0, 14) + " 23.4521 ");
  EXPECT_EQ(first("5 .02 6.18\n" + halves), scan.substr(0, 14) + " 33.2 ");
  EXPECT_EQ(first("5 .02 6.18\n" + ten + ten),
            "trouble: the positions in its lines neither rise nor fall");
  // An interrupted measurement; and columns whose first line might begin like that.
  EXPECT_EQ(first("5 .02 7.18\n" + ten), scan);
  std::string many = "5 .02 150\n";
  for (int i = 0; i < 1'300'000; ++i) many += "1 2 3 4 5 6 7 8 9 1\n";
  EXPECT_EQ(first(many), "trouble: it holds more than 4000000 points");
  EXPECT_EQ(first("5 .02 7.18\n6 1100 1\n7 1200 2\n8 1300 1\n"), "4 5 8 1100 1 ");
}

TEST(ImportText, Rigaku) {
  const std::string head =
      "*RAS_DATA_START\r\n*RAS_HEADER_START\r\n*FILE_SAMPLE \"Tin red\"\r\n"
      "*HW_XG_WAVE_LENGTH_ALPHA1 \"1.540593\"\r\n*MEAS_SCAN_START_TIME \"11/20/18 09:33:15\"\r\n"
      "*MEAS_SCAN_SPEED \"3.0\"\r\n*MEAS_SCAN_SPEED_UNIT \"deg/min\"\r\n*MEAS_SCAN_STEP "
      "\"0.5\"\r\n";
  const auto points = [](const std::string& axis) {
    return "*MEAS_SCAN_AXIS_X \"" + axis +
           "\"\r\n*RAS_HEADER_END\r\n*RAS_INT_START\r\n5.0 7 1.0\r\n5.5 6 9.5\r\n6.0 5 0\r\n"
           "*RAS_INT_END\r\n*RAS_HEADER_START\r\n";
  };
  const Imported ras = Import(head + points("TwoThetaTheta") + points("Phi"));
  EXPECT_EQ(Told(ras), "5 5.5 6 = 7 57 5");
  EXPECT_EQ(ras.file.scans[0].sample, "Tin red");
  EXPECT_EQ(ras.file.scans[0].wavelengths[0], 1.540593);
  EXPECT_EQ(ras.file.scans[0].date, "2018-11-20 09:33:15");
  EXPECT_EQ(ras.file.scans[0].seconds, 10);
  EXPECT_EQ(Told(Import(head + points("2\xCE\xB8/\xCE\xB8") + points(""))),
            "scan 1: 5 5.5 6 = 7 57 5 / scan 2: 5 5.5 6 = 7 57 5");
  EXPECT_EQ(Told(Import(head + points("Phi"))),
            "trouble: its scans run over Phi, not over two-theta");

  const std::string old = "*TYPE\t=  Raw\n*SAMPLE\t=  Tin\n*START\t=  5.0\n*STEP\t=  0.5\n";
  EXPECT_EQ(Told(Import(old + "*COUNT = 3\n  7,  6,\n  5\n*END\n")), "5 5.5 6 = 7 6 5");
  const Imported groups =
      Import(old + "*SPEED = 3\n7,6\n*END\n*START=8\n*STEP=1\n5,4\n*END\n*EOF\n");
  EXPECT_EQ(Told(groups), "scan 1: 5 5.5 = 7 6 / scan 2: 8 9 = 5 4");
  EXPECT_EQ(groups.file.scans[1].sample, "Tin");
  EXPECT_EQ(groups.file.scans[0].seconds, 10);
  EXPECT_EQ(Told(Import("*A=1\n*START=\n*STEP=\n7,6\n")),
            "trouble: it tells no first angle or no step");
}

}  // namespace
