// One contract for both databases.
#include <gtest/gtest.h>

#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QThread>
#include <fstream>
#include <memory>
#include <set>

#include "platform/virtual/virtual_world.h"
#include "records/qt/qt_record_desk.h"
#include "records/qt/sql_store.h"
#include "records/qt/waiting_rows.h"
#include "records/record_store.h"
#include "tests/records/private_server.h"

namespace {

using namespace kvr::records;
using kvr::test::PrivateServer;
namespace platform = kvr::platform;

// One server for the whole program: starting one takes seconds.
std::unique_ptr<PrivateServer> serverOfAll;

class ServerOfAll : public ::testing::Environment {
  void TearDown() override { serverOfAll.reset(); }
};
const ::testing::Environment* const kServerOfAll = ::testing::AddGlobalTestEnvironment(new ServerOfAll);

PrivateServer& server() {
  if (!serverOfAll) serverOfAll = std::make_unique<PrivateServer>();
  return *serverOfAll;
}

const Fingerprint kJob{.model = "KVR8F2K60", .codeSum = "12AF", .codeCrc32 = "CBF43926", .options = "FF7F"};

class StoreContract : public ::testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    if (onServer() && (!server().runs() || !server().emptyDatabase())) GTEST_SKIP() << "PostgreSQL is not installed";
    store_ = open();
    ASSERT_TRUE(store_);
  }

  bool onServer() const { return GetParam() == std::string("server"); }
  std::string location() const {
    return onServer() ? server().location() : folder_.filePath("deep/records.db").toStdString();
  }
  std::unique_ptr<RecordStore> open() const {
    auto opened = openStore(location());
    EXPECT_EQ(opened.fault.words, "");
    return std::move(opened.value);
  }

  void addBatch(std::optional<std::int64_t> wanted = {}) {
    EXPECT_EQ(
        store_->addBatch({.name = "B7", .job = kJob, .counters = {{"code", 100, 2}, {"data", 7, 1}}, .wanted = wanted})
            .words,
        "");
  }
  Reservation reserve(RecordStore& from) {
    const Stored<Reservation> place = from.reserve("B7", "left", kJob);
    EXPECT_EQ(place.fault.words, "");
    return place.value;
  }
  Reservation reserve() { return reserve(*store_); }
  static RunRow row(const Reservation& place, Verdict verdict = Verdict::Passed) {
    RunRow row{.run = place.run,
               .batch = "B7",
               .station = "left",
               .port = "COM3",
               .adapter = "1A86:7523",
               .began = "2026-11-23T21:40:00Z",
               .seconds = 4.25,
               .stageSeconds = "Erase 0.31",
               .verdict = verdict,
               .words = verdict == Verdict::Failed ? "No answer." : "",
               .chip = "KVR8F2K60",
               .firmware = "6.3I",
               .factoryId = "01020304050607",
               .numbers = "code 100",
               .codeSum = "12AF",
               .dataSum = "0",
               .bytesLeftOut = 3,
               .programVersion = "4.88",
               .operatorName = "Zoë"};
    return row;
  }
  Batch batch() {
    const Stored<Batch> found = store_->batch("B7");
    EXPECT_EQ(found.fault.words, "");
    return found.value;
  }

  QTemporaryDir folder_;
  std::unique_ptr<RecordStore> store_;
};

TEST_P(StoreContract, GivesEachNumberOnceAndTheLowestThatCameBackFirst) {
  addBatch();
  const Reservation first = reserve(), second = reserve(), third = reserve();
  EXPECT_EQ(third.numbers, (std::vector<std::int64_t>{104, 9}));
  EXPECT_TRUE(store_->giveBack(third, row(third, Verdict::Failed)).none());
  EXPECT_TRUE(store_->giveBack(first, row(first, Verdict::Failed)).none());
  EXPECT_TRUE(store_->spend(second, row(second)).none());
  EXPECT_EQ(reserve().ordinal, 0);
  EXPECT_EQ(reserve().ordinal, 2);
  EXPECT_EQ(reserve().ordinal, 3);
  EXPECT_EQ(batch().places, (Places{.given = 4, .spent = 1, .reserved = 3}));
  EXPECT_EQ(batch().passed, 1);
  EXPECT_EQ(batch().failed, 2);
}

