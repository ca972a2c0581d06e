// The tile of one station.
#pragma once

#include <QFrame>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>
#include <functional>

#include "stations/adapters.h"
#include "stations/tile.h"
#include "stations/window/elided_label.h"
#include "stations/window/tile_sign.h"

namespace kvr::tiles {

class TileView : public QFrame {
 public:
  explicit TileView(int number);  // from 1: the digits that choose it
  void show(const stations::Tile& tile);
  void setChosen(bool chosen);
  const TileSign& sign() const { return *sign_; }

  std::function<void()> onChosen, onStart, onStop, onRename, onClear, onRemove;
  std::function<void(const stations::Adapter&)> onPort;
  std::function<std::vector<stations::Adapter>()> adapters;  // what can be chosen now
  std::function<QString(const stations::Adapter&)> takenBy;  // the station that has it; empty: free

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QLayout* header();
  QMenu* moreMenu();
  void fillPorts();
  void followPort();
  int number_;
  bool chosen_ = false;
  bool running_ = false;
  QString portText_;
  ElidedLabel* name_;
  QPushButton* port_;
  QMenu* ports_;
  QPushButton* run_;
  QToolButton* more_;
  TileSign* sign_;
  QProgressBar* progress_;
  ElidedLabel* words_;
  ElidedLabel* counts_;
  ElidedLabel* failure_;
  QAction* rename_ = nullptr;
  QAction* remove_ = nullptr;
};

}  // namespace kvr::tiles
