// A recipe: a transcript with places for a file and what a list tells of it.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace seriesrun {

// What stands for "{file}" and the like, without the braces.
using Places = std::map<std::string, std::string>;

// What every file has beside the columns of its list: file, name, folder, number.
Places PlacesOf(const std::string& file, std::size_t number);

struct Recipe {
  std::string name;  // of its file, without directory and extension
  std::vector<std::string> lines;
  std::vector<std::string> columns;  // that its gets fill, in their order
};

// Reads a recipe and looks at it line by line; the program must have started up. `listcolumns` are
// places, too. Throws SeriesError, which names the line.
Recipe ReadRecipe(const std::string& path, const std::vector<std::string>& listcolumns);

// A place of a line for which the list has nothing; blank if there is none.
std::string BlankPlace(const std::string& line, const Places& places);

// A line with its places filled in.
std::string FilledIn(const std::string& line, const Places& places);

}  // namespace seriesrun
