// Runs a fuzzer where libFuzzer is not at hand: over seed files (the arguments), and over random
// inputs that are the same in every run. With --verbose as the first argument every input is
// written out before it runs, so that the last one written is the one that fails; --inputs=N, the
// first argument or the next, makes it N random inputs.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr int kInputs = 20'000;
constexpr std::size_t kMostBytes = 96;

/// What numbers, commands, answers and blocks are made of.
constexpr std::string_view kWireCharacters =
    "0123456789012345678901234567890123456789+-.eEdD&HhOo#,;:?*$() \t\r\nZANCH";

class Inputs {
 public:
  explicit Inputs(std::vector<std::string> seeds) : seeds_(std::move(seeds)) {}

  /// A changed seed, a text of wire characters, or any bytes.
  std::string next() {
    switch (below(3)) {
      case 0:
        return seeds_.empty() ? text() : changed(seeds_[below(seeds_.size())]);
      case 1:
        return text();
      default:
        return bytes();
    }
  }

 private:
  std::size_t below(std::size_t bound) { return random_() % bound; }
  char byte() { return static_cast<char>(below(256)); }
  char wireCharacter() { return kWireCharacters[below(kWireCharacters.size())]; }

  std::string text() {
    std::string made(below(kMostBytes), ' ');
    for (char& c : made) c = wireCharacter();
    return made;
  }

  std::string bytes() {
    std::string made(below(kMostBytes), ' ');
    for (char& c : made) c = byte();
    return made;
  }

  std::string changed(std::string seed) {
    for (std::size_t changes = 1 + below(4); changes > 0; --changes) {
      const std::size_t place = below(seed.size() + 1);
      switch (below(4)) {
        case 0:
          seed.insert(place, 1, wireCharacter());
          break;
        case 1:
          seed.insert(place, 1, byte());
          break;
        case 2:
          seed.erase(place, 1 + below(4));
          break;
        default:
          seed.insert(place, seed.substr(below(seed.size() + 1), 1 + below(16)));
      }
    }
    return seed;
  }

  std::vector<std::string> seeds_;
  std::mt19937_64 random_{1};
};

void show(const std::string& input) {
  std::cout << std::hex << std::setfill('0');
  for (const char c : input) std::cout << std::setw(2) << (static_cast<unsigned>(c) & 0xFFU);
  std::cout << std::endl;  // flushed: the next thing may be a crash
}

void run(const std::string& input, bool verbose) {
  if (verbose) show(input);
  // An array of exactly this size, so that the sanitizer sees a read of one byte more.
  const std::vector<std::uint8_t> data(input.begin(), input.end());
  LLVMFuzzerTestOneInput(data.data(), data.size());
}

std::string contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read the seed " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> arguments(argv + 1, argv + argc);
  const bool verbose = !arguments.empty() && arguments.front() == "--verbose";
  if (verbose) arguments.erase(arguments.begin());

  int count = kInputs;
  constexpr std::string_view kCount = "--inputs=";
  if (!arguments.empty() && arguments.front().starts_with(kCount)) {
    count = std::stoi(arguments.front().substr(kCount.size()));
    arguments.erase(arguments.begin());
  }

  std::vector<std::string> seeds;
  std::transform(arguments.begin(), arguments.end(), std::back_inserter(seeds), contents);
  for (const std::string& seed : seeds) run(seed, verbose);
  run("", verbose);

  Inputs inputs(std::move(seeds));
  for (int input = 0; input < count; ++input) run(inputs.next(), verbose);
}
