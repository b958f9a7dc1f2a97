// Text files line by line: one reader and one writer for all formats.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

// Reads a regular file in lines of at most `width` characters, longer ones cut. Line ends are LF,
// CRLF, or CR at the end of the file; a last line without an end counts, and a byte order mark in
// front is skipped. NUL bytes count as blanks. Memory stays bounded whatever the file holds.
class LineReader {
 public:
  // Directories, devices and unreadable files do not open.
  explicit LineReader(const std::string& path);
  bool IsOpen() const { return file_ != nullptr; }
  // The next line without its end and without trailing blanks; false at the end of the file.
  bool Read(std::string& line, int width = 256);

 private:
  struct Closer {
    void operator()(std::FILE* f) const { std::fclose(f); }
  };
  std::unique_ptr<std::FILE, Closer> file_;
  std::unique_ptr<char[]> buffer_;
  const char* at_ = nullptr;
  const char* end_ = nullptr;
  bool Fill();
};

// Writes a text file and checks every step up to and including the close.
class LineWriter {
 public:
  // An existing file is replaced.
  explicit LineWriter(const std::string& path);
  ~LineWriter();
  LineWriter(const LineWriter&) = delete;
  LineWriter& operator=(const LineWriter&) = delete;
  bool IsOpen() const { return file_ != nullptr; }
  // A line as given, and its end. False once something could not be written.
  bool Write(std::string_view line);
  // Flushes and closes; false if anything was not written.
  bool Close();

 private:
  std::FILE* file_;
  bool good_;
};
