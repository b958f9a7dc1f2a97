// The binary formats.
#include "patternfiles/import/formats.h"

std::span<const ImportFormat> BinaryFormats() { return {}; }
