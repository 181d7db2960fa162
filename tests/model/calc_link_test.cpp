#include "model/calc_link.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "support/workbook_writer.h"

namespace orv {
namespace {

using std::chrono::milliseconds;
using testing::TemporaryFolder;

int Failure(const std::function<void()>& operation) {
  try {
    operation();
  } catch (const RuntimeFailure& failure) {
    return static_cast<int>(failure.number());
  }
  return 0;
}

double Took(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

constexpr milliseconds kPatient{20'000};
constexpr milliseconds kShort{300};

int OpenFiles() {
  int count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) ++count;
  return count;
}

// A stand-in for the helper program: a shell script that reads a request a line and does what the text for its kind
// tells. $id is the request's.
class CalcLinkTest : public ::testing::Test {
 protected:
  CalcLinkTest() {
    // A shell may take its time to start on a machine under load; tests of lateness shorten these.
    settings.runDeadline = kPatient;
    settings.watchDeadline = kPatient;
    settings.hangLimit = milliseconds(600);
    settings.restartPause = milliseconds(200);
  }
  ~CalcLinkTest() override { EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a child was left behind"; }

  void Script(const std::string& cases) {
    const std::string starts = (folder.path() / "starts").string();
    const std::string text =
        "#!/bin/bash\necho \"$@\" >> '" + starts + "'\nfolder='" + folder.path().string() +
        "'\nwhile read -r line; do\n  id=${line##*\\\"id\\\":}; id=${id%%[,\\}]*}\n  what=${line##*\\\"do\\\":\\\"}; "
        "what=${what%%\\\"*}\n  case $what in\n" +
        cases +
        "\n  attach) echo "
        "\"{\\\"id\\\":$id,\\\"workbook\\\":true,\\\"row\\\":3,\\\"column\\\":2,\\\"separator\\\":\\\".\\\"}\";;"
        "\n  range) echo \"{\\\"id\\\":$id,\\\"rows\\\":1,\\\"cells\\\":[0.5]}\";;"
        "\n  *) echo \"{\\\"id\\\":$id}\";;\n  esac\ndone\n";
    settings.helper = folder.Write("helper.sh", text);
    chmod(settings.helper.c_str(), 0755);
  }
  // How often the helper was started, and with what.
  std::vector<std::string> Starts() const {
    std::vector<std::string> starts;
    std::ifstream in(folder.path() / "starts");
    for (std::string line; std::getline(in, line);) starts.push_back(line);
    return starts;
  }

  TemporaryFolder folder;
  CalcLinkSettings settings;
};

TEST_F(CalcLinkTest, SpeaksToTheHelperThroughItsDoor) {
  Script("");
  settings.door = "socket,host=127.0.0.1,port=2002";
  {
    CalcLink link(settings);
    EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 91);
    EXPECT_TRUE(Starts().empty());
    link.Attach();
    EXPECT_EQ(link.ActiveCell(), (CellPosition{3, 2}));
    EXPECT_EQ(link.Value({1, 1}), "0.5");
    link.Release();
    EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 91);
    link.Attach();
    EXPECT_EQ(link.Value({1, 1}), "0.5");
  }
  EXPECT_EQ(Starts(), std::vector<std::string>{"socket,host=127.0.0.1,port=2002"});
}

TEST_F(CalcLinkTest, GivesTheKindsOfValues) {
  Script(
      R"(range) echo "{\"id\":$id,\"rows\":2,\"cells\":[null,1e-05,\"a\\tb\",\"TRUE\",123456789012345678,\"é\"]}";;)");
  CalcLink link(settings);
  link.Attach();
  EXPECT_EQ(link.RangeText("A1:C2"), "\t1E-05\ta b\r\nTRUE\t1.23456789012346E+17\té\r\n");
}

TEST_F(CalcLinkTest, GivesNumbersWithTheSeparatorOfTheSettings) {
  Script(R"(snapshot) echo "{\"id\":$id,\"application\":\"Calc\",\"workbook\":\"w\",\"windows\":1,\"caption\":\"c\",)"
         R"(\"sheet\":\"s\",\"row\":1,\"column\":1,\"separator\":\".\",\"cells\":[2.5]}";;)");
  CalcLink asCalcPrints(settings);
  asCalcPrints.Attach();
  EXPECT_EQ(asCalcPrints.Value({1, 1}), "0.5");
  EXPECT_FALSE(asCalcPrints.PrintsDecimalComma({1, 1}));
  EXPECT_EQ(asCalcPrints.Snapshot().formula, "2.5");
  settings.decimalSeparator = ",";
  CalcLink link(settings);
  link.Attach();
  EXPECT_EQ(link.Value({1, 1}), "0,5");
  EXPECT_TRUE(link.PrintsDecimalComma({1, 1}));
  EXPECT_EQ(link.Snapshot().formula, "2,5");
}

TEST_F(CalcLinkTest, FailsAtOnceWithoutAHelper) {
  settings.helper = folder.path() / "no such program";
  CalcLink link(settings);
  EXPECT_EQ(Failure([&] { link.Attach(); }), 429);
  EXPECT_EQ(Failure([&] { link.Snapshot(); }), 429);
  settings.helper.clear();
  CalcLink none(settings);
  EXPECT_EQ(Failure([&] { none.Attach(); }), 429);
}

TEST_F(CalcLinkTest, PassesFailuresOn) {
  Script(R"(attach) echo "{\"id\":$id,\"failure\":429,\"text\":\"nobody there\"}";;)");
  CalcLink link(settings);
  try {
    link.Attach();
    FAIL();
  } catch (const RuntimeFailure& failure) {
    EXPECT_EQ(failure.number(), FailureNumber::CannotCreateObject);
    EXPECT_EQ(failure.description(), "nobody there");
  }
  EXPECT_EQ(Failure([&] { link.Attach(); }), 429);
  EXPECT_EQ(Starts().size(), 1U);
}

TEST_F(CalcLinkTest, TellsALostOfficeOnceAndThenNothingMore) {
  Script(R"(range) echo "{\"id\":$id,\"failure\":429,\"text\":\"gone\"}";;)");
  CalcLink link(settings);
  link.Attach();
  EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 429);
  EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 91);
  link.Attach();
  EXPECT_EQ(link.ActiveCell(), (CellPosition{3, 2}));
}

TEST_F(CalcLinkTest, TakesABusyOfficeForAPassingState) {
  // The first answer comes late, the second in time.
  Script(R"(range) if [ ! -e "$folder/once" ]; then : > "$folder/once"; sleep 0.5;
    echo "{\"id\":$id,\"rows\":1,\"cells\":[\"late\"]}"; else echo "{\"id\":$id,\"rows\":1,\"cells\":[\"in time\"]}"; fi;;)");
  settings.hangLimit = kPatient;
  CalcLink link(settings);
  link.Attach();
  link.SetDeadline(kShort);
  EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 50290);
  const auto until = std::chrono::steady_clock::now() + kPatient;
  int failure = 50290;
  while (failure == 50290 && std::chrono::steady_clock::now() < until) failure = Failure([&] { link.Value({1, 1}); });
  EXPECT_EQ(failure, 0);
  link.SetDeadline(kPatient);
  EXPECT_EQ(link.Value({1, 1}), "in time");
  EXPECT_EQ(link.Value({1, 1}), "in time");
  EXPECT_EQ(Starts().size(), 1U);
}

TEST_F(CalcLinkTest, WaitsLessAndLessForAHelperThatHangsAndEndsIt) {
  Script("range) sleep 60;;");
  settings.hangLimit = std::chrono::seconds(4);
  CalcLink link(settings);
  link.Attach();
  link.SetDeadline(kShort);
  const double first = Took([&] { EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 50290); });
  EXPECT_GE(first, 290);
  const double more = Took([&] {
    for (int k = 0; k < 6; ++k) EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 50290) << k;
  });
  EXPECT_LT(more, 1500) << "less than five times the deadline";
  std::this_thread::sleep_for(settings.hangLimit);
  EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 50290);
  EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 91) << "the helper was not ended";
  link.SetDeadline(kPatient);
  link.Attach();
  EXPECT_EQ(Starts().size(), 2U);
}

