// Text files line by line: one reader and one writer for all formats.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "toolkit/newfile.h"

// Why the system's last call failed, in words.
std::string SystemReason();

// As long as it lives, a LineReader of the path reads these bytes in place of the file, unless they
// are empty.
class HeldFile {
 public:
  HeldFile(const std::string& path, const std::string& bytes);
  ~HeldFile();
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;
};

// Reads a regular file in lines of at most `width` letters, longer ones cut. Line ends are LF,
// CRLF, or CR at the end of the file; a last line without an end counts, and a byte order mark in
// front is skipped. NUL bytes count as blanks. Memory stays bounded whatever the file holds.
class LineReader {
 public:
  // Directories, devices and unreadable files do not open.
  explicit LineReader(const std::string& path);
  bool IsOpen() const { return at_ != nullptr; }
  // The next line without its end and without trailing blanks; false at the end of the file.
  bool Read(std::string& line, int width = 256);
  const std::string& Path() const { return path_; }
  // Why the file did not open or could not be read to its end; empty as long as all is well.
  const std::string& Reason() const { return reason_; }
  // Number of the line read last.
  int LineNumber() const { return line_; }

 private:
  struct Closer {
    void operator()(std::FILE* f) const { std::fclose(f); }
  };
  std::string path_, reason_;
  int line_ = 0;
  std::unique_ptr<std::FILE, Closer> file_;
  std::unique_ptr<char[]> buffer_;
  const char* at_ = nullptr;
  const char* end_ = nullptr;
  void TakeBytes(std::string_view bytes);
  void SkipMark();
  bool Fill();
};

// Writes a text file and checks every step up to and including the close.
class LineWriter {
 public:
  // An existing file is replaced, once all has been written.
  explicit LineWriter(const std::string& path) : path_(path), file_(path) {}
  ~LineWriter();
  LineWriter(const LineWriter&) = delete;
  LineWriter& operator=(const LineWriter&) = delete;
  bool IsOpen() const { return file_.Stream() != nullptr; }
  // A line as given, and its end. False once something could not be written.
  bool Write(std::string_view line);
  // Flushes and closes; false if anything was not written.
  bool Close() { return file_.Keep(); }
  const std::string& Path() const { return path_; }
  // What failed first; empty as long as all is well.
  const std::string& Reason() const { return file_.Reason(); }

 private:
  std::string path_;
  NewFile file_;
};
