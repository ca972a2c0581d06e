// By Qt alone, without a helper: a disk that does not answer holds the window up.
#include "platform/qt/growing_file.h"

#include <QFile>

namespace kvr::platform {
namespace {

class WrittenAtOnce : public GrowingFile {
 public:
  explicit WrittenAtOnce(const std::string& path) : file_(QString::fromStdString(path)) {}
  bool open() { return file_.open(QIODevice::WriteOnly | QIODevice::Append); }
  FileResult write(std::span<const std::uint8_t> bytes) override {
    const auto size = static_cast<qint64>(bytes.size());
    if (result_ && (file_.write(reinterpret_cast<const char*>(bytes.data()), size) != size || !file_.flush()))
      result_ = {false, "the file cannot be written"};
    return result_;
  }

 private:
  QFile file_;
  FileResult result_;
};

}  // namespace

std::unique_ptr<GrowingFile> growFile(const std::string& path, FileResult& why) {
  auto file = std::make_unique<WrittenAtOnce>(path);
  why = file->open() ? FileResult() : FileResult{false, "the file cannot be written"};
  return why ? std::move(file) : nullptr;
}

}  // namespace kvr::platform
