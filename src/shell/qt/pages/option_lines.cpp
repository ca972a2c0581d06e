#include "shell/qt/pages/option_lines.h"

namespace kvr::window {
namespace {

using options::OptionPanel;

constexpr int kIndent = 24;
constexpr int kNotedLine = 2;  // small print of one family is below it

}  // namespace

OptionLines::OptionLines(const Maker& maker) : room_(maker.form.optionsRoom) {
  auto& panel = maker.form.options;
  addList(maker, panel.com_RC_frequency[5], QStringLiteral("Frequency of the internal oscillator, MHz"));
  addList(maker, panel.com_RC_frequency[4], QStringLiteral("Low voltage threshold"));
  addList(maker, panel.comWDT_Prescalar[1], QStringLiteral("Clocks to wait after wake-up"));
  addList(maker, panel.comWDT_Prescalar[0], QStringLiteral("Prescalar value of WatchDog Timer"),
          QStringLiteral("Prescalar value of WatchDog Timer"));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(3);
  for (int i = 0; i < OptionPanel::kRows; ++i) {
    makeLine(maker, i);
    column->addLayout(lines_.back());
    if (i == kNotedLine) column->addWidget(maker.label(maker.form.images.panel.Label7[0]));
  }
  token_ = room_.layoutChanged.watch([this] { arrange(); });
  arrange();
}

void OptionLines::makeLine(const Maker& maker, int number) {
  auto& panel = maker.form.options;
  auto& caption = panel.LabOption[static_cast<std::size_t>(number)];
  lines_.push_back(new FlowRow(kIndent));
  lines_.back()->setSpacing(14);
  widgets_[&caption] = maker.label(caption);
  widgets_[&caption]->setParent(this);
  for (auto* button : panel.optionButtons(number)) {
    auto* choice = maker.option(*button);
    choice->setParent(this);
    widgets_[button] = choice;
    // "YES" and "NO" are on many lines: who cannot see the line hears it with the button.
    follow(choice, caption, [choice, &caption] { choice->setAccessibleDescription(qtText(caption.caption())); });
  }
}

void OptionLines::addList(const Maker& maker, platform::ComboBox& control, const QString& name,
                          const QString& caption) {
  auto* box = maker.combo(control, name);
  auto* whole = new QWidget(this);
  whole->setLayout(caption.isEmpty() ? row({box}) : row({captionFor(caption, box), box}));
  widgets_[&control] = whole;
  follow(whole, control, [whole, &control] { whole->setVisible(control.visible()); });
}

void OptionLines::arrange() {
  for (auto* line : lines_) line->clear();
  int widest = 0;
  for (const auto& group : room_.groups()) {
    auto* label = widgets_.at(group.label);
    label->setMinimumWidth(0);
    widest = std::max(widest, label->sizeHint().width());
  }
  for (const auto& group : room_.groups()) {
    auto* label = widgets_.at(group.label);
    const bool alone = group.buttons.empty() && !group.list;
    label->setMinimumWidth(alone ? 0 : widest);  // the choices of all lines begin below each other
    lineOf(group).addWidget(label);
    for (auto* button : group.buttons) lineOf(group).addWidget(widgets_.at(button));
    if (group.list) lineOf(group).addWidget(widgets_.at(group.list));
  }
}

}  // namespace kvr::window
