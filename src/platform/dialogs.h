// Questions to the user at the window. All of them wait through the event loop; a window that closes answers No or
// nothing.
#pragma once

#include <string>

namespace kvr::platform {

inline const std::string kTitle = "KVR-ISP";  // of message boxes that have no title of their own

enum class BoxIcon { Information, Warning };

struct FileQuestion {
  std::string title;
  std::string filter;         // "(*.hex, *.bin)|*.hex;*.bin|All Files (*.*)|*.*": pairs of caption and patterns
  std::string initialFolder;  // a folder, or a file whose folder is meant; empty: the platform's choice
  std::string fileName;       // proposed name, may be empty
};

class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual void message(const std::string& title, const std::string& text, BoxIcon icon = BoxIcon::Information) = 0;
  virtual bool askYesNo(const std::string& title, const std::string& text) = 0;  // No is the default
  virtual void help(const std::string& title, const std::string& text) = 0;      // a long text to read; does not wait
  virtual std::string openFile(const FileQuestion& question) = 0;                // a path; empty: cancelled
  virtual std::string saveFile(const FileQuestion& question) = 0;  // asks before overwriting; empty: cancelled
  virtual void beep() = 0;                                         // queued; never holds anything up
  virtual void setBusy(bool busy) = 0;                             // the hourglass
};

}  // namespace kvr::platform