TEST_P(StoreContract, KeepsARunWholeAndOnce) {
  addBatch();
  const Reservation place = reserve();
  EXPECT_TRUE(store_->spend(place, row(place)).none());
  EXPECT_TRUE(store_->spend(place, row(place)).none()) << "the answer of the first was lost";
  const RunRow failed{.run = "x", .batch = "B7", .began = "2026-11-23T21:39:00Z", .words = "No chip"};
  EXPECT_TRUE(store_->addRun(failed).none());
  std::vector<RunRow> rows;
  EXPECT_TRUE(open()->readRuns("B7", [&](const RunRow& one) { return rows.push_back(one), true; }).none());
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].words, "No chip");
  const RunRow expected = row(place);
  EXPECT_EQ(rows[1].operatorName, expected.operatorName);
  EXPECT_EQ(rows[1].seconds, expected.seconds);
  EXPECT_EQ(rows[1].bytesLeftOut, 3);
  EXPECT_EQ(rows[1].verdict, Verdict::Passed);
  EXPECT_EQ(rows[1].dataSum, "0");
  EXPECT_EQ(rows[1].factoryId, expected.factoryId);
  EXPECT_EQ(batch().passed, 1);
  EXPECT_EQ(store_->tallies("B7", {}).value.size(), 4u);
  EXPECT_EQ(store_->tallies("B7", {.fromHour = "2026-11-23T22"}).value.size(), 0u);
  EXPECT_EQ(store_->extent("B7").value.hours, std::vector<std::string>{"2026-11-23T21"});
}

TEST_P(StoreContract, RefusesAnotherJobAFullBatchAndAClosedOne) {
  addBatch(2);
  EXPECT_EQ(store_->addBatch({.name = "B7"}).kind, StoreFault::Kind::Refused);
  Fingerprint other = kJob;
  other.codeSum = "3C01";
  EXPECT_EQ(store_->reserve("B7", "left", other).fault.words,
            "This is not the job of the batch \"B7\": code checksum 3C01 instead of 12AF.");
  EXPECT_EQ(store_->reserve("B8", "left", kJob).fault.kind, StoreFault::Kind::Refused);
  const Reservation one = reserve(), two = reserve();
  EXPECT_TRUE(store_->spend(one, row(one)).none());
  EXPECT_EQ(store_->reserve("B7", "left", kJob).fault.words, "The batch \"B7\" is full: 1 of 2 done, 1 in work.");
  EXPECT_TRUE(store_->giveBack(two, row(two, Verdict::Failed)).none());
  reserve();
  EXPECT_TRUE(store_->closeBatch("B7").none());
  EXPECT_FALSE(store_->closeBatch("B7").none());
  EXPECT_EQ(store_->reserve("B7", "left", kJob).fault.words, "The batch \"B7\" is closed.");
}

TEST_P(StoreContract, ANumberOfAStationThatDiedIsInDoubtUntilAPersonSettlesIt) {
  addBatch();
  auto other = open();
  const Reservation lost = reserve(*other), lostToo = reserve(*other);
  EXPECT_TRUE(store_->doubts("B7").value.empty()) << "the other station lives";
  other.reset();
  Stored<std::vector<Doubt>> doubts = store_->doubts("B7");
  for (QDeadlineTimer limit(10000); doubts.value.size() < 2 && !limit.hasExpired(); doubts = store_->doubts("B7"))
    QThread::msleep(5);  // a server notices a closed connection a little later
  ASSERT_EQ(doubts.value.size(), 2u);
  EXPECT_EQ(doubts.value[0].numbers, (std::vector<std::int64_t>{100, 7}));
  EXPECT_EQ(reserve().ordinal, 2) << "never given out again by itself";
  EXPECT_TRUE(store_->settle("B7", 0, Settlement::Free).none());
  EXPECT_TRUE(store_->settle("B7", 1, Settlement::Spent).none());
  EXPECT_FALSE(store_->settle("B7", 1, Settlement::Free).none());
  EXPECT_TRUE(store_->doubt(lostToo, row(lostToo, Verdict::Failed)).none()) << "its row comes later, and asks no more";
  EXPECT_EQ(reserve().ordinal, 0);
  EXPECT_FALSE(store_->spend(lost, row(lost)).none()) << "its number has gone to another chip";
  EXPECT_EQ(batch().places, (Places{.given = 3, .spent = 1, .reserved = 2}));
  EXPECT_EQ(batch().passed, 0);
  EXPECT_EQ(batch().failed, 1);
}

