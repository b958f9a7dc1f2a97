// A text file in the editor: what is needed to write it back as it was.
#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

enum class Encoding { Utf8, Latin1 };
enum class LineEnd : signed char { Unset = -1, Lf, CrLf, Cr };

struct TextFile {
  Encoding encoding = Encoding::Utf8;
  bool bom = false;
  LineEnd lineend = LineEnd::Lf;  // the most frequent one; new lines get it
  // Lines of the text with the end of each; the last one has none.
  std::vector<QString> lines{QString()};
  std::vector<LineEnd> ends{LineEnd::Unset};
};

// Takes the bytes of a file apart. Bytes that are no UTF-8, or hold characters that an editor would
// take for line ends, are read as Latin-1, in which every byte is a letter.
TextFile ParseText(const QByteArray& bytes);

// The bytes of lines in the file's encoding; an end that is not set is the file's own. Letters that
// Latin-1 does not have turn the file into UTF-8.
QByteArray TextBytes(const TextFile& file);
