// Clicks and keys on the real widgets reach the controls, and what the controls become shows.
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QTreeWidget>

#include "tests/window/desk.h"

namespace kvr::window {
namespace {

class Window : public Desk {
 protected:
  // The user does this with the dialog of that name as soon as it shows.
  template <class Dialog>
  void whenShown(const char* name, const std::function<void(Dialog&)>& act) {
    const auto shown = [=, this] { return program->window->findChild<Dialog*>(QString::fromLatin1(name)); };
    whenever([=] { return shown() && shown()->isVisible(); }, [=] { act(*shown()); });
  }
  // Types over what the box holds.
  QLineEdit* type(const char* name, const QString& text) {
    auto* line = widget(name).findChild<QLineEdit*>();
    if (!line) line = &widget<QLineEdit>(name);
    line->setFocus();
    line->selectAll();
    QTest::keyClicks(line, text);
    settle();
    return line;
  }
  void leaveTheBox() {
    widget("textMsg").setFocus();
    settle();
  }
};

TEST_F(Window, EscapeAndAClickElsewhereLeaveTheModel) {
  open();
  click("Command3");
  settle();
  auto& tree = widget<QTreeWidget>("TreeViewDevice");
  EXPECT_TRUE(tree.isVisible());
  QTest::keyClick(&widget("modelSearch"), Qt::Key_Escape);
  settle();
  EXPECT_FALSE(tree.isVisible());
  click("txtDevice");
  settle();
  EXPECT_TRUE(tree.isVisible());
  leaveTheBox();
  EXPECT_FALSE(tree.isVisible());
  EXPECT_EQ(program->form.model.name(), "Hazel-H04");
}

TEST_F(Window, GesturesChangeControlsAndControlsChangeWidgets) {
  open();
  auto& form = program->form;
  click("optBeepNo");
  type("txtAP_FileStart", QStringLiteral("12"));
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
  const auto chosenByAClick = [&] {
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.tabRect(1).center());
    settle();
    return program->form.main.TabStrip2.selected() == 1;
  };
  EXPECT_EQ(bar.tabText(1), QStringLiteral("_no_"));
  EXPECT_FALSE(chosenByAClick());
  pickModel(QStringLiteral("Ivy-HF0S"));
  EXPECT_EQ(bar.tabText(1), QStringLiteral("EEPROM File Buffer"));
  EXPECT_TRUE(chosenByAClick());
}

TEST_F(Window, ASaveDialogAddsTheEndingAndAsksBeforeItReplaces) {
  open();
  const auto save = [&](const QString& name) {
    whenShown<QFileDialog>("fileDialog", [name](QFileDialog& dialog) {
      dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(name);
      QMetaObject::invokeMethod(&dialog, "accept");
    });
    atTheLatest(kLimit, [&] { program->dialogs.closeAll(); });
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
  whenShown<QMessageBox>("questionBox", [&](QMessageBox& box) {
    asked = box.text().contains(QStringLiteral("old.KVR already exists."));
    box.button(QMessageBox::Yes)->click();
  });
  EXPECT_EQ(save(QStringLiteral("old")), there.fileName());
  EXPECT_TRUE(asked);
}

TEST_F(Window, TypingIntoAnEditableBoxKeepsTheCaretWhereItIs) {
  set("DeviceProducts", QStringLiteral("Pine-H03E"));
  open();
  const auto typeAtTheHead = [&](const char* name, const QString& start) {
    auto* line = type(name, start);
    QTest::keyClick(line, Qt::Key_Home);
    QTest::keyClick(line, '2');
    settle();
    QTest::keyClick(line, Qt::Key_Delete);
    settle();
    EXPECT_EQ(line->text(), QLatin1Char('2') + start.mid(1)) << name;
    EXPECT_EQ(line->cursorPosition(), 1) << name;
  };
  typeAtTheHead("comDalay_ReDownLoad", QStringLiteral("71"));
  typeAtTheHead("com_RC_frequency_5", QStringLiteral("11.0592"));
  EXPECT_EQ(program->form.download.comDalay_ReDownLoad.text(), "21");
  EXPECT_EQ(program->form.options.com_RC_frequency[5].text(), "21.0592");
}

TEST_F(Window, ARefusedFrequencyIsGoneFromTheBoxBeforeItsMessageShows) {
  set("DeviceProducts", QStringLiteral("Pine-H03E"));
  open();
  const auto* line = type("com_RC_frequency_5", QStringLiteral("99"));
  QString seen;
  whenShown<QMessageBox>("messageBox", [&](QMessageBox& box) {
    seen = line->text();
    box.reject();
  });
  widget("textMsg").setFocus();
  EXPECT_TRUE(waitFor([&] { return !seen.isNull(); }));
  EXPECT_NE(seen, QStringLiteral("99"));
}

TEST_F(Window, TheMessagePaneStaysAtItsEndWhenTheWindowGetsSmaller) {
  open();
  program->window->resize(1500, 880);
  settle();
  for (int i = 0; i < 100; ++i) program->form.main.textMsg.appendLine("message " + std::to_string(i));
  auto* bar = widget<QPlainTextEdit>("textMsg").verticalScrollBar();
  for (const QSize size : {QSize(1300, 700), QSize(1200, 620), QSize(1500, 880)}) {
    program->window->resize(size);
    settle();
    EXPECT_EQ(bar->value(), bar->maximum()) << size.width();
  }
  bar->setValue(10);
  program->window->resize(1300, 700);
  settle();
  EXPECT_LT(bar->value(), 40) << "who reads further up keeps the place";
}

TEST_F(Window, AFilesNameIsShownAsItIsAndMovesNothing) {
  set("DeviceProducts", QStringLiteral("Ivy-HF0S"));
  open();
  const auto open = [&](const QString& name) {
    const QString path = folder.filePath(name);
    ASSERT_TRUE(QFile::copy(QStringLiteral(KVR_SOURCE_DIR "/samples/bench-clock.hex"), path));
    program->form.openDropped(path.toStdString());
    settle();
  };
  open(QStringLiteral("plain.hex"));
  const QRect note = widget("codeFileNote").geometry();
  const int below = widget("comDownload_0").mapTo(program->window.get(), QPoint()).y();
  open(QStringLiteral("two\nlines <b>and more<br>than fits into the column of the steps of a download.hex"));
  EXPECT_EQ(widget("codeFileNote").geometry(), note);
  EXPECT_EQ(widget("comDownload_0").mapTo(program->window.get(), QPoint()).y(), below);
  EXPECT_FALSE(widget<QLabel>("codeFileNote").text().contains(QLatin1Char('\n')));
  EXPECT_TRUE(widget("codeFileNote").toolTip().contains(QLatin1String("&lt;b&gt;and")))
      << widget("codeFileNote").toolTip().toStdString();
}

}  // namespace
}  // namespace kvr::window
