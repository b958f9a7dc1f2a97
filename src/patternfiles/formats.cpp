// The formats of pattern files.
#include "patternfiles/patternfiles.h"
#include "workspace/text.h"

namespace {

constexpr PatternFormat kFormats[] = {
    {1, "xy", ReadXy, "Error handling xy-file"},
    {2, "gdf", ReadGdf, "Error handling gdf-file"},
    {3, "txt", ReadTxt, "Error handling txt-file"},
    {4, "uxd", ReadUxd, "Error handling uxd-file"},
    {5, "cif", ReadCif, "Error handling cif"},
    {6, "dat", ReadDat, "Error handling dat-file"},
    {7, "xrdml", ReadXrdml, "Error handling xrdml-file"},
    {8, "udf", ReadUdf, "Error handling udf-file"},
    {9, "chi", ReadChi, "Error handling chi-file"},
};

}  // namespace

std::span<const PatternFormat> PatternFormats() { return kFormats; }

const PatternFormat* FindFormat(int filetype) {
  static constexpr PatternFormat kAny{FileTypeAny, "", ReadAny, "Error handling pattern file"};
  if (filetype == FileTypeAny) return &kAny;
  for (const PatternFormat& format : kFormats)
    if (format.filetype == (filetype < 2 ? 1 : filetype)) return &format;
  return nullptr;
}

const PatternFormat* FindFormatByExtension(const std::string& path) {
  std::string name = path, extension;
  FileExtension(name, extension);
  extension = LowerText(Field(extension, 5));
  for (const PatternFormat& format : kFormats)
    if (extension == format.extension) return &format;
  return nullptr;
}
