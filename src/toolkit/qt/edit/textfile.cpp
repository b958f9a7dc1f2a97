// Encodings and line ends of text files.
#include "toolkit/qt/edit/textfile.h"

#include <QStringDecoder>
#include <algorithm>
#include <array>

namespace {

constexpr char kBom[] = "\xEF\xBB\xBF";

// Characters at which the text widget would begin a new paragraph.
bool BreaksLines(QChar c) {
  const char16_t code = c.unicode();
  return code == 0x2028 || code == 0x2029 || code == 0xfdd0 || code == 0xfdd1;
}

const char* BytesOf(LineEnd end) {
  constexpr const char* kBytes[] = {"\n", "\r\n", "\r"};
  return kBytes[static_cast<int>(end)];
}

void SplitLines(const QString& text, TextFile& file) {
  file.lines.clear();
  file.ends.clear();
  std::array<int, 3> seen{};
  qsizetype begin = 0;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] != '\n' && text[i] != '\r') continue;
    const bool crlf = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    const LineEnd end = crlf ? LineEnd::CrLf : text[i] == '\n' ? LineEnd::Lf : LineEnd::Cr;
    file.lines.push_back(text.mid(begin, i - begin));
    file.ends.push_back(end);
    ++seen[static_cast<int>(end)];
    i += crlf;
    begin = i + 1;
  }
  file.lines.push_back(text.mid(begin));
  file.ends.push_back(LineEnd::Unset);
  file.lineend = static_cast<LineEnd>(std::max_element(seen.begin(), seen.end()) - seen.begin());
}

}  // namespace

TextFile ParseText(const QByteArray& bytes) {
  TextFile file;
  file.bom = bytes.startsWith(kBom);
  const QByteArray body = file.bom ? bytes.mid(3) : bytes;
  QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
  QString text = decoder.decode(body);
  if (decoder.hasError() || text.toUtf8() != body ||
      std::any_of(text.begin(), text.end(), BreaksLines)) {
    file.encoding = Encoding::Latin1;
    file.bom = false;
    text = QString::fromLatin1(bytes);
  }
  SplitLines(text, file);
  return file;
}

QByteArray TextBytes(const TextFile& file) {
  const auto islatin = [](const QString& line) {
    return std::all_of(line.begin(), line.end(), [](QChar c) { return c.unicode() < 256; });
  };
  const bool latin = file.encoding == Encoding::Latin1 &&
                     std::all_of(file.lines.begin(), file.lines.end(), islatin);
  QByteArray bytes;
  if (file.bom) bytes += kBom;
  for (std::size_t i = 0; i < file.lines.size(); ++i) {
    bytes += latin ? file.lines[i].toLatin1() : file.lines[i].toUtf8();
    if (i + 1 == file.lines.size()) break;
    bytes += BytesOf(file.ends[i] == LineEnd::Unset ? file.lineend : file.ends[i]);
  }
  return bytes;
}
