#include <exception>
#include <iostream>

#include "app/command_line.h"

#ifdef _WIN32
#include <io.h>
#define ORV_ISATTY _isatty
#else
#include <unistd.h>
#define ORV_ISATTY isatty
#endif

int main(int argc, char** argv) {
  try {
    const bool terminal = ORV_ISATTY(0) != 0 && ORV_ISATTY(2) != 0;
    return orv::RunCommandLine(argc, argv, {std::cin, std::cout, std::cerr, terminal});
  } catch (const std::exception& error) {
    std::cerr << "orvvalis: " << error.what() << '\n';
    return orv::kExitWorkbook;
  }
}
