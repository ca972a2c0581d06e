// Clicks and keys on the real widgets reach the controls, and what the controls become shows.
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTreeWidget>

#include "tests/window/desk.h"

namespace kvr::window {
namespace {

class Window : public Desk {};

TEST_F(Window, EveryInputOfEveryPageHasANameForAScreenReader) {
  open();
  ASSERT_TRUE(program->form.picker.tryApply("Ivy-HF0S"));
  for (const char* strip : {"TabStrip1", "TabStrip2"})
    for (int i = 0; i < widget<QTabBar>(strip).count(); ++i) {
      widget<QTabBar>(strip).setCurrentIndex(i);
      settle();
    }
  int inputs = 0;
  for (auto* child : program->window->findChildren<QWidget*>()) {
    const QString kind = QString::fromLatin1(child->metaObject()->className());
    if (kind.startsWith(QLatin1String("qt_")) || child->focusPolicy() == Qt::NoFocus) continue;
    if (qobject_cast<QScrollArea*>(child) || qobject_cast<QScrollBar*>(child) || qobject_cast<QLabel*>(child)) continue;
    if (kind == QLatin1String("QComboBoxListView")) continue;  // speaks for its box
    ++inputs;
    EXPECT_FALSE(child->accessibleName().isEmpty()) << child->objectName().toStdString() << " " << kind.toStdString();
  }
  EXPECT_GT(inputs, 150);
}

TEST_F(Window, EscapeAndAClickElsewhereLeaveTheModel) {
  open();
  click("Command3");
  settle();
  auto& tree = widget<QTreeWidget>("TreeViewDevice");
  EXPECT_TRUE(tree.isVisible());
  EXPECT_EQ(tree.topLevelItemCount(), 10);
  QTest::keyClick(&widget("modelSearch"), Qt::Key_Escape);
  settle();
  EXPECT_FALSE(tree.isVisible());
  click("txtDevice");
  settle();
  EXPECT_TRUE(tree.isVisible());
  widget("textMsg").setFocus();
  settle();
  EXPECT_FALSE(tree.isVisible());
  EXPECT_EQ(program->form.model.name(), "Hazel-H04");
}

TEST_F(Window, GesturesChangeControlsAndControlsChangeWidgets) {
  open();
  auto& form = program->form;
  click("optBeepNo");
  widget<QLineEdit>("txtAP_FileStart").selectAll();
  QTest::keyClicks(&widget("txtAP_FileStart"), QStringLiteral("12"));
  QTest::keyClick(&widget("cobBaudMax"), Qt::Key_Down);
  click("cekReloadFile");
  settle();
  EXPECT_TRUE(form.download.optBeepNo.value());
  EXPECT_FALSE(widget<QRadioButton>("optBeepYes").isChecked());
  EXPECT_EQ(form.images.panel.txtAP_FileStart.text(), "12");
  EXPECT_EQ(form.download.cobBaudMax.text(), "57600");
  EXPECT_TRUE(form.images.panel.cekReloadFile.value());
  form.download.cobBaudMax.setListIndex(0);
  form.main.textMsg.appendLine("first");
  form.main.textMsg.appendLine("second 安全锁");
  EXPECT_EQ(widget<QComboBox>("cobBaudMax").currentText(), QStringLiteral("115200"));
  EXPECT_TRUE(widget<QPlainTextEdit>("textMsg").toPlainText().endsWith(QStringLiteral("first\nsecond 安全锁")));
  EXPECT_FALSE(widget("textMsg").hasFocus());
}

TEST_F(Window, ATabThatDoesNotApplyIsShownAndCannotBeChosen) {
  open();
  auto& bar = widget<QTabBar>("TabStrip2");
  EXPECT_EQ(bar.tabText(1), QStringLiteral("_no_"));
  EXPECT_FALSE(bar.isTabEnabled(1));
  QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(1).center());
  settle();
  EXPECT_EQ(program->form.main.TabStrip2.selected(), 0);
  pickModel(QStringLiteral("Ivy-HF0S"));
  EXPECT_EQ(bar.tabText(1), QStringLiteral("EEPROM File Buffer"));
  QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(1).center());
  settle();
  EXPECT_EQ(program->form.main.TabStrip2.selectedKey(), "EEPROM_File");
}

// Every widget takes input exactly when its control does, in all four states of the lock.
TEST_F(Window, WidgetsFollowTheLockInEveryState) {
  open();
  pickModel(QStringLiteral("Ivy-HF0S"));
  auto& form = program->form;
  for (const int state : {0, 1, 2, 3, 0}) {
    form.lock.set(state);
    for (auto* control : form.registry.all()) {
      const auto* shown = program->window->findChild<QWidget*>(objectNameOf(*control));
      if (!shown) continue;  // on a page that has not been shown, or without a widget
      EXPECT_EQ(shown->isEnabledTo(shown->parentWidget()), control->enabled())
          << control->name() << " in state " << state;
    }
    EXPECT_EQ(widget("comLoadFile").isEnabled(), state == 0);
    EXPECT_TRUE(!form.lock.busy() || widget("textMsg").hasFocus() || !program->window->isActiveWindow());
  }
}

