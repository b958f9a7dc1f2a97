// The block of information below the pattern plot on paper.
#include <algorithm>
#include <string>

#include "plot/page.h"
#include "toolkit/vectorpath.h"  // for NextCharacter
#include "workspace/record.h"
#include "workspace/workspace.h"

namespace {

constexpr float kLineHeight = 10;

// A name in a field, and what follows it.
std::string Line(std::string name, std::size_t field, std::string_view text) {
  name.resize(field, ' ');
  return name.append(text);
}

}  // namespace

std::string ExposureTime(const std::string& seconds) {
  int t = 0;
  if (!ReadRecord<"(i10)">(seconds, t) || t <= 0) return "0";
  const auto in = [](int value, const char* unit) { return std::to_string(value) + unit; };
  if (t < 60) return in(t, " s");
  if (t < 3600) return in(t / 60, " min ") + (t % 60 ? in(t % 60, " s") : "");
  return in(t / 3600, " h ") + (t / 60 % 60 ? in(t / 60 % 60, " min") : "");
}

std::string EndOfPath(const std::string& path, float room, float height) {
  std::string shown = path;
  for (std::size_t cut = 0; cut < path.size() && NameWidth(shown, height) > room;) {
    NextCharacter(path, cut);
    shown = "..." + path.substr(cut);
  }
  return shown;
}

float FittingHeight(const std::string& name, float room, float height) {
  const float width = NameWidth(name, height);
  return height * std::min(1.0f, room / std::max(width, 1.0f));
}

void DrawPlotHeader(const PageLayout& page) {
  float y = (page.tick * 4 + 2) * -2.6f;
  const auto write = [&](const std::string& line, float fall = 0.6f) {
    // A long text is written smaller rather than beyond the plot, off the paper.
    const float height = FittingHeight(line, ws.plotwidth, page.textheight);
    DrawName(0, y, line, height, 0, 7);
    y -= fall * kLineHeight;
  };
  const auto given = [&](const char* name, std::size_t field, const std::string& text) {
    if (!text.empty()) write(Line(name, field, text));
  };
  write(Line("Quillagram", 24, ws.infodepartment));
  write(Line("", 24, ws.infocompany));
  write(Line("", 24, ws.infoaddress), 1.0f);
  given("Sample:", 25, ws.sampleid);
  given("Diffractometer:", 25, ws.instrument);
  given("Operator:", 26, ws.gdfhead(5));
  if (!ws.gdfhead(8).empty()) write(Line("Exposure time:", 25, ExposureTime(ws.gdfhead(8))));
  if (ws.profrvalue > 0)
    write(WriteRecord<"(a,f8.5)">(Line("Profile R-value:", 25, ""), ws.profrvalue));
  const float room = ws.plotwidth - 25 * LetterAdvance * page.textheight;
  write(Line("Pattern file:", 25, EndOfPath(ws.patternpath, room, page.textheight)));
  given("Data collection date:", 25, ws.scandate);
  if (ws.crystallinity > 0)
    write(Line("Crystallinity:", 25,
               WriteRecord<"(f6.2,' (',f6.2,'-',f6.2,')')">(ws.crystallinity, ws.cryststart,
                                                            ws.crystend)));
}
