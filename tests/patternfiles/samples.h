// A small file of every format with what it holds.
#pragma once

#include <string>
#include <vector>

#include "patternfiles/patternfiles.h"

struct FormatSample {
  const char* extension;
  std::string text;
  float x1, step;
  std::vector<float> counts;
  float wave[3];  // scanwave after the load
  const char* scandate;
  const char* sampleid;  // "stem": the file's name
  const char* instrument;
  const char* exposure;
};

inline const std::vector<FormatSample>& FormatSamples() {
  static const std::vector<FormatSample> samples = {
      {"xy",
       "; flat plate\n5.00   100\n_5.01 7\n5.02;120\n5.04, -90.5 3.1\n5.06 0\n",
       5,
       0.02f,
       {100, 120, -90.5f},
       {1.54056f, 1.54433f, 0},
       "",
       "stem",
       "",
       ""},
      {"chi",
       "a.tif: 2-theta scan\n2-Theta Angle (Degrees)\n\n       3\n 1.0000000E+00  1.5000000E+01\n"
       " 2.0000000E+00  2.5000000E+01\n 3.0000000E+00  3.5000000E+01\n",
       1,
       1,
       {15, 25, 35},
       {1.54056f, 1.54433f, 0},
       "",
       "stem",
       "",
       ""},
      // 3 points of 2.5 s: 7.5, rounded half away from zero.
      {"txt",
       "Date=7/5/14\nTime=09:30:00\nAlpha1=1.7889\nAlpha2=1.7928\nAlphaRatio=0.5\n"
       "AlphaAverage= 9.9\nNumberOfCompleteData= 77\nTime=2.5\nTime=99\n[Data]\n  Angle,  PSD,\n"
       "   5.0000,       126,\n   5.0200,       131,\n   5.0400,       140,\n   5.0600,  -1,\n",
       5,
       0.02f,
       {126, 131, 140},
       {1.7889f, 1.7928f, 0.5f},
       "05/07/2014  09:30:00",
       "stem",
       "Bruker D8 Advance",
       "         8"},
      {"uxd",
       "; range 1\n_DATEMEASURED='04-Mar-2010 20:59:14'\n_WL1=1.540600\n_WL2=1.544390\n"
       "_WLRATIO=0.5\n_STEPTIME=0.5\n_2THETACOUNTS\n    3.000\t187\n    3.020\t183\n    "
       "3.040\t178\n"
       "_END\n",
       3,
       0.02f,
       {187, 183, 178},
       {1.5406f, 1.54439f, 0.5f},
       "04-Mar-2010 20:59:14",
       "stem",
       "Bruker D8 Advance",
       "         2"},
      {"udf",
       "SampleIdent,Sample5 ,/\nDiffrType,STADI,/\nLabdaAlpha1, 1.540598,/\n"
       "LabdaAlpha2, 1.544426,/\nRatioAlpha21, 0.50000,/\nFileDateTime,11-mar-2025 12:27,/\n"
       "DataAngleRange,   5.0000,   5.2000,/\nScanStepSize,     0.020,/\nScanStepTime, 10.0,/\n"
       "RawScan\n    8000,    7000,    6000,    5000,    4000,    3000,    2000,    1000\n"
       "     800,     700,     600,/\n",
       5,
       0.02f,
       {8000, 7000, 6000, 5000, 4000, 3000, 2000, 1000, 800, 700, 600},
       {1.540598f, 1.544426f, 0.5f},
       "11-mar-2025 12:27",
       "Sample5",
       "Stoe STADI",
       "       110"},
      {"gdf",
       "scan\n\n  300\nfluorite\n5\n6\n7/15/2014 12:00\n 21753\n9\nGain >1.00< x\n     5.000\n"
       "   150.000\n     0.020\n14\n15\n16\n     151\n     132\n     144\n       0\n",
       5,
       0.02f,
       {151, 132, 144},
       {1.54056f, 1.54056f, 0},
       "15/07/2014 12:00",
       "fluorite",
       "Huber G670",
       " 21753"},
      {"dat",
       "10.00   0.020   10.22\n     179     147     165     172     150     165     150     158"
       "     134     146\n     167   159.5\n",
       10,
       0.02f,
       {179, 147, 165, 172, 150, 165, 150, 158, 134, 146, 167, 159.5f},
       {1.54056f, 1.54433f, 0},
       "",
       "stem",
       "",
       ""},
      {"cif",
       "data_x\n_diffrn_radiation_wavelength 0.70932\n_pd_meas_2theta_range_min 5.0\n"
       "_pd_meas_2theta_range_max 5.04\n_pd_meas_2theta_range_inc 0.02\nloop_\n"
       "  _pd_meas_intensity_total\n 999\n 151.5\n 132\n 144\n#--end\n 1\n",
       5,
       0.02f,
       {151.5f, 132, 144},
       {0.70932f, 0.70932f, 0},
       "",
       "stem",
       "",
       ""},
      {"xrdml",
       "<?xml version=\"1.0\"?>\n\t<kAlpha1 unit=\"Angstrom\">1.5405980</kAlpha1>\n"
       "\t<kAlpha2 unit=\"Angstrom\">1.5444260</kAlpha2>\n"
       "\t<ratioKAlpha2KAlpha1>0.5000</ratioKAlpha2KAlpha1>\n"
       "<endTimeStamp>2014-01-31T12:00:00+01:00</endTimeStamp>\n"
       "<positions axis=\"2Theta\" unit=\"deg\">\n<startPosition>5.00</startPosition>\n"
       "<endPosition>5.06</endPosition>\n</positions>\n<positions axis=\"Omega\" unit=\"deg\">\n"
       "<startPosition>2.00</startPosition>\n<endPosition>9.00</endPosition>\n"
       "<commonCountingTime unit=\"seconds\">25.1</commonCountingTime>\n"
       "<intensities unit=\"counts\">187 183 178 0</intensities>\n",
       5,
       0.02f,
       {187, 183, 178, 0},
       {1.540598f, 1.544426f, 0.5f},
       "2014-01-31 12:00:00",
       "stem",
       "Philips PW 3710",
       "       100"},
  };
  return samples;
}

