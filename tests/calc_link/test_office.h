#pragma once

#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <unistd.h>
#include <utility>

#include "model/calc_link.h"
#include "model/calc_process.h"
#include "support/workbook_writer.h"

namespace orv::testing {

// The helper program and the driver that were built with the tests.
inline std::filesystem::path BuiltHelper() {
  return ORV_CALC_HELPER;
}

// A Calc of its own: headless, with a fresh profile and a pipe that no other has. It ends with the object, and also
// when the test program dies: the shell that started it then reads the end of its input.
class TestOffice {
 public:
  explicit TestOffice(const std::string& locale = "") : door_(MakeName()), shell_(kLongestLine), driver_(kLongestLine) {
    if (!locale.empty()) WriteProfile(locale);
    Start();
  }
  ~TestOffice() { Kill(); }
  TestOffice(const TestOffice&) = delete;
  TestOffice& operator=(const TestOffice&) = delete;

  // The name of the pipe, and the settings of a link to this office.
  const std::string& pipe() const { return door_; }
  CalcLinkSettings Settings() const {
    CalcLinkSettings settings;
    settings.helper = BuiltHelper();
    settings.door = CalcDoorOf(door_);
    settings.runDeadline = std::chrono::seconds(30);  // of a machine under load
    settings.watchDeadline = std::chrono::seconds(5);
    return settings;
  }
  std::vector<std::string> ProfileArguments() const {
    return {"--headless", "--norestore", "--nologo", "-env:UserInstallation=file://" + profile_.path().string()};
  }

  void Start() {
    const std::string script = "\"$@\" </dev/null >/dev/null 2>&1 &\nread -r end\nkill -KILL 0";
    std::vector<std::string> words = {"-c", script, "sh", "soffice", "--accept=" + CalcDoorOf(door_) + ";urp;"};
    for (const std::string& word : ProfileArguments()) words.push_back(word);
    if (!shell_.Start("/bin/sh", words)) throw std::runtime_error("no shell");
    if (!Reachable(true, std::chrono::seconds(60))) throw std::runtime_error("the office does not open its door");
    StartDriver();
  }

  // As a crash would.
  void Kill() {
    driver_.Kill();
    if (shell_.Running()) kill(-shell_.child(), SIGKILL);
    shell_.Kill();
    Reachable(false, std::chrono::seconds(10));
  }
  // Holds every process of the office, or lets them go on.
  void Hang(bool hang) { kill(-shell_.child(), hang ? SIGSTOP : SIGCONT); }

  // What a user would do; the answer of the driver.
  std::string Do(const std::string& line) {
    const auto until = HelperProcess::Clock::now() + std::chrono::seconds(60);
    driver_.Send(line, until);
    return driver_.Receive(until).value_or("the driver has ended");
  }
  void Open(const std::filesystem::path& file) {
    const std::string answer = Do("open\t" + file.string());
    if (answer != "ok") throw std::runtime_error(file.string() + ": " + answer);
  }

 private:
  static constexpr std::size_t kLongestLine = 1 << 20;

  static std::string MakeName() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    return "orvtest" + std::to_string(getpid()) + "x" + std::to_string(now % 1'000'000'000);
  }

  void WriteProfile(const std::string& locale) {
    std::filesystem::create_directories(profile_.path() / "user");
    std::ofstream(profile_.path() / "user" / "registrymodifications.xcu")
        << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<oor:items xmlns:oor=\"http://openoffice.org/2001/registry\" "
           "xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\">"
           "<item oor:path=\"/org.openoffice.Setup/L10N\"><prop oor:name=\"ooSetupSystemLocale\" oor:op=\"fuse\">"
           "<value>"
        << locale << "</value></prop></item></oor:items>\n";
  }

  bool Reachable(bool wanted, std::chrono::seconds limit) const {
    CalcLink link(Settings());
    const auto until = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < until) {
      bool reached = true;
      try {
        link.Attach();
      } catch (const RuntimeFailure& failure) {
        reached = failure.number() != FailureNumber::CannotCreateObject;
      }
      if (reached == wanted) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
  }

  void StartDriver() {
    driver_.Start(ORV_CALC_DRIVER, {door_});
    const auto until = HelperProcess::Clock::now() + std::chrono::seconds(30);
    if (driver_.Receive(until) != "ready") throw std::runtime_error("the driver does not reach the office");
  }

  TemporaryFolder profile_;
  std::string door_;
  HelperProcess shell_;
  HelperProcess driver_;
};

}  // namespace orv::testing
