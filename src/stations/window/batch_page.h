// What people look at of a batch: how far it is, what failed, how long a chip takes, and the numbers in doubt, which a
// person settles. All of it is read by the books' own thread.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <functional>

#include "records/batch_figures.h"
#include "stations/window/batch_charts.h"
#include "stations/window/books.h"

namespace kvr::tiles {

class BatchPage : public QWidget {
 public:
  explicit BatchPage(Books& books);
  void open(const QString& batch);  // empty: the newest one
  void refreshSoon();               // something has run
  std::function<void()> onBack;

  struct Content {
    std::vector<std::string> names;  // of all batches, the newest first
    records::Batch batch;
    std::vector<std::string> stations, days;           // in which something has run; days as the user's clock has them
    std::vector<records::RecordStore::Tally> tallies;  // of what is chosen, by local hours
    std::vector<records::Doubt> doubts;
    records::StoreFault fault;
  };

 private:
  QLayout* choices();
  QLayout* tables();
  void ask(const std::string& batch);
  bool filtered() const;
  QString stationChosen() const;  // empty: all
  QString dayChosen() const;
  void take(Content content);
  void showFigures();
  void showDoubts();
  void settle(records::Settlement how);
  void exportRuns();
  void tell(const QString& words);
  std::string chosen() const;

  Books& books_;
  Content content_;
  QComboBox* batch_;
  QComboBox* station_;
  QComboBox* day_;
  QLabel* done_;
  QLabel* yield_;
  QLabel* rate_;
  QLabel* message_;
  BatchCharts* charts_;
  QTableWidget* failures_;
  QTableWidget* doubts_;
  QPushButton* spent_;
  QPushButton* free_;
  QPushButton* export_;
  QTimer soon_;
};

}  // namespace kvr::tiles
