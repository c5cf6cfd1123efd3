// Feeds a fuzz target the files of its corpus and mutations of them, where libFuzzer is not at hand.
//
// usage: replay_TARGET FOLDER [MUTATIONS]
//
// The seed is printed; NGREX_TEST_SEED repeats a run. When the target ends the process, the input stands in the file
// that was named before.

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "tests/fuzz/target.h"
#include "tests/support/seed.h"

namespace {

using Random = std::mt19937;

std::size_t _below(Random& random, std::size_t end) {
  return std::uniform_int_distribution<std::size_t>(0, end - 1)(random);
}

std::vector<std::string> _corpus(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  std::vector<std::string> inputs;
  for (const std::filesystem::path& path : paths) {
    std::ifstream file(path, std::ios::binary);
    inputs.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
  return inputs;
}

// A small change: a byte, a piece lost, doubled, moved, or taken from another input.
void _mutate(std::string& input, const std::vector<std::string>& corpus, Random& random) {
  constexpr std::string_view likely = "\t\n\r 0123456789-_=|:#.,*";
  if (input.empty()) input = "x";
  const std::size_t at = _below(random, input.size());
  const std::size_t length = 1 + _below(random, std::min<std::size_t>(input.size() - at, 40));
  const std::string& other = corpus[_below(random, corpus.size())];
  switch (_below(random, 6)) {
    case 0:
      input[at] = static_cast<char>(_below(random, 256));
      break;
    case 1:
      input[at] = likely[_below(random, likely.size())];
      break;
    case 2:
      input.erase(at, length);
      break;
    case 3:
      input.insert(_below(random, input.size()), input.substr(at, length));
      break;
    case 4:
      if (!other.empty()) input.insert(at, other.substr(_below(random, other.size()), 1 + _below(random, 60)));
      break;
    default:
      input.resize(at);
      break;
  }
}

void _feed(const std::string& input) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s FOLDER [MUTATIONS]\n", argv[0]);
    return 2;
  }
  const std::vector<std::string> corpus = _corpus(argv[1]);
  const unsigned long mutations = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 0;
  Random random(colx::test::choose_seed());
  // Other targets may be at work with the same seed.
  const std::filesystem::path last =
      std::filesystem::temp_directory_path() / ("ngrex-fuzz-" + std::to_string(::getpid()));
  std::printf("last input in %s\n", last.c_str());
  std::fflush(stdout);
  for (const std::string& input : corpus)
    _feed(input);
  for (unsigned long i = 0; i < mutations && !corpus.empty(); ++i) {
    std::string input = corpus[_below(random, corpus.size())];
    for (std::size_t steps = 1 + _below(random, 8); steps > 0; --steps)
      _mutate(input, corpus, random);
    std::ofstream(last, std::ios::binary | std::ios::trunc) << input;
    _feed(input);
  }
  std::filesystem::remove(last);
  std::printf("%zu inputs and %lu mutations\n", corpus.size(), mutations);
  return corpus.empty() ? 1 : 0;
}
