#include "engine/trace_files.h"

#include <algorithm>

#include "engine/trace_text.h"
#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr std::string_view kPrefix = "KVR-ISP_";
constexpr std::string_view kSuffix = ".txt";
constexpr std::size_t kSecondsEnd = 19;  // of "yyyy-mm-dd hh:mm:ss.mmm"

// Fit for a file's name on every disk.
std::string namePart(std::string text) {
  for (char& c : text)
    if (c == ' ' || c == '/' || c == '\\' || c == ':') c = c == ' ' ? '_' : '-';
  return text;
}

std::string pathOf(const std::string& folder, const std::string& stem, int number) {
  return folder + "/" + stem + (number > 1 ? "_" + std::to_string(number) : "") + std::string(kSuffix);
}

}  // namespace

std::string TraceFiles::nameOf(const Trace& trace) {
  std::string name(kPrefix);
  name += namePart(trace.field("began").substr(0, kSecondsEnd));
  for (const char* key : {"model", "ending"}) name += "_" + namePart(trace.field(key));
  return name + std::string(kSuffix);
}

platform::FileResult TraceFiles::write(const Trace& trace, const std::string& path) {
  return files_.replace(path, platform::bytesOf(traceText(trace)));
}

// Two runs may begin within one second.
std::string TraceFiles::freePath(const Trace& trace) const {
  const std::string name = nameOf(trace);
  const std::string stem = name.substr(0, name.size() - kSuffix.size());
  int number = 1;
  while (files_.fileExists(pathOf(folder(), stem, number))) ++number;
  return pathOf(folder(), stem, number);
}

platform::FileResult TraceFiles::keep(const Trace& trace) {
  if (auto made = files_.makeFolder(folder()); !made) return made;
  const std::string path = freePath(trace);
  if (auto written = write(trace, path); !written) return written;
  lastKept_ = path;
  return removeOldest();
}

// The names begin with date and time.
platform::FileResult TraceFiles::removeOldest() {
  std::vector<std::string> names = files_.filesIn(folder());
  std::erase_if(names, [](const std::string& name) { return !name.starts_with(kPrefix) || !name.ends_with(kSuffix); });
  std::ranges::sort(names);
  for (std::size_t i = 0; i + kKept < names.size(); ++i)
    if (auto removed = files_.remove(folder() + "/" + names[i]); !removed) return removed;
  return {};
}

}  // namespace kvr::engine
