// One file of a series.
//
// A process of its own for every file costs a third of a millisecond and leaves no trace of one
// file in the row of the next; a file that crashes the program, or takes for ever, is a row like
// others.
#include "seriesrun/rowrun.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstring>

#include "patternfiles/import/dates.h"
#include "series/seriestable.h"
#include "seriesrun/process.h"
#include "shell/shell.h"
#include "toolkit/replay/transcript.h"
#include "toolkit/toolkit.h"
#include "workspace/lines.h"

namespace seriesrun {
namespace {

constexpr const char* kCommandFailed = "the command failed";

// Fields of a row that go through the pipe, each with a letter in front and NUL behind it; no event
// holds a NUL. What the fit has found ends the message.
enum Part : char {
  PartDate = 'd',
  PartValue = 'v',
  PartBox = 'b',
  PartFailed = 'f',
  PartBad = 'l',
  PartFit = 'e'
};

std::vector<std::string> Fields(const std::string& event) {
  std::vector<std::string> fields(1);
  for (const char c : event)
    if (c == '\t')
      fields.emplace_back();
    else
      fields.back() += c;
  return fields;
}

// Line ends inside a text come as "\n".
std::string OneLine(std::string text) {
  for (std::size_t at = 0; (at = text.find("\\n", at)) != text.npos;) text.replace(at, 2, " ");
  return text;
}

// As instruments write dates; what could be a month or a day first stays as it is.
std::string DateNow() {
  const std::string iso =
      ws.scandate.find('/') == std::string::npos ? IsoDate(ws.scandate) : std::string();
  return iso.empty() ? ws.scandate : iso;
}

FitFound FitNow() {
  FitFound found;
  found.rwp = 100 * ws.fitrwp;
  found.values = ws;
  found.fitted = ws.fitcycles > 0 && std::isfinite(found.rwp);
  return found;
}

// ---- In the process of the file ----

class Telling {
 public:
  Telling(int pipe, std::string file) : pipe_(pipe), file_(std::move(file)) {}

  void Take(const std::string& event) {
    const std::vector<std::string> fields = Fields(event);
    if (fields[0] == "value")
      for (std::size_t k = 2; k < fields.size(); ++k) Add(PartValue, fields[k]);
    if (fields[0] == "box") boxes_.push_back(AsListed(OneLine(fields.back())));
    if (fields[0] == "error") TakeError(fields);
  }

  // The file cannot be done, for a reason of its own.
  [[noreturn]] void Refuse(const std::string& reason) {
    Add(PartFailed, reason);
    End();
  }

  // The row has come to its end, or to the line that could not be done.
  [[noreturn]] void End() {
    Add(PartDate, DateNow());
    for (const std::string& box : boxes_) Add(PartBox, box);
    const FitFound fit = FitNow();
    text_ += PartFit;
    text_.append(reinterpret_cast<const char*>(&fit), sizeof fit);
    _exit(WriteWhole(pipe_, text_) ? 0 : 1);
  }

 private:
  void Add(Part part, const std::string& field) {
    text_ += part;
    text_ += field.c_str();
    text_ += '\0';
  }

  // Names the file as the list does: a row is the same wherever the list lies.
  std::string AsListed(std::string text) const {
    const std::string path = IOsFullPath(file_);
    for (std::size_t at = 0; (at = text.find(path, at)) != text.npos; at += file_.size())
      text.replace(at, path.size(), file_);
    return text;
  }

  // A command that fails has shown a box that tells why.
  void TakeError(const std::vector<std::string>& fields) {
    if (fields[2] == kCommandFailed && !boxes_.empty()) {
      Add(PartFailed, boxes_.back());
      boxes_.pop_back();
      return;
    }
    Add(PartFailed, "line " + fields[1] + ": " + fields[2]);
    if (fields[2] != kCommandFailed) Add(PartBad, "");
  }

  int pipe_;
  std::string file_;
  std::string text_;
  std::vector<std::string> boxes_;
};

[[noreturn]] void RunHere(const Recipe& recipe, const Places& places,
                          const std::optional<FitValues>& start, int limit, int pipe) {
  static_assert(std::is_trivially_copyable_v<FitFound>);
  Telling telling(pipe, places.at("file"));
  replay::Redirect([&](const std::string& event) { telling.Take(event); }, [&] { telling.End(); });
  alarm(static_cast<unsigned>(limit));
  for (const std::string& line : recipe.lines) {
    if (const std::string place = BlankPlace(line, places); !place.empty())
      telling.Refuse("{" + place + "} is blank in the list");
    replay::FeedLine(FilledIn(line, places));
  }
  ws.fitlog = 0;
  ws.fitstart = start;
  RunProgram();
  std::vector<replay::Word> rest;
  if (replay::NextLine(rest)) telling.Refuse("the recipe leaves the program before its end");
  telling.End();
}

// ---- In the process that waits for it ----

// False if the message does not come to its end.
bool Understand(const std::string& text, RowResult& row) {
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == PartFit) {
      if (text.size() - at - 1 != sizeof row.fit) return false;
      std::memcpy(&row.fit, &text[at + 1], sizeof row.fit);
      return true;
    }
    const std::string field = text.c_str() + at + 1;
    switch (text[at]) {
      case PartDate:
        row.date = field;
        break;
      case PartValue:
        row.values.push_back(field);
        break;
      case PartBox:
        row.boxes.push_back(field);
        break;
      case PartFailed:
        row.failed = field;
        break;
      case PartBad:
        row.badline = true;
        break;
    }
    at += field.size() + 2;
  }
  return false;
}

}  // namespace

RowResult RunRow(const Recipe& recipe, const Places& places, const std::optional<FitValues>& start,
                 int limit) {
  for (int attempt = 1;; ++attempt) {
    const Child child = Fork();
    if (child.pid == 0) RunHere(recipe, places, start, limit, child.pipe);
    const std::string text = ReadWhole(child.pipe);
    const int status = WaitFor(child.pid);
    RowResult row;
    if (Understand(text, row)) return row;
    if (WasKilled(status) && attempt == 1) continue;
    row = {};
    row.failed = WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM
                     ? "stopped after " + std::to_string(limit) + " s"
                     : "the program ended: " + HowItEnded(status);
    return row;
  }
}

}  // namespace seriesrun
