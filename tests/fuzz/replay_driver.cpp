#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "fuzz/fuzz_support.h"

// Runs a fuzz target without a fuzzer: replay TARGET CORPUS DICTIONARY MUTATIONS. Every file of the corpus, then so
// many mutations of them, the same ones each time. The input under way stands in the file TARGET.input, which remains
// when the process ends before its time.
namespace orv::testing {
namespace {

namespace fs = std::filesystem;
using Random = std::mt19937_64;

constexpr std::size_t kLongestInput = std::size_t{64} << 10U;
constexpr double kMostSeconds = 10;       // of one input
constexpr unsigned kHangingSeconds = 60;  // behind which it is stopped

std::string ReadBytes(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::vector<std::string> ReadCorpus(const fs::path& folder) {
  std::vector<fs::path> paths;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder)) paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  std::vector<std::string> corpus;
  for (const fs::path& path : paths) corpus.push_back(ReadBytes(path));
  return corpus;
}

// The words of a dictionary: one a line, in double quotes, with \\, \" and \xNN.
std::vector<std::string> ReadDictionary(const fs::path& path) {
  std::vector<std::string> words;
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);) {
    const std::size_t begin = line.find('"');
    const std::size_t end = line.rfind('"');
    if (line.starts_with('#') || begin == std::string::npos || end <= begin + 1) continue;
    std::string word;
    for (std::size_t k = begin + 1; k < end; ++k) {
      if (line[k] == '\\' && line[k + 1] == 'x') {
        word.push_back(static_cast<char>(std::stoi(line.substr(k + 2, 2), nullptr, 16)));
        k += 3;
      } else {
        if (line[k] == '\\') ++k;
        word.push_back(line[k]);
      }
    }
    words.push_back(word);
  }
  return words;
}

class Mutator {
 public:
  Mutator(const std::vector<std::string>& corpus, const std::vector<std::string>& words, std::uint64_t seed)
      : corpus_(corpus), words_(words), random_(seed) {}

  std::string Next() {
    std::string text = corpus_[Below(corpus_.size())];
    for (std::size_t steps = 1 + Below(6); steps > 0; --steps) Change(text);
    if (text.size() > kLongestInput) text.resize(kLongestInput);
    return text;
  }

 private:
  // A number from 0 to `count` - 1; 0 for none.
  std::size_t Below(std::size_t count) { return count == 0 ? 0 : static_cast<std::size_t>(random_() % count); }
  char AnyByte() { return static_cast<char>(static_cast<unsigned char>(Below(256))); }

  void Change(std::string& text) {
    const std::size_t at = Below(text.size() + 1);
    const std::size_t length = std::min(Below(32) + 1, text.size() - at);
    switch (Below(8)) {
      case 0:
        if (at < text.size()) text[at] = AnyByte();
        break;
      case 1:
        if (at < text.size()) text[at] = static_cast<char>(text[at] ^ (1 << Below(8)));
        break;
      case 2:
        text.insert(at, 1 + Below(4), AnyByte());
        break;
      case 3:
        text.erase(at, length);
        break;
      case 4:
        text.insert(Below(text.size() + 1), text.substr(at, length));
        break;
      case 5: {
        const std::string& other = corpus_[Below(corpus_.size())];
        text = text.substr(0, at) + other.substr(Below(other.size() + 1));
        break;
      }
      case 6: {
        static constexpr std::string_view kNumbers[] = {"-1",      "0",       "1e308", "4294967296",
                                                        "1048577", "9999999", "1e-320"};
        const std::size_t digit = std::min(text.find_first_of("0123456789", at), text.size());
        const std::size_t behind = std::min(text.find_first_not_of("0123456789", digit), text.size());
        text.replace(digit, behind - digit, kNumbers[Below(std::size(kNumbers))]);
        break;
      }
      default:
        if (!words_.empty()) text.insert(at, words_[Below(words_.size())]);
        break;
    }
  }

  const std::vector<std::string>& corpus_;
  const std::vector<std::string>& words_;
  Random random_;
};

// The input under way, in memory that both processes see.
struct SharedInput {
  std::size_t size = 0;
  std::array<char, kLongestInput> bytes;
};

void RunOne(const std::string& text, SharedInput& shared) {
  shared.size = std::min(text.size(), kLongestInput);
  std::copy_n(text.begin(), shared.size, shared.bytes.begin());
  alarm(kHangingSeconds);
  const auto start = std::chrono::steady_clock::now();
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(text.data()), shared.size);
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  alarm(0);
  Require(time.count() < kMostSeconds, "an input takes little time");
}

int Replay(const std::string& target, const fs::path& folder, const fs::path& dictionary, long mutations,
           SharedInput& shared) {
  const std::vector<std::string> corpus = ReadCorpus(folder);
  const std::vector<std::string> words = ReadDictionary(dictionary);
  Require(!corpus.empty(), "the corpus holds files", folder.string());
  RunOne("", shared);
  for (const std::string& text : corpus) RunOne(text, shared);
  Mutator mutator(corpus, words, 20'310'405);
  for (long k = 0; k < mutations; ++k) RunOne(mutator.Next(), shared);
  std::printf("%s: %zu files, %ld mutations\n", target.c_str(), corpus.size(), mutations);
  return 0;
}

int ReplayInChild(char** argv) {
  void* const memory = mmap(nullptr, sizeof(SharedInput), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  Require(memory != MAP_FAILED, "memory for the input");
  SharedInput& shared = *static_cast<SharedInput*>(memory);
  const std::string target = argv[1];
  const pid_t child = fork();
  Require(child >= 0, "a process for the target");
  if (child == 0) {
    try {
      return Replay(target, argv[2], argv[3], std::stol(argv[4]), shared);
    } catch (const std::exception& error) {
      std::fprintf(stderr, "fuzz: thrown: %s\n", error.what());
      return 1;
    }
  }
  int status = 0;
  Require(waitpid(child, &status, 0) == child, "the process of the target ends");
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return 0;
  const std::string kept = target + ".input";
  std::ofstream(kept, std::ios::binary) << std::string_view(shared.bytes.data(), shared.size);
  std::fprintf(stderr, "fuzz: the input is in %s\n", kept.c_str());
  return 1;
}

}  // namespace
}  // namespace orv::testing

int main(int argc, char** argv) {
  if (argc != 5) {
    std::fprintf(stderr, "usage: %s TARGET CORPUS DICTIONARY MUTATIONS\n", argv[0]);
    return 2;
  }
  return orv::testing::ReplayInChild(argv);
}
