// kvr program --batch in the virtual world, with a real record store.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include "tests/cli/cli_bench.h"
#include "tests/records/private_server.h"
#include "tests/records/test_desk.h"
#include "tests/support/engine_bench.h"

namespace kvr::cli {
namespace {

using platform::Millis;
using records::Places;

constexpr const char* kModel = "Ivy-H20S";

class BatchLine : public testing::Test {
 protected:
  BatchLine() {
    bench.files.put("/image.bin", image);
    bench.books = &desk;
    bench.out.onResult = [this](std::string_view event) {
      if (event == "number" && onNumber) onNumber();
    };
  }
  int run(const std::string& line) { return bench.run(wordsOf(line)); }
  int program(const std::string& more = {}) {
    return run("program --model Ivy-H20S /image.bin --batch B7 --station left " + more);
  }
  void addBatch(const std::string& more = {}) {
    ASSERT_EQ(run("batch new B7 --model Ivy-H20S /image.bin --serial-at 7FF --serial-next 258 " + more), 0)
        << bench.streams.told;
  }
  // Each chip after the first comes while the command pauses; `faulty` of them die on the way.
  void chips(const std::vector<bool>& faulty) {
    next = [this, faulty](std::size_t i) {
      sim::ChipConfig config = sim::configFor(*catalogue::findByName(kModel), 11059200, i + 1);
      EXPECT_TRUE(!(i < faulty.size() && faulty[i]) || sim::setChipFault(config, "diesAfterBlocks", "3"));
      bench.insertChip(config);
    };
    next(0);
    bench.out.onNote = [this, count = std::size_t{0}](std::string_view) mutable {
      bench.loop.after(Millis(1000), [this, i = ++count] { next(i); });
    };
  }
  int numberOnChip() const {
    const auto flash = bench.chip->flash();
    return flash[0x7FC] << 24 | flash[0x7FD] << 16 | flash[0x7FE] << 8 | flash[0x7FF];
  }
  records::Batch batch() {
    auto store = desk.open(desk.place);
    EXPECT_EQ(store.fault.words, "");
    return store.value->batch("B7").value;
  }

