#include "platform/qt/become_program.h"

#include <unistd.h>

#include <vector>

namespace kvr::platform {

void becomeProgram(std::string program, std::span<char* const> arguments) {
  std::vector<char*> words{program.data()};
  words.insert(words.end(), arguments.begin(), arguments.end());
  words.push_back(nullptr);
  ::execv(program.c_str(), words.data());
}

}  // namespace kvr::platform