TEST_F(CalcLinkTest, AttachesWithANewHelperWhenTheOldOneHangs) {
  Script("range) sleep 60;;");
  CalcLink link(settings);
  link.Attach();
  link.SetDeadline(kShort);
  EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 50290);
  std::this_thread::sleep_for(settings.hangLimit);
  link.SetDeadline(kPatient);
  link.Attach();
  EXPECT_EQ(Starts().size(), 2U);
}

TEST_F(CalcLinkTest, NeverLetsTheWatchWait) {
  Script("snapshot) sleep 60;;");
  settings.watchDeadline = milliseconds(40);
  CalcLink link(settings);
  link.Attach();
  EXPECT_LT(Took([&] { EXPECT_EQ(Failure([&] { link.Snapshot(); }), 50290); }), 1000);
  const double more = Took([&] {
    for (int k = 0; k < 50; ++k) EXPECT_EQ(Failure([&] { link.Snapshot(); }), 50290);
  });
  EXPECT_LT(more, 1000) << "less than fifty times the deadline";
}

TEST_F(CalcLinkTest, NoticesAHelperThatDies) {
  Script("range) exit 1;;");
  CalcLink link(settings);
  for (int k = 1; k <= 3; ++k) {
    link.Attach();
    EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 429);
    EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 91);
    EXPECT_EQ(Starts().size(), static_cast<std::size_t>(k));
  }
}

