// The way to the handbook: F1, the button beside the tabs, the button below a help text.
#include <QDialog>
#include <QPlainTextEdit>
#include <QToolButton>
#include <filesystem>

#include "shell/handbook_chapters.h"
#include "tests/window/desk.h"

namespace kvr::window {
namespace {

using HandbookWindow = Desk;

TEST_F(HandbookWindow, EveryPageHasAChapterThatExists) {
  open();
  const std::filesystem::path chapters = std::filesystem::path(KVR_SOURCE_DIR) / "docs/handbook";
  for (const auto* strip : {&program->form.main.TabStrip1, &program->form.main.TabStrip2})
    for (const auto& tab : strip->tabs()) {
      const std::string chapter(shell::chapterOf(tab.key));
      EXPECT_NE(chapter, "index") << tab.key;
      EXPECT_TRUE(std::filesystem::exists(chapters / (chapter + ".md"))) << chapter;
    }
}

// The tests' own folder has no handbook beside it, so each way ends with the text that says where it should be.
TEST_F(HandbookWindow, IsAskedForFromTheKeyTheTabsAndAHelpText) {
  open();
  const auto told = [this] {
    settle();
    int count = 0;
    for (auto* window : program->window->findChildren<QDialog*>(QStringLiteral("helpWindow")))
      if (window->findChild<QPlainTextEdit*>()->toPlainText().contains(QLatin1String("handbook/index.html"))) ++count;
    return count;
  };
  QTest::keyClick(program->window.get(), Qt::Key_F1);
  EXPECT_EQ(told(), 1);
  widget<QToolButton>("handbook").click();
  EXPECT_EQ(told(), 2);
  program->dialogs.help("Some help", "text");
  auto* help = program->window->findChildren<QDialog*>(QStringLiteral("helpWindow")).last();
  for (auto* button : help->findChildren<QAbstractButton*>())
    if (button->text() == QLatin1String("&Handbook")) button->click();
  EXPECT_EQ(told(), 3);
}

}  // namespace
}  // namespace kvr::window
