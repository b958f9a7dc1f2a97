// The indexing engines as sources of cells for the search.
#pragma once

#include <span>
#include <string>

#include "index/driver.h"
#include "index/find/findcell.h"

// Runs the engine with its default parameters on the lines, in a directory of its own that goes
// away again, and proposes the cells of its listing. Touches nothing but `failure`, which tells
// why the engine could not run; it has to live as long as the source.
CellSource EngineSource(const IndexingEngine& engine, std::span<const ObservedLine> lines,
                        float wavelength, std::string& failure);