  QTemporaryDir folder;
  records::TestDesk desk{folder};
  CliBench bench;
  platform::Bytes image = support::randomBytes(7, 1900);
  std::function<void(std::size_t)> next;
  std::function<void()> onNumber;
};

TEST_F(BatchLine, GivesEachChipANumberOfItsOwnAndEndsWhenTheBatchIsFull) {
  addBatch("--wanted 3 --serial-step 2");
  chips({});
  EXPECT_EQ(program("--forever --operator Zoe"), 0) << bench.streams.told;
  EXPECT_EQ(numberOnChip(), 262);
  EXPECT_EQ(batch().places, (Places{.given = 3, .spent = 3}));
  EXPECT_EQ(program(), 7);
  EXPECT_TRUE(bench.says("The batch \"B7\" is full: 3 of 3 done.")) << bench.streams.told;
  EXPECT_EQ(run("batch export B7"), 0);
  EXPECT_TRUE(bench.writes(",262,Ivy-H20S,")) << bench.streams.written;
}

TEST_F(BatchLine, LeavesChipsAloneWhileOthersHaveTheLastPlacesAndGoesOnWhenOneComesBack) {
  addBatch("--wanted 2");
  const auto other = std::move(desk.open(desk.place).value);
  std::vector<records::Reservation> theirs;
  bench.loop.after(Millis(2000), [&] {
    for (int i = 0; i < 2; ++i) theirs.push_back(other->reserve("B7", "right", batch().job).value);
  });
  bench.loop.after(Millis(3000), [&] { bench.insertModel(kModel); });  // which nobody touches until 9 s
  bench.loop.after(Millis(9000), [&] {
    EXPECT_EQ(bench.link.opens, 1);
    EXPECT_EQ(bench.chip->erases(), 0);
    EXPECT_TRUE(bench.writes("is full: 0 of 2 done, 2 in work.")) << bench.streams.written;
    EXPECT_TRUE(other->giveBack(theirs[0], {.run = theirs[0].run, .batch = "B7"}).none());
  });
  bench.loop.after(Millis(40000), [&] {
    EXPECT_TRUE(
        other->spend(theirs[1], {.run = theirs[1].run, .batch = "B7", .verdict = records::Verdict::Passed}).none());
  });
  EXPECT_EQ(program("--forever"), 0) << bench.streams.told;
  EXPECT_EQ(numberOnChip(), 258);
  EXPECT_GE(bench.loop.now(), platform::Millis(40000)) << "a place might have come back";
  EXPECT_EQ(batch().places, (Places{.given = 2, .spent = 2}));
}

TEST_F(BatchLine, AFailedChipAndAStoppedOneLeaveTheirNumberToTheNext) {
  addBatch();
  chips({true});
  EXPECT_EQ(program(), 1);
  EXPECT_EQ(batch().places, (Places{.given = 1, .free = 1}));
  next(1);
  bench.loop.after(Millis(2500), [this] { bench.stopper.end(Cut::Interrupt); });
  EXPECT_EQ(program(), 130);
  EXPECT_GE(bench.chip->erases(), 1) << "the stop came too early for this test";
  EXPECT_EQ(batch().places, (Places{.given = 1, .free = 1}));
  EXPECT_EQ(batch().failed, 2);
  bench.stopper.stop.clear();
  CliBench second;
  second.files.put("/image.bin", image);
  second.books = &desk;
  second.insertModel(kModel);
  EXPECT_EQ(second.run(wordsOf("program --model Ivy-H20S /image.bin --batch B7")), 0) << second.streams.told;
  EXPECT_EQ(second.chip->flash()[0x7FF], 258 & 0xFF);
}

TEST_F(BatchLine, AChipOfAnotherModelHasNoNumberOfTheOneBefore) {
  addBatch();
  chips({});
  bench.out.onNote = [this](std::string_view) {
    bench.loop.after(Millis(1000), [this] { bench.insertModel("Ivy-H40S"); });
  };
  EXPECT_EQ(program("--count 2"), 5) << bench.streams.told;
  EXPECT_EQ(run("batch export B7"), 0);
  EXPECT_TRUE(bench.writes(",258,Ivy-H20S,")) << bench.streams.written;
  EXPECT_TRUE(bench.writes(",,Ivy-H40S,")) << bench.streams.written;
}

TEST_F(BatchLine, RefusesAnotherJobAClosedBatchAndNumbersOfItsOwnBeforeThePortOpens) {
  addBatch();
  image[5] ^= 1;
  bench.files.put("/other.bin", image);
  const std::pair<const char*, const char*> cases[] = {
      {"program --model Ivy-H20S /other.bin --batch B7", "This is not the job of the batch \"B7\": code checksum"},
      {"program --model Ivy-H20S /image.bin --batch B7 --option wdt-prescaler=64", "option bytes"},
      {"program --model Ivy-H40S /image.bin --batch B7", "model Ivy-H40S instead of Ivy-H20S"},
      {"program --model Ivy-H20S /image.bin --batch B8", "There is no batch \"B8\""},
      {"batch new B7 --model Ivy-H20S /image.bin", "There is a batch \"B7\" already."},
      {"batch new B9 --model Ivy-H20S /image.bin --serial-at 7FF --serial-next 250 --serial-width 1 --wanted 9",
       "The number of bytes is too small."},
  };
  for (const auto& [line, told] : cases) {
    bench.streams.told.clear();
    EXPECT_EQ(run(line), 7) << line;
    EXPECT_TRUE(bench.says(told)) << line << ": " << bench.streams.told;
  }
  EXPECT_EQ(program("--serial-at 10 --serial-next 1"), 2);
  EXPECT_EQ(run("batch close B7"), 0);
  EXPECT_EQ(program(), 7);
  EXPECT_EQ(bench.link.opens, 0);
}

// No file may grow from here on.
class FullDisk {
 public:
  FullDisk() {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit none = before_;
    none.rlim_cur = 1;
    setrlimit(RLIMIT_FSIZE, &none);
  }
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_{};
};

TEST_F(BatchLine, AFullDiskMeansNoPassAndItsNumberIsInDoubt) {
  signal(SIGXFSZ, SIG_IGN);
  addBatch();
  chips({});
  std::unique_ptr<FullDisk> full;
  onNumber = [&] { full = std::make_unique<FullDisk>(); };
  EXPECT_EQ(program(), 9);
  full.reset();
  onNumber = nullptr;
  EXPECT_TRUE(bench.says("The result could not be recorded: ")) << bench.streams.told;
  EXPECT_FALSE(bench.writes("PASS  ")) << bench.streams.written;
  EXPECT_EQ(batch().places, (Places{.given = 1, .inDoubt = 1}));
  EXPECT_EQ(run("batch doubt B7 --spend 258"), 0);
  next(1);
  EXPECT_EQ(program(), 0) << bench.streams.told;
  EXPECT_EQ(numberOnChip(), 259);
}

TEST_F(BatchLine, AServerThatIsAwayForAWhileGetsTheRowOnceWhenItIsBack) {
  test::PrivateServer server;
  if (!server.runs()) GTEST_SKIP() << "PostgreSQL is not installed";
  desk.place = server.location();
  addBatch();
  chips({false, true});
  onNumber = [&] { EXPECT_TRUE(server.stop()); };
  EXPECT_EQ(program(), 9);
  EXPECT_FALSE(bench.writes("PASS  "));
  EXPECT_EQ(program(), 9) << "nothing starts without its store";
  ASSERT_TRUE(server.start());
  next(1);
  EXPECT_EQ(program(), 9) << "away again; this chip fails by itself";
  ASSERT_TRUE(server.start());
  onNumber = nullptr;
  next(2);
  EXPECT_EQ(program(), 0) << bench.streams.told;
  const records::Batch after = batch();
  EXPECT_EQ(after.places, (Places{.given = 2, .spent = 1, .inDoubt = 1})) << "the failed chip's number was free again";
  EXPECT_EQ(after.passed, 1);
  EXPECT_EQ(after.failed, 2);
  EXPECT_EQ(numberOnChip(), 259);
}

}  // namespace
}  // namespace kvr::cli
