#include "cli/device_run.h"

#include <algorithm>
#include <cctype>

#include "platform/text.h"

namespace kvr::cli {
namespace {

// Pairs of hexadecimal digits with blanks between them or not.
bool isHex(const std::string& text) {
  const auto digits = std::count_if(text.begin(), text.end(), [](unsigned char c) { return std::isxdigit(c) != 0; });
  const auto blanks = std::count(text.begin(), text.end(), ' ');
  return digits > 0 && digits % 2 == 0 && digits + blanks == std::ssize(text);
}

}  // namespace

ExitCode prepare(const Desk& desk, const JobArguments& job, const LineArguments& line, JobSource& source) {
  if (const Problem problem = JobMaker(job, desk.files, desk.codec).make(source))
    return fail(desk, problem.code, problem.why, problem.next);
  for (const std::string& remark : source.remarks) desk.out.note(remark);
  return line.take(desk);
}

std::string commandBytes(const std::string& text) {
  if (isHex(text)) return text;
  std::string bytes;
  for (const char c : text) bytes += platform::hexText(static_cast<unsigned char>(c), 2) + " ";
  return bytes;
}

ExitCode checkLine(const Desk& desk, const std::string& settings) {
  const platform::PortError error = desk.lease.link().setSettings(settings);
  return error ? fail(desk, ExitCode::WrongUse, error.text, "Write a line as BAUD,n|e|o,8,1.") : ExitCode::Passed;
}

}  // namespace kvr::cli
