#include "analysis/report_fixture.h"
#include <iostream>
namespace orv::testing {
using Scratch = ReportFixture;
TEST_F(Scratch, Show) {
  text.directives = "T 1 2.5 -3";
  text.primitives.push_back(kTurningWing);
  Report(1);
  for (auto& f : FilesIn()) { std::cout << "#### " << f << "\n"; int k=0; for (auto& l : LinesOf(Folder()+f)) if (k++ < 150) std::cout << l << "|\n"; }
  for (auto& b : dialogs.boxes) std::cout << "BOX " << b.text << "\n";
  for (auto& b : dialogs.log) std::cout << "LOG " << b << "\n";
}
}