TEST_F(CalcLinkTest, PausesWhenHelpersDieWithoutAWord) {
  Script("attach | snapshot) exit 1;;");
  settings.restartPause = kPatient;
  CalcLink link(settings);
  for (int k = 0; k < 20; ++k) {
    EXPECT_EQ(Failure([&] { link.Attach(); }), 429);
    EXPECT_EQ(Failure([&] { link.Snapshot(); }), 429);
  }
  EXPECT_EQ(Starts().size(), 1U);
}

TEST_F(CalcLinkTest, StartsSilentHelpersLessAndLessOften) {
  Script("attach | snapshot) exit 1;;");
  settings.restartPause = milliseconds(50);
  CalcLink link(settings);
  using Instant = std::chrono::steady_clock::time_point;
  Instant begun;  // of the call that has started a helper last
  const Instant until = std::chrono::steady_clock::now() + 3 * kPatient;
  for (std::size_t starts = 0; starts < 6 && std::chrono::steady_clock::now() < until;) {
    const Instant now = std::chrono::steady_clock::now();
    EXPECT_EQ(Failure([&] { link.Snapshot(); }), 429);
    if (Starts().size() == starts) continue;
    ASSERT_EQ(Starts().size(), starts + 1) << "one call starts one helper";
    const milliseconds pause = settings.restartPause * (1 << std::min<std::size_t>(starts, 4)) / 2;
    // However late this process is, the pause lies between the two calls.
    if (starts > 0) {
      EXPECT_GE(std::chrono::steady_clock::now() - begun, pause) << starts;
    }
    begun = now;
    ++starts;
  }
  EXPECT_EQ(Starts().size(), 6U);
}

TEST_F(CalcLinkTest, EndsAHelperThatAnswersNonsense) {
  for (const char* answer :
       {R"(echo "hello";;)", R"(echo "";;)", R"(echo "[1]";;)", R"(echo "{\"id\":\"x\"}";;)", R"(echo "{\"id\":99}";;)",
        R"(echo "{\"id\":$id,\"rows\":1}";;)", R"(echo "{\"id\":$id,\"rows\":1,\"cells\":[]}";;)",
        R"(echo "{\"id\":$id,\"rows\":1,\"cells\":[[]]}";;)", R"(echo "{\"id\":$id,\"failure\":\"x\"}";;)",
        R"(printf '{"id":%s,"rows":1,"cells":["\xff\xfe"]}\n' $id;;)"}) {
    Script(std::string("range) ") + answer);
    settings.restartPause = kPatient;
    CalcLink link(settings);
    link.Attach();
    EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 429) << answer;
    EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 91) << answer;
    EXPECT_EQ(Failure([&] { link.Attach(); }), 429) << "another was started at once";
  }
  settings.restartPause = milliseconds(100);
  CalcLink link(settings);
  link.Attach();
  EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 429);
  std::this_thread::sleep_for(settings.restartPause);
  link.Attach();
}

TEST_F(CalcLinkTest, ReadsAnAnswerThatComesInPieces) {
  Script(R"(range) printf '{"id":%s,' $id; sleep 0.1; printf '"rows":1,"cells"'; sleep 0.1; echo ':["whole"]}';;)");
  CalcLink link(settings);
  link.Attach();
  EXPECT_EQ(link.Value({1, 1}), "whole");
}

