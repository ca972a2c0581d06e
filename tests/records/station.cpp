// A station that is killed now and then: takes a place for each chip, and either passes it, and then says so in a file
// of its own, or gives the place back.
//   station LOCATION BATCH SEED RUNS SHOWN-FILE KILL-PERCENT
#include <unistd.h>

#include <QCoreApplication>
#include <chrono>
#include <csignal>
#include <fstream>
#include <random>
#include <string>
#include <thread>

#include "records/record_store.h"

namespace {

using namespace kvr::records;

using Clock = std::chrono::steady_clock;

// Somewhere in this chip, when it takes as long as `usual`.
void dieSomewhen(std::mt19937& random, Clock::duration usual) {
  const Clock::duration after = usual * static_cast<int>(random() % 1000) / 1000;
  std::thread([after] {
    std::this_thread::sleep_for(after);
    ::kill(::getpid(), SIGKILL);
  }).detach();
}

int work(RecordStore& store, char** words, std::mt19937& random) {
  const std::string batch = words[2];
  std::ofstream shown(words[5], std::ios::app);
  Clock::duration usual = std::chrono::milliseconds(20);
  for (int left = std::stoi(words[4]); left > 0; --left) {
    const auto begin = Clock::now();
    if (static_cast<int>(random() % 100) < std::stoi(words[6])) dieSomewhen(random, usual);
    const Stored<Reservation> place = store.reserve(batch, words[3], {});
    if (!place.ok()) return place.fault.kind == StoreFault::Kind::Refused ? 0 : 3;
    RunRow row{
        .run = place.value.run, .batch = batch, .station = words[3], .began = "2026-01-02T03:04:05Z", .seconds = 4.2};
    row.numbers = std::to_string(place.value.numbers.front());
    const bool passes = random() % 10 < 7;
    row.verdict = passes ? Verdict::Passed : Verdict::Failed;
    const StoreFault fault = passes ? store.spend(place.value, row) : store.giveBack(place.value, row);
    if (!fault.none()) return 4;
    if (passes) shown << row.numbers << std::endl;
    usual = Clock::now() - begin;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  if (argc != 7) return 2;
  std::mt19937 random(static_cast<unsigned>(std::stoul(argv[3])));
  kvr::records::Stored<std::unique_ptr<kvr::records::RecordStore>> store = kvr::records::openStore(argv[1]);
  return store.ok() ? work(*store.value, argv, random) : 3;
}
