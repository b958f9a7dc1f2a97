// The Background menu: one background curve in slot 2.
#pragma once

#include <span>
#include <string>

#include "workspace/command.h"

// The pattern's format is `filetype`.
Outcome BackgroundFromFile(const std::string& path, const ScanChoice& choice = {});
Outcome RefinedBackground();
// The background polynomial of the last fit at a two-theta; 0 outside of its range.
float RefinedBackgroundAt(float tth);
Outcome ScaleBackground();
Outcome ScaleToInterval();
// Without a question the background is taken off.
Outcome SubtractBackground(const Question& ask = {});
// Without a question the estimate goes to slot 2 and the difference to slot 3, and the view stays.
Outcome Autosubtract(const Question& ask = {});
Outcome Crystallinity();
// Needs a background curve that lies on the hump, between humpstart and humpend.
Outcome MeasureHump();
Outcome SaveBackground(const std::string& path);
Outcome ClearBackground();

// Sinks y onto its background, in place: `cycles` running means of w points that are never allowed
// above the curve, and a last mean of 15 points.
void BackgroundEnvelope(std::span<float> y, int w, int cycles);

// Points set with the mouse beside the plot, and the curve through them.
Outcome ManualBackgroundDialog();
Outcome FitManualBackground();

// The rows of the menu, from its popup down.
std::span<const Command> BackgroundCommands();
