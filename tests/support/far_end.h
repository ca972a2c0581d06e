// A pseudo-terminal whose far end a test plays.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kvr::support {

class FarEnd {
 public:
  FarEnd();
  ~FarEnd() { hangUp(); }
  FarEnd(const FarEnd&) = delete;
  FarEnd& operator=(const FarEnd&) = delete;
  const std::string& device() const { return device_; }
  void send(const std::vector<std::uint8_t>& bytes);
  std::vector<std::uint8_t> receive(std::size_t count);  // fewer when two seconds bring nothing
  void hangUp();                                         // what pulling an adapter out looks like

 private:
  int master_;
  std::string device_;
};

}  // namespace kvr::support