TEST_F(CalcLinkTest, RefusesMoreRowsThanItAskedFor) {
  Script(R"(range) echo "{\"id\":$id,\"rows\":3,\"cells\":[1,2,3]}";;)");
  CalcLink link(settings);
  link.Attach();
  EXPECT_EQ(Failure([&] { link.RangeText("A1:A2"); }), 429);
}

TEST_F(CalcLinkTest, LeavesNoFilesOpen) {
  Script("range) exit 1;;");
  const int before = OpenFiles();
  const int mine = open("/dev/null", O_RDONLY);  // the helper must not inherit it
  {
    CalcLink link(settings);
    for (int k = 0; k < 5; ++k) {
      link.Attach();
      EXPECT_EQ(Failure([&] { link.Value({1, 1}); }), 429);
    }
    link.Attach();
    EXPECT_EQ(OpenFiles(), before + 2);
  }
  close(mine);
  EXPECT_EQ(OpenFiles(), before);
}

TEST_F(CalcLinkTest, EndsTheHelperEvenWhenItIgnoresTheEndOfItsInput) {
  Script(
      "attach) echo "
      "\"{\\\"id\\\":$id,\\\"workbook\\\":false,\\\"row\\\":1,\\\"column\\\":1,\\\"separator\\\":\\\",\\\"}\"; sleep "
      "60;;");
  const double took = Took([&] {
    CalcLink link(settings);
    link.Attach();
    EXPECT_EQ(Failure([&] { link.SheetName(); }), 91);
  });
  EXPECT_LT(took, 2000);
}

TEST(HelperProcessTest, EndsAChildThatOverrunsTheLongestLine) {
  const TemporaryFolder folder;
  const std::filesystem::path script =
      folder.Write("long.sh", "#!/bin/sh\nhead -c 300000 /dev/zero | tr '\\0' x\nread -r end\n");
  chmod(script.c_str(), 0755);
  HelperProcess process(100'000);
  ASSERT_TRUE(process.Start(script, {}));
  EXPECT_FALSE(process.Receive(HelperProcess::Clock::now() + std::chrono::seconds(10)));
  EXPECT_FALSE(process.Running());
}

TEST(HelperProcessTest, InheritsOnlyItsPipe) {
  HelperProcess process(10'000);
  const int mine = open("/dev/null", O_RDONLY);
  ASSERT_TRUE(process.Start("/bin/sh", {"-c", "ls -m /proc/$$/fd; read -r end"}));
  const auto files = process.Receive(HelperProcess::Clock::now() + std::chrono::seconds(10));
  close(mine);
  ASSERT_TRUE(files);
  EXPECT_EQ(*files, "0, 1, 2");
}

TEST(CalcDoorTest, ReadsTheSetting) {
  EXPECT_EQ(CalcDoorOf(""), "pipe,name=orvvalis");
  EXPECT_EQ(CalcDoorOf("mine"), "pipe,name=mine");
  EXPECT_EQ(CalcDoorOf("2002"), "socket,host=127.0.0.1,port=2002");
  EXPECT_EQ(CalcDoorOf("localhost:2002"), "socket,host=localhost,port=2002");
  for (const char* text : {"a;b", "a b", "a\"", "$(x)", "host:port", ":2002", "a,b"}) {
    EXPECT_EQ(Failure([&] { CalcDoorOf(text); }), 5) << text;
  }
}

TEST(CalcDoorTest, TellsTheCommand) {
  EXPECT_EQ(CalcDoorCommand(), "soffice \"--accept=pipe,name=orvvalis;urp;\"");
}

TEST(CalcDoorTest, GivesTheCommandToAnInstalledOffice) {
  const TemporaryFolder folder;
  const std::filesystem::path office =
      folder.Write("soffice",
                   "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$(dirname \"$0\")/part\"\nmv \"$(dirname \"$0\")/part\" "
                   "\"$(dirname \"$0\")/given\"\nsleep 5\n");
  chmod(office.c_str(), 0755);
  const std::string path = std::getenv("PATH");
  setenv("PATH", (folder.path().string() + ":" + path).c_str(), 1);
  EXPECT_LT(Took([&] { EXPECT_TRUE(OpenCalcDoor("pipe,name=a", {"more words"})); }), 4000);
  for (int k = 0; k < 500 && !std::filesystem::exists(folder.path() / "given"); ++k) {
    std::this_thread::sleep_for(milliseconds(10));
  }
  setenv("PATH", (folder.path() / "empty").c_str(), 1);
  EXPECT_FALSE(OpenCalcDoor());
  setenv("PATH", path.c_str(), 1);
  std::ostringstream given;
  given << std::ifstream(folder.path() / "given").rdbuf();
  EXPECT_EQ(given.str(), "--accept=pipe,name=a;urp;\nmore words\n");
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST(CalcHelperTest, IsLookedForBesideTheProgram) {
  const TemporaryFolder folder;
  EXPECT_EQ(FindCalcHelper(folder.path()), "");
  std::filesystem::create_directories(folder.path() / "bin");
  std::filesystem::create_directories(folder.path() / "libexec" / "orvvalis");
  const std::filesystem::path installed = folder.Write("libexec/orvvalis/orv_calc_helper", "x");
  EXPECT_EQ(FindCalcHelper(folder.path() / "bin"), installed);
  const std::filesystem::path beside = folder.Write("bin/orv_calc_helper", "x");
  EXPECT_EQ(FindCalcHelper(folder.path() / "bin"), beside);
}

}  // namespace
}  // namespace orv
