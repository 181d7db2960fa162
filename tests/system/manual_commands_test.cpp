#include <cstdlib>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <sys/wait.h>

#include "app/arguments.h"
#include "support/golden_image.h"
#include "support/workbook_writer.h"
#include "system/manual_pages.h"

namespace orv::testing {
namespace {

namespace fs = std::filesystem;

// Every block of commands of a page (```sh) is given to a shell as it stands, in a folder that holds the examples, in
// the order of the page. Words behind "sh" tell what else holds:
//   fails N   the block ends with the exit code N
//   window    it needs a display, calc: a running Calc. Its commands are not run; their arguments must be right
//   tree      it builds or tests the program: its scripts must be there
// A block ```text behind one that was run shows parts of what it prints; "..." stands for lines that are left out.
using Command = std::vector<std::string>;

bool IsCommand(const std::string& line) {
  const std::size_t begin = line.find_first_not_of(' ');
  const std::string rest = begin == std::string::npos ? "" : line.substr(begin);
  return rest.starts_with("orvvalis ") || rest == "orvvalis" || rest.starts_with("./run ") || rest == "./run";
}

// What the program writes, from its arguments.
struct Promised {
  std::vector<std::string> pictures, exports, levelLines, folders;
};

Promised PromisedBy(const Command& command) {
  Promised promised;
  for (std::size_t k = 0; k + 1 < command.size(); ++k) {
    const std::string& value = command[k + 1];
    if (command[k] == "--image") promised.pictures.push_back(value);
    if (command[k] == "--export") promised.exports.push_back(value);
    if (command[k] == "--level-lines") promised.levelLines.push_back(value);
    if (command[k] == "--out") promised.folders.push_back(value);
  }
  return promised;
}

class ManualCommandsTest : public ::testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    fs::copy(fs::path(ORV_SOURCE_DIR) / "examples", folder.path() / "examples", fs::copy_options::recursive);
    fs::create_directories(folder.path() / "bin");
    // The program under both of its names, each call noted with its arguments.
    const std::string note =
        "#!/bin/sh\nprintf '%s\\0' \"$@\" >> '" + File("calls") + "'\nprintf '\\n\\0' >> '" + File("calls") + "'\n";
    Script("run", note + "exec '" ORV_PROGRAM "' \"$@\"\n");
    Script("bin/orvvalis", note + "exec '" ORV_PROGRAM "' \"$@\"\n");
    Script("idle/orvvalis", note);
    for (const char* other : {"idle/soffice", "idle/busctl"}) Script(other, "#!/bin/sh\n");
  }

  std::string File(const std::string& name) const { return (folder.path() / name).string(); }

  void Script(const std::string& name, const std::string& text) const {
    fs::create_directories((folder.path() / name).parent_path());
    folder.Write(name, text);
    fs::permissions(folder.path() / name, fs::perms::owner_all);
  }