TEST_P(StoreContract, AStationThatWasOnlyCutOffKeepsItsNumber) {
  addBatch();
  const Reservation place = reserve();
  EXPECT_TRUE(store_->doubt(place, row(place, Verdict::Failed)).none());
  EXPECT_EQ(batch().places.inDoubt, 1);
  const Reservation next = reserve();
  EXPECT_TRUE(store_->spend(next, row(next)).none());
  EXPECT_TRUE(store_->doubt(next, row(next, Verdict::Failed)).none())
      << "the answer to the PASS was lost: the user saw FAIL";
  EXPECT_EQ(batch().places, (Places{.given = 2, .inDoubt = 2}));
  EXPECT_EQ(batch().passed, 0);
  EXPECT_EQ(batch().failed, 2);
  EXPECT_TRUE(store_->settle("B7", 1, Settlement::Spent).none());
  EXPECT_TRUE(store_->doubt(next, row(next, Verdict::Failed)).none()) << "the same row once more";
  EXPECT_EQ(batch().places, (Places{.given = 2, .spent = 1, .inDoubt = 1}));
}

// A process is known by its lock on a file: by no number that the system gives out again, and by whatever name a folder
// has.
TEST(RecordStore, KnowsWhoLivesByTheLockAloneAndUnderEachNameOfItsFolder) {
  QTemporaryDir folder;
  ASSERT_TRUE(QDir(folder.path()).mkdir("deep") && QFile::link("deep", folder.filePath("alias")));
  auto one = std::move(openStore(folder.filePath("deep/records.db").toStdString()).value);
  auto two = std::move(openStore(folder.filePath("alias/records.db").toStdString()).value);
  ASSERT_TRUE(one->addBatch({.name = "B"}).none());
  ASSERT_TRUE(one->reserve("B", "left", {}).ok());
  EXPECT_EQ(two->batch("B").value.places.reserved, 1);
  const QStringList locks = QDir(folder.filePath("deep")).entryList({"*.station-*"});
  ASSERT_EQ(locks.size(), 1);
  QFile lock(folder.filePath("deep/" + locks.front()));
  ASSERT_TRUE(lock.open(QIODevice::ReadOnly));
  const QByteArray owner = lock.readAll();
  one.reset();
  QFile left(lock.fileName());  // as after a kill, and this process has got the dead one's number
  ASSERT_TRUE(left.open(QIODevice::WriteOnly) && left.write(owner) > 0 && left.flush());
  EXPECT_TRUE(left.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime));
  EXPECT_EQ(two->batch("B").value.places.inDoubt, 1);
}

TEST_P(StoreContract, LeavesTablesOfANewerVersionAlone) {
  addBatch();
  if (onServer()) return;  // one rule for both; the file is the easier one to get at
  {
    QSqlDatabase db = QSqlDatabase::addDatabase("QSQLITE", "newer");
    db.setDatabaseName(QString::fromStdString(location()));
    ASSERT_TRUE(db.open());
    ASSERT_TRUE(QSqlQuery(db).exec("UPDATE kvr_records SET version = 99"));
  }
  QSqlDatabase::removeDatabase("newer");
  const auto opened = openStore(location());
  EXPECT_EQ(opened.fault.kind, StoreFault::Kind::Refused);
  EXPECT_NE(opened.fault.words.find("newer version"), std::string::npos);
}

// `KVR_BOOKS_RUNS`: chips of the attack; `KVR_BOOKS_STATIONS`: processes at a time.
int setting(const char* name, int otherwise) {
  bool given = false;
  const int value = qEnvironmentVariableIntValue(name, &given);
  return given ? value : otherwise;
}

