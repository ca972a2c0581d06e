// The window of a line: a tile a station, one job for all, and the page of the batch.
#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QWidget>
#include <vector>

#include "stations/window/batch_page.h"
#include "stations/window/program.h"
#include "stations/window/tile_view.h"

namespace kvr::tiles {

class StationsWindow : public QWidget {
 public:
  explicit StationsWindow(Program& program);
  ~StationsWindow() override;

  TileView& tile(std::size_t index) { return *tiles_[index]; }
  BatchPage& showBatch();  // made when it is first wanted
  void showTiles();
  int chosen() const { return chosen_; }  // from 0; -1: none

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  QLayout* jobRow();
  QLayout* workRow();
  void shortcuts();
  void layTiles();
  void connectTile(std::size_t index);
  void follow(std::size_t index);
  void followAll();
  void typed(int digit);
  void choose(int index);
  void toggleChosen();
  void start(std::size_t index);
  void startAll();
  bool mayStart();
  void addStation();
  void removeStation(std::size_t index);
  void rename(std::size_t index);
  void chooseProject();
  void offerBatches();
  void tell(const QString& words);
  void save();
  Program& program_;
  std::vector<TileView*> tiles_;
  QStackedWidget* pages_;
  QWidget* floor_;  // under the tiles
  QGridLayout* grid_ = nullptr;
  ElidedLabel* project_;
  QComboBox* batch_;
  QPushButton* startAll_;
  QPushButton* stopAll_;
  QPushButton* add_;
  QLabel* message_;
  std::vector<QWidget*> fixedAtWork_;  // what must not change while a station works
  BatchPage* batchPage_ = nullptr;
  int chosen_ = -1;
  QElapsedTimer lastDigit_;
  bool closing_ = false;
};

}  // namespace kvr::tiles
