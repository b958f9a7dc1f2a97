// The command line of the program that runs series.
#include "seriesrun/options.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string_view>
#include <thread>

namespace seriesrun {
namespace {

constexpr const char* kUsage =
    "Usage: quillagram-series [OPTION...] RECIPE [FILE...]\n"
    "       quillagram-series --join TABLE PART... [--list LIST]\n"
    "Does what the lines of RECIPE say to every FILE and writes a table with one row for each.\n"
    "What the table holds already is not done again.\n"
    "\n"
    "  --list LIST        the files: one path a line, or a .csv with a column \"file\";\n"
    "                     - is standard input\n"
    "  --table TABLE      where the rows go; RECIPE's name with .csv if not given\n"
    "  --jobs N           processes at once; one for each core if not given\n"
    "  --part K/N         only the K-th of N parts of the list\n"
    "  --chain            a fit begins with the result of the file before\n"
    "  --chunk N          files of a chain, 100 if not given; parts hold whole chunks\n"
    "  --restart-when C   C as \"Rwp>12\" or \"COLUMN<0.5\": the file is done again from the\n"
    "                     recipe's own values, and the better result is kept; may be\n"
    "                     given several times\n"
    "  --restart-with R   a further recipe to be tried then\n"
    "  --limit SECONDS    for one file, 600 if not given; 0: as long as it takes\n"
    "  --again            rows of the table that tell a failure are done again\n"
    "  --settings WHAT    of the configuration file: none (if not given) or read\n"
    "  --check            only look whether recipe and list can be used\n"
    "  --join TABLE       put the tables of parts together\n"
    "  --progress         tell the progress in lines for other programs\n"
    "  --help             this text\n"
    "  --version          the version\n"
    "  --                 what follows are files, even if they begin with -\n";

[[noreturn]] void Answer(const char* text) {
  std::fputs(text, stdout);
  std::exit(0);
}

[[noreturn]] void Refuse(const std::string& reason) {
  std::fprintf(stderr, "quillagram-series: %s\nTry quillagram-series --help\n", reason.c_str());
  std::exit(2);
}

int Whole(const std::string& option, std::string_view text, int lowest, int highest) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  if (read.ptr != end || read.ec != std::errc() || number < lowest || number > highest)
    Refuse(option + " takes a whole number from " + std::to_string(lowest) + " to " +
           std::to_string(highest));
  return number;
}

Condition ConditionOf(const std::string& text) {
  if (const auto condition = ReadCondition(text)) return *condition;
  Refuse("--restart-when takes a column, > or <, and a number, as \"Rwp>12\"");
}

// "3/10"
void TakePart(Options& options, const std::string& text) {
  constexpr int kMost = 1000000;
  const std::size_t slash = std::min(text.find('/'), text.size());
  const std::string_view whole = std::string_view(text).substr(std::min(slash + 1, text.size()));
  options.parts = Whole("--part K/N: N", whole, 1, kMost);
  options.part = Whole("--part K/N: K", std::string_view(text).substr(0, slash), 1, options.parts);
}

struct Option {
  const char* name;
  bool value;  // the next word belongs to it
  std::function<void(Options&, const std::string&)> take;
};

const Option kOptions[] = {
    {"--help", false, [](Options&, const std::string&) { Answer(kUsage); }},
    {"-h", false, [](Options&, const std::string&) { Answer(kUsage); }},
    {"--version", false,
     [](Options&, const std::string&) { Answer("quillagram-series " QUILLAGRAM_VERSION "\n"); }},
    {"--list", true,
     [](Options& o, const std::string& word) {
       if (!o.list.empty()) Refuse("one list, please");
       o.list = word;
     }},
    {"--table", true, [](Options& o, const std::string& word) { o.table = word; }},
    {"--jobs", true,
     [](Options& o, const std::string& word) { o.jobs = Whole("--jobs", word, 1, 1024); }},
    {"--chunk", true,
     [](Options& o, const std::string& word) { o.chunk = Whole("--chunk", word, 1, 1000000); }},
    {"--part", true, TakePart},
    {"--chain", false, [](Options& o, const std::string&) { o.chain = true; }},
    {"--restart-when", true,
     [](Options& o, const std::string& word) { o.restart.push_back(ConditionOf(word)); }},
    {"--restart-with", true,
     [](Options& o, const std::string& word) { o.otherrecipes.push_back(word); }},
    {"--limit", true,
     [](Options& o, const std::string& word) { o.limit = Whole("--limit", word, 0, 1000000); }},
    {"--settings", true,
     [](Options& o, const std::string& word) {
       if (word != "none" && word != "read") Refuse("--settings is none or read");
       o.settings = word;
     }},
    {"--again", false, [](Options& o, const std::string&) { o.again = true; }},
    {"--check", false, [](Options& o, const std::string&) { o.check = true; }},
    {"--join", false, [](Options& o, const std::string&) { o.join = true; }},
    {"--progress", false, [](Options& o, const std::string&) { o.progress = true; }},
};

// The words that are no options.
std::vector<std::string> TakeOptions(Options& options, const std::vector<std::string>& words) {
  std::vector<std::string> others;
  for (auto word = words.begin(); word != words.end(); ++word) {
    if (*word == "--") {
      others.insert(others.end(), word + 1, words.end());
      break;
    }
    if (word->size() < 2 || word->front() != '-') {
      others.push_back(*word);
      continue;
    }
    const auto option =
        std::ranges::find_if(kOptions, [&](const Option& one) { return *word == one.name; });
    if (option == std::end(kOptions)) Refuse("unknown option " + *word);
    if (option->value && word + 1 == words.end()) Refuse(*word + " needs a word behind it");
    const std::string& value = option->value ? *++word : *word;
    option->take(options, value);
  }
  return others;
}

void CheckTogether(const Options& options) {
  if (options.join) {
    if (options.table.empty()) Refuse("--join needs the name of the table");
    if (options.files.empty()) Refuse("--join needs the tables of the parts");
    return;
  }
  if (options.recipe.empty()) Refuse("which recipe?");
  if (options.files.empty() && options.list.empty()) Refuse("which files?");
  if (!options.files.empty() && !options.list.empty())
    Refuse("files come from the command line or from a list");
  if (!options.otherrecipes.empty() && options.restart.empty())
    Refuse("--restart-with needs --restart-when");
}

}  // namespace

Options ReadOptions(int argc, char** argv) {
  Options options;
  options.jobs = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
  options.files = TakeOptions(options, {argv + std::min(argc, 1), argv + argc});
  std::string& first = options.join ? options.table : options.recipe;
  if (!options.files.empty() && (!options.join || options.table.empty())) {
    first = options.files.front();
    options.files.erase(options.files.begin());
  }
  CheckTogether(options);
  if (options.table.empty())
    options.table = std::filesystem::path(options.recipe).stem().string() + ".csv";
  return options;
}

}  // namespace seriesrun
