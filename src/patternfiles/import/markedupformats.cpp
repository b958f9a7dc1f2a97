// The markedup formats.
#include "patternfiles/import/formats.h"

std::span<const ImportFormat> MarkedUpFormats() { return {}; }
