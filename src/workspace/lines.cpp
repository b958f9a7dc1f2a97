// Text files line by line: one reader and one writer for all formats.
#include "workspace/lines.h"

#include <algorithm>
#include <cstring>
#include <filesystem>

#include "workspace/text.h"

namespace {

constexpr std::size_t BufferSize = 65536;
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

LineReader::LineReader(const std::string& path) {
  // Asked before opening: opening a pipe would wait for its other end.
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return;
  file_.reset(std::fopen(path.c_str(), "rb"));
  if (!file_) return;
  buffer_ = std::make_unique_for_overwrite<char[]>(BufferSize);
  at_ = end_ = buffer_.get();
  if (Fill() && std::string_view(at_, end_).starts_with(ByteOrderMark)) at_ += ByteOrderMark.size();
}

// Makes sure that there is something between at_ and end_, without NUL bytes; false at the end of
// the file.
bool LineReader::Fill() {
  if (at_ != end_) return true;
  if (!file_) return false;
  at_ = buffer_.get();
  char* const last = buffer_.get() + std::fread(buffer_.get(), 1, BufferSize, file_.get());
  end_ = last;
  if (std::memchr(at_, '\0', end_ - at_)) std::replace(buffer_.get(), last, '\0', ' ');
  return at_ != end_;
}

bool LineReader::Read(std::string& line, int width) {
  // One character more than asked for tells a line that is cut from one that ends there with a CR.
  const std::size_t limit = static_cast<std::size_t>(width) + 1;
  line.clear();
  if (!Fill()) return false;
  for (bool more = true; more;) {
    const auto* lf = static_cast<const char*>(std::memchr(at_, '\n', end_ - at_));
    const char* stop = lf ? lf : end_;
    line.append(at_, std::min<std::size_t>(stop - at_, limit - line.size()));
    at_ = lf ? lf + 1 : end_;
    more = !lf && Fill();
  }
  if (line.size() == limit || (!line.empty() && line.back() == '\r')) line.pop_back();
  line.resize(TrimRight(line).size());
  return true;
}

LineWriter::LineWriter(const std::string& path)
    : file_(std::fopen(path.c_str(), "wb")), good_(file_ != nullptr) {}

LineWriter::~LineWriter() { Close(); }

bool LineWriter::Write(std::string_view line) {
  good_ = good_ && file_ && std::fwrite(line.data(), 1, line.size(), file_) == line.size() &&
          std::fputc('\n', file_) != EOF;
  return good_;
}

bool LineWriter::Close() {
  if (file_ && std::fclose(file_) != 0) good_ = false;
  file_ = nullptr;
  return good_;
}
