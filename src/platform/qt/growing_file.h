// A growing file that a helper thread writes, so that a slow or dead disk never holds the window up.
#pragma once

#include <memory>
#include <string>

#include "platform/file_system.h"

namespace kvr::platform {

// Opens the file at its end, or makes it. Nothing: `why` tells the reason. At most `kBacklog` bytes wait for the disk;
// more than that is an error of the write.
inline constexpr std::size_t kBacklog = 64 << 20;
std::unique_ptr<GrowingFile> growFile(const std::string& path, FileResult& why);

}  // namespace kvr::platform
