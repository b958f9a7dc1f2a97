// The entries of a zip archive in memory, as libzip unpacks them.
#include "patternfiles/import/zip/archive.h"

#include <zip.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <memory>

#include "patternfiles/import/markup.h"

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Too large ones are 0.
std::vector<int> NumbersInName(std::string_view name) {
  std::vector<int> numbers;
  const char *at = name.data(), *const end = at + name.size();
  while ((at = std::find_if(at, end, IsDigit)) != end) {
    numbers.push_back(0);
    at = std::from_chars(at, end, numbers.back()).ptr;
  }
  return numbers;
}

// Some programs part the folders of an entry in the manner of their system.
bool IsLike(std::string_view name, std::string_view stem, std::string_view extension) {
  name.remove_prefix(name.find_last_of("/\\") + 1);  // 0 if there is none
  if (!name.starts_with(stem) || !name.ends_with(extension)) return false;
  if (name.size() < stem.size() + extension.size()) return false;
  const std::string_view digits =
      name.substr(stem.size(), name.size() - stem.size() - extension.size());
  return std::ranges::all_of(digits, IsDigit);
}

}  // namespace

Archive::Archive(std::string_view bytes) {
  constexpr zip_int64_t kMostEntries = 5000;
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
  archive_ = source ? zip_open_from_source(source, ZIP_RDONLY, &error) : nullptr;
  if (!archive_) {
    const std::string why = zip_error_strerror(&error);
    zip_source_free(source);
    zip_error_fini(&error);
    throw NotReadable("its archive is damaged: " + why);
  }
  const zip_int64_t count = zip_get_num_entries(archive_, 0);
  if (count > kMostEntries) {
    zip_discard(archive_);
    throw NotReadable("it is an archive of more than 5000 entries");
  }
  for (zip_int64_t i = 0; i < count; ++i) {
    const auto index = static_cast<unsigned long>(i);
    const char* name = zip_get_name(archive_, index, 0);
    if (name) entries_.push_back({name, NumbersInName(name), index});
  }
}

Archive::~Archive() { zip_discard(archive_); }

std::vector<Archive::Entry> Archive::Like(std::string_view stem, std::string_view extension) const {
  std::vector<Entry> like;
  for (const Entry& entry : entries_)
    if (IsLike(entry.name, stem, extension)) like.push_back(entry);
  std::ranges::stable_sort(like, {}, &Entry::numbers);
  return like;
}

std::string Archive::Read(const Entry& entry) {
  constexpr std::size_t kMostUnpacked = std::size_t{256} << 20;
  const std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> file(
      zip_fopen_index(archive_, entry.index, 0), zip_fclose);
  if (!file)
    throw NotReadable("its \"" + entry.name + "\" cannot be unpacked: " + zip_strerror(archive_));
  std::string text;
  static thread_local std::array<char, 1 << 16> part;
  zip_int64_t got = 0;
  while ((got = zip_fread(file.get(), part.data(), part.size())) > 0) {
    text.append(part.data(), static_cast<std::size_t>(got));
    unpacked_ += static_cast<std::size_t>(got);
    if (text.size() > kMostMarkup || unpacked_ > kMostUnpacked)
      throw NotReadable("its archive unpacks to more than 64 MiB an entry or 256 MiB in all");
  }
  if (got < 0)
    throw NotReadable("its \"" + entry.name +
                      "\" is damaged: " + zip_error_strerror(zip_file_get_error(file.get())));
  return text;
}
