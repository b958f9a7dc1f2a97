// Reading recipes.
#include "seriesrun/recipe.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include "series/seriestable.h"
#include "toolkit/replay/actions.h"
#include "toolkit/replay/transcript.h"
#include "workspace/lines.h"

namespace seriesrun {
namespace {

using replay::Word;

constexpr int kLongestLine = 65536;
constexpr std::size_t kMostColumns = 1000;

// Where a place begins and ends, braces included; false if the text has none from `begin` on.
bool FindPlace(const std::string& text, std::size_t& begin, std::size_t& end) {
  begin = text.find('{', begin);
  end = begin == text.npos ? text.npos : text.find('}', begin);
  if (end == text.npos) return false;
  ++end;
  return true;
}

std::string InPlaces(const std::string& text, const Places& places) {
  std::string filled;
  std::size_t from = 0, begin = 0, end = 0;
  for (; FindPlace(text, begin, end); begin = from = end) {
    filled += text.substr(from, begin - from);
    const auto place = places.find(text.substr(begin + 1, end - begin - 2));
    if (place == places.end())
      replay::Fail(text.substr(begin, end - begin) + " stands for nothing");
    filled += place->second;
  }
  return filled + text.substr(from);
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? "\"\"" : std::string(1, c);
  return quoted + '"';
}

bool HasPlace(const Word& word) {
  std::size_t begin = 0, end = 0;
  return FindPlace(word.text, begin, end);
}

// What is wrong with a single line is told by replay::Fail.
void LookAt(const std::vector<Word>& words, const Places& places, Recipe& recipe) {
  replay::CheckLine(words);
  for (const Word& word : words) InPlaces(word.text, places);
  const std::string& action = words[0].text;
  if (action == "get") {
    const auto columns = replay::ColumnsOf(words);
    if (recipe.columns.size() + columns.size() > kMostColumns)
      replay::Fail("more than " + std::to_string(kMostColumns) + " columns");
    recipe.columns.insert(recipe.columns.end(), columns.begin(), columns.end());
  }
  if (action == "plot" && !HasPlace(words[1]))
    replay::Fail("every file would write the same picture: put {name} into its name");
}

void RefuseTwice(const Recipe& recipe, const std::vector<std::string>& listcolumns) {
  std::set<std::string> names{std::string(kFileColumn),  std::string(kDateColumn),
                              std::string(kStartColumn), std::string(kRecipeColumn),
                              std::string(kBoxesColumn), std::string(kFailedColumn)};
  for (const auto* columns : {&listcolumns, &recipe.columns})
    for (const std::string& column : *columns)
      if (column.empty())
        throw SeriesError{"the table would have a column without a name"};
      else if (!names.insert(column).second)
        throw SeriesError{"the table would have two columns \"" + column + "\""};
}

std::vector<std::string> LinesOf(const std::string& path) {
  LineReader file(path);
  std::vector<std::string> lines;
  for (std::string line; file.Read(line, kLongestLine);) lines.push_back(line);
  if (!file.Reason().empty()) throw SeriesError{"cannot read " + path + ": " + file.Reason()};
  return lines;
}

}  // namespace

Places PlacesOf(const std::string& file, std::size_t number) {
  const std::filesystem::path path(file);
  const std::string folder = path.parent_path().string();
  return {{"file", file},
          {"name", path.stem().string()},
          {"folder", folder.empty() ? "." : folder},
          {"number", std::to_string(number)}};
}

Recipe ReadRecipe(const std::string& path, const std::vector<std::string>& listcolumns) {
  Recipe recipe;
  recipe.name = std::filesystem::path(path).stem().string();
  recipe.lines = LinesOf(path);
  Places places = PlacesOf("", 0);
  for (const std::string& column : listcolumns) places[column] = "";
  std::size_t number = 0;
  std::string complaint;
  replay::Redirect([&](const std::string& event) { complaint = event; },
                   [&] {
                     const std::string reason = complaint.substr(complaint.rfind('\t') + 1);
                     throw SeriesError{path + ", line " + std::to_string(number) + ": " + reason};
                   });
  bool opens = false;
  for (const std::string& line : recipe.lines) {
    ++number;
    const auto words = replay::WordsOf(line);
    if (words.empty()) continue;
    LookAt(words, places, recipe);
    opens = opens || (words[0].text == "open" && words[1].text.find("{file}") != std::string::npos);
  }
  if (!opens) throw SeriesError{path + " is no recipe: no line opens \"{file}\""};
  RefuseTwice(recipe, listcolumns);
  return recipe;
}

std::string BlankPlace(const std::string& line, const Places& places) {
  std::size_t begin = 0, end = 0;
  for (const Word& word : replay::WordsOf(line))
    for (begin = 0; FindPlace(word.text, begin, end); begin = end) {
      const auto place = places.find(word.text.substr(begin + 1, end - begin - 2));
      if (place != places.end() && place->second.empty()) return place->first;
    }
  return "";
}

std::string FilledIn(const std::string& line, const Places& places) {
  if (line.find('{') == line.npos) return line;
  std::string filled;
  for (const Word& word : replay::WordsOf(line)) {
    const bool bare = !word.quoted && !HasPlace(word);
    filled += (bare ? word.text : Quoted(InPlaces(word.text, places))) + ' ';
  }
  return filled;
}

}  // namespace seriesrun
