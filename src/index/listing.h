// The listing of an indexing engine: line-printer text, whose formats are what the readers of
// listings hold on to.
#pragma once

#include <string>
#include <string_view>

#include "workspace/lines.h"
#include "workspace/record.h"

class Listing {
 public:
  explicit Listing(const std::string& path) : writer_(path) {}
  bool IsOpen() const { return writer_.IsOpen(); }
  // Writes the records of a format; a slash in it begins a new line.
  template <FormatText F, class... V>
  void Put(const V&... value) {
    Lines(WriteRecord<F>(value...));
  }
  // A text of one or more lines.
  void Lines(std::string_view text) {
    for (std::size_t end = 0; end != std::string_view::npos;) {
      end = text.find('\n');
      writer_.Write(text.substr(0, end));
      if (end != std::string_view::npos) text.remove_prefix(end + 1);
    }
  }
  // False if not all of it has been written.
  bool Close() { return writer_.Close(); }
  const std::string& Reason() const { return writer_.Reason(); }

 private:
  LineWriter writer_;
};
