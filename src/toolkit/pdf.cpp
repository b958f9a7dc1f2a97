// A display list as a PDF file of one page.
#include <algorithm>
#include <cstdio>

#include "toolkit/vectorpath.h"

namespace {

// A text in UTF-16 with its mark, in hexadecimal.
std::string HexText(std::string_view text) {
  std::string out = "<FEFF";
  const auto append = [&](unsigned unit) {
    char hex[8];
    std::snprintf(hex, sizeof hex, "%04X", unit & 0xffffu);
    out += hex;
  };
  for (char32_t c : Characters(text)) {
    if (c >= 0x10000) append(0xd7c0 + (c >> 10));
    append(c >= 0x10000 ? 0xdc00 | (c & 0x3ff) : c);
  }
  return out + ">";
}

std::string Stream(const std::string& entries, const std::string& data) {
  return "<< " + entries + "/Length " + std::to_string(data.size()) + " >>\nstream\n" + data +
         "\nendstream";
}

// A picture of levels, with nothing where they are 0.
std::string ImageObject(const LevelPicture& picture, const LevelColours& colours) {
  const std::string entries =
      "/Type /XObject /Subtype /Image /Width " + std::to_string(picture.width) + " /Height " +
      std::to_string(picture.height) + " /BitsPerComponent 8 /Mask [0 0]\n" +
      "/ColorSpace [/Indexed /DeviceRGB 255 <" + HexColours(colours) + ">] ";
  return Stream(entries, {picture.levels.begin(), picture.levels.end()});
}

// Puts the numbered objects together with their table of places.
std::string Assemble(const std::vector<std::string>& objects, int root, int info) {
  std::string out = "%PDF-1.4\n%\xe2\xe3\xcf\xd3\n", table;
  for (std::size_t i = 0; i < objects.size(); ++i) {
    char entry[24];
    std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", out.size());
    table += entry;
    out += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
  }
  const std::size_t start = out.size();
  const std::string count = std::to_string(objects.size() + 1);
  out += "xref\n0 " + count + "\n0000000000 65535 f \n" + table;
  out += "trailer\n<< /Size " + count + " /Root " + std::to_string(root) + " 0 R /Info " +
         std::to_string(info) + " 0 R >>\nstartxref\n" + std::to_string(start) + "\n%%EOF\n";
  return out;
}

}  // namespace

bool WritePdf(const DisplayList& list, const std::string& path, const std::string& title,
              float width, float height, float pagewidth, float pageheight) {
  constexpr std::size_t before = 6;  // objects in front of those of the images
  const float scale = std::min({1.0f, pagewidth / width, pageheight / height});
  std::string content, names;
  std::vector<std::string> images;
  const auto image = [&](const Raster& raster, const LevelPicture& picture) {
    images.push_back(ImageObject(picture, raster.colours));
    const std::string name = "/Im" + std::to_string(images.size());
    names += name + " " + std::to_string(before + images.size()) + " 0 R ";
    return name + " Do\n";
  };
  AppendNumbers(content, {scale, 0, 0, scale, (pagewidth - scale * width) / 2,
                          (pageheight - scale * height) / 2});
  content += "cm\n" + PathOperators(list, PageMap(list, width, height), image);
  std::string page = "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 ";
  AppendNumbers(page, {pagewidth, pageheight});
  page += "] /Contents 4 0 R /Resources << /Font << /F1 5 0 R >> ";
  page += names.empty() ? ">> >>" : "/XObject << " + names + ">> >> >>";
  std::vector<std::string> objects = {
      "<< /Type /Catalog /Pages 2 0 R >>",
      "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
      page,
      Stream("", content),
      "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>",
      "<< /Title " + HexText(title) + " /Creator (Quillagram) >>"};
  objects.insert(objects.end(), images.begin(), images.end());
  return WriteWholeFile(path, Assemble(objects, 1, 6));
}
