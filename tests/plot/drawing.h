// Looks at a drawing as a reader does: curves by colour in data units, and texts letter by letter.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "plot/dataposition.h"
#include "plot/page.h"
#include "plot/penplot.h"
#include "plot/plot.h"
#include "support/support.h"
#include "toolkit/common.h"  // for PaperList
#include "toolkit/toolkit.h"

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
    for (DrawPoint& p : path) {
      const DataPoint at = ToData(p.x, p.y);
      p = {at.x, at.y};
    }
  return found;
}

// The stroke of a colour with the most points that is wider than a letter.
inline Path Curve(int colour) {
  auto curves = Curves(colour);
  std::erase_if(curves, [](const Path& path) {
    return std::abs(path.back().x - path.front().x) <= 25 * ws.xperunit;
  });
  return curves.empty() ? Path{} : *std::ranges::max_element(curves, {}, &Path::size);
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
  const DisplayList drawn = list;
  std::vector<std::pair<Path, std::string>> letters;
  PlotInit();
  const std::string_view known =
      "0123456789.-ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz=()%/_:$@"
      "\xc3\xbc\xc3\x9f\xc2\xb0";
  for (std::size_t at = 0; at < known.size();) {
    const std::string letter(known.substr(at, known[at] < 0 ? 2 : 1));
    at += letter.size();
    IGrAreaClear();
    DrawName(0, 0, letter, height, angle, 1);
    letters.emplace_back(list.points, letter);
  }
  IGrAreaClear();
  // Letters that are part of another come behind it.
  std::ranges::stable_sort(letters, std::greater{}, [](const auto& l) { return l.first.size(); });

  const float c = std::cos(angle / RadToDeg) * WInfoGrReal(GraphicsGlyphX) * height,
              s = std::sin(angle / RadToDeg) * WInfoGrReal(GraphicsGlyphY) * height;
  const auto near = [=](DrawPoint a, DrawPoint b, float share) {
    return std::hypot(a.x - b.x, a.y - b.y) < share * height;
  };
  std::vector<ReadText> texts;
  std::size_t read = 0;  // points of letters known so far
  for (const Stroke& stroke : drawn.strokes) {
    if (stroke.first < read) continue;
    const std::span rest = std::span(drawn.points).subspan(stroke.first);
    DrawPoint begin{};
    const auto letter = std::ranges::find_if(letters, [&](const auto& l) {
      begin = {rest[0].x - l.first[0].x, rest[0].y - l.first[0].y};
      const auto same = [&](DrawPoint own, DrawPoint found) {
        return near({own.x + begin.x, own.y + begin.y}, found, 0.01f);
      };
      return rest.size() >= l.first.size() &&
             std::equal(l.first.begin(), l.first.end(), rest.begin(), same);
    });
    if (letter == letters.end()) continue;
    read = stroke.first + letter->first.size();
    // Behind the last text, with blanks between, or the first letter of another.
    int blanks = -1;
    for (int k = 0; !texts.empty() && k <= mostblanks; ++k) {
      const float gap = 0.25f + 0.75f * static_cast<float>(k);
      const DrawPoint end = texts.back().end;
      if (near({end.x + gap * c, end.y + gap * s}, begin, 0.03f)) blanks = k;
    }
    if (blanks < 0) texts.push_back({"", begin, begin});
    texts.back().text += std::string(std::max(blanks, 0), ' ') + letter->second;
    texts.back().end = {begin.x + 0.5f * c, begin.y + 0.5f * s};
  }
  std::erase_if(texts, [](const ReadText& t) { return t.text == "-"; });  // that is a tick
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
