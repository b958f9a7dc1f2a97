// The dialogs "ITO Input" and "TREOR90 Input", and the values that they open with.
#pragma once

#include "toolkit/resources.h"
#include "workspace/workspace.h"

extern const DialogResource kItoDialog, kTreorDialog;

void PutItoDefaults(Indexing& parameters);
void PutTreorDefaults(Indexing& parameters);
