// Reading the lines of a transcript and writing its events.
#include "toolkit/replay/transcript.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <fstream>
#include <iostream>

namespace replay {
namespace {

std::ifstream file;
std::istream* input = nullptr;
std::deque<std::string> fed;
int linenumber = 0;

void PutLine(const std::string& line) {
  std::fputs((line + "\n").c_str(), stdout);
  std::fflush(stdout);
}

std::function<void(const std::string&)> putevent = PutLine;
std::function<void()> endrun = [] { std::exit(1); };

bool Blank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

// A text in double quotes from `at` on; a doubled quote stands for one.
std::string QuotedText(const std::string& line, std::size_t& at) {
  std::string text;
  for (++at; at < line.size(); ++at) {
    if (line[at] != '"') {
      text += line[at];
    } else if (at + 1 < line.size() && line[at + 1] == '"') {
      text += line[at++];
    } else {
      if (++at < line.size() && !Blank(line[at])) Fail("text behind a closing quote");
      return text;
    }
  }
  Fail("quote is not closed");
}

bool NextText(std::string& line) {
  if (!fed.empty()) {
    line = fed.front();
    fed.pop_front();
    return true;
  }
  return input && std::getline(*input, line);
}

// A field of an event on one line: "\n" for a line end, and blanks for tabs, which part the fields,
// and for NUL bytes, which would end the line.
std::string OneLine(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') continue;
    if (c == '\n' || c == '\r')
      out += "\\n";
    else
      out += c == '\t' || c == '\0' ? ' ' : c;
  }
  return out;
}

}  // namespace

bool OpenTranscript(const std::string& path) {
  linenumber = 0;
  input = &std::cin;
  if (path.empty()) return true;
  file.open(path, std::ios::binary);
  input = &file;
  file.peek();  // a directory opens, but cannot be read
  return file.good() || file.eof();
}

void NoInput() {
  input = nullptr;
  fed.clear();
  linenumber = 0;
}

std::vector<Word> WordsOf(const std::string& line) {
  std::vector<Word> words;
  for (std::size_t at = 0; at < line.size();) {
    if (Blank(line[at])) {
      ++at;
    } else if (line[at] == '#') {
      break;
    } else if (line[at] == '"') {
      words.push_back({QuotedText(line, at), true});
    } else {
      const std::size_t begin = at;
      while (at < line.size() && !Blank(line[at])) ++at;
      words.push_back({line.substr(begin, at - begin)});
    }
  }
  return words;
}

void FeedLine(const std::string& line) { fed.push_back(line); }

void FeedLines(const std::string& lines) {
  for (std::size_t begin = 0; begin < lines.size();) {
    const std::size_t end = std::min(lines.find('\n', begin), lines.size());
    FeedLine(lines.substr(begin, end - begin));
    begin = end + 1;
  }
}

bool NextLine(std::vector<Word>& words) {
  std::string line;
  while (NextText(line)) {
    ++linenumber;
    words = WordsOf(line);
    if (!words.empty()) return true;
  }
  return false;
}

void Emit(const std::vector<std::string>& fields) {
  std::string line;
  for (const std::string& field : fields) line += (line.empty() ? "" : "\t") + OneLine(field);
  putevent(line);
}

void Fail(const std::string& reason) {
  Emit({"error", std::to_string(linenumber), reason});
  endrun();
  std::abort();
}

void Redirect(std::function<void(const std::string&)> event, std::function<void()> end) {
  putevent = std::move(event);
  endrun = std::move(end);
}

}  // namespace replay
