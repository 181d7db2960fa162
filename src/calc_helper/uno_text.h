#pragma once

#include <rtl/ustring.hxx>
#include <string>
#include <string_view>

namespace orv::calc_helper {

// UTF-8 of a text of the office; half of a surrogate pair becomes the replacement character.
std::string Utf8(const rtl::OUString& text);
rtl::OUString Wide(std::string_view utf8);

}  // namespace orv::calc_helper
