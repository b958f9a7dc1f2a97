// The byte in front of an input of fuzz_readers.
#pragma once

// Others than those below: the slot less one times the number of formats, and the format's
// place in the list.
inline constexpr unsigned char kFitFileSelector = 255;
inline constexpr unsigned char kListingSelector = 254;  // of an indexing engine
inline constexpr unsigned char kImportSelector = 253;   // told by what it holds
