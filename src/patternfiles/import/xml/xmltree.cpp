// Finding one's way in an XML file, as pugixml parses it.
#include "patternfiles/import/xml/xmltree.h"

#include <algorithm>

#include "patternfiles/import/markup.h"
#include "patternfiles/import/textlines.h"
#include "workspace/text.h"

void ParseXml(std::string_view bytes, pugi::xml_document& tree) {
  if (bytes.size() > kMostMarkup) throw NotReadable("it holds more than 64 MiB of XML");
  const pugi::xml_parse_result result = tree.load_buffer(bytes.data(), bytes.size());
  if (result) return;
  const auto offset = static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0));
  const std::string_view before = bytes.substr(0, std::min(offset, bytes.size()));
  throw NotReadable("line " + std::to_string(1 + std::ranges::count(before, '\n')) +
                    " is no XML: " + result.description());
}

std::string_view LocalName(const char* name) {
  const std::string_view text = name;
  return text.substr(text.find(':') + 1);  // 0 if there is none
}

bool IsNamed(pugi::xml_node node, std::string_view name) { return LocalName(node.name()) == name; }

pugi::xml_node Child(pugi::xml_node node, std::string_view name) {
  return node.find_child([&](pugi::xml_node child) { return IsNamed(child, name); });
}

pugi::xml_node NextLike(pugi::xml_node node) {
  pugi::xml_node next = node.next_sibling();
  while (next && LocalName(next.name()) != LocalName(node.name())) next = next.next_sibling();
  return next;
}

pugi::xml_node Below(pugi::xml_node node, std::string_view name) {
  return node.find_node([&](pugi::xml_node each) { return IsNamed(each, name); });
}

std::string_view TextOf(pugi::xml_node node) { return Stripped(node.text().get()); }

std::string_view Told(pugi::xml_node node, std::string_view name) {
  for (const pugi::xml_attribute& attribute : node.attributes())
    if (LocalName(attribute.name()) == name) return Stripped(attribute.value());
  return TextOf(Child(node, name));
}

double ValueOf(pugi::xml_node node) {
  const auto number = NumberOf(TextOf(node));
  return number ? *number : NumberOf(Told(node, "Value")).value_or(0);
}
