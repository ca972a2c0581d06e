// What holds for every page of the window.
#include <QAccessible>
#include <QLabel>
#include <QMap>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>

#include "tests/window/desk.h"

namespace kvr::window {
namespace {

class Pages : public Desk {
 protected:
  void openWithEveryPage() {
    set("DeviceProducts", QStringLiteral("Ivy-HF0S"));
    open();
    for (const char* strip : {"TabStrip1", "TabStrip2"}) onEachPage(strip, [] {});
  }
  // The letter that works with Alt, or none.
  static QString letterOf(const QWidget& widget) {
    QString text;
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) text = button->text();
    if (const auto* label = qobject_cast<const QLabel*>(&widget); label && label->buddy()) text = label->text();
    return QKeySequence::mnemonic(text).toString();
  }
  QPoint place(const QString& name) {
    return widget(name.toLatin1().constData()).mapTo(program->window.get(), QPoint());
  }
  void apply(const char* model) {
    ASSERT_TRUE(program->form.picker.tryApply(model));
    settle();
  }
};

// The tree as an assistive program walks it, of what is shown.
void walk(QAccessibleInterface* node, const std::function<void(QAccessibleInterface&)>& look) {
  if (!node || !node->isValid() || node->state().invisible) return;
  look(*node);
  for (int i = 0; i < node->childCount(); ++i) walk(node->child(i), look);
}

TEST_F(Pages, WhateverTakesTheFocusOnAnyPageSaysItsNameAndWhatItIs) {
  openWithEveryPage();
  std::set<QString> seen;
  const auto look = [&](QAccessibleInterface& node) {
    const QString name = node.text(QAccessible::Name);
    const QString object = node.object() ? node.object()->objectName() : QString();
    using enum QAccessible::Role;
    const bool input = std::set{Button, CheckBox, RadioButton, ComboBox, EditableText}.contains(node.role());
    // F1 does what the button for the handbook does; the lamps of the line are only read.
    const bool read = object == QLatin1String("handbook") || object.startsWith(QLatin1String("imgLine"));
    EXPECT_TRUE(!input || node.state().focusable || node.state().disabled || read)
        << object.toStdString() << name.toStdString() << " is out of the keyboard's reach";
    if (!node.state().focusable) return;
    seen.insert(object + name);
    EXPECT_FALSE(name.isEmpty()) << object.toStdString() << " in "
                                 << node.parent()->text(QAccessible::Name).toStdString();
    EXPECT_FALSE(name.contains(QLatin1String("Buffer2")) || name.contains(QLatin1String("Flash2")))
        << name.toStdString();
    EXPECT_FALSE(node.role() == QAccessible::NoRole || node.role() == QAccessible::Client) << name.toStdString();
  };
  for (const char* strip : {"TabStrip1", "TabStrip2"})
    onEachPage(strip, [&] { walk(QAccessible::queryAccessibleInterface(program->window.get()), look); });
  tab("TabStrip2", "Debug_COM");
  for (auto* popup : program->window->findChildren<QWidget*>(QStringLiteral("settingsPopup"))) {
    popup->show();
    const std::size_t before = seen.size();
    walk(QAccessible::queryAccessibleInterface(popup), look);
    EXPECT_GT(seen.size(), before + 5) << popup->accessibleName().toStdString();
    popup->hide();
  }
  program->form.main.cheStripOnly.userSet(true);
  program->form.main.comMastWindow.press();
  settle();
  walk(QAccessible::queryAccessibleInterface(program->window.get()), look);
  program->form.main.comMastWindow.press();
  settle();
  EXPECT_GT(seen.size(), 150U);
  const auto role = [](QWidget& shown) { return QAccessible::queryAccessibleInterface(&shown)->role(); };
  EXPECT_EQ(role(*program->window), QAccessible::Window);
  for (auto* option : program->window->findChildren<QRadioButton*>())
    EXPECT_EQ(role(*option), QAccessible::RadioButton) << option->objectName().toStdString();
  for (auto* label : program->window->findChildren<QLabel*>())
    EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->text().toStdString();
  for (const char* range : {"LabISP_reange_0", "LabISP_reange_1"}) {
    EXPECT_TRUE(widget(range).accessibleName().contains(QLatin1String("address"))) << range;
    EXPECT_FALSE(widget(range).toolTip().isEmpty()) << range;
  }
}

TEST_F(Pages, TabAloneGoesToEverythingThatTakesInput) {
  openWithEveryPage();
  auto& window = *program->window;
  const auto look = [&] {
    std::set<const QWidget*> reached;
    for (QWidget* at = &window; at && reached.insert(at).second; at = window.focusWidget())
      QTest::keyClick(at, Qt::Key_Tab);
    for (const auto* child : window.findChildren<QWidget*>())
      EXPECT_TRUE(!child->isVisible() || !child->isEnabled() || !(child->focusPolicy() & Qt::TabFocus) ||
                  child->focusProxy() || reached.contains(child))
          << child->objectName().toStdString() << ' ' << child->metaObject()->className();
    EXPECT_GT(reached.size(), 40U);
  };
  for (const char* strip : {"TabStrip1", "TabStrip2"}) onEachPage(strip, look);
}

TEST_F(Pages, AltLettersAreUniqueWhicheverPagesAreShown) {
  openWithEveryPage();
  program->form.download.comSelectSeen.setVisible(true);
  program->form.download.comLowerBaud.setVisible(true);
  settle();
  int letters = 0;
  onEachPage("TabStrip1", [&] {
    onEachPage("TabStrip2", [&] {
      QMap<QString, QString> taken;
      for (auto* child : program->window->findChildren<QWidget*>()) {
        const QString letter = child->isVisible() ? letterOf(*child) : QString();
        if (letter.isEmpty()) continue;
        const auto* label = qobject_cast<QLabel*>(child);
        const QString name = label ? label->text() : child->objectName();
        EXPECT_FALSE(taken.contains(letter))
            << letter.toStdString() << ": " << taken[letter].toStdString() << " and " << name.toStdString();
        taken[letter] = name;
        ++letters;
      }
    });
  });
  EXPECT_GT(letters, 300);
}

TEST_F(Pages, AnOptionsPageReadsInItsFamilysOrder) {
  open();
  for (const char* model : {"Rowan-H20", "Ivy-HF0S", "Kauri-H04", "Pine-H03E", "Rowan-H20"}) {
    apply(model);
    int lastTop = -1;
    for (const auto& group : program->form.optionsRoom.groups()) {
      const int top = place(objectNameOf(*group.label)).y();
      EXPECT_GT(top, lastTop) << model << " " << group.label->name() << group.label->index();
      lastTop = group.list ? place(objectNameOf(*group.list)).y() - 8 : top;  // a box is taller than its line
      int lastLeft = -1;
      for (const auto* button : group.buttons) {
        const int left = place(objectNameOf(*button)).x();
        EXPECT_GT(left, lastLeft) << model << " " << button->name() << button->index();
        lastLeft = left;
      }
    }
  }
}

// What one family says beside its options is gone with the next one.
TEST_F(Pages, NotesAndTipsOnTheOptionsFollowTheFamily) {
  open();
  EXPECT_FALSE(widget("Option10_0").toolTip().isEmpty());  // the chip takes no other value
  EXPECT_EQ(widget("Option11_0").accessibleDescription(), widget<QLabel>("LabOption_11").text());
  apply("Rowan-H40");
  EXPECT_TRUE(widget("Option10_0").toolTip().isEmpty());
  EXPECT_TRUE(widget<QLabel>("Label7_0").text().endsWith(QStringLiteral("振荡器增益可选 1/2 gain")));
  const int top = place(QStringLiteral("Label7_0")).y();
  EXPECT_TRUE(top > place(QStringLiteral("LabOption_2")).y() && top < place(QStringLiteral("LabOption_3")).y());
  apply("Ivy-HF0S");
  EXPECT_EQ(widget<QLabel>("Label7_0").text(), QString());
}

// Every widget takes input exactly when its control does, in all four states of the lock.
TEST_F(Pages, WidgetsFollowTheLockInEveryState) {
  openWithEveryPage();
  auto& form = program->form;
  for (const int state : {0, 1, 2, 3, 0}) {
    form.lock.set(state);
    for (auto* control : form.registry.all()) {
      const auto* shown = program->window->findChild<QWidget*>(objectNameOf(*control));
      if (!shown) continue;  // a control without a widget
      EXPECT_EQ(shown->isEnabledTo(shown->parentWidget()), control->enabled())
          << control->name() << " in state " << state;
    }
    EXPECT_EQ(widget("comLoadFile").isEnabled(), state == 0);
    EXPECT_TRUE(!form.lock.busy() || widget("textMsg").hasFocus() || !program->window->isActiveWindow());
  }
}

TEST_F(Pages, TheProgramButtonIsTheLargestAndNothingOfTheLeftColumnIsCutOffOnASmallScreen) {
  open();
  program->window->resize(1366, 708);
  settle();
  const auto& column = widget<QScrollArea>("leftColumn");
  EXPECT_LE(column.widget()->minimumSizeHint().height(), column.viewport()->height());
  EXPECT_EQ(program->window->width(), 1366);
  const QSize largest = widget("comDownload_0").size();
  for (auto* button : program->window->findChildren<QAbstractButton*>()) {
    if (button->objectName() == QLatin1String("comDownload_0") || !button->isVisible()) continue;
    EXPECT_LT(button->width() * button->height(), largest.width() * largest.height())
        << button->objectName().toStdString();
  }
}

TEST_F(Pages, OnALowScreenAPageHasTheHeightAndNothingScrollsSideways) {
  openWithEveryPage();
  program->form.areas.screenIs(768);
  program->window->resize(1366, 708);
  const auto look = [&] {
    for (auto* area : program->window->findChildren<QScrollArea*>())
      EXPECT_FALSE(area->isVisible() && area->horizontalScrollBar()->isVisible())
          << area->widget()->objectName().toStdString();
    for (const char* name : {"txtBuffer2", "tetDataFlash2", "texReceive", "lst_debug1", "lst_debug2", "lst_debug3"}) {
      auto& text = widget<QAbstractScrollArea>(name);
      EXPECT_TRUE(!text.isVisible() || text.viewport()->height() / text.fontMetrics().lineSpacing() >= 13) << name;
    }
  };
  onEachPage("TabStrip2", look);
  EXPECT_FALSE(widget("Frame12").isVisible());
  onEachPage("TabStrip1", look);
  tab("TabStrip2", "Debug_COM");
  const auto& page = *qobject_cast<QScrollArea*>(widget("fraDebug").parentWidget()->parentWidget());
  EXPECT_FALSE(page.verticalScrollBar()->isVisible());
  auto& bar = widget<QTabBar>("TabStrip1");
  QTest::mouseDClick(&bar, Qt::LeftButton, {}, bar.tabRect(bar.currentIndex()).center());
  settle();
  EXPECT_TRUE(widget("fraAboutHardWare").isVisible());
  EXPECT_FALSE(widget("fraDebug").isVisible());
  widget("comHelp_1").setFocus();
  QTest::keyClick(&widget("comHelp_1"), Qt::Key_F11);
  settle();
  EXPECT_TRUE(widget("fraDebug").isVisible() && widget("fraAboutHardWare").isVisible());
}

// 1920 x 1080 at 200 %.
TEST_F(Pages, EveryPageAndEveryOptionOfEveryFamilyIsInReachWithoutScrollingSideways) {
  open();
  program->window->resize(960, 508);
  for (const char* model :
       {"Cedar-H10R", "Hazel-H04A", "Ivy-H20S", "Kauri-H04", "Pine-H03E", "Sumac-H08A", "Rowan-H20"}) {
    apply(model);
    EXPECT_LE(widget("Frame12").width(), widget("Frame12").parentWidget()->width()) << model;
  }
  apply("Ivy-HF0S");
  for (const char* strip : {"TabStrip2", "TabStrip1"})
    onEachPage(strip, [&] {
      for (auto* area : program->window->findChildren<QAbstractScrollArea*>())
        EXPECT_FALSE(area->isVisible() && area->horizontalScrollBar()->isVisible())
            << area->objectName().toStdString() << " on " << widget<QTabBar>(strip).currentIndex();
    });
  EXPECT_LE(program->window->width(), 960);
}

}  // namespace
}  // namespace kvr::window
