#pragma once

#include <string>
#include <vector>

namespace orv::testing {

// A model sheet as text: directives, one row a primitive ("material\tspecification"), and the database.
struct ModelText {
  std::string title = "Test model";
  std::string directives;
  std::vector<std::string> primitives = {
      "T5\tThruster thr size 0.05 0.1 cells 1 1",
      "silver\tPlate_1 rect size 1 1 cells 4 4 R X 180 T 0 0 2",
      "gold\tPlate_2 rect size 2 2 cells 4 4 R X 180 T 0 0 2.9",
  };
  std::vector<std::string> database = {
      "Table      1 Thrusters",
      "head",
      "T5\t\t3.79\t230\t7.85\t7.34\t0.125\t60\t\t\t\t\t\t\t\t\t0",
      "",
      "Table      10 Gases of each thruster",
      "head",
      "T5\tXe+\t0.9",
      "T5\tXe++\t0.1",
      "",
      "Table      6 Gases",
      "head",
      "Xe+\t\t1\t131.3",
      "Xe++\t\t2\t131.3",
      "",
      "Table      7 Materials",
      "head",
      "silver\t10490\t107.87",
      "gold\t19300\t196.97",
      "",
      "Table      8 Accommodation",
      "head",
      "Xe+\tsilver\t0.85\t0.9\t0.9\tY",
      "",
      "Table      9 Yields",
      "head",
      "Xe+\tsilver\t100\t0.5\t0.8\t45\t1",
  };

  // Yields of both gases on both materials up to 1000 eV, so that a run has nothing to say about erosion.
  void AddAllYields() {
    for (const char* gas : {"Xe+", "Xe++"}) {
      for (const char* material : {"silver", "gold"}) {
        for (const char* row : {"\t50\t0.2\t0.3\t45\t1", "\t1000\t4\t6\t45\t1"}) {
          database.push_back(std::string(gas) + "\t" + material + row);
        }
      }
    }
  }

  // The whole sheet, cells separated by tabs.
  std::string Sheet() const {
    std::string text = "\n\n\tOrvdata " + title + "\t" + directives + "\n";
    for (const std::string& row : primitives) text += "\t" + row + "\n";
    text += "\n\n\tDatabaseOrvValis\n\n";
    for (const std::string& row : database) text += "\t" + row + "\n";
    return text + "\n\n\n";
  }
};

}  // namespace orv::testing
