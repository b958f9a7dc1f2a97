// Finding one's way in an XML file: names without name space, nothing that recurses.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

// Throws NotReadable with the line at which the text breaks off.
void ParseXml(std::string_view bytes, pugi::xml_document& tree);

std::string_view LocalName(const char* name);
bool IsNamed(pugi::xml_node node, std::string_view name);
// The first of the node's own children, or the next of its siblings, with the name.
pugi::xml_node Child(pugi::xml_node node, std::string_view name);
pugi::xml_node NextLike(pugi::xml_node node);
// The first node below with the name, at any depth.
pugi::xml_node Below(pugi::xml_node node, std::string_view name);
// Its text, without blanks at the ends.
std::string_view TextOf(pugi::xml_node node);
// The attribute or the text of the child with the name; blank without either.
std::string_view Told(pugi::xml_node node, std::string_view name);
// The number that it tells as its text, or as its attribute "Value"; 0 if none.
double ValueOf(pugi::xml_node node);
