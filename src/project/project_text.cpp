#include "project/project_text.h"

#include <algorithm>

#include "platform/text.h"

namespace kvr::project {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kSumKey = "buffer_check_sum";

// Hands out the lines of a text one by one.
class LineReader {
 public:
  explicit LineReader(std::string_view text) : rest_(text) {}
  bool atEnd() const { return rest_.empty(); }
  bool onlyEmptyLinesLeft() const { return rest_.find_first_not_of("\r\n \t") == std::string_view::npos; }
  std::string_view next() {
    const std::size_t end = rest_.find_first_of("\r\n");
    const std::string_view line = rest_.substr(0, end);
    if (end == std::string_view::npos) {
      rest_ = {};
    } else {
      rest_.remove_prefix(end + (rest_.substr(end, 2) == "\r\n" ? 2 : 1));
    }
    return line;
  }

 private:
  std::string_view rest_;
};

HeaderLine splitLine(std::string_view line) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) return {std::string(line), {}};
  return {std::string(line.substr(0, colon)), platform::trim(line.substr(colon + 1))};
}

std::optional<double> sumOf(std::string_view value) {
  const bool number = !value.empty() && value.front() >= '0' && value.front() <= '9';
  return number ? std::optional(platform::valueOf(value)) : std::nullopt;
}

constexpr int kNoDigit = -1;

int digitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return c >= 'a' && c <= 'f' ? c - 'a' + 10 : kNoDigit;
}

std::uint8_t pairOf(char high, char low) {
  const int h = digitOf(high);
  const int l = digitOf(low);
  return h == kNoDigit || l == kNoDigit ? 0 : static_cast<std::uint8_t>(h * 16 + l);
}

HexSection decode(std::string_view line, std::size_t room) {
  HexSection section;
  section.bytes.reserve(std::min(room, line.size() / 2));
  for (std::size_t i = 0; i < line.size();) {
    if (line[i] == ' ') {
      ++i;
      continue;
    }
    const std::uint8_t byte = pairOf(line[i], i + 1 < line.size() ? line[i + 1] : ' ');
    section.sum += byte;
    if (section.bytes.size() < room) {
      section.bytes.push_back(byte);
    } else {
      section.fits = false;
    }
    i += 2;
  }
  return section;
}

void append(platform::Bytes& out, std::string_view text) {
  out.insert(out.end(), text.begin(), text.end());
}

void appendLine(platform::Bytes& out, std::string_view text) {
  append(out, text);
  append(out, "\r\n");
}

void appendHex(platform::Bytes& out, std::span<const std::uint8_t> bytes) {
  constexpr std::string_view kHex = "0123456789ABCDEF";
  for (const std::uint8_t byte : bytes) {
    out.push_back(static_cast<std::uint8_t>(kHex[byte >> 4]));
    out.push_back(static_cast<std::uint8_t>(kHex[byte & 15]));
  }
}

std::string sumLine(std::string_view key, std::span<const std::uint8_t> bytes) {
  std::uint32_t sum = 0;
  for (const std::uint8_t byte : bytes) sum += byte;
  return std::string(key) + ":  " + std::to_string(sum);
}

std::string oneLine(std::string text) {
  for (char& c : text) {
    if (c == '\r' || c == '\n') c = ' ';
  }
  return text;
}

}  // namespace

const HeaderLine* findLine(const Header& header, std::string_view key) {
  for (const HeaderLine& line : header) {
    if (line.key == key) return &line;
  }
  return nullptr;
}

ProjectText parseProject(std::span<const std::uint8_t> file, std::size_t codeRoom, std::size_t dataRoom) {
  std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  LineReader lines(text);
  ProjectText project;
  while (!lines.atEnd() && !project.ended) {
    const std::string_view line = lines.next();
    project.ended = line.size() < 64 && platform::upper(platform::trim(line)) == "END";
    if (!project.ended) project.header.push_back(splitLine(line));
  }
  if (!project.ended) return project;
  project.code = decode(lines.next(), codeRoom);
  if (const HeaderLine* stated = findLine(project.header, kSumKey)) {
    project.code.stated = sumOf(stated->value);
  }
  if (lines.onlyEmptyLinesLeft()) return project;
  lines.next();  // "Data_File_Begin:", whatever it says
  const auto stated = sumOf(splitLine(lines.next()).value);
  project.data = decode(lines.next(), dataRoom);
  project.data->stated = stated;
  return project;
}

platform::Bytes formatProject(const Header& header, std::span<const std::uint8_t> code,
                              std::optional<std::span<const std::uint8_t>> data) {
  platform::Bytes out;
  out.reserve(4096 + 2 * (code.size() + (data ? data->size() : 0)));
  for (const HeaderLine& line : header) appendLine(out, line.key + ": " + oneLine(line.value));
  appendLine(out, sumLine(kSumKey, code));
  appendLine(out, "END");
  appendHex(out, code);
  if (!data) return out;
  appendLine(out, "");
  appendLine(out, "Data_File_Begin:");
  appendLine(out, sumLine("data_buffer_check_sum", *data));
  appendHex(out, *data);
  appendLine(out, "");
  appendLine(out, "Data_File_End");
  return out;
}

}  // namespace kvr::project
