#pragma once

#include <string>

namespace orv {

// Finds a file or folder that comes with the program, such as "docs/README.md" or "textures": beside an installed
// program in ../share/orvvalis, beside a built one in the folders above it. Empty when it is nowhere. `program` is the
// full name of the program's file.
std::string FindInstalled(const std::string& program, const std::string& name);

// The full name of the running program's file; empty where the system does not tell.
std::string ProgramFile();

}  // namespace orv
