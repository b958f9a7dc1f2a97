// A display list as an EPS file.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <span>

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
    "/q {gsave} bind def /Q {grestore} bind def /W {clip} bind def /n {newpath} bind def\n"
    "/re {4 2 roll moveto 1 index 0 rlineto 0 exch rlineto neg 0 rlineto closepath} bind def\n"
    "/cm {6 array astore concat} bind def\n"
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

// Bytes in base 85, in lines that no reader takes for a comment.
std::string Ascii85(std::span<const std::uint8_t> bytes) {
  constexpr std::size_t kLine = 75;
  std::string out = " ";
  std::size_t line = out.size();
  for (std::size_t at = 0; at < bytes.size(); at += 4) {
    const std::size_t n = std::min<std::size_t>(4, bytes.size() - at);
    std::uint32_t word = 0;
    for (std::size_t i = 0; i < 4; ++i) word = word << 8 | (i < n ? bytes[at + i] : 0u);
    char digits[6] = "z";
    if (word != 0 || n < 4)
      for (int i = 4; i >= 0; --i, word /= 85) digits[i] = static_cast<char>('!' + word % 85);
    out.append(digits, digits[0] == 'z' ? 1 : n + 1);
    if (out.size() - line < kLine) continue;
    out += "\n ";
    line = out.size();
  }
  return out + "~>\n";
}

// The rows begin at the top. Level 0 is white: what is seen through needs a later language.
std::string ImageOf(const Raster& raster, const LevelPicture& picture) {
  const std::string width = std::to_string(picture.width), height = std::to_string(picture.height);
  return "[/Indexed /DeviceRGB 255 <" + HexColours(raster.colours) + ">] setcolorspace\n" +
         "<< /ImageType 1 /Width " + width + " /Height " + height +
         " /BitsPerComponent 8 /Decode [0 255]\n/ImageMatrix [" + width + " 0 0 -" + height +
         " 0 " + height + "] /DataSource currentfile /ASCII85Decode filter >> image\n" +
         Ascii85(picture.levels);
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
  out += PathOperators(list, map, ImageOf);
  out += "end restore\nshowpage\n%%Trailer\n%%EOF\n";
  return WriteWholeFile(path, out);
}
