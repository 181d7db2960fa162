#pragma once

#include <string>

namespace CLI {
class App;
}

namespace orv {

// The manual page of a program in the roff format of man(7), from the descriptions of its arguments: the program's own,
// then each command's. Groups without a name are left out, as in the help.
std::string ManPage(const CLI::App& program, const std::string& version);

}  // namespace orv
