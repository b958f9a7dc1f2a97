// The files of a list as they are held while they are done.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "series/seriestable.h"

namespace seriesrun {

// Every fork copies the tables of all pages of its process. A hundred thousand files as strings of
// their own are 25 MB, and made each fork half a millisecond dearer; in one text they are 3 MB.
class HeldList {
 public:
  HeldList() = default;
  explicit HeldList(const FileList& list);

  std::size_t Count() const { return ends_.size() / Width(); }
  std::string Path(std::size_t file) const { return Field(file * Width()); }
  // Of the columns beside "file", in their order.
  std::vector<std::string> Cells(std::size_t file) const;
  const std::vector<std::string>& Columns() const { return columns_; }

 private:
  std::size_t Width() const { return 1 + columns_.size(); }
  std::string Field(std::size_t k) const;

  std::vector<std::string> columns_;
  std::string text_;               // paths and cells, one behind the other
  std::vector<std::size_t> ends_;  // of each in the text
};

}  // namespace seriesrun
