#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orv {

// The door by which LibreOffice lets other programs look at its documents, as its connections are spelled:
// "pipe,name=NAME" or "socket,host=HOST,port=PORT".
inline constexpr std::string_view kCalcDoor = "pipe,name=orvvalis";

// The door of a user's setting: "2002" and "host:2002" are sockets, any other word is the name of a pipe; an empty text
// is kCalcDoor. Failure 5 for a text with signs that no door has.
std::string CalcDoorOf(std::string_view setting);

// The command by which the user opens the door, with LibreOffice running or not. It names no kind of document: a
// running LibreOffice would put a new one in front of the user's.
std::string CalcDoorCommand(std::string_view door = kCalcDoor);

// Gives that command for the user, with more arguments of the office program if wanted. False when no LibreOffice is
// installed. The office program is no child of this one and outlives it. Not on Windows, where the link is to Excel.
bool OpenCalcDoor(std::string_view door = kCalcDoor, const std::vector<std::string>& more = {});

}  // namespace orv
