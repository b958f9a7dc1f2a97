// A text file of keyed lines, in any order: each lookup hands out a line and uses it up.
#include "crystal/recordstore.h"

#include <algorithm>

#include "workspace/lines.h"
#include "workspace/text.h"

namespace {

constexpr std::size_t kKey = 4, kKeyField = 10;
constexpr std::string_view kUsed = "XXXX";

bool IsControl(char c) { return static_cast<unsigned char>(c) < 32; }

bool IsPlain(char c) {
  return IsControl(c) || (c >= '0' && c <= '9') ||
         std::string_view("+,-./Ee ").find(c) != std::string_view::npos;
}

std::string KeyOf(std::string_view record) { return UpperText(TrimRight(record.substr(0, kKey))); }

std::string ValueOf(std::string_view record) {
  const std::string_view field = record.substr(0, kKeyField);
  const std::string_view rest = field.substr(std::min(kKey, field.size()));
  const auto end = std::ranges::find_if(rest, [](char c) { return IsControl(c) || c == ','; });
  const auto skipped = end - rest.begin() + (end != rest.end());
  return std::string(record.substr(field.size() - rest.size() + skipped));
}

}  // namespace

int ReadRecords(const std::string& path, RecordStore& store, RecordFailure& failure) {
  store.records.clear();
  LineReader in(path);
  if (!in.IsOpen()) {
    failure = {"Error opening " + OnOneLine(path), in.Reason()};
    return 0;
  }
  std::string line;
  while (in.Read(line)) {
    store.records.push_back(line);
    if (line.starts_with("END") || line.starts_with("end")) return store.nrecords();
  }
  if (store.records.empty()) {
    failure = {"Error reading recfile", in.Reason().empty() ? "is empty" : in.Reason()};
    return 0;
  }
  store.records.push_back("END");
  return store.nrecords();
}

bool FindRecord(RecordStore& store, std::string_view key, std::string& value) {
  const std::string wanted = KeyOf(key);
  for (std::string& record : store.records) {
    const std::string found = KeyOf(record);
    if (found == wanted) {
      value = ValueOf(record);
      if (wanted != "LRES" && std::ranges::all_of(value, IsPlain)) CleanNumberLine(value);
      record = kUsed;
      return true;
    }
    if (found.starts_with("END")) return false;
  }
  return false;
}
