#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace orv {

// A child program that is spoken to line by line, over its standard input and output; what it writes elsewhere is lost.
// It inherits no other file, its end brings no signal, and none is left behind as a zombie. Not to be shared by
// threads.
class HelperProcess {
 public:
  using Clock = std::chrono::steady_clock;

  explicit HelperProcess(std::size_t longestLine) : longestLine_(longestLine) {}
  ~HelperProcess() { Stop(); }
  HelperProcess(const HelperProcess&) = delete;
  HelperProcess& operator=(const HelperProcess&) = delete;

  // False when the program cannot be started. One that runs is stopped first.
  bool Start(const std::filesystem::path& program, const std::vector<std::string>& arguments);
  bool Running() const { return child_ > 0; }
  pid_t child() const { return child_; }

  // Both end the child and stop when it goes away or overruns the longest line; Running tells then. Send adds the line
  // feed and may give up at the time given, which ends the child too.
  bool Send(const std::string& line, Clock::time_point until);
  // The next line without its end; nothing when none is complete by then.
  std::optional<std::string> Receive(Clock::time_point until);

  // Closes the pipe, which ends a sound child; one that does not end at once is killed.
  void Stop();
  void Kill();

 private:
  void Reap(bool kill);
  std::optional<std::string> TakeLine();
  // Waits for one of the events of poll; false when the time is over.
  bool Wait(short events, Clock::time_point until) const;

  std::size_t longestLine_;
  pid_t child_ = 0;
  int socket_ = -1;
  std::string received_;
  std::size_t searched_ = 0;  // so much of received_ holds no line feed
};

}  // namespace orv
