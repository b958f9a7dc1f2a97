// What the commands of the Modify menu share.
#pragma once

#include "workspace/slots.h"

// True if the active pattern is that of slot 1. If not, says so to the user.
bool RawOnlyCheck();

// Stores a result, unless it is not a finite number: such a value stays as it was.
void SetIfFinite(float& value, float result);
