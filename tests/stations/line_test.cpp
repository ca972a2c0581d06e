// The window of a line with real stations: kvr processes, kvr-target at the other ends, clicks and keys.
#include <gtest/gtest.h>
#include <signal.h>

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest/QTest>

#include "stations/window/export_runs.h"
#include "stations/window/stations_window.h"

namespace kvr::tiles {
namespace {

using signs::Sign;

class LineTest : public ::testing::Test {
 protected:
  QString port(int number) { return folder.filePath(QStringLiteral("com%1").arg(number)); }
  void plugIn(int number, const QStringList& more = {}) {
    auto& chip = chips[number] = std::make_unique<QProcess>();
    chip->start(KVR_BINARY_DIR "/kvr-target",
                QStringList{"--model", "Ivy-HF0S", "--chips", "100", "--power-cycle-after", "0.2", "--link",
                            port(number), "--json", port(number) + ".json"} +
                    more);
    ASSERT_TRUE(QTest::qWaitFor([&] { return QFile::exists(port(number)); }, 20000));
  }
  void pullOut(int number) {
    chips[number]->terminate();
    ASSERT_TRUE(chips[number]->waitForFinished(20000));
  }
  // A line with so many stations, each with its port.
  void open(int stations) {
    qputenv("KVR_RECORDS", folder.filePath("records.db").toLocal8Bit());
    const QString settings = folder.filePath("KVR-ISP.ini");
    QSettings file(settings, QSettings::IniFormat);
    for (int i = 1; i <= stations; ++i) {
      file.setValue(QStringLiteral("Ports/COM%1").arg(i), port(i));
      file.setValue(QStringLiteral("Stations/Name%1").arg(i), QString::number(i));
      file.setValue(QStringLiteral("Stations/Adapter%1").arg(i), port(i));
    }
    file.setValue("Stations/Delay", "0");
    file.sync();
    QProcess::execute(KVR_SOURCE_DIR "/scripts/sample-project",
                      {KVR_SOURCE_DIR "/samples/bench-clock.hex", "Ivy-HF0S", folder.filePath("job.KVR")});
    program = std::make_unique<Program>(settings.toStdString(), KVR_BINARY_DIR "/kvr");
    program->show(folder.filePath("job.KVR").toStdString());
    ASSERT_TRUE(QTest::qWaitForWindowExposed(program->window.get()));
  }
  void click(const char* name) {
    QTest::mouseClick(program->window->findChild<QWidget*>(QString::fromLatin1(name)), Qt::LeftButton);
  }
  stations::Station& station(int number) { return program->crew.station(static_cast<std::size_t>(number - 1)); }
  static bool until(const std::function<bool()>& done) { return QTest::qWaitFor(done, 60000); }
  void TearDown() override {
    program.reset();
    for (auto& [number, chip] : chips) {
      chip->terminate();
      chip->waitForFinished(20000);
    }
  }
  QTemporaryDir folder;
  std::map<int, std::unique_ptr<QProcess>> chips;
  std::unique_ptr<Program> program;
};

TEST_F(LineTest, GoesOnWhenAnAdapterGoesAChipFailsAndAProcessIsKilled) {
  plugIn(1);
  plugIn(2, {"--fault", "failsBlock=0:99"});
  plugIn(3, {"--power-on", "10000"});
  plugIn(4, {"--power-on", "10000"});
  open(4);
  click("startAll");
  const auto& tiles = [this](int number) -> const stations::Tile& { return station(number).tile(); };
  ASSERT_TRUE(until([&] { return tiles(3).sign == Sign::Waiting && tiles(4).sign == Sign::Waiting; }));
  pullOut(4);
  ASSERT_EQ(::kill(static_cast<pid_t>(station(3).processId()), SIGKILL), 0);
  ASSERT_TRUE(until([&] { return tiles(4).adapterGone && tiles(3).sign == Sign::Fail; })) << lineOf(tiles(4));
  EXPECT_FALSE(tiles(3).running) << "only the user starts it again";
  const int before = tiles(1).counts.passed;
  plugIn(4);
  ASSERT_TRUE(until([&] { return tiles(4).counts.passed > 0; })) << lineOf(tiles(4));
  int changed = 0;  // chips at station 2, each of which fails
  const auto changeChip = [&] {
    if (tiles(2).sign != Sign::Waiting || tiles(2).counts.failed == changed) return;
    changed = tiles(2).counts.failed;
    ::kill(static_cast<pid_t>(chips[2]->processId()), SIGUSR1);
  };
  ASSERT_TRUE(until([&] { return changeChip(), !tiles(2).running; })) << "it must rest after three failures";
  EXPECT_EQ(tiles(2).counts, (stations::Counts{0, 0, 3})) << lineOf(tiles(2));
  ASSERT_TRUE(until([&] { return tiles(1).counts.passed > before + 1; })) << "the others must go on";
  EXPECT_EQ(tiles(1).counts.failed, 0);

  program->window->close();  // the chips in hand are finished
  ASSERT_TRUE(until([this] { return !program->window->isVisible(); }));
  EXPECT_FALSE(program->crew.busy());
  EXPECT_EQ(tiles(1).counts.failed + tiles(4).counts.failed, 0);
}

TEST_F(LineTest, DigitsChooseATileAndSpaceStartsItsStation) {
  open(12);
  for (const auto& [digit, tile] : {std::pair{'3', 3}, {'1', 1}, {'2', 12}, {'7', 7}}) {  // 12: within a second
    QTest::keyClick(program->window.get(), digit);
    EXPECT_EQ(program->window->chosen(), tile - 1);
  }
  QTest::keyClick(program->window.get(), Qt::Key_Space);
  EXPECT_TRUE(station(7).tile().adapterGone) << "it waits for its adapter";
  QTest::keyClick(program->window.get(), Qt::Key_Space);
  EXPECT_FALSE(station(7).tile().running);
}

TEST_F(LineTest, ThePageOfABatchSettlesADoubtAndExportsWhatIsChosen) {
  open(1);
  auto store = std::move(records::openStore(folder.filePath("records.db").toStdString()).value);
  ASSERT_TRUE(store->addBatch({.name = "B", .job = {}, .counters = {{"code", 500, 1}}, .wanted = 10}).none());
  for (int i = 0; i < 4; ++i) {
    auto place = store->reserve("B", i % 2 ? "right" : "left", {});
    ASSERT_TRUE(place.ok()) << place.fault.words;
    const records::RunRow row{.run = place.value.run,
                              .batch = "B",
                              .station = i % 2 ? "right" : "left",
                              .began = "2026-11-23T06:00:00Z",
                              .seconds = 7,
                              .verdict = i == 3 ? records::Verdict::Failed : records::Verdict::Passed,
                              .words = i == 3 ? "Erased, \"not\" written" : ""};
    ASSERT_TRUE((i == 3 ? store->doubt(place.value, row) : store->spend(place.value, row)).none());
  }
  click("showBatch");
  const auto page = [this](const char* name) { return program->window->findChild<QWidget*>(QLatin1String(name)); };
  auto* done = static_cast<QLabel*>(page("batchDone"));
  ASSERT_TRUE(until([&] { return done->text() == "3 of 10 done"; })) << done->text().toStdString();
  auto* doubts = static_cast<QTableWidget*>(page("doubts"));
  ASSERT_EQ(doubts->rowCount(), 1);
  EXPECT_EQ(doubts->item(0, 0)->text(), "503");
  doubts->selectRow(0);
  click("doubtFree");
  ASSERT_TRUE(until([&] { return doubts->rowCount() == 0; }));
  EXPECT_EQ(store->batch("B").value.places.free, 1);

  auto* stations = static_cast<QComboBox*>(page("batchStation"));
  QTest::keyClick(stations, Qt::Key_Down);  // "left", of which both have passed
  ASSERT_TRUE(until([&] { return done->text() == "2 done"; })) << done->text().toStdString();
  writeRuns(*store, {"B", "right", {}}, folder.filePath("runs.csv"));
  QFile file(folder.filePath("runs.csv"));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray text = file.readAll();
  EXPECT_EQ(text.count('\n'), 3) << text.toStdString();
  EXPECT_TRUE(text.contains(R"("Erased, ""not"" written")")) << text.toStdString();
}

TEST(ChartBars, ShowTheHoursInWhichNothingRanAndDaysWhenTheHoursAreTooMany) {
  const auto bars = barsOverTime({{"2026-11-23T22", 5, 1}, {"2026-11-24T01", 7, 0}});
  ASSERT_EQ(bars.size(), 4U);
  EXPECT_EQ(bars[2], (records::HourFigures{"2026-11-24T00", 0, 0}));
  const auto days = barsOverTime({{"2026-11-20T22", 5, 1}, {"2026-11-20T23", 5, 0}, {"2026-11-24T01", 7, 0}});
  ASSERT_EQ(days.size(), 5U);
  EXPECT_EQ(days[0], (records::HourFigures{"2026-11-20", 10, 1}));
  const SecondsBars wide = barsOfSeconds({{3, 2}, {102, 1}});
  EXPECT_EQ(wide.width, 3);
  EXPECT_EQ(wide.runs.size(), 34U);
}

}  // namespace
}  // namespace kvr::tiles
