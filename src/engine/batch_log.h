// The batch log of a production line: one line of CSV for every run, on the disk before the verdict is shown. Columns
// keep their places: spreadsheets count on them, so a new one comes last.
#pragma once

#include <string>

#include "engine/outcome.h"
#include "platform/file_system.h"

namespace kvr::engine {

// What a log's lines hold. One that was begun before there was a turn-round goes on without it: a line with more fields
// than the header names is an error to many readers.
enum class LogForm { WithoutTurnRound, Whole };

struct BatchEntry {
  std::string time;  // local, "yyyy-mm-dd hh:mm:ss"
  std::string model;
  std::string verdict;  // what the sign says: "PASS", "PASS, PART LEFT OUT" or "FAIL"
  std::string failure;  // the message of the failure, empty after a success
  std::string codeSum;  // as the check sum boxes show them
  std::string dataSum;
  std::string firmware;   // version and letter, such as "6.3Q"
  std::string serial;     // the number that went into this chip; empty without auto-increment
  std::string factoryId;  // 14 hexadecimal digits, when the chip told it
  int seconds = 0;
  int turnRoundMs = 0;  // that the run ended with; 0: it sent nothing
};

// `serial`: what the chip carries; empty without a counter.
BatchEntry batchEntry(const Outcome& outcome, const std::string& time, const std::string& model,
                      const std::string& serial);

// A field of a line of CSV, in quotes when it has commas, quotes or line breaks.
std::string csvField(const std::string& field);
// The entry as one line with its line end; fields with commas, quotes or line breaks are quoted.
std::string csvLine(const BatchEntry& entry, LogForm form = LogForm::Whole);
std::string csvHeader(LogForm form = LogForm::Whole);

// Appends the entry, after a header line when the file is new or empty, in the form that its header has. An error
// leaves the file as it was.
[[nodiscard]] platform::FileResult appendToBatchLog(platform::FileSystem& files, const std::string& path,
                                                    const BatchEntry& entry);

}  // namespace kvr::engine
