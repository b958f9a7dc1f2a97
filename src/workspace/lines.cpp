// Text files line by line: one reader and one writer for all formats.
#include "workspace/lines.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "workspace/text.h"

namespace {

constexpr std::size_t BufferSize = 65536;
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t LongestLetter = 4;  // bytes

// The bytes that stand for a file at present.
const std::string *heldpath = nullptr, *heldbytes = nullptr;

// Why a path names no file to read; empty if it does.
std::string NoFile(const std::string& path) {
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (error) return error.message();
  if (std::filesystem::is_directory(status)) return "is a directory";
  return std::filesystem::is_regular_file(status) ? "" : "is no regular file";
}

}  // namespace

std::string SystemReason() { return std::generic_category().message(errno); }

HeldFile::HeldFile(const std::string& path, const std::string& bytes) {
  if (bytes.empty()) return;
  heldpath = &path;
  heldbytes = &bytes;
}

HeldFile::~HeldFile() { heldpath = heldbytes = nullptr; }

// What the path names is asked before it is opened: opening a pipe would wait for its other end.
LineReader::LineReader(const std::string& path) : path_(path) {
  if (heldpath && path == *heldpath) {
    TakeBytes(*heldbytes);
    return;
  }
  reason_ = NoFile(path);
  if (!reason_.empty()) return;
  file_.reset(std::fopen(path.c_str(), "rb"));
  if (!file_) {
    reason_ = SystemReason();
    return;
  }
  buffer_ = std::make_unique_for_overwrite<char[]>(BufferSize);
  at_ = end_ = buffer_.get();
  Fill();
  SkipMark();
}

void LineReader::SkipMark() {
  if (std::string_view(at_, end_).starts_with(ByteOrderMark)) at_ += ByteOrderMark.size();
}

void LineReader::TakeBytes(std::string_view bytes) {
  if (bytes.find('\0') != bytes.npos) {
    buffer_ = std::make_unique_for_overwrite<char[]>(bytes.size());
    std::ranges::replace_copy(bytes, buffer_.get(), '\0', ' ');
    bytes = {buffer_.get(), bytes.size()};
  }
  at_ = bytes.data();
  end_ = at_ + bytes.size();
  SkipMark();
}

// Makes sure that there is something between at_ and end_, without NUL bytes; false at the end of
// the file.
bool LineReader::Fill() {
  if (at_ != end_) return true;
  if (!file_) return false;
  at_ = buffer_.get();
  char* const last = buffer_.get() + std::fread(buffer_.get(), 1, BufferSize, file_.get());
  end_ = last;
  if (std::ferror(file_.get())) reason_ = SystemReason();
  if (std::memchr(at_, '\0', end_ - at_)) std::replace(buffer_.get(), last, '\0', ' ');
  return at_ != end_;
}

bool LineReader::Read(std::string& line, int width) {
  // One byte more than is asked for tells a line that is cut from one that ends there with a CR.
  const std::size_t limit = static_cast<std::size_t>(width) * LongestLetter + 1;
  line.clear();
  if (!Fill()) return false;
  ++line_;
  for (bool more = true; more;) {
    const auto* lf = static_cast<const char*>(std::memchr(at_, '\n', end_ - at_));
    const char* stop = lf ? lf : end_;
    line.append(at_, std::min<std::size_t>(stop - at_, limit - line.size()));
    at_ = lf ? lf + 1 : end_;
    more = !lf && Fill();
  }
  if (line.size() < limit && line.ends_with('\r')) line.pop_back();
  line.resize(TrimRight(Cut(line, width)).size());
  return true;
}

LineWriter::~LineWriter() { Close(); }

bool LineWriter::Write(std::string_view line) {
  return file_.Write(line.data(), line.size()) && file_.Write("\n", 1);
}
