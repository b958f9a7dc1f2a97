// Texts of other encodings.
#pragma once

#include <string>
#include <string_view>

// In UTF-8 and without byte order mark, which also tells UTF-16. Half a surrogate pair comes out as
// a question mark.
std::string AsUtf8(std::string_view bytes);
