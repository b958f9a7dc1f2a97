// What is to be done: recipes, files, and what makes the rows of their table.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "seriesrun/heldlist.h"
#include "seriesrun/options.h"
#include "seriesrun/recipe.h"
#include "seriesrun/rowrun.h"

namespace seriesrun {

struct Plan {
  std::vector<Recipe> recipes;  // the first one, and those for another start
  HeldList list;
  std::vector<std::string> columns;  // of the table
  std::string digest;                // of all that makes a row, in eight hexadecimal digits
  std::size_t first = 0, last = 0;   // the rows of the part: [first, last)
  std::size_t chunk = 1;             // rows of a chain; chunks are counted from row 0
  bool chain = false;
  std::vector<Condition> restart;
  int limit = 0;

  bool HasStarts() const { return chain || !restart.empty(); }
};

Places PlacesOfRow(const Plan& plan, std::size_t row);

// Reads recipes and list; the program must have started up. Throws SeriesError.
Plan MakePlan(const Options& options);

// The digest in the cell of the column "recipe" of a row: that of its plan.
std::string_view DigestIn(std::string_view cell);

// Does the recipes to up to three of the files. Throws SeriesError if none of them comes to the end
// and a line of the recipe could not be done at all: then the recipe is wrong, not the file.
void Rehearse(const Plan& plan);

// The line of the table for a row, without its end. `start` and `recipe` tell how it was done.
std::string TableLine(const Plan& plan, std::size_t row, const std::string& start,
                      std::size_t recipe, const RowResult& result);

}  // namespace seriesrun
