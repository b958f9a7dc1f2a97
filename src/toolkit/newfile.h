// A file that is being written.
#pragma once

#include <cstdio>
#include <string>

// Where a file of the name exists, it is replaced as a whole at the end, so that a full disk or a
// crash leaves it as it was; its permissions stay, and a symbolic link goes on leading to it. A
// file that was not there, and what is no regular file, is written in place.
class NewFile {
 public:
  explicit NewFile(const std::string& path);
  // What has not been kept does not replace anything.
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  // Null if it could not be opened.
  std::FILE* Stream() const { return stream_; }
  bool Write(const char* bytes, std::size_t count);
  // Closes it and puts it in its place; false if anything has failed.
  bool Keep();
  // What failed first; empty as long as all is well.
  const std::string& Reason() const { return reason_; }

 private:
  bool Checked(bool success);
  std::string target_;  // behind symbolic links
  std::string fresh_;   // the file beside it that is to replace it; blank: written in place
  std::string reason_;
  std::FILE* stream_ = nullptr;
};
