// The byte in front of an input of fuzz_readers.
#pragma once

// Others than that of a fit file: the slot less one times the number of formats, and the format's
// place in the list.
inline constexpr unsigned char kFitFileSelector = 255;
