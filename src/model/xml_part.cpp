#include "model/xml_part.h"

#include <algorithm>
#include <utility>

#include "model/workbook_contents.h"

namespace orv {
namespace {

// The tree's memory is bounded before it is built: an element takes 64 bytes, an attribute 40.
constexpr std::size_t kMaxTreeBytes = std::size_t{1536} << 20U;

std::size_t TreeBytes(std::string_view text) {
  std::size_t bytes = 0;
  for (std::size_t k = 0; k + 1 < text.size(); ++k) {
    if (text[k] == '<' && text[k + 1] != '/') bytes += 128;  // with the text behind it
    if (text[k] == '=') bytes += 40;
  }
  return bytes;
}

}  // namespace

XmlPart::XmlPart(std::string text, const std::string& fileName, const std::string& partName) : text_(std::move(text)) {
  if (TreeBytes(text_) > kMaxTreeBytes) {
    throw WorkbookError(fileName, "is too large: its part " + QuotedPart(partName) + " has too many elements.");
  }
  // White space alone counts between the spans of a paragraph, hence parse_ws_pcdata.
  const unsigned options = pugi::parse_default | pugi::parse_ws_pcdata | pugi::parse_embed_pcdata;
  const pugi::xml_parse_result result = document_.load_buffer_inplace(text_.data(), text_.size(), options);
  if (!result) {
    throw WorkbookError(fileName, "is damaged: its part " + QuotedPart(partName) + " is not well-formed XML (" +
                                      result.description() + " at byte " + std::to_string(result.offset) + ").");
  }
}

std::string_view LocalName(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

pugi::xml_node Child(pugi::xml_node node, std::string_view localName) {
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
    if (child.type() == pugi::node_element && LocalName(child.name()) == localName) return child;
  }
  return {};
}

pugi::xml_node NextLike(pugi::xml_node node) {
  const std::string_view name = LocalName(node.name());
  for (node = node.next_sibling(); node; node = node.next_sibling()) {
    if (node.type() == pugi::node_element && LocalName(node.name()) == name) return node;
  }
  return {};
}

}  // namespace orv
