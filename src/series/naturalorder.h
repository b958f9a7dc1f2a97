// The order of names that people expect.
#pragma once

#include <string_view>

// Whether a name stands before another: numbers in them count as such, 2 before 10.
bool NaturalOrder(std::string_view one, std::string_view other);
