// Project files of both formats: what opens is written and read again, and is the same.
#include <numeric>

#include "platform/text.h"
#include "platform/virtual/plain_codec.h"
#include "project/project_file.h"
#include "tests/fuzz/targets.h"

namespace kvr::fuzz {
namespace {

std::string faultOf(const project::ReadProject& read) {
  if (!read.refusal.empty()) return read.model && read.codeSound ? "refused, and yet sound" : "";
  if (!read.model || read.project.model != read.model->name) return "a model that the catalogue lacks";
  if (read.project.code.size() > 0x12001 || (read.project.data && read.project.data->size() > 0x10001))
    return "more than the image has room for";
  const auto again = project::readProject(project::textOf(read.project), platform::PlainCodec());
  if (again.old || !again.refusal.empty()) return "its own text is refused: " + again.refusal;
  if (!(again.project == read.project)) return "its own text is read otherwise";
  if (again.codeSound != !read.project.code.empty()) return "the sum of its own code";
  if (read.project.data && again.dataSound != !read.project.data->empty()) return "the sum of its own data";
  return {};
}

}  // namespace

std::string faultOfProject(const Bytes& input) {
  const auto read = project::readProject(input, platform::PlainCodec());
  if (read.refusal.empty() && read.codeSound && !read.old) {
    const project::ProjectText text = project::parseProject(input, 1, 1);
    const project::HeaderLine* stated = project::findLine(text.header, "buffer_check_sum");
    const auto sum = std::accumulate(read.project.code.begin(), read.project.code.end(), 0);
    if (!stated || platform::wholeOf(stated->value) != sum) return "sound, with another sum than the file states";
  }
  return faultOf(read);
}

}  // namespace kvr::fuzz
