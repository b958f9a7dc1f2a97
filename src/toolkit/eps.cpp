// A display list as an EPS file.
#include <cmath>
#include <cstdio>

#include "toolkit/vectorpath.h"

namespace {

// The operators of PathOperators in PostScript.
constexpr const char* Prolog =
    "%%BeginProlog\n"
    "/drawing 20 dict def drawing begin\n"
    "/m {moveto} bind def /l {lineto} bind def /S {stroke} bind def\n"
    "/w {setlinewidth} bind def /d {setdash} bind def\n"
    "/J {setlinecap} bind def /j {setlinejoin} bind def\n"
    "/RG {setrgbcolor} bind def /rg {setrgbcolor} bind def\n"
    "/BT {gsave} bind def /ET {grestore} bind def\n"
    "/Tf {exch findfont exch scalefont setfont} bind def\n"
    "/Tm {6 array astore concat} bind def /Tj {0 0 moveto show} bind def\n"
    "end\n"
    "%%EndProlog\n";

// The font of texts, with the letters of Latin-1.
constexpr const char* FontSetup =
    "%%BeginPageSetup\n"
    "/Helvetica findfont dup length dict begin {1 index /FID ne {def} {pop pop} ifelse} forall\n"
    "/Encoding ISOLatin1Encoding def currentdict end /F1 exch definefont pop\n"
    "%%EndPageSetup\n";

// A text for a comment line, which has room for 255 plain characters.
std::string CommentText(const std::string& text) {
  std::string out = "(";
  for (unsigned char c : text) {
    if (out.size() > 200) break;
    char octal[8];
    std::snprintf(octal, sizeof octal, "\\%03o", static_cast<unsigned>(c));
    const bool plain = c >= ' ' && c < 127 && c != '(' && c != ')' && c != '\\';
    out += plain ? std::string(1, static_cast<char>(c)) : octal;
  }
  return out + ")";
}

}  // namespace

bool WriteEps(const DisplayList& list, const std::string& path, const std::string& title,
              float width, float height) {
  const PageMap map(list, width, height);
  const PageBox box = CoveredBox(list, map, width, height);
  std::string out = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: ";
  AppendNumbers(out, {std::floor(box.x1), std::floor(box.y1), std::ceil(box.x2)});
  AppendNumber(out, std::ceil(box.y2));
  out += "\n%%HiResBoundingBox: ";
  AppendNumbers(out, {box.x1, box.y1, box.x2});
  AppendNumber(out, box.y2);
  out += "\n%%Title: " + CommentText(title) + "\n%%Creator: (Quillagram)\n%%LanguageLevel: 2\n";
  if (!list.texts.empty()) out += "%%DocumentNeededResources: font Helvetica\n";
  out += "%%Pages: 1\n%%EndComments\n";
  out += Prolog;
  out += "%%Page: 1 1\n";
  if (!list.texts.empty()) out += FontSetup;
  out += "save drawing begin\n";
  out += PathOperators(list, map);
  out += "end restore\nshowpage\n%%Trailer\n%%EOF\n";
  return WriteWholeFile(path, out);
}
