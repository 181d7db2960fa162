#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Texts are UTF-8 throughout. "Character" below means a code point, so that limits such as 64 characters hold for
// accented titles too. A text that is not valid UTF-8 is taken byte by byte.
namespace orv {

inline constexpr std::string_view kHardBlank = "\xC2\xA0";

// Without the blanks at both ends. Only the blank itself counts: a tab stays.
std::string Trim(std::string_view text);

// Upper and lower case of the Latin, Greek and Cyrillic letters; any other character stays.
std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);
bool Contains(std::string_view text, std::string_view part);
bool StartsWith(std::string_view text, std::string_view part);

// Number of characters, and the first `count` of them.
std::size_t CharacterCount(std::string_view text);
std::string LeftCharacters(std::string_view text, std::size_t count);

// Chr(160) turned into a blank.
std::string SoftBlanks(std::string_view text);

// Bytes of the Windows-1252 code page as UTF-8, and back; a character outside the code page becomes "?".
std::string Utf8FromWindows1252(std::string_view bytes);
std::string Windows1252FromUtf8(std::string_view text);

bool IsValidUtf8(std::string_view text);

}  // namespace orv
