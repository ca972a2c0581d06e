// Clicks and keys on the real widgets reach the controls, and what the controls become shows.
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QListView>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <QTreeWidget>

#include "shell/qt/shots.h"
#include "tests/window/contrast.h"
#include "tests/window/desk.h"

namespace kvr::window {
namespace {

class Window : public Desk {
 protected:
  // The user does this with the dialog of that name as soon as it shows and is ready.
  template <class Dialog>
  void whenShown(
      const char* name, const std::function<void(Dialog&)>& act,
      const std::function<bool(Dialog&)>& ready = [](Dialog&) { return true; }) {
    const auto shown = [=, this] { return program->window->findChild<Dialog*>(QString::fromLatin1(name)); };
    whenever([=] { return shown() && shown()->isVisible() && ready(*shown()); }, [=] { act(*shown()); });
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

TEST_F(Window, TheTextOfALabelCanBeSelectedAndStaysInItsPlaceThen) {
  open();
  auto& label = widget<QLabel>("portStatus");
  program->form.main.portStatus.setCaption("/dev/ttyUSB7: busy");
  settle();
  const QImage before = label.grab().toImage();
  const QPointF end(label.width() - 1, label.height() / 2.0);
  const QPointF endOnScreen = label.mapToGlobal(end);
  QEnterEvent enter(end, end, endOnScreen);
  QCoreApplication::sendEvent(&label, &enter);
  EXPECT_EQ(label.grab().toImage(), before);
  QTest::mousePress(&label, Qt::LeftButton, {}, QPoint(0, label.height() / 2));
  QMouseEvent drag(QEvent::MouseMove, end, endOnScreen, Qt::NoButton, Qt::LeftButton, {});
  QCoreApplication::sendEvent(&label, &drag);
  EXPECT_EQ(label.selectedText(), QStringLiteral("/dev/ttyUSB7: busy"));
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

TEST_F(Window, ABoxThatIsTooNarrowShowsTheHeadOfItsTextWhenItIsLeft) {
  open();
  auto& box = widget<QLineEdit>("txtFileCheckSum");
  program->form.images.panel.txtFileCheckSum.setText("00379A6H       ");
  click("txtFileCheckSum");
  QTest::keyClick(&box, Qt::Key_End);
  leaveTheBox();
  EXPECT_EQ(box.cursorPosition(), 0);
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

TEST_F(Window, AHelpWindowIsAsWideAsItsLines) {
  open();
  program->dialogs.help("Help",
                        "1  Functions: Off-Line program board can program without computer. It is used for mass "
                        "production, and WIDE CAPITALS EVERYWHERE IN IT.\n   hanging");
  settle();
  auto& text = widget<QPlainTextEdit>("helpText");
  EXPECT_EQ(text.document()->firstBlock().layout()->lineCount(), 1);
  EXPECT_GE(QGuiApplication::primaryScreen()->availableGeometry().width(), text.window()->width());
}

TEST_F(Window, TheSignAndTheCaptionsForgetTheFormerModelAndImage) {
  open();
  auto& form = program->form;
  const auto signAfter = [&](const std::function<void()>& act) {
    form.download.verdict.set(download::VerdictKind::Pass);
    act();
    return widget("verdict").accessibleDescription();
  };
  form.main.Label2[6].setCaption("MCU Type: Hazel-H04");
  EXPECT_EQ(signAfter([&] { pickModel(QStringLiteral("Ivy-HF0S")); }), QStringLiteral("READY"));
  EXPECT_EQ(form.main.Label2[6].caption(), "");
  EXPECT_EQ(signAfter([&] { form.openDropped(KVR_SOURCE_DIR "/samples/bench-clock.hex"); }), QStringLiteral("READY"));
  form.lock.toBusy();  // a serial number that a run puts into the image takes no verdict away
  const std::uint8_t number[] = {1, 2};
  EXPECT_EQ(signAfter([&] { form.images.state.CodeBuffer.put(0x100, number); }), QStringLiteral("PASS"));
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

// The list is read after the dialog shows; a selection in it would overwrite what was typed meanwhile.
TEST_F(Window, AFileDialogNamesTheLastFileAndSelectsNoneInItsList) {
  open();
  QFile there(folder.filePath(QStringLiteral("code.hex")));
  ASSERT_TRUE(there.open(QIODevice::WriteOnly));
  QString named;
  bool selected = true;
  bool mayOpen = false;
  const auto listOf = [](QFileDialog& dialog) { return dialog.findChild<QListView*>(QStringLiteral("listView")); };
  whenShown<QFileDialog>(
      "fileDialog",
      [&](QFileDialog& dialog) {
        named = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->text();
        selected = listOf(dialog)->selectionModel()->hasSelection();
        mayOpen = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->isEnabled();
        dialog.reject();
      },
      [&](QFileDialog& dialog) { return listOf(dialog)->model()->rowCount(listOf(dialog)->rootIndex()) > 0; });
  EXPECT_EQ(program->dialogs.openFile({.title = "Open",
                                       .filter = "(*.hex)|*.hex",
                                       .initialFolder = folder.path().toStdString(),
                                       .fileName = "code.hex"}),
            "");
  EXPECT_EQ(named, QStringLiteral("code.hex"));
  EXPECT_FALSE(selected);
  EXPECT_TRUE(mayOpen);
}

TEST_F(Window, AnEmptyBoxIsAsEasyToSeeAsATickedOneLightAndDark) {
  const QPalette usual = QApplication::palette();
  for (const bool isDark : {false, true}) {
    if (isDark) useDarkTheme();
    open();
    for (const char* name : {"cekReloadFile", "optBeepNo"}) {
      auto& box = widget<QAbstractButton>(name);
      ASSERT_FALSE(box.isChecked());
      const QImage picture = box.grab().toImage();
      double most = 0;
      for (int x = 0; x < box.height(); ++x)
        most =
            std::max(most, contrast(picture.pixelColor(x, box.height() / 2), QApplication::palette().window().color()));
      EXPECT_GE(most, 3.0) << name << (isDark ? " dark" : " light");
    }
    program.reset();
  }
  QApplication::setPalette(usual);
}

}  // namespace
}  // namespace kvr::window
