// A small pen-plotter library over the toolkit's drawing operations: pen, origin, markers, stroke
// letters, scale rounding and axes. Positions are reals in drawing units relative to the origin.
#pragma once

#include <string>
#include <string_view>

inline constexpr float DefaultTextHeight = 15.0f;  // used where 0 is given
inline constexpr float DefaultTickLength = 10.0f;
inline constexpr float LetterAdvance = 0.75f;   // from letter to letter, of the height
inline constexpr float KeepPosition = 9999.0f;  // in PenUp, PenDown: this coordinate stays
inline constexpr char SuperscriptMark = static_cast<char>(156);

constexpr int RgbColour(int red, int green, int blue) { return red + 256 * green + 65536 * blue; }

void PlotInit();
// style 1 solid, 2 to 5 dashes.
void SetPen(int style, float width, int colour);
void MoveOrigin(float dx, float dy);
void PenUp(float x, float y);
void PenDown(float x, float y);
void PenPosition(float& x, float& y);
// From (x, y) at an angle in degrees; a length of 0 means the default tick.
void LineAt(float x, float y, float length, float angle);
void Rectangle(float x, float y, float w, float h, float angle);
// kind 1 square, 2 triangle, 3 circle, 4 hexagon, 5 diamond, 6 X, 7 plus, 8 and 9 dashes.
void Marker(int kind, float x, float y, float size);
// Anchors 1 to 3 stand on the base line, 5 to 7 hang below, 4, 8, 9 are centred in height. In the
// text $ and SuperscriptMark switch sub- and superscript, | takes a Greek letter, @ is the degree
// sign.
void DrawText(float x, float y, std::string_view text, float height, float angle, int anchor);
// Width of a text of letters `height` high; sub- and superscripts count in full.
float TextWidth(std::string_view text, float height);
// The same for texts that come from users and files, in which every character stands for itself.
void DrawName(float x, float y, std::string_view name, float height, float angle, int anchor);
float NameWidth(std::string_view name, float height);

// Rounds the range of list[0..n) outward and puts minimum, factor (length over range) and maximum
// into list[n], list[n+1], list[n+2].
void NiceRange(float* list, int n, float length);
// Places of ticks on an axis: the last tick's number, the place of tick 0, and the step, all
// relative to lo. A range that has no ticks gives 0 for all three.
void GridSteps(float length, float lo, float hi, int& count, float& start, float& step);
void AxisTwoTheta(float length, float lo, float hi, float factor, float tick, float textheight,
                  std::string_view label);
void AxisLinear(float length, float lo, float hi, float factor, float tick, float textheight,
                float angle, std::string_view label);
// 1-based index of the value nearest to `value` in a rising or falling list of n.
int NearestIndex(float value, const float* list, int n);
// "2026-03-01   14:05"
std::string DateTimeStamp();
