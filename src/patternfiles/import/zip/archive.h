// The entries of a zip archive in memory. Nothing is ever written, so that names are but names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

class Archive {
 public:
  // Of bytes that outlive it. Throws NotReadable if they are no archive, or one of more than 5000
  // entries.
  explicit Archive(std::string_view bytes);
  ~Archive();
  Archive(const Archive&) = delete;
  Archive& operator=(const Archive&) = delete;

  struct Entry {
    std::string name;          // "Data12/Profile0.txt"
    std::vector<int> numbers;  // those in it: 12, 0
    unsigned long index;       // in the archive
  };
  const std::vector<Entry>& entries() const { return entries_; }
  // Entries called STEM, digits if any and EXTENSION, in whatever folder, by their numbers.
  std::vector<Entry> Like(std::string_view stem, std::string_view extension) const;
  // Unpacks an entry. Throws NotReadable if it is damaged or locked, larger than 64 MiB, or if all
  // that has been unpacked comes to more than 256 MiB.
  std::string Read(const Entry& entry);

 private:
  struct zip* archive_;
  std::vector<Entry> entries_;
  std::size_t unpacked_ = 0;
};
