// What a run of a script has to tell at its end.
#include "script/scriptreport.h"

#include <algorithm>
#include <filesystem>

#include "workspace/lines.h"
#include "workspace/text.h"

namespace {

constexpr std::size_t kShownFailures = 10;

// "Error opening xy file: No such file or directory", of a box that names the file between both, or
// what a box says of the file that it begins with.
std::string ReasonOf(const std::string& box, const std::string& path) {
  const std::string name = OnOneLine(path), named = "\n" + name + ": ";
  if (box.starts_with(name + " ")) return box.substr(name.size() + 1);
  const std::size_t end = std::min(box.find('\n'), box.size());
  const std::string what = box.substr(0, end);
  return box.compare(end, named.size(), named) == 0 ? what + ": " + box.substr(end + named.size())
                                                    : what;
}

std::string NameOf(const std::string& path) { return path.substr(FileDirectory(path).size()); }

// The script's name with another ending, and never the script itself.
std::string LogFile(const std::string& script) {
  const std::string log = std::filesystem::path(script).replace_extension(".log").string();
  return log == script ? script + ".log" : log;
}

}  // namespace

void ScriptReport::Fail(const std::string& path, const std::vector<std::string>& boxes) {
  failures_.push_back({path, boxes.empty() ? "" : ReasonOf(boxes.front(), path)});
}

std::string ScriptReport::RestOfFailures(const std::string& script) const {
  if (failures_.size() <= kShownFailures) return "";
  LineWriter log(LogFile(script));
  for (const Failure& failure : failures_)
    log.Write(OnOneLine(failure.path) + ": " + failure.reason);
  const bool kept = log.Close();
  return "\nand " + std::to_string(failures_.size() - kShownFailures) + " more" +
         (kept ? ": all in " + log.Path()
               : "; the list of all could not be written to " + log.Path() + ": " + log.Reason());
}

std::string ScriptReport::Text(const std::string& script) const {
  std::string text = stopped ? "Script stopped" : "Script done";
  text += "\nFiles read: " + std::to_string(read) + ", written: " + std::to_string(written) +
          ", skipped: " + std::to_string(skipped);
  for (const std::string& note : notes) text += "\n" + note;
  for (std::size_t i = 0; i < std::min(failures_.size(), kShownFailures); ++i)
    text += "\n" + OnOneLine(NameOf(failures_[i].path)) + ": " + failures_[i].reason;
  return text + RestOfFailures(script);
}
