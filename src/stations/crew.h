// The stations of a line, at most as many as a screen has tiles for: all get the same work, each has its own adapter.
#pragma once

#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "stations/station.h"

namespace kvr::stations {

struct Place {
  std::string name;
  std::string adapter;  // its identity, or a device's path; empty: none chosen yet
  bool operator==(const Place&) const = default;
};

class Crew {
 public:
  static constexpr std::size_t kMost = 16;
  using DeviceOf = std::function<std::string(const std::string& adapter)>;  // "" while it is not there

  Crew(std::string command, DeviceOf deviceOf);

  // False: there is no room for another one.
  bool add(Place place);
  bool remove(std::size_t index);                                                           // false while it works
  bool setAdapter(std::size_t index, const std::string& adapter, const std::string& text);  // false while it works
  bool rename(std::size_t index, const std::string& name);                                  // false while it works
  std::size_t size() const { return posts_.size(); }
  const Place& place(std::size_t index) const { return posts_[index]->place; }
  Station& station(std::size_t index) { return posts_[index]->station; }
  // A name that none has yet: "1", "2", ...
  std::string freshName() const;
  // The adapters of two stations must differ: one of those that share theirs with an earlier one, or none.
  std::optional<std::size_t> doubled() const;

  Work work;
  void startAll();  // one after the other, in the turns of the event loop
  void stopAll();
  void finishAll();
  void adaptersChanged();
  bool busy() const;  // a process is there, or about to be started

  std::function<void(std::size_t index)> changed;
  std::function<void(std::size_t index, signs::Sign)> onVerdict;

 private:
  struct Post {
    Post(Place p, const std::string& command, const DeviceOf& deviceOf)
        : place(std::move(p)), station(command, [this, deviceOf] { return deviceOf(place.adapter); }) {}
    Place place;
    Station station;
  };
  void connect();
  void startNext();
  std::string command_;
  DeviceOf deviceOf_;
  std::vector<std::unique_ptr<Post>> posts_;
  QTimer starting_;
  std::size_t toStart_ = 0;
};

// The command beside this program, or the one in PATH; "": there is none.
std::string findCommand();

}  // namespace kvr::stations
