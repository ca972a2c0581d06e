// The two charts of a batch: PASS and FAIL over time, and how many seconds the chips took.
#pragma once

#include <QWidget>
#include <vector>

#include "records/batch_figures.h"

namespace kvr::tiles {

// Bars of whole hours, or of days when the hours would be too many to read; the times in which nothing ran are there.
std::vector<records::HourFigures> barsOverTime(const std::vector<records::HourFigures>& hours);
// Bars of one width, at most so many, without gaps. `width` in seconds.
struct SecondsBars {
  std::int64_t first = 0, width = 1;
  std::vector<std::int64_t> runs;
};
SecondsBars barsOfSeconds(const std::vector<records::SecondsBar>& seconds);

class BatchCharts : public QWidget {
 public:
  BatchCharts();
  ~BatchCharts() override;
  void show(const records::BatchFigures& figures);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void draw();
  class Charts;
  std::unique_ptr<Charts> charts_;
  records::BatchFigures figures_;
};

}  // namespace kvr::tiles