TEST_P(StoreContract, StationsThatAreKilledAtAnyMomentNeverGiveANumberTwice) {
  addBatch();
  EXPECT_TRUE(store_->addBatch({.name = "attack", .counters = {{"code", 1, 1}}}).none());
  const int runs = setting("KVR_BOOKS_RUNS", 200), stations = setting("KVR_BOOKS_STATIONS", 16);
  std::vector<std::unique_ptr<QProcess>> processes(static_cast<std::size_t>(stations));
  const QString shown = folder_.filePath("shown-%1");
  int seed = 1;
  std::int64_t kills = 0;
  while (true) {
    const Stored<Batch> now = store_->batch("attack");
    ASSERT_EQ(now.fault.words, "");
    if (now.value.passed + now.value.failed + kills >= runs) break;
    for (std::size_t i = 0; i < processes.size(); ++i) {
      if (processes[i] && !processes[i]->waitForFinished(5)) continue;
      if (processes[i]) {
        EXPECT_TRUE(processes[i]->exitStatus() == QProcess::CrashExit || processes[i]->exitCode() == 0)
            << processes[i]->exitCode();
        kills += processes[i]->exitStatus() == QProcess::CrashExit;
      }
      processes[i] = std::make_unique<QProcess>();
      processes[i]->start(KVR_BINARY_DIR "/tests/station", {QString::fromStdString(location()), "attack",
                                                            QString::number(seed++), "10", shown.arg(i), "20"});
    }
  }
  for (auto& process : processes) EXPECT_TRUE(!process || process->waitForFinished());
  Batch after = store_->batch("attack").value;
  for (QDeadlineTimer limit(10000); after.places.reserved > 0 && !limit.hasExpired();
       after = store_->batch("attack").value)
    QThread::msleep(5);  // a server notices a closed connection a little later
  std::multiset<std::string> passed, told;
  EXPECT_TRUE(store_
                  ->readRuns("attack",
                             [&](const RunRow& one) {
                               if (one.verdict == Verdict::Passed) passed.insert(one.numbers);
                               return true;
                             })
                  .none());
  for (int i = 0; i < stations; ++i) {
    std::ifstream file(shown.arg(i).toStdString());
    for (std::string line; std::getline(file, line);) told.insert(line);
  }
  const std::set<std::string> once(passed.begin(), passed.end());
  EXPECT_EQ(once.size(), passed.size()) << "a number on two chips that passed";
  EXPECT_EQ(std::set<std::string>(told.begin(), told.end()).size(), told.size());
  for (const std::string& number : told) EXPECT_TRUE(once.contains(number)) << "a chip passed without its row";
  EXPECT_EQ(after.places.reserved, 0);
  EXPECT_EQ(after.places.spent, std::ssize(passed));
  EXPECT_EQ(after.places.given, after.places.spent + after.places.free + after.places.inDoubt);
  EXPECT_GT(kills, 0);
  EXPECT_GT(after.places.inDoubt, 0);
  RecordProperty("kills", static_cast<int>(kills));
}

std::string nameOfStore(const ::testing::TestParamInfo<const char*>& store) {
  return store.param;
}

INSTANTIATE_TEST_SUITE_P(Books, StoreContract, ::testing::Values("file", "server"), nameOfStore);

TEST(RecordStore, SaysWhyItCannotBeReachedAndComesBack) {
  PrivateServer other;
  if (!other.runs()) GTEST_SKIP() << "PostgreSQL is not installed";
  auto opened = openStore(other.location());
  ASSERT_TRUE(opened.ok());
  ASSERT_TRUE(opened.value->addBatch({.name = "B"}).none());
  const Reservation place = opened.value->reserve("B", "left", {}).value;
  ASSERT_TRUE(other.stop());
  const StoreFault lost = opened.value->spend(place, {.run = place.run, .batch = "B", .verdict = Verdict::Passed});
  EXPECT_EQ(lost.kind, StoreFault::Kind::Unreachable);
  EXPECT_EQ(lost.words.find("The record store "), 0u) << lost.words;
  ASSERT_TRUE(other.start());
  EXPECT_EQ(opened.value->spend(place, {.run = place.run, .batch = "B", .verdict = Verdict::Passed}).words, "");
  EXPECT_EQ(opened.value->batch("B").value.places, (Places{.given = 1, .spent = 1}));
}

