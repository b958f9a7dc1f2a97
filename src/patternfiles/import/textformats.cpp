// The text formats.
#include "patternfiles/import/formats.h"

std::span<const ImportFormat> TextFormats() { return {}; }
