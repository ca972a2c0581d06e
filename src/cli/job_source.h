// From arguments to a job: the model is looked up, the files are read, laid out and judged, the options are set. What a
// window would ask or warn of is a problem here, unless the user has said yes to all of it.
#pragma once

#include <string>
#include <vector>

#include "cli/exit_code.h"
#include "cli/job_arguments.h"
#include "engine/job.h"
#include "images/image_buffer.h"
#include "images/image_file.h"
#include "platform/file_system.h"
#include "platform/text_codec.h"
#include "project/project_file.h"

namespace kvr::cli {

// Why there is no job.
struct Problem {
  ExitCode code = ExitCode::Passed;  // Passed: there is none
  std::string why;
  std::string next;
  explicit operator bool() const { return code != ExitCode::Passed; }
};

// Everything that is known of the job. `project` is what a project file of it would hold.
struct JobSource {
  engine::Job job;
  project::ProjectFile project;
  images::ImageState images;         // of the files; a project fills them, too
  images::ImageFile code, data;      // as scanned; of a project: empty
  std::vector<std::string> remarks;  // what --yes has passed over, and what an option brought along
};

class JobMaker {
 public:
  JobMaker(const JobArguments& arguments, const platform::FileSystem& files, const platform::TextCodec& codec)
      : arguments_(arguments), files_(files), codec_(codec) {}
  [[nodiscard]] Problem make(JobSource& source);

 private:
  Problem fromProject(JobSource& source);
  Problem fromFiles(JobSource& source);
  Problem loadFile(const std::string& path, const std::string& at, images::ImageBuffer& buffer, images::ImageFile& file,
                   JobSource& source);
  Problem question(std::string why, JobSource& source) const;
  Problem setOptions(JobSource& source) const;
  void settle(JobSource& source) const;
  const JobArguments& arguments_;
  const platform::FileSystem& files_;
  const platform::TextCodec& codec_;
};

// The model of that name, or the nearest names.
[[nodiscard]] Problem findModel(const std::string& name, const catalogue::McuRecord*& model);

}  // namespace kvr::cli