TEST(RecordStore, WhatCouldNotBeRecordedWaitsAndGoesInOnce) {
  QTemporaryDir folder;
  auto store = std::move(openStore(folder.filePath("records.db").toStdString()).value);
  ASSERT_TRUE(store->addBatch({.name = "B"}).none());
  const Reservation place = store->reserve("B", "left", {}).value;
  const WaitingRows waiting(folder.filePath("state/unrecorded").toStdString());
  ASSERT_TRUE(
      waiting.keep(place, {.run = place.run, .batch = "B", .verdict = Verdict::Passed, .words = "not recorded"}));
  ASSERT_TRUE(waiting.keep({}, {.run = "other", .batch = "B", .words = "No chip", .operatorName = "Zoë"}));
  ASSERT_TRUE(waiting.keep({}, {.run = "stray", .batch = "gone"}));
  const Reservation failed = store->reserve("B", "left", {}).value;
  ASSERT_TRUE(waiting.keep(failed, {.run = failed.run, .batch = "B", .words = "No answer."}));
  EXPECT_EQ(waiting.deliver(*store), 1) << "the store knows no batch of that name";
  EXPECT_EQ(waiting.deliver(*store), 1);
  EXPECT_EQ(store->batch("B").value.failed, 3);
  EXPECT_EQ(store->batch("B").value.places, (Places{.given = 2, .inDoubt = 1, .free = 1}));
}

// Another station's chip ends while this one hands over.
struct Meanwhile : SqlStore {
  Meanwhile(const QString& path, std::function<void()> during)
      : SqlStore(std::make_unique<SqlLink>(path)), then(std::move(during)) {}
  StoreFault addRun(const RunRow& row) override {
    then();
    return SqlStore::addRun(row);
  }
  std::function<void()> then;
};

TEST(RecordStore, ARowIsKeptWhileOthersAreHandedOver) {
  QTemporaryDir folder;
  const QString path = folder.filePath("records.db");
  ASSERT_TRUE(openStore(path.toStdString()).value->addBatch({.name = "B"}).none());
  const WaitingRows waiting(folder.filePath("waiting").toStdString());
  ASSERT_TRUE(waiting.keep({}, {.run = "first", .batch = "B"}));
  Meanwhile store(path, [&] { EXPECT_TRUE(waiting.keep({}, {.run = "second", .batch = "B"})); });
  EXPECT_EQ(waiting.deliver(store), 1);
  store.then = [] {};
  EXPECT_EQ(waiting.deliver(store), 0);
  EXPECT_EQ(store.batch("B").value.failed, 2);
}

TEST(RecordDesk, AStoreIsThatOfItsFolderWhereverTheProgramStands) {
  const auto shared = std::make_shared<platform::MemoryDisk>();
  QtRecordDesk desk([&] { return std::make_unique<platform::MemoryStore>(shared); });
  EXPECT_EQ(desk.keepLocation("line.db"), "");
  EXPECT_EQ(desk.location(), QDir::current().filePath("line.db").toStdString());
  EXPECT_EQ(desk.keepLocation("postgresql://line@server/records"), "");
  EXPECT_EQ(desk.location(), "postgresql://line@server/records");
}

TEST(RecordStore, RefusesAnAddressWithAPasswordAndAFolderThatCannotBeMade) {
  EXPECT_EQ(openStore("postgresql://u:secret@h/db").fault.kind, StoreFault::Kind::Refused);
  EXPECT_EQ(openStore("postgresql://h").fault.kind, StoreFault::Kind::Refused);
  EXPECT_EQ(openStore("").fault.kind, StoreFault::Kind::Refused);
  EXPECT_EQ(openStore("/proc/no/records.db").fault.kind, StoreFault::Kind::Unreachable);
  QTemporaryDir folder;
  EXPECT_EQ(openStore(folder.path().toStdString()).fault.kind, StoreFault::Kind::Unreachable)
      << "a folder is no database";
}

}  // namespace
