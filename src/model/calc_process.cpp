#include "model/calc_process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace orv {
namespace {

constexpr std::chrono::milliseconds kGrace{100};

// The files and signals that the child begins with.
class SpawnSetup {
 public:
  explicit SpawnSetup(int pipe) {
    posix_spawn_file_actions_init(&files_);
    posix_spawn_file_actions_adddup2(&files_, pipe, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&files_, pipe, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&files_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&files_, STDERR_FILENO + 1);
    posix_spawnattr_init(&attributes_);
    sigset_t all;
    sigset_t none;
    sigfillset(&all);
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&attributes_, &all);
    posix_spawnattr_setsigmask(&attributes_, &none);
    // A session of its own: the keys that stop the program in a terminal are not meant for the child.
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSID);
  }
  ~SpawnSetup() {
    posix_spawn_file_actions_destroy(&files_);
    posix_spawnattr_destroy(&attributes_);
  }
  SpawnSetup(const SpawnSetup&) = delete;
  SpawnSetup& operator=(const SpawnSetup&) = delete;

  const posix_spawn_file_actions_t* files() const { return &files_; }
  const posix_spawnattr_t* attributes() const { return &attributes_; }

 private:
  posix_spawn_file_actions_t files_;
  posix_spawnattr_t attributes_;
};

}  // namespace

bool HelperProcess::Start(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  Stop();
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
  std::vector<std::string> words = {program.string()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  const SpawnSetup setup(ends[1]);
  pid_t child = 0;
  const int error = posix_spawn(&child, words[0].c_str(), setup.files(), setup.attributes(), argv.data(), environ);
  close(ends[1]);
  if (error != 0) {
    close(ends[0]);
    return false;
  }
  socket_ = ends[0];
  child_ = child;
  fcntl(socket_, F_SETFL, O_NONBLOCK);
  return true;
}

bool HelperProcess::Wait(short events, Clock::time_point until) const {
  for (;;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
    pollfd entry = {socket_, events, 0};
    const int ready = poll(&entry, 1, static_cast<int>(std::clamp<std::int64_t>(left, 0, 1'000'000)));
    if (ready > 0) return true;
    if (ready == 0 || errno != EINTR) return false;
  }
}

bool HelperProcess::Send(const std::string& line, Clock::time_point until) {
  if (!Running()) return false;
  const std::string text = line + "\n";
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t count = send(socket_, text.data() + done, text.size() - done, MSG_NOSIGNAL);
    if (count > 0) {
      done += static_cast<std::size_t>(count);
    } else if (count < 0 && errno == EINTR) {
      continue;
    } else if (count == 0 || (errno != EAGAIN && errno != EWOULDBLOCK) || !Wait(POLLOUT, until)) {
      Kill();
      return false;
    }
  }
  return true;
}

std::optional<std::string> HelperProcess::TakeLine() {
  const std::size_t end = received_.find('\n', searched_);
  if (end == std::string::npos) {
    searched_ = received_.size();
    return std::nullopt;
  }
  std::string line = received_.substr(0, end);
  received_.erase(0, end + 1);
  searched_ = 0;
  return line;
}

std::optional<std::string> HelperProcess::Receive(Clock::time_point until) {
  std::array<char, 65536> bytes;
  while (Running()) {
    if (std::optional<std::string> line = TakeLine()) return line;
    if (received_.size() > longestLine_) {
      Kill();
      break;
    }
    const ssize_t count = recv(socket_, bytes.data(), bytes.size(), 0);
    if (count > 0) {
      received_.append(bytes.data(), static_cast<std::size_t>(count));
    } else if (count < 0 && errno == EINTR) {
      continue;
    } else if (count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) {
      if (!Wait(POLLIN, until)) return std::nullopt;
    } else {
      Kill();
    }
  }
  return std::nullopt;
}

void HelperProcess::Stop() {
  Reap(false);
}

void HelperProcess::Kill() {
  Reap(true);
}

void HelperProcess::Reap(bool kill) {
  if (socket_ >= 0) close(socket_);
  socket_ = -1;
  received_.clear();
  searched_ = 0;
  if (child_ <= 0) return;
  const Clock::time_point until = Clock::now() + kGrace;
  int status = 0;
  pid_t ended = 0;
  while (!kill && ended == 0 && Clock::now() < until) {
    ended = waitpid(child_, &status, WNOHANG);
    if (ended == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  if (ended == 0) {
    ::kill(child_, SIGKILL);
    while (waitpid(child_, &status, 0) < 0 && errno == EINTR) {
    }
  }
  child_ = 0;
}

}  // namespace orv
