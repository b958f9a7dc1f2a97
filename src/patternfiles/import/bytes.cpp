// The bytes of a file.
#include "patternfiles/import/bytes.h"

#include <cstdint>
#include <filesystem>
#include <fstream>

#include "patternfiles/import/measured.h"
#include "workspace/lines.h"

std::string BytesOf(const std::string& path, int mostmib) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(path, error);
  if (error) throw NotReadable(error.message());
  if (size > static_cast<std::uintmax_t>(mostmib) << 20)
    throw NotReadable("it is larger than " + std::to_string(mostmib) + " MiB");
  std::string bytes(static_cast<std::size_t>(size), '\0');
  std::ifstream file(path, std::ios::binary);
  if (!file.read(bytes.data(), static_cast<std::streamsize>(size)))
    throw NotReadable(SystemReason());
  return bytes;
}
