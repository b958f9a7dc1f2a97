// What the user has done, as lines of a transcript that does it again.
#include "shell/history.h"

#include "toolkit/toolkit.h"
#include "workspace/lines.h"
#include "workspace/record.h"
#include "workspace/text.h"

namespace {

std::vector<std::string> history;

}  // namespace

void NoteHistory(const std::vector<std::string>& lines) {
  history.insert(history.end(), lines.begin(), lines.end());
}

bool HasHistory() { return !history.empty(); }
void ForgetHistory() { history.clear(); }

bool WriteHistory(const std::string& path) {
  const int date = IOsDate();
  LineWriter file(path);
  file.Write(WriteRecord<"('# What was done in Quillagram up to ',i4.4,'-',i2.2,'-',i2.2,'.')">(
      date / 10000, date / 100 % 100, date % 100));
  file.Write("# quillagram-replay does it again, with the files where they were.");
  for (const std::string& line : history) file.Write(line);
  if (file.Close()) return true;
  MessageBoxError("File Error", FileMessage("Error writing history", path, file.Reason()));
  return false;
}
