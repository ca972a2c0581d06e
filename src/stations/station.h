// One station: a process of `kvr program` that programs chip after chip at one port, and its tile. Nothing that befalls
// this program harms the chip in the process's hands: when its standard input ends, it finishes that chip, records it
// and ends by itself.
#pragma once

#include <QObject>
#include <QProcess>
#include <QTimer>
#include <functional>
#include <string>

#include "stations/tile.h"

namespace kvr::stations {

// What every station of a line does.
struct Work {
  std::string project;      // path
  std::string batch;        // empty: none
  double delaySeconds = 4;  // in which the user changes the chip
  bool handsFree = true;    // goes on after a chip that failed
  bool operator==(const Work&) const = default;
};

class Station : public QObject {
 public:
  // `command`: path of kvr. `deviceOf` tells the device of the station's adapter, "" while it is not there.
  Station(const std::string& command, std::function<std::string()> deviceOf);
  ~Station() override;

  void start(const Work& work);  // nothing while it runs
  void stop();                   // as Stop does: at once, and the chip in hand is not good
  void finish();                 // the chip in hand is finished, and no other begun
  // The adapters have changed: a station that waits for its own goes on when it is there again.
  void lookForAdapter();
  void clear();  // counts and the last failure

  Tile& tile() { return tile_; }
  const Tile& tile() const { return tile_; }
  bool busy() const { return process_.state() != QProcess::NotRunning; }
  qint64 processId() const { return process_.processId(); }

  std::function<void()> changed;               // the tile
  std::function<void(signs::Sign)> onVerdict;  // of a chip, or of a station that broke down

 private:
  void launch();
  void read();
  void end();
  void follow(Follow next);
  void waitForAdapter();
  void rest();
  void tell();
  QStringList arguments(const std::string& device) const;

  QString command_;
  std::function<std::string()> deviceOf_;
  Work work_;
  Tile tile_;
  QProcess process_;
  QTimer next_;         // until it is launched again by itself
  QTimer again_;        // a stop that is not heeded is said once more
  bool asked_ = false;  // to end
  bool waits_ = false;  // for its port
  signs::Sign told_ = signs::Sign::Ready;
};

}  // namespace kvr::stations
