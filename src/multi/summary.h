// The summary file: the counts of many patterns side by side in one table.
#pragma once

#include <string>

#include "workspace/command.h"

// A file that is not there is made; one that holds something else than a summary is refused.
Outcome OpenSumFile(const std::string& path);
// Puts the pattern behind the last column. The table on disk is the old one or the new one,
// whatever happens.
Outcome AddToSumFile();
Outcome EditSumFile();
Outcome CloseSumFile();
