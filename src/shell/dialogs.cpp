// The dialogs: every control with its number, label, format, range and first value.
#include "shell/shell.h"

namespace {

using enum ControlKind;

constexpr Control kOk{ButtonOk, Button, "OK"};
constexpr Control kCancel{ButtonCancel, Button, "Cancel"};

constexpr Control RealField(int id, const char* label, const char* format, const char* unit = "",
                            const char* group = "", const char* initial = "") {
  return {id, Real, label, format, -kNoLimit, kNoLimit, initial, group, unit};
}

constexpr Control Spin(int id, const char* label, int lowest, int highest, const char* unit = "",
                       const char* initial = "") {
  return {id, Integer, label, "", double(lowest), double(highest), initial, "", unit};
}

constexpr Control RadioOf(const char* group, int id, const char* label) {
  return {id, Radio, label, "", 0, 0, "", group};
}

constexpr Control Entry(int id, const char* label, const char* group = "") {
  return {id, String, label, "", 0, 0, "", group};
}

constexpr Control Label(int id, const char* label, const char* unit = "") {
  return {id, Text, label, "", 0, 0, "", "", unit};
}

constexpr int kMaxWindow = 20000;  // points; no window is wider than a pattern can be

constexpr Control kAbout[] = {
    Label(1301, "Quillagram  Version 1.0  (2016-02-15)"),
    Label(1302, "A workbench for X-ray powder diffraction patterns."),
    Label(1303, "Reads xy, gdf, txt, uxd, cif, dat, xrdml, udf and chi files."),
    Label(1304, "Copyright (c) 2026 the Quillagram developers, MIT licence."),
    kOk,
};

constexpr Control kLpCorrections[] = {
    RadioOf("Intensity", 1061, "*(1+cos2(2th))"),
    RadioOf("Intensity", 1062, "/(1+cos2(2th))"),
    RadioOf("Intensity", 1063, "*sin(th)"),
    RadioOf("Intensity", 1064, "/sin(th)"),
    RadioOf("Intensity", 1065, "*sin(th)*sin(2th)"),
    RadioOf("Intensity", 1066, "/sin(th)*sin(2th)"),
    RadioOf("Intensity", 1067, "*cos(2th - 45)"),
    RadioOf("Intensity", 1068, "/cos(45 - 45)"),
    kOk,
    kCancel,
};

constexpr Control kInformation[] = {
    Entry(1011, "Sample"),
    Entry(1012, "Department"),
    Entry(1013, "Company"),
    Entry(1014, "Address"),
    Entry(1015, "Diffractometer"),
    Entry(1016, "Remarks"),
    kOk,
    kCancel,
    {1017, Button, "Update"},
};

constexpr Control kDisplacePatterns[] = {
    RealField(1018, "2-theta", "(f10.2)", "deg."),
    RealField(1019, "Intensity", "(f10.0)", "counts"),
    kOk,
    kCancel,
};

constexpr Control kPlateCorrection[] = {
    RealField(1036, "mu * thickness", "(f10.2)"),
    RealField(1037, "Inclination angle", "(f10.3)", "deg.", "", "45.000"),
    kOk,
    kCancel,
};

constexpr Control kScalePattern[] = {
    RealField(1032, "Scale factor", "(f10.2)", "", "", "1.00"),
    kOk,
    kCancel,
};

constexpr Control kZeroShift[] = {
    RealField(1020, "Zero shift", "(f10.4)", "deg."),
    {1021, Check, "Use original steps"},
    kOk,
    kCancel,
};

constexpr Control kTruncatePattern[] = {
    RealField(1022, "New start", "(f10.3)", "deg."),
    RealField(1023, "New end", "(f10.3)", "deg."),
    kOk,
    kCancel,
};

constexpr Control kSmoothing[] = {
    Spin(1033, "Window size", 3, kMaxWindow, "points"),
    kOk,
    kCancel,
};

constexpr Control kCylinderCorrection[] = {
    RealField(1035, "mu * R", "(f10.2)"),
    kOk,
    kCancel,
};

constexpr Control kConvertPattern[] = {
    RealField(1038, "Orig. wavelength", "(f10.5)", "\u00c5"),
    RealField(1039, "New wavelength", "(f10.5)", "\u00c5", "", "1.54056"),
    RealField(1040, "Pattern start", "(f10.2)", "deg."),
    RealField(1041, "Pattern stop", "(f10.2)", "deg."),
    RealField(1042, "Pattern step", "(f10.2)", "deg."),
    kOk,
    kCancel,
};

constexpr Control kAddPolynomial[] = {
    RealField(1043, "Zeroth order", "(f10.3)"),
    RealField(1044, "First order", "(f10.3)"),
    RealField(1045, "Second order", "(f10.3)"),
    RealField(1046, "Third order", "(f10.3)"),
    RealField(1047, "Fourth order", "(f10.3)"),
    kOk,
    kCancel,
};

constexpr Control kChebyshevFit[] = {
    Spin(1048, "Order (max. 15)", 1, 15, "", "1"),
    kOk,
    kCancel,
};

// A value typed outside the range goes to the validation, which has its own answer to it.
constexpr Control kSavitzkyGolay[] = {
    {1049, Integer, "Window size (2-12)", "", 2, 12, "2", "", "", OutOfRange::Passed},
    kOk,
    kCancel,
};

constexpr Control kAlpha2Stripping[] = {
    RealField(1050, "Alpha2 / alpha1 intensity ratio", "(f10.2)", "", "", "0.50"),
    Spin(1051, "Number of starting steps", 5, kMaxWindow, "", "5"),
    RadioOf("Number of histogramming steps", 1053, "3"),
    RadioOf("Number of histogramming steps", 1054, "5"),
    RadioOf("Number of histogramming steps", 1055, "7"),
    RadioOf("Number of histogramming steps", 1056, "9"),
    RadioOf("Number of histogramming steps", 1057, "15"),
    RadioOf("Number of histogramming steps", 1058, "25"),
    RadioOf("Interpolation type", 1060, "Linear"),
    RadioOf("Interpolation type", 1061, "Parabolic"),
    RadioOf("Interpolation type", 1062, "Spline"),
    kOk,
    kCancel,
};

constexpr Control kAutosubtractOptions[] = {
    Spin(1081, "Smoothing window", 3, 501, "points"),
    Spin(1082, "Smoothing cycles", 1, 50),
    RadioOf("Scaling", 1085, "Minimum"),
    RadioOf("Scaling", 1086, "Scaled with maximum deviation"),
    RadioOf("Scaling", 1087, "Scaled in interval"),
    RealField(1088, "Maximum deviation", "(f10.2)", "%"),
    RealField(1089, "Interval start", "(f10.2)", "deg."),
    RealField(1090, "Interval end", "(f10.2)", "deg."),
    kOk,
    kCancel,
    {1091, Button, "Subtract"},
};

constexpr Control kScaleBackground[] = {
    RealField(1093, "Scale factor", "(f10.3)"),
    kOk,
    kCancel,
};

constexpr Control kScaleToInterval[] = {
    RealField(1094, "Interval start", "(f10.2)", "deg."),
    RealField(1095, "Interval end", "(f10.2)", "deg."),
    kOk,
    kCancel,
};

constexpr Control kCrystallinity[] = {
    RealField(1096, "Start", "(f10.2)", "deg."),
    RealField(1097, "End", "(f10.2)", "deg."),
    kOk,
    kCancel,
};

constexpr Control kSavePattern[] = {
    RadioOf("Content", 1098, "Input/modified pattern"),
    RadioOf("Content", 1099, "Refined pattern"),
    RadioOf("Content", 1100, "Background"),
    RadioOf("Content", 1101, "All (*.tab)"),
    RadioOf("Format", 1103, "*.gdf (Huber)"),
    RadioOf("Format", 1104, "*.xy (General)"),
    RadioOf("Format", 1105, "*.dat (General)"),
    RadioOf("Format", 1106, "*.cif (General)"),
    RealField(1107, "Start", "(f10.2)", "deg.", "Pattern limits"),
    RealField(1108, "Stop", "(f10.2)", "deg.", "Pattern limits"),
    RealField(1109, "Step", "(f10.2)", "deg.", "Pattern limits"),
    kOk,
    kCancel,
};

constexpr Control kManualBackgroundOptions[] = {
    RadioOf("Curve", 1111, "Linear"),
    RadioOf("Curve", 1112, "Spline"),
    RadioOf("Curve", 1113, "Chebyshev"),
    kOk,
    kCancel,
    {1110, Button, "Fit"},
};

constexpr Control kSinglePeakResults[] = {
    Label(1151, "Position / Intensity"),
    // Heads of the columns that the two rows below are written in.
    {1155, Text, "Side of the peak", "", 0, 0, "  Left           Average                 Right"},
    Label(1152, "FWHM"),
    Label(1153, "Peak shape"),
    Label(1154, "Particle size", "\u00c5"),
    kOk,
    kCancel,
};

constexpr Control kSinglePeakOptions[] = {
    RealField(1121, "Initial peak width (deg.)", "(f8.2)"),
    Spin(1122, "Initial no. of halfwidths", 1, 1000),
    Spin(1123, "Final no. of halfwidths", 1, 1000),
    RealField(1124, "HW tolerance for update", "(f8.2)"),
    RealField(1125, "Geometric factor", "(f8.2)"),
    RadioOf("Instrumental width", 1126, "Minimum halfwidth"),
    RadioOf("Instrumental width", 1127, "Cagliotti"),
    RealField(1128, "Halfwidth", "(f10.2)", "deg.", "Instrumental width"),
    RealField(1129, "U", "(f8.4)", "", "Instrumental width"),
    RealField(1130, "V", "(f8.4)", "", "Instrumental width"),
    RealField(1131, "W", "(f8.4)", "", "Instrumental width"),
    kOk,
    kCancel,
    {1132, Button, "Fit"},
};

constexpr Control kManualBackground[] = {
    Label(1114, "Left-click to add point.   Right-click to remove point"),
    kOk,
    kCancel,
    {1110, Button, "Fit"},
};

constexpr Control kManualPeaks[] = {
    Label(1201, "Left-click to add point.   Right-click to remove point"),
    Label(1202, "No. of peaks in list:"),
    {1203, Button, "<"},
    {1204, Button, ">"},
    kOk,
    {1205, Button, "Clear"},
};

constexpr Control kPeakSearchOptions[] = {
    Spin(1141, "Smoothing factor", 3, kMaxWindow, "points"),
    RealField(1142, "Min FWHM", "(f7.3)", "deg."),
    RealField(1143, "Max FWHM", "(f7.3)", "deg."),
    RealField(1144, "Sigma factor", "(f6.3)"),
    kOk,
    kCancel,
    {1145, Button, "Search"},
};

constexpr Control kWavelengths[] = {
    RealField(1161, "Pattern, alpha1", "(f8.5)", "\u00c5"),
    RealField(1162, "Pattern, alpha2", "(f8.5)", "\u00c5"),
    RealField(1163, "Alpha 2/1 ratio", "(f8.5)"),
    RealField(1165, "Multi-pattern 1", "(f8.5)", "\u00c5"),
    RealField(1166, "Multi-pattern 2", "(f8.5)", "\u00c5"),
    RealField(1167, "Multi-pattern 3", "(f8.5)", "\u00c5"),
    RealField(1168, "Multi-pattern 4", "(f8.5)", "\u00c5"),
    kOk,
    kCancel,
};

constexpr DialogResource kDialogs[] = {
    {101, "About Quillagram", kAbout},
    {102, "Lp-corrections", kLpCorrections},
    {104, "Information", kInformation},
    {105, "Displace patterns", kDisplacePatterns},
    {106, "Plate correction", kPlateCorrection},
    {107, "Scale pattern", kScalePattern},
    {108, "Zero shift", kZeroShift},
    {109, "Truncate pattern", kTruncatePattern},
    {110, "Smoothing", kSmoothing},
    {112, "Cylinder correction", kCylinderCorrection},
    {113, "Convert pattern", kConvertPattern, 1039},
    {114, "Add polynomial", kAddPolynomial},
    {115, "Chebyshev fit", kChebyshevFit},
    {116, "Savitzky_Golay filtering", kSavitzkyGolay},
    {117, "Alpha2 stripping", kAlpha2Stripping},
    {119, "Autosubtract options", kAutosubtractOptions},
    {120, "Scale background", kScaleBackground},
    {121, "Scale to interval", kScaleToInterval},
    {122, "Crystallinity calculation", kCrystallinity},
    {123, "Save pattern", kSavePattern},
    {125, "Manuel background options", kManualBackgroundOptions},
    {126, "Single peak fit results", kSinglePeakResults},
    {127, "Single peak fit options", kSinglePeakOptions},
    {128, "Set manuel background", kManualBackground},
    {130, "Set manual peak positions", kManualPeaks},
    {132, "Peak search options", kPeakSearchOptions},
    {136, "Wavelength(s)", kWavelengths},
};

}  // namespace

std::span<const DialogResource> DialogTable() { return kDialogs; }
