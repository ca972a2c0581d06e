// What every command that makes a job and programs a device with it begins with.
#pragma once

#include "cli/job_source.h"
#include "cli/line_arguments.h"

namespace kvr::cli {

// Makes the job and takes the port. Passed: both are there; else it has been told why not.
[[nodiscard]] ExitCode prepare(const Desk& desk, const JobArguments& job, const LineArguments& line, JobSource& source);

// A command of the user's own, as hexadecimal: "11 22" as it is, anything else as the text's bytes.
std::string commandBytes(const std::string& text);
// Tells when a line like "9600,n,8,1" is none.
[[nodiscard]] ExitCode checkLine(const Desk& desk, const std::string& settings);

}  // namespace kvr::cli
