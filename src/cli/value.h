// What a command reports, as a tree of values that keeps its order. A text shows it as lines, `--json` as an object.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace kvr::cli {

struct Value;
struct Field;
using List = std::vector<Value>;
using Fields = std::vector<Field>;

struct Value : std::variant<bool, std::int64_t, double, std::string, List, Fields> {
  using variant::variant;
};

struct Field {
  std::string name;
  Value value;
};

inline List listOf(const std::vector<std::string>& texts) {
  return {texts.begin(), texts.end()};
}

}  // namespace kvr::cli
