// What the plots have in common: their place on the page and their colours.
#pragma once

#include <string>

#include "plot/penplot.h"

namespace colours {
inline constexpr int kBlack = RgbColour(0, 0, 0);
inline constexpr int kGreen = RgbColour(0, 255, 0);
inline constexpr int kOrange = RgbColour(255, 128, 0);
inline constexpr int kMagenta = RgbColour(255, 0, 255);
inline constexpr int kBrown = RgbColour(132, 60, 12);
inline constexpr int kRed = RgbColour(255, 0, 0);
inline constexpr int kBlue = RgbColour(0, 0, 255);
inline constexpr int kGrid = RgbColour(208, 208, 208);
inline constexpr int kOverlay[] = {kOrange, kMagenta, kBrown, kGreen};
}  // namespace colours

inline constexpr float TextUnits = 15;        // height of letters at a scale of 1
inline constexpr float PaperScale = 0.1584f;  // drawing units of paper for one of the screen

struct PageLayout {
  float scale;       // of all lengths
  float textheight;  // at least what can be read on the screen
  float tick;
};

// Whether what is drawn goes to paper. A hardcopy that has failed may leave its flag behind, which
// is nothing to the screen.
bool OnPaper();
// Sets the plot's place and size in the Workspace.
void LayPage();
// Resets the pen and turns the page for print.
PageLayout BeginPage();

// The block of information below the pattern plot on paper.
void DrawPlotHeader(const PageLayout& page);

// Texts on paper. A name's height of at most `height` at which it is no wider than the room.
float FittingHeight(const std::string& name, float room, float height);
// The end of a path, with the file's name, as far as its line has room.
std::string EndOfPath(const std::string& path, float room, float height);
// Seconds as "45 s", "5 min 30 s", "2 h 15 min".
std::string ExposureTime(const std::string& seconds);
