#include "model/calc_door.h"

#include <algorithm>
#ifndef _WIN32
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "numerics/failure.h"

namespace orv {
namespace {

bool AllOf(std::string_view text, std::string_view more) {
  return std::all_of(text.begin(), text.end(), [&](char c) {
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    return letter || more.find(c) != std::string_view::npos;
  });
}

bool IsPort(std::string_view text) {
  return !text.empty() && text.size() <= 5 && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string AcceptArgument(std::string_view door) {
  return "--accept=" + std::string(door) + ";urp;";
}

}  // namespace

std::string CalcDoorOf(std::string_view setting) {
  if (setting.empty()) return std::string(kCalcDoor);
  const std::size_t colon = setting.rfind(':');
  const std::string_view port = colon == std::string_view::npos ? setting : setting.substr(colon + 1);
  const std::string_view host = colon == std::string_view::npos ? "127.0.0.1" : setting.substr(0, colon);
  if (IsPort(port) && !host.empty() && AllOf(host, ".-")) {
    return "socket,host=" + std::string(host) + ",port=" + std::string(port);
  }
  if (!AllOf(setting, "._-")) Raise(FailureNumber::InvalidProcedureCall);
  return "pipe,name=" + std::string(setting);
}

std::string CalcDoorCommand(std::string_view door) {
  return "soffice \"" + AcceptArgument(door) + "\"";
}

#ifndef _WIN32
namespace {

std::optional<std::filesystem::path> OfficeProgram() {
  const char* path = std::getenv("PATH");
  const std::string folders = path == nullptr ? "" : path;
  for (const char* name : {"soffice", "libreoffice"}) {
    for (std::size_t begin = 0; begin < folders.size();) {
      const std::size_t end = std::min(folders.find(':', begin), folders.size());
      std::filesystem::path program = std::filesystem::path(folders.substr(begin, end - begin)) / name;
      if (end > begin && access(program.c_str(), X_OK) == 0) return program;
      begin = end + 1;
    }
  }
  return std::nullopt;
}

}  // namespace

bool OpenCalcDoor(std::string_view door, const std::vector<std::string>& more) {
  const std::optional<std::filesystem::path> program = OfficeProgram();
  if (!program) return false;
  // The shell ends at once, so that the office belongs to nobody who would have to wait for its end.
  std::vector<std::string> words = {"sh", "-c", "\"$0\" \"$@\" </dev/null >/dev/null 2>&1 &", program->string(),
                                    AcceptArgument(door)};
  words.insert(words.end(), more.begin(), more.end());
  std::vector<char*> argv;
  argv.reserve(words.size() + 1);
  for (std::string& word : words) argv.push_back(word.data());
  argv.push_back(nullptr);
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID);
  pid_t shell = 0;
  const int error = posix_spawn(&shell, "/bin/sh", &files, &attributes, argv.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  if (error != 0) return false;
  int status = 0;
  while (waitpid(shell, &status, 0) < 0 && errno == EINTR) {
  }
  return true;
}

#endif

}  // namespace orv
