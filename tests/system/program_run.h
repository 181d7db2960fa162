#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "support/export_readers.h"
#include "support/model_text.h"
#include "support/workbook_writer.h"

namespace orv::testing {

inline std::string ReadWhole(const std::filesystem::path& name) {
  std::ifstream in(name, std::ios::binary);
  std::ostringstream all;
  all << in.rdbuf();
  return all.str();
}

// Runs of the whole program in a folder of their own, with its settings there too.
class ProgramTest : public ::testing::Test {
 protected:
  static std::string Example(const std::string& name) { return std::string(ORV_SOURCE_DIR) + "/examples/" + name; }
  std::string File(const std::string& name) const { return (folder.path() / name).string(); }

  // The exit code; an exception that leaves the program is a failure of the test.
  int Program(std::vector<std::string> words, const std::string& input = "") {
    std::vector<const char*> argv = {"orvvalis"};
    for (const std::string& word : words) argv.push_back(word.c_str());
    std::istringstream in(input);
    std::ostringstream outStream;
    std::ostringstream errStream;
    int code = -1;
    try {
      code = RunCommandLine(static_cast<int>(argv.size()), argv.data(), {in, outStream, errStream, false});
    } catch (const std::exception& error) {
      ADD_FAILURE() << "an exception left the program: " << error.what();
    }
    out = outStream.str();
    err = errStream.str();
    return code;
  }
  // "run" with settings in the test's folder.
  int Run(const std::string& workbook, std::vector<std::string> more = {}, const std::string& input = "") {
    std::vector<std::string> words = {"run", workbook, "--settings", File("set")};
    if (std::find(more.begin(), more.end(), "--plot") == more.end()) words.insert(words.end(), {"--plot", "13"});
    // Reports go beside the workbook: those of the examples must not fill their folder.
    const bool example = workbook.starts_with(ORV_SOURCE_DIR);
    if (example && std::find(more.begin(), more.end(), "--out") == more.end()) {
      words.insert(words.end(), {"--out", File("results")});
    }
    words.insert(words.end(), more.begin(), more.end());
    return Program(words, input);
  }
  // A model as a text file.
  std::string Write(const ModelText& model, const std::string& name = "model.txt") {
    return folder.Write(name, model.Sheet()).string();
  }
  nlohmann::json Json(const std::string& name) const { return nlohmann::json::parse(ReadWhole(File(name))); }
  bool OutHas(const std::string& part) const { return out.find(part) != std::string::npos; }
  bool ErrHas(const std::string& part) const { return err.find(part) != std::string::npos; }

  TemporaryFolder folder;
  ModelText text;
  std::string out, err;
};

}  // namespace orv::testing
