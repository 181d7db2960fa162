#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <unistd.h>

#include "calc_helper/requests.h"

// Holds the connection to a running Calc for the program, which must never wait for a busy office longer than it wants:
// started with the door as its argument, it answers one line on its output for each line on its input.
namespace {

constexpr std::size_t kLongestRequest = std::size_t{1} << 20U;

// Reads on while a request is under way, so that the end of the program ends this one even when the office hangs.
class Input {
 public:
  Input() : reader_([this] { Read(); }) { reader_.detach(); }

  std::string Next() {
    std::unique_lock lock(mutex_);
    arrived_.wait(lock, [this] { return !lines_.empty(); });
    std::string line = std::move(lines_.front());
    lines_.pop_front();
    return line;
  }

 private:
  void Read() {
    std::string rest;
    char bytes[65536];
    for (;;) {
      const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
      if (count <= 0) _exit(0);
      rest.append(bytes, static_cast<std::size_t>(count));
      for (std::size_t end = rest.find('\n'); end != std::string::npos; end = rest.find('\n')) {
        const std::scoped_lock lock(mutex_);
        lines_.push_back(rest.substr(0, end));
        rest.erase(0, end + 1);
        arrived_.notify_one();
      }
      if (rest.size() > kLongestRequest) _exit(1);
    }
  }

  std::mutex mutex_;
  std::condition_variable arrived_;
  std::deque<std::string> lines_;
  std::thread reader_;
};

bool Write(int file, const std::string& text) {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t count = write(file, text.data() + done, text.size() - done);
    if (count <= 0) return false;
    done += static_cast<std::size_t>(count);
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: orv_calc_helper pipe,name=NAME\n", stderr);
    return 2;
  }
  std::signal(SIGPIPE, SIG_IGN);
  // Whatever a library prints must not fall between the answers.
  const int answers = dup(STDOUT_FILENO);
  dup2(STDERR_FILENO, STDOUT_FILENO);
  Input input;
  orv::calc_helper::Requests requests(argv[1]);
  while (Write(answers, requests.Answer(input.Next()))) {
  }
  _exit(0);
}
