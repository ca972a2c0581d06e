#include "shell/qt/binding.h"

#include <QPointer>

namespace kvr::window {

Binding::Binding(platform::EventLoop& loop, platform::Control& control, QWidget& widget, const QString& accessibleName,
                 std::function<void()> show)
    : QObject(&widget), loop_(loop), control_(control), widget_(widget), show_(std::move(show)) {
  widget.setObjectName(objectNameOf(control));
  if (!accessibleName.isEmpty()) widget.setAccessibleName(accessibleName);
  const QPointer<QWidget> target(&widget);
  control.focusRequest = [target] {
    if (target) target->setFocus(Qt::OtherFocusReason);
  };
  watch(control.changed, [this] { showAll(); });
  showAll();
}

void Binding::watch(platform::Signal& signal, std::function<void()> handler) {
  tokens_.push_back(signal.watch(std::move(handler)));
}

void Binding::post(std::function<void()> gesture) {
  ++pending_;
  const QPointer<Binding> self(this);
  loop_.post([self, gesture = std::move(gesture)] {
    if (self) --self->pending_;
    gesture();
    if (self) self->showAll();
  });
}

void Binding::showAll() {
  showCommon();
  if (pending_ == 0) show_();
}

// A widget that has no parent yet is left alone until it must hide, since showing it would open a window.
void Binding::showCommon() {
  if (enabled_ != control_.enabled()) widget_.setEnabled(control_.enabled());
  enabled_ = control_.enabled();
  if (visible_ != control_.visible()) widget_.setVisible(control_.visible());
  visible_ = control_.visible();
  if (tip_ != control_.toolTip()) widget_.setToolTip(qtText(control_.toolTip()));
  tip_ = control_.toolTip();
}

QString qtText(const std::string& text) {
  return QString::fromStdString(text);
}

QString objectNameOf(const platform::Control& control) {
  QString name = qtText(control.name());
  if (control.index() != platform::Control::kSingle) name += QLatin1Char('_') + QString::number(control.index());
  return name;
}

QString buttonText(const std::string& caption, char mnemonic) {
  QString text = qtText(caption).simplified();
  text.replace(QLatin1Char('&'), QLatin1String("&&"));
  if (mnemonic == 0) return text;
  const qsizetype at = text.indexOf(QLatin1Char(mnemonic), 0, Qt::CaseInsensitive);
  return at < 0 ? text : text.insert(at, QLatin1Char('&'));
}

}  // namespace kvr::window
