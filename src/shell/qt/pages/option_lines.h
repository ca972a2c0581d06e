// The lines of the options page, as the selected family has them: each with its caption, its choices and its list, in
// the order of the family's table.
#pragma once

#include <QWidget>
#include <map>

#include "shell/qt/flow_row.h"
#include "shell/qt/maker.h"

namespace kvr::window {

class OptionLines : public QWidget {
 public:
  explicit OptionLines(const Maker& maker);

 private:
  void makeLine(const Maker& maker, int number);
  void addList(const Maker& maker, platform::ComboBox& control, const QString& name, const QString& caption = {});
  void arrange();
  FlowRow& lineOf(const options::PanelGroup& group) { return *lines_[static_cast<std::size_t>(group.row)]; }
  options::OptionsRoom& room_;
  std::vector<FlowRow*> lines_;
  std::map<const platform::Control*, QWidget*> widgets_;
  platform::Signal::Token token_;
};

}  // namespace kvr::window
