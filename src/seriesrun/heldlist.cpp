// The files of a list as they are held while they are done.
#include "seriesrun/heldlist.h"

namespace seriesrun {

HeldList::HeldList(const FileList& list) : columns_(list.columns) {
  const auto add = [this](const std::string& field) {
    text_ += field;
    ends_.push_back(text_.size());
  };
  for (const FileList::File& file : list.files) {
    add(file.path);
    for (const std::string& cell : file.cells) add(cell);
  }
}

std::vector<std::string> HeldList::Cells(std::size_t file) const {
  std::vector<std::string> cells;
  for (std::size_t k = 0; k < columns_.size(); ++k) cells.push_back(Field(file * Width() + 1 + k));
  return cells;
}

std::string HeldList::Field(std::size_t k) const {
  const std::size_t begin = k == 0 ? 0 : ends_[k - 1];
  return text_.substr(begin, ends_[k] - begin);
}

}  // namespace seriesrun
