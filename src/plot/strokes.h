// The shapes of the stroke alphabets.
#pragma once

// A shape is a text of moves on a grid of hundredths of the height, the origin at the left end of
// the base line:
//   M x,y ...                begins a stroke; the pairs behind it are joined by lines
//   L x,y ...                goes on with lines
//   A cx,cy,rx,ry,from,to    begins a stroke with an arc of an ellipse
//   a cx,cy,rx,ry,from,to    goes on with an arc
// Directions of arcs count 15 degrees each, 0 to the right, 6 up, 12 to the left, 18 down.
// Capitals are 100 high and 40 to 56 wide, small letters 66 high; descenders reach to -30, accents
// to 131.
struct Shape {
  const char* strokes;
  const char* accent = "";  // drawn as if the base line were `rise` higher
  int rise = 0;
};

inline constexpr int DegreeSign = 0xB0;

// The characters of Latin-1 by their codes; all others give the shape of "_".
Shape CharShape(int code);
// Greek letters by their Latin keys, and "_".
Shape GreekShape(int code);
