#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

namespace orv {

// One XML document inside a workbook file. The text stays in the object; nothing outside of it is ever fetched and
// entities of its own are not expanded.
class XmlPart {
 public:
  // Throws WorkbookError for a text that is not well-formed or whose tree would not fit the memory.
  XmlPart(std::string text, const std::string& fileName, const std::string& partName);
  XmlPart(const XmlPart&) = delete;
  XmlPart& operator=(const XmlPart&) = delete;

  pugi::xml_node root() const { return document_.document_element(); }

 private:
  std::string text_;
  pugi::xml_document document_;
};

// A name without its prefix: some writers put one before every element.
std::string_view LocalName(std::string_view name);

// The first child element of a local name, and the next one behind `node`; a null node when there is none.
pugi::xml_node Child(pugi::xml_node node, std::string_view localName);
pugi::xml_node NextLike(pugi::xml_node node);

}  // namespace orv
