// The command's own ways in: its command line, with the names of options in it, and the image files that it tells of.
#include <sstream>

#include "cli/arguments.h"
#include "images/file_facts.h"
#include "options/option_words.h"
#include "tests/cli/cli_bench.h"
#include "tests/fuzz/targets.h"

namespace kvr::fuzz {
namespace {

constexpr int kFile = 6;  // what the command ends with when a file is at fault

// One word a line.
std::vector<std::string> wordsOf(const Bytes& input) {
  std::istringstream text(textOf(input));
  std::vector<std::string> words;
  for (std::string word; words.size() < 40 && std::getline(text, word);) words.push_back(word);
  return words;
}

std::string faultOfRanges(const images::ImageFacts& facts) {
  std::int64_t bytes = 0, last = -2;
  for (const images::AddressRange& range : facts.ranges) {
    if (range.empty() || range.first <= last + 1) return "ranges that touch, or out of order";
    last = range.last;
    bytes += range.count();
  }
  if (bytes != facts.bytes) return "the count of bytes";
  return facts.gaps().size() + 1 == std::max<std::size_t>(facts.ranges.size(), 1) ? "" : "the gaps";
}

// The same image again, by way of a HEX file.
std::string faultOfConversion(const images::FileFacts& facts) {
  const Bytes hex = images::asHex(facts.layer);
  if (hex.empty()) return facts.image.last() >= 0x10000 ? "" : "no HEX file";
  const auto back = images::fileFacts("back.hex", {.bytes = hex});
  return images::differencesOf(facts.layer, back.layer).empty() ? "" : "another image as a HEX file";
}

}  // namespace

std::string faultOfCommandLine(const Bytes& input) {
  const std::vector<std::string> words = wordsOf(input);
  cli::Arguments arguments;
  const bool read = arguments.read(words);
  if (!read && arguments.text().empty()) return "an end without a word";
  if (read && arguments.command().name().empty()) return "no command";
  for (const char* model : {"Ivy-HF0S", "Quince-H03", "Rowan-HF0"}) {
    const auto options = options::readOptionWords(*catalogue::findByName(model), words);
    if (!options.fault.empty() && !options.lines.empty()) return "options in spite of a fault";
  }
  return {};
}

// The first byte says where the file is placed, and whether its name says that it is HEX.
std::string faultOfImage(const Bytes& input) {
  if (input.empty()) return {};
  const Bytes file(input.begin() + 1, input.end());
  const auto facts = images::fileFacts(input[0] & 1 ? "a.hex" : "a", {.bytes = file}, (input[0] >> 1) * 0x200);
  const auto model = catalogue::describeModel(*catalogue::findByName("Ivy-HF0S"));
  if (facts.fault != images::FileFault::None) return {};
  if (images::factLines(facts, &model, images::ImageKind::Code).empty()) return "no word";
  const auto fit = images::fitOf(facts.image, model, images::ImageKind::Code);
  if (fit.filled + fit.inData + fit.beyond != facts.image.bytes) return "bytes that are counted twice or not at all";
  for (const std::string& line : images::warningLines(facts, &model, images::ImageKind::Code))
    if (line.empty()) return "an empty warning";
  if (const std::string fault = faultOfRanges(facts.image); !fault.empty()) return fault;
  return faultOfConversion(facts);
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
