// Project files that something has damaged.
#include <gtest/gtest.h>

#include "tests/project/project_bench.h"

namespace kvr::project {
namespace {

using platform::Bytes;

constexpr int kMutations = 200'000;

class Damage {
 public:
  explicit Damage(std::uint32_t seed) : random_(seed) {}
  Bytes of(const Bytes& good) {
    Bytes bytes = good;
    for (int times = 1 + pick(3); times > 0 && !bytes.empty(); --times) once(bytes);
    return bytes;
  }

 private:
  int pick(std::size_t below) { return static_cast<int>(random_() % below); }
  Bytes::iterator spot(Bytes& bytes) { return bytes.begin() + pick(bytes.size()); }

  void once(Bytes& bytes) {
    switch (pick(10)) {
      case 0:
        *spot(bytes) ^= static_cast<std::uint8_t>(1 << pick(8));
        break;
      case 1:
        bytes.resize(static_cast<std::size_t>(pick(bytes.size())));
        break;
      case 2:
        bytes.erase(spot(bytes));
        break;
      case 3:
        swapLines(bytes);
        break;
      case 4:
        widen(bytes);
        break;
      default:
        const std::string texts[] = {std::string(static_cast<std::size_t>(pick(3000)), pick(2) == 0 ? 'A' : ' '),
                                     "99999999999999999999999999999", "\xD6\xD0\xFF\xFE\x80", "\r\n",
                                     std::string(1, static_cast<char>(random_()))};
        const std::string& text = texts[pick(std::size(texts))];
        bytes.insert(spot(bytes), text.begin(), text.end());
    }
  }
  void swapLines(Bytes& bytes) {
    const auto first = std::find(spot(bytes), bytes.end(), '\n');
    const auto second = first == bytes.end() ? first : std::find(first + 1, bytes.end(), '\n');
    if (second != bytes.end()) std::rotate(bytes.begin(), first + 1, second + 1);
  }
  void widen(Bytes& bytes) {  // as if it had been written in 16-bit characters
    Bytes wide;
    for (const auto byte : bytes) wide.insert(wide.end(), {byte, 0});
    bytes = wide;
  }
  std::mt19937 random_;
};

// The sum that the file itself states ahead of its code.
std::optional<double> statedSum(const std::string& file) {
  const ProjectText text =
      parseProject(std::span(reinterpret_cast<const std::uint8_t*>(file.data()), file.size()), 1, 1);
  const HeaderLine* line = findLine(text.header, "buffer_check_sum");
  return line ? std::optional(platform::valueOf(line->value)) : std::nullopt;
}

TEST(ProjectFuzz, NeverLeavesAnImageValidThatIsNotTheOneSaved) {
  ProjectBench bench;
  std::mt19937 random(7);
  bench.select("Ivy-H20S");
  bench.fill(random, 40);
  bench.place(bench.images.state.EepromBuffer, {1, 2, 3, 4});
  bench.images.panel.cheAuto_Increase.setValue(false);
  bench.save("/good.KVR");
  const Bytes good = bench.files.files["/good.KVR"].bytes;
  Damage damage(99);
  int opened = 0;
  for (int i = 0; i < kMutations; ++i) {
    bench.files.put("/bad.KVR", damage.of(good));
    bench.images.state.imageValid = false;
    bench.room.openProject("/bad.KVR");
    bench.dialogs.shown.clear();
    if (!bench.images.state.imageValid) continue;
    ++opened;
    std::uint32_t sum = 0;
    for (const auto byte : bench.kept(bench.images.state.CodeBuffer)) sum += byte;
    const bool patched = bench.images.counters.code.armed;  // a counter that the damage switched on
    ASSERT_TRUE(patched || statedSum(bench.fileText("/bad.KVR")) == sum)
        << "mutation " << i << " sum " << sum << " count " << bench.images.state.CodeBuffer.rangeEnd + 1 << "\n"
        << bench.fileText("/bad.KVR");
  }
  EXPECT_GT(opened, kMutations / 100);  // some damage lies where it does not matter
  EXPECT_LT(opened, kMutations);
}

}  // namespace
}  // namespace kvr::project
