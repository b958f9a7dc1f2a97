// The blocks of a CIF, as gemmi parses them.
#include "patternfiles/import/gemmi/cifblocks.h"

#include <algorithm>
#include <cmath>
#include <gemmi/cif.hpp>

#include "patternfiles/import/markup.h"
#include "patternfiles/import/textlines.h"
#include "patternfiles/import/utf8.h"
#include "workspace/text.h"

namespace {

namespace cif = gemmi::cif;

// "_pd_meas.counts_total" is "_pd_meas_counts_total", "_pd_meas_overall.2theta_range_min" is
// "_pd_meas_2theta_range_min".
std::string OldTag(const std::string& tag) {
  std::string old = LowerText(tag);
  constexpr std::string_view kOverall = "_overall.";
  if (const std::size_t at = old.find(kOverall); at != old.npos)
    old.replace(at, kOverall.size(), "_");
  std::ranges::replace(old, '.', '_');
  return old;
}

// The first of several equal names counts.
CifBlock Named(const cif::Block& source) {
  CifBlock block{source.name, {}};
  for (const cif::Item& item : source.items) {
    if (item.type == cif::ItemType::Pair)
      block.values.try_emplace(OldTag(item.pair[0]), CifValues{&item.pair[1], 1, 1});
    if (item.type != cif::ItemType::Loop) continue;
    const auto& [tags, values] = item.loop;
    const std::size_t rows = values.size() / tags.size();
    for (std::size_t i = 0; rows > 0 && i < tags.size(); ++i)
      block.values.try_emplace(OldTag(tags[i]), CifValues{&values[i], tags.size(), rows});
  }
  return block;
}

// NUL bytes and the like as blanks, and lines that end with a carriage return alone.
std::string Mended(std::string_view bytes) {
  std::string text = AsUtf8(bytes);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    if (c == '\r' && (i + 1 == text.size() || text[i + 1] != '\n')) text[i] = '\n';
    if (c < ' ' && c != '\t' && c != '\r' && c != '\n') text[i] = ' ';
  }
  return text;
}

bool IsUnknown(std::string_view value) { return value.empty() || value == "?" || value == "."; }

}  // namespace

const CifValues* CifBlock::Find(std::string_view tag) const {
  const auto found = values.find(tag);
  return found == values.end() ? nullptr : &found->second;
}

std::optional<double> CifBlock::Number(std::string_view tag) const {
  const CifValues* found = Find(tag);
  const auto number = found && found->count == 1 ? CifNumberIn((*found)[0]) : std::nullopt;
  return number ? std::optional(number->value) : std::nullopt;
}

std::string CifBlock::Text(std::initializer_list<const char*> tags) const {
  for (const char* tag : tags) {
    const CifValues* found = Find(tag);
    const std::string text = found ? CifText((*found)[0]) : "";
    if (!text.empty()) return text;
  }
  return "";
}

std::string CifText(const std::string& value) {
  const std::string text = OnOneLine(Stripped(cif::as_string(value)));
  return IsUnknown(text) ? "" : text;
}

CifBlocks ParseCif(std::string_view bytes) {
  const std::string text = Mended(bytes);
  const auto document = std::make_shared<cif::Document>();
  try {
    cif::parse_input(*document, tao::pegtl::memory_input<>(text, "CIF"));
  } catch (const tao::pegtl::parse_error& error) {
    const std::string why(error.message());
    throw NotReadable("line " + std::to_string(error.positions().front().line) + " is no CIF" +
                      (why == "parse error" ? "" : ": " + why));
  }
  CifBlocks blocks;
  for (const cif::Block& block : document->blocks) blocks.push_back(Named(block));
  blocks.document = document;
  return blocks;
}

std::optional<CifNumber> CifNumberIn(std::string_view text) {
  if (text.size() > 1 && (text[0] == '\'' || text[0] == '"'))
    text = text.substr(1, text.size() - 2);
  const std::size_t open = std::min(text.find('('), text.size());
  const auto value = NumberOf(text.substr(0, open));
  if (!value) return std::nullopt;
  CifNumber number{*value};
  const std::size_t close = text.find(')', open);
  if (close == text.npos) return number;
  const std::string_view digits = text.substr(open + 1, close - open - 1);
  const std::size_t point = text.substr(0, open).find('.');
  const bool scaled = point != text.npos && digits.find('.') == digits.npos;
  const double last = scaled ? std::pow(10.0, -static_cast<double>(open - point - 1)) : 1;
  number.su = NumberOf(digits).value_or(0) * last;
  return number;
}

std::vector<double> CifNumbersIn(const CifValues& values) {
  std::vector<double> numbers(values.count, std::nan(""));
  for (std::size_t i = 0; i < values.count; ++i) {
    if (IsUnknown(values[i])) continue;
    const auto number = CifNumberIn(values[i]);
    constexpr int kShown = 20;
    if (!number)
      throw NotReadable("it holds \"" + OnOneLine(Cut(values[i], kShown)) +
                        "\" where a number should be");
    numbers[i] = number->value;
  }
  return numbers;
}
