#include "shell/qt/page_stack.h"

namespace kvr::window {

PageStack::PageStack(platform::TabStrip& strip, std::map<std::string, Builder> builders)
    : strip_(strip), builders_(std::move(builders)) {
  token_ = strip_.changed.watch([this] { showSelected(); });
}

void PageStack::fold(bool on) {
  folded_ = on;
  showSelected();
  setHidden(on);
}

QSize PageStack::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 14};
}

void PageStack::showSelected() {
  if (folded_) return;
  const std::string key = strip_.selectedKey();
  auto found = pages_.find(key);
  if (found == pages_.end()) {
    const auto builder = builders_.find(key);
    if (builder == builders_.end()) return;
    QWidget* page = builder->second();
    page->setAccessibleName(QString::fromStdString(strip_.tabs()[static_cast<std::size_t>(strip_.selected())].caption));
    addWidget(page);
    found = pages_.emplace(key, page).first;
  }
  if (currentWidget() != found->second) setCurrentWidget(found->second);
}

}  // namespace kvr::window
