// Looks at a drawing as a reader does: curves by colour in data units, and texts letter by letter.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "plot/page.h"
#include "plot/penplot.h"
#include "plot/plot.h"
#include "support/support.h"
#include "toolkit/common.h"  // for PaperList
#include "toolkit/toolkit.h"
#include "workspace/workspace.h"

using Path = std::vector<DrawPoint>;

// A window of this size with nothing drawn.
inline void OpenWindow(int width, int height) {
  WindowOpen(20, 20, width, height, 0, "Quillagram");
  IGrInit("");
  IGrArea(0, 0, 1, 1);
  IGrUnits(0, 0, 1000, 1000);
  IGrAreaClear();
}

inline void OpenPaper() {
  IGrInit("H");
  IGrArea(0, 0, 1, 1);
  IGrUnits(0, 0, 180, 254);
}

inline std::vector<Path> Strokes(const DisplayList& list = ScreenList(), int colour = -1) {
  std::vector<Path> found;
  for (const Stroke& s : list.strokes)
    if (colour < 0 || static_cast<int>(s.pen.colour) == colour)
      found.emplace_back(list.points.begin() + s.first, list.points.begin() + s.first + s.count);
  return found;
}

// Strokes of a colour in the data units of the pattern plot.
inline std::vector<Path> Curves(int colour) {
  auto found = Strokes(ScreenList(), colour);
  for (Path& path : found)
    for (DrawPoint& p : path)
      p = {(p.x - ws.plotx0) * ws.xperunit + ws.viewxmin,
           (p.y - ws.ploty0) * ws.yperunit + ws.viewymin};
  return found;
}

// The stroke of a colour with the most points that is wider than a letter.
inline Path Curve(int colour) {
  Path longest;
  for (const Path& path : Curves(colour))
    if (path.size() > longest.size() && std::abs(path.back().x - path.front().x) > 25 * ws.xperunit)
      longest = path;
  return longest;
}

struct ReadText {
  std::string text;
  DrawPoint begin, end;  // left and right end of the base line
};

// Reads the texts in a list that are written in this height and direction, letter by letter: shapes
// are compared with those that DrawText gives for each character alone, on the target selected now,
// which is left empty. A text goes on behind no more than `mostblanks` blanks.
inline std::vector<ReadText> ReadTexts(const DisplayList& list, float height, float angle = 0,
                                       int mostblanks = 0) {
  struct Letter {
    char c;
    std::vector<Path> strokes;
  };
  static const std::string kLetters =
      "0123456789.-ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz=()%/_:";
  const std::vector<Path> drawn = Strokes(list);
  std::vector<Letter> letters;
  PlotInit();
  for (char c : kLetters) {
    IGrAreaClear();
    DrawText(50, 50, std::string(1, c), height, angle, 1);
    letters.push_back({c, Strokes(list)});
  }
  IGrAreaClear();
  // Letters that are part of another come behind it.
  std::stable_sort(letters.begin(), letters.end(), [](const Letter& a, const Letter& b) {
    return a.strokes.size() > b.strokes.size();
  });

  const auto matches = [&](const Letter& letter, std::size_t at, DrawPoint& shift) {
    if (at + letter.strokes.size() > drawn.size()) return false;
    shift = {drawn[at][0].x - letter.strokes[0][0].x, drawn[at][0].y - letter.strokes[0][0].y};
    for (std::size_t s = 0; s < letter.strokes.size(); ++s) {
      const Path &a = letter.strokes[s], &b = drawn[at + s];
      if (a.size() != b.size()) return false;
      for (std::size_t i = 0; i < a.size(); ++i)
        if (std::hypot(a[i].x + shift.x - b[i].x, a[i].y + shift.y - b[i].y) > 0.01f * height)
          return false;
    }
    return true;
  };
  const float c = std::cos(angle / RadToDeg) * WInfoGrReal(GraphicsGlyphX),
              s = std::sin(angle / RadToDeg) * WInfoGrReal(GraphicsGlyphY);
  const auto along = [&](DrawPoint from, float units) {
    return DrawPoint{from.x + units * height * c, from.y + units * height * s};
  };
  std::vector<ReadText> texts;
  for (std::size_t at = 0; at < drawn.size();) {
    DrawPoint shift{};
    const auto letter = std::find_if(letters.begin(), letters.end(),
                                     [&](const Letter& l) { return matches(l, at, shift); });
    if (letter == letters.end()) {
      ++at;
      continue;
    }
    at += letter->strokes.size();
    const DrawPoint begin{50 + shift.x, 50 + shift.y};
    // Behind the last text, with blanks between, or the first letter of another.
    int blanks = -1;
    for (int k = 0; !texts.empty() && k <= mostblanks; ++k) {
      const DrawPoint next = along(texts.back().end, 0.25f + 0.75f * static_cast<float>(k));
      if (std::hypot(next.x - begin.x, next.y - begin.y) < 0.03f * height) blanks = k;
    }
    if (blanks < 0) texts.push_back({"", begin, begin});
    texts.back().text += std::string(std::max(blanks, 0), ' ') + letter->c;
    texts.back().end = along(begin, 0.5f);
  }
  return texts;
}

inline std::vector<std::string> Lines(const std::vector<ReadText>& texts) {
  std::vector<std::string> lines;
  for (const ReadText& t : texts) lines.push_back(t.text);
  return lines;
}

inline void ExpectInside(const DisplayList& list, float width, float height) {
  ASSERT_FALSE(list.points.empty());
  for (const DrawPoint& p : list.points)
    ASSERT_TRUE(p.x >= 0 && p.x <= width && p.y >= 0 && p.y <= height) << p.x << " " << p.y;
}

// n points of two-theta from `first` on.
template <class Counts>
void LoadPattern(int n, float first, float step, Counts counts) {
  ws.viewmode = 1;
  ws.plotmask = PlotInput;
  for (int slot : {SlotInput, SlotNet, SlotRefined, SlotBackground}) ws.npts(slot) = n;
  for (int i = 1; i <= n; ++i) {
    const float x = first + step * static_cast<float>(i - 1);
    ws.xval(AxisTth, SlotInput, i) = x;
    ws.yval(SlotInput, i) = counts(x);
  }
  ComputeXAxes();
}