inline const FormatSample& SampleOf(const std::string& extension) {
  for (const FormatSample& sample : FormatSamples())
    if (extension == sample.extension) return sample;
  return FormatSamples().front();
}

inline int ReadAs(const std::string& extension, int slot, const std::string& path) {
  return FindFormatByExtension("x." + extension)->read(slot, path);
}

// Files of more points than a slot takes, made of one line again and again.
struct LongPattern {
  const char* extension;
  std::string head, line, tail;
  int perline, limit;  // points of a line, and those that are read
  std::string text(int points = 20100) const {
    std::string all = head;
    for (int i = 0; i < points; i += perline) all += line;
    return all + tail;
  }
};

inline const std::vector<LongPattern>& LongPatterns() {
  static const std::vector<LongPattern> patterns = {
      {"xy", "", "5 1\n", "", 1, 19998},
      {"chi", "1\n2\n3\n4\n", "5 1\n", "", 1, 19998},
      {"txt", "[Data]\n\n", "5, 1\n", "", 1, 20000},
      {"uxd", "_2THETACOUNTS\n", "5 1\n", "", 1, 19991},
      {"udf", "RawScan\n", "1,1,1,1,1,1,1,1\n", "", 8, 19992},
      {"gdf", "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n13\n14\n15\n16\n", "1\n", "", 1, 19991},
      {"dat", "1 1\n", "1,1,1,1,1,1,1,1,1,1\n", "", 10, 19990},
      {"cif", "  _pd_meas_intensity_total\n\n", "1\n", "", 1, 19991},
      {"xrdml", "<intensities>10", " 1", "</intensities>", 1, 20000},
  };
  return patterns;
}
