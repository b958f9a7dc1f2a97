// A lattice as the table of found cells shows it.
#pragma once

#include <optional>
#include <span>

#include "index/find/assess.h"
#include "index/find/findcell.h"

// Its conventional cell with e.s.d.s and figures of merit, and which of all lines it indexes. What
// belongs to the table is left blank: origins, relation and tie. None if the lines do not tell one
// of its constants.
std::optional<FoundCell> Described(std::span<const ObservedLine> lines,
                                   const Assessment& assessment);