// What one family says beside its options is gone with the next one.
TEST_F(Window, NotesAndTipsOnTheOptionsFollowTheFamily) {
  open();
  EXPECT_FALSE(widget("Option10_0").toolTip().isEmpty());  // the chip takes no other value
  EXPECT_EQ(widget("Option11_0").accessibleDescription(), widget<QLabel>("LabOption_11").text());
  ASSERT_TRUE(program->form.picker.tryApply("Rowan-H40"));
  EXPECT_TRUE(widget("Option10_0").toolTip().isEmpty());
  EXPECT_TRUE(widget<QLabel>("Label7_0").text().endsWith(QStringLiteral("振荡器增益可选 1/2 gain")));
  EXPECT_GT(widget("Label7_0").y(), widget("LabOption_2").y());
  EXPECT_LT(widget("Label7_0").y(), widget("LabOption_3").y());
  ASSERT_TRUE(program->form.picker.tryApply("Ivy-HF0S"));
  EXPECT_EQ(widget<QLabel>("Label7_0").text(), QString());
}

TEST_F(Window, ShrinkAndResumeLeaveItAsItWas) {
  open();
  const QRect before = program->window->geometry();
  click("comMastWindow");
  settle();
  EXPECT_FALSE(widget("leftColumn").isVisible());
  EXPECT_LT(program->window->width(), before.width() - 300);
  EXPECT_EQ(program->window->geometry().right(), before.right());
  program->form.main.comMastWindow.press();
  settle();
  EXPECT_EQ(program->window->geometry(), before);
  click("comMastWindow");
  settle();
  program->window->showMaximized();
  settle();
  click("comMastWindow");
  settle();
  program->window->showNormal();
  settle();
  EXPECT_EQ(program->window->geometry(), before);
}

TEST_F(Window, ASaveDialogAddsTheEndingAndAsksBeforeItReplaces) {
  open();
  const auto save = [&](const QString& name) {
    later(80, [&, name] {
      auto* dialog = program->window->findChild<QFileDialog*>(QStringLiteral("fileDialog"));
      ASSERT_NE(dialog, nullptr);
      dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(name);
      QMetaObject::invokeMethod(dialog, "accept");
    });
    later(5000, [&] { program->dialogs.closeAll(); });  // the test fails then, and does not hang
    return QString::fromStdString(program->dialogs.saveFile({.title = "Save Project File",
                                                             .filter = "(*.KVR)|*.KVR",
                                                             .initialFolder = folder.path().toStdString(),
                                                             .fileName = {}}));
  };
  EXPECT_EQ(save(QStringLiteral("Motor_v1.2")), folder.filePath(QStringLiteral("Motor_v1.2.KVR")));
  EXPECT_EQ(save(QStringLiteral("motor.kvr")), folder.filePath(QStringLiteral("motor.kvr")));
  QFile there(folder.filePath(QStringLiteral("old.KVR")));
  ASSERT_TRUE(there.open(QIODevice::WriteOnly));
  bool asked = false;
  later(300, [&] {
    auto* box = program->window->findChild<QMessageBox*>(QStringLiteral("questionBox"));
    ASSERT_NE(box, nullptr);
    asked = box->text().contains(QStringLiteral("old.KVR already exists."));
    box->button(QMessageBox::Yes)->click();
  });
  EXPECT_EQ(save(QStringLiteral("old")), there.fileName());
  EXPECT_TRUE(asked);
}

TEST_F(Window, TheTextOfALabelCanBeSelectedAndStaysInItsPlaceThen) {
  open();
  auto& label = widget<QLabel>("portStatus");
  program->form.main.portStatus.setCaption("/dev/ttyUSB7: busy");
  settle();
  const QImage before = label.grab().toImage();
  const QPointF middle = label.rect().center();
  QEnterEvent enter(middle, middle, label.mapToGlobal(middle));
  QCoreApplication::sendEvent(&label, &enter);
  EXPECT_EQ(label.grab().toImage(), before);
  QTest::mousePress(&label, Qt::LeftButton, {}, QPoint(0, label.height() / 2));
  QMouseEvent drag(QEvent::MouseMove, QPointF(label.width() - 1, label.height() / 2.0),
                   label.mapToGlobal(QPointF(label.width() - 1, label.height() / 2.0)), Qt::NoButton, Qt::LeftButton,
                   {});
  QCoreApplication::sendEvent(&label, &drag);
  EXPECT_EQ(label.selectedText(), QStringLiteral("/dev/ttyUSB7: busy"));
}

TEST_F(Window, TheProgramButtonIsTheLargestAndTheLeftColumnFitsASmallScreen) {
  open();
  program->window->resize(1366, 708);
  settle();
  const auto& column = widget<QScrollArea>("leftColumn");
  EXPECT_LE(column.widget()->minimumSizeHint().height(), column.viewport()->height());
  EXPECT_EQ(program->window->width(), 1366);
  const QSize program_button = widget("comDownload_0").size();
  for (auto* button : program->window->findChildren<QAbstractButton*>()) {
    if (button->objectName() == QLatin1String("comDownload_0") || !button->isVisible()) continue;
    EXPECT_LT(button->width() * button->height(), program_button.width() * program_button.height())
        << button->objectName().toStdString();
  }
}

}  // namespace
}  // namespace kvr::window
