// A user at the window: loads files, starts runs of every kind, and remembers what the files said, byte by byte and
// without the program's help.
#pragma once

#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tests/support/form_bench.h"

namespace kvr::soak {

using catalogue::McuRecord;
using Random = std::mt19937_64;

// What a file says of each address; nothing where it says nothing.
using Meant = std::vector<std::optional<std::uint8_t>>;

struct UserFile {
  std::string path;
  platform::Bytes bytes;
  Meant meant;
};
UserFile binaryFile(Random& random, const std::string& path, std::size_t size);
UserFile hexFile(Random& random, const std::string& path, std::size_t size);  // with holes

class User : public support::FormBench {
 public:
  explicit User(sim::WireConfig wireConfig);

  // --- Files: what a good file says is what is meant from then on. ---
  void pick(const McuRecord& model);  // both images go
  void openCode(const UserFile& file);
  bool dataButtonIsOn() const { return form.images.panel.comLoadDataFile.enabled(); }
  void openData(const UserFile& file);
  void openBad(const std::string& path, const std::optional<std::string>& content);  // as code; it means nothing
  void openProject(const std::string& path);
  void rewriteCode(const UserFile& file);  // under the name that is open, as a compiler does
  void removeCode() { files.files.erase(codePath_); }
  const McuRecord& model() const { return *model_; }
  bool codeIsHex() const { return codePath_.ends_with(".hex"); }
  const Meant& code() const { return code_; }
  bool codeIsCut() const { return codeIsCut_; }  // the user was told when the file was opened
  const Meant& data() const { return data_; }

  // --- Runs. Each returns "hangs" or nothing. ---
  std::string start(platform::Button& button, platform::Button& stopButton);
  bool says(std::string_view words) const { return pane().find(words) != std::string::npos; }
  std::string notAtRest() const;

 private:
  void openBy(platform::Button& button, const std::string& path);
  const McuRecord* model_ = nullptr;
  std::string codePath_;
  Meant code_, data_;
  bool codeIsCut_ = false;
};

}  // namespace kvr::soak
