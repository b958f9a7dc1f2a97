// The two lists of a script: the files that it reads, and those that it writes.
#include "script/filelists.h"

#include <filesystem>

#include "script/scriptfile.h"
#include "toolkit/toolkit.h"
#include "workspace/text.h"

namespace {

bool Refuse(const char* text, const std::string& path, const std::string& reason) {
  MessageBoxError("File Error", FileMessage(text, path, reason));
  return false;
}

// One letter more than a path may have tells one that is too long.
bool NextLine(LineReader& list, std::string& line) { return list.Read(line, TextLength + 1); }

constexpr const char* kNoName = "has no name for it";

// A table in the place of what the run is made of would cost the user the one or the other.
bool MayReplace(const std::string& table, const std::string& needed) {
  std::error_code failure;
  return !std::filesystem::equivalent(table, needed, failure);
}

}  // namespace

bool FileLists::NextFile(LineReader& list, std::string& line) {
  while (NextLine(list, line))
    if (!line.empty()) return true;
  return false;
}

int FileLists::CountFiles(const std::string& list) {
  LineReader reader(list);
  int count = 0;
  for (std::string line; NextFile(reader, line);) ++count;
  return count;
}

bool FileLists::Open(bool addsup) {
  const char* const outtext =
      addsup ? "Error opening sum file" : "Error opening output file list file";
  if (ws.scriptinlist.empty())
    return Refuse("Error opening input file list file", ScriptFile(), kNoName);
  if (ws.scriptoutlist.empty()) return Refuse(outtext, ScriptFile(), kNoName);
  in = FromFolderOf(ScriptFile(), ws.scriptinlist);
  out = FromFolderOf(ScriptFile(), ws.scriptoutlist);
  inputs_ = std::make_unique<LineReader>(in);
  if (!inputs_->IsOpen())
    return Refuse("Error opening input file list file", in, inputs_->Reason());
  files = CountFiles(in);
  if (addsup) {
    if (MayReplace(out, in) && MayReplace(out, ScriptFile())) return true;
    return Refuse(outtext, out, "is read by the script");
  }
  outputs_ = std::make_unique<LineReader>(out);
  return outputs_->IsOpen() || Refuse(outtext, out, outputs_->Reason());
}

bool FileLists::NextOutput(std::string& line) { return outputs_ && NextLine(*outputs_, line); }
