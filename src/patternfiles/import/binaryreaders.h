// The readers of binary files; each throws NotReadable.
#pragma once

#include "patternfiles/import/formats.h"

MeasuredFile ReadBrukerRaw1(const ImportSource& source);  // "RAW "
MeasuredFile ReadBrukerRaw2(const ImportSource& source);  // "RAW2"
MeasuredFile ReadBrukerRaw3(const ImportSource& source);  // "RAW1.01"
MeasuredFile ReadBrukerRaw4(const ImportSource& source);  // "RAW4.00"
MeasuredFile ReadPhilipsRd(const ImportSource& source);   // "V3RD", "V5RD"

// Files that hold no scan, or one that cannot be read here: the reader says what they are.
bool IsOtherKind(std::string_view bytes);
MeasuredFile RefuseOtherKind(const ImportSource& source);
