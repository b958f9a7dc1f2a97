// "Find cell": the search for the cell of the peaks on show, and what the user does with its table.
#pragma once

#include "workspace/command.h"

// Searches for the cell of the peak list, of a peak file that is asked for where there is none.
// Shows the table beside the plot until the user takes a cell, which `selfindcell` then names.
Outcome AskFoundCell(Arguments& arguments);
// The cell chosen becomes that of the whole-pattern fit, with the class, centering and zero.
Outcome ApplyFoundCell();
