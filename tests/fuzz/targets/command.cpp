// What someone may type after `kvr`, and what `kvr image` may be given.
#include <algorithm>

#include "tests/cli/cli_bench.h"
#include "tests/fuzz/targets.h"

namespace kvr::fuzz {
namespace {

constexpr int kFile = 6;

}  // namespace

// A word a line.
std::string faultOfCommandLine(const Bytes& input) {
  if (std::find(input.begin(), input.end(), std::uint8_t{0}) != input.end()) return {};  // no argument holds one
  std::istringstream lines(textOf(input));
  std::vector<std::string> words;
  for (std::string word; std::getline(lines, word);) words.push_back(word);
  cli::Arguments arguments;
  if (arguments.read(words)) return arguments.command().name().empty() ? "read, and no command" : "";
  if (arguments.text().empty()) return "refused without a word";
  const bool known = arguments.code() == cli::ExitCode::Passed || arguments.code() == cli::ExitCode::WrongUse;
  return known ? "" : "neither help nor wrong use";
}

// A file: told of, written as HEX, and then the same image. The first byte chooses how its name ends.
std::string faultOfCommandImage(const Bytes& input) {
  if (input.empty()) return {};
  const std::string name = input[0] % 2 == 0 ? "/file.hex" : "/file.bin";
  cli::CliBench bench;
  bench.files.put(name, Bytes(input.begin() + 1, input.end()));
  const int told = bench.run({"image", name, "--model", "Ivy-HF0S"});
  if (told == kFile) return {};
  if (told != 0) return "told of with " + std::to_string(told) + ": " + bench.streams.told;
  const int written = bench.run({"image", name, "-o", "/out.hex"});
  if (written == kFile) return {};
  if (written != 0 || bench.run({"image", "/out.hex", "--diff", name}) != 0) return "another image after the writing";
  return bench.run({"image", name, "-o", "/out.hex"}) == kFile ? "" : "written over without --force";
}

}  // namespace kvr::fuzz