  // Runs a block; the exit code.
  int Shell(const std::string& text, const std::string& programs) const {
    folder.Write("calls", "");
    folder.Write("block.sh", text);
    const std::string command =
        "cd '" + folder.path().string() + "' && HOME=$PWD XDG_CONFIG_HOME=$PWD/config PATH=$PWD/" + programs +
        ":$PATH LC_ALL=C.UTF-8 ASAN_OPTIONS=detect_leaks=0 sh -eu block.sh" + " > stdout 2> stderr < /dev/null";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  std::vector<Command> Calls() const {
    std::vector<Command> calls(1);
    std::istringstream words(WholeFile(File("calls")));
    for (std::string word; std::getline(words, word, '\0');) {
      if (word == "\n") {
        calls.emplace_back();
      } else {
        calls.back().push_back(word);
      }
    }
    calls.pop_back();
    return calls;
  }

  void ExpectFile(const std::string& name) const {
    std::error_code error;
    EXPECT_GT(fs::file_size(folder.path() / name, error), 0U) << name << " was not written";
  }

  void ExpectPromised(const Command& command) {
    const Promised promised = PromisedBy(command);
    for (const std::string& name : promised.exports) {
      ExpectFile(name);
      if (name.ends_with(".json")) {
        EXPECT_TRUE(nlohmann::json::accept(WholeFile(File(name)))) << name;
      }
    }
    for (const std::string& name : promised.levelLines) {
      ExpectFile(name);
      if (name.ends_with(".png")) Picture(name);
    }
    for (const std::string& name : promised.pictures) {
      ExpectFile(name);
      if (name.ends_with(".png")) Picture(name);
    }
    for (const std::string& name : promised.folders) {
      std::size_t reports = 0;
      for (const auto& entry : fs::directory_iterator(folder.path() / name)) {
        reports += entry.path().filename().string().starts_with("Orv") ? 1 : 0;
      }
      EXPECT_GT(reports, 0U) << "no reports in " << name;
    }
  }

  // A picture that the page shows is the one that its command makes. ORV_UPDATE_GOLDEN=1 renews it.
  void Picture(const std::string& name) {
    Image image;
    ASSERT_EQ(ReadPng(File(name), image), "");
    const std::string shown = "/images/" + fs::path(name).filename().string();
    for (const Link& link : page.links) {
      if (!link.picture || !("/" + link.target).ends_with(shown)) continue;
      compared.insert(link.target);
      EXPECT_TRUE(MatchesFile(fs::weakly_canonical(page.folder() / link.target).string(), image));
    }
  }

  void ExpectArgumentsAreRight(const std::vector<Command>& commands, int line) const {
    const fs::path before = fs::current_path();
    fs::current_path(folder.path());
    for (const Command& command : commands) {
      std::vector<const char*> argv = {"orvvalis"};
      for (const std::string& word : command) argv.push_back(word.c_str());
      std::ostringstream out;
      std::ostringstream err;
      int code = -1;
      EXPECT_TRUE(ParseArguments(static_cast<int>(argv.size()), argv.data(), out, err, code).has_value())
          << page.name << ":" << line << ": " << err.str();
    }
    fs::current_path(before);
  }

  void ExpectScripts(const Fence& fence) const {
    std::istringstream lines(fence.text);
    std::size_t scripts = 0;
    for (std::string word; lines >> word;) {
      if (!word.starts_with("./")) continue;
      ++scripts;
      const fs::path script = fs::path(ORV_SOURCE_DIR) / word;
      ASSERT_TRUE(fs::exists(script)) << script;
      EXPECT_NE(fs::status(script).permissions() & fs::perms::owner_exec, fs::perms::none) << script;
    }
    EXPECT_GT(scripts, 0U) << page.name << ":" << fence.line;
  }

  void ExpectPrinted(const Fence& fence) const {
    const std::string printed = Squeezed(WholeFile(File("stdout")) + WholeFile(File("stderr")));
    std::size_t place = 0;
    std::istringstream lines(fence.text);
    for (std::string line; std::getline(lines, line);) {
      line = Squeezed(line);
      if (line.empty() || line == "...") continue;
      const std::size_t found = printed.find(line, place);
      EXPECT_NE(found, std::string::npos) << page.name << ":" << fence.line << ": " << line << "\nis not printed in\n"
                                          << WholeFile(File("stdout"));
      if (found != std::string::npos) place = found + line.size();
    }
  }

  void RunFence(const Fence& fence) {
    const std::string where = page.name + ":" + std::to_string(fence.line);
    if (fence.Has("tree")) {
      ExpectScripts(fence);
      return;
    }
    const bool idle = fence.Has("window") || fence.Has("calc");
    Script("run", idle ? WholeFile(File("idle/orvvalis")) : WholeFile(File("bin/orvvalis")));
    int expected = 0;
    if (fence.Has("fails")) expected = fence.info.back() - '0';
    EXPECT_EQ(Shell(fence.text, idle ? "idle" : "bin"), expected) << where << "\n" << WholeFile(File("stderr"));
    const std::vector<Command> commands = Calls();
    std::istringstream lines(fence.text);
    std::size_t wanted = 0;
    for (std::string line; std::getline(lines, line);) wanted += IsCommand(line) ? 1 : 0;
    EXPECT_EQ(commands.size(), wanted) << where;
    if (idle) {
      ExpectArgumentsAreRight(commands, fence.line);
    } else if (expected == 0) {
      for (const Command& command : commands) ExpectPromised(command);
    }
  }

  TemporaryFolder folder;
  Page page = ReadPage(GetParam());
  std::set<std::string> compared;  // pictures of the page that a command has made
};

TEST_P(ManualCommandsTest, DoWhatThePageTells) {
  bool ran = false;
  for (const Fence& fence : page.fences) {
    if (fence.Is("sh")) RunFence(fence);
    if (fence.Is("text") && ran) ExpectPrinted(fence);
    ran = fence.Is("sh") && fence.info == "sh";
  }
  // Pictures of the window come from the tests of the window, those of the primitives from a test of their own. A page
  // may also show a picture again that stands on another page.
  for (const Link& link : page.links) {
    if (!link.picture || link.target.find("/window_") != std::string::npos) continue;
    if (link.target.find("/primitives/") != std::string::npos) continue;
    EXPECT_EQ(compared.count(link.target), 1U)
        << page.name << ":" << link.line << ": no command of the page makes " << link.target;
  }
}

// A command outside a fence would not be tried.
TEST_P(ManualCommandsTest, StandInFences) {
  for (std::size_t k = 0; k < page.prose.size(); ++k) {
    EXPECT_FALSE(page.prose[k].starts_with("    ") && IsCommand(page.prose[k])) << page.name << ":" << k + 1;
  }
  for (const Fence& fence : page.fences) {
    std::istringstream words(fence.info);
    std::string word;
    words >> word;
    EXPECT_TRUE(std::set<std::string>({"sh", "text", "json", "python", "cpp"}).count(word) == 1)
        << page.name << ":" << fence.line << ": " << fence.info;
    if (word != "sh") continue;
    while (words >> word) {
      const bool known = word == "window" || word == "calc" || word == "tree" || word == "fails" ||
                         (word.size() == 1 && word[0] >= '1' && word[0] <= '4');
      EXPECT_TRUE(known) << page.name << ":" << fence.line << ": " << word;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Pages, ManualCommandsTest, ::testing::ValuesIn(PageNames()), [](const auto& named) {
  std::string name = named.param.substr(0, named.param.size() - 3);
  std::replace(name.begin(), name.end(), '/', '_');
  return name;
});

}  // namespace
}  // namespace orv::testing
