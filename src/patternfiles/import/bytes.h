// The bytes of a file.
#pragma once

#include <string>

// Of one up to so many MiB. Throws NotReadable with the reason, as the end of a sentence.
std::string BytesOf(const std::string& path, int mostmib);
