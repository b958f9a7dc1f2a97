// The primitive axes of centred cells.
#pragma once

#include "index/find/form.h"

// As sums of the conventional axes, by the letter of the centering: P, A, B, C, I, F, or R on
// hexagonal axes (obverse). Any other letter is P.
const Axes& PrimitiveAxes(char centering);
