// What a production line keeps of a batch, of its numbers and of its runs, as values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kvr::records {

// What every chip of a batch gets. Two stations that differ in one of these program two different products.
struct Fingerprint {
  std::string model;
  std::string codeSum, codeCrc32;  // hexadecimal, as the check sum boxes show them; CRC-32 of the whole image, 8 digits
  std::string dataSum, dataCrc32;  // empty: no data image
  std::string options;             // the option bytes, hexadecimal
  std::string frequency;           // wanted, of the internal oscillator, in Hz; empty: no choice
  std::string numbers;             // where the running numbers lie in the images; empty: there are none
  bool operator==(const Fingerprint&) const = default;
};

// The first thing in which `job` differs from `batch`, for a message, such as "code checksum 12AF instead of 3C01".
// Empty: they are the same.
std::string differenceOf(const Fingerprint& batch, const Fingerprint& job);

struct FingerprintPart {
  const char* key;    // in the database
  const char* words;  // for a message
  std::string Fingerprint::*value;
};
const std::vector<FingerprintPart>& fingerprintParts();

// A running number that each chip of a batch carries. What it looks like in the image is the image's business.
struct Counter {
  std::string name;  // "code" or "data": the image that holds it; unique in its batch
  std::int64_t first = 0;
  std::int64_t step = 1;
  std::int64_t at(std::int64_t ordinal) const { return first + ordinal * step; }
  bool operator==(const Counter&) const = default;
};

struct NewBatch {
  std::string name;
  Fingerprint job;
  std::vector<Counter> counters;
  std::optional<std::int64_t> wanted;  // good chips; none: no limit
};

// Numbers of a batch by what became of them. Each chip takes one place in the batch; a place stands for one number of
// each counter.
struct Places {
  std::int64_t given = 0;  // = spent + reserved + inDoubt + free
  std::int64_t spent = 0, reserved = 0, inDoubt = 0, free = 0;
  bool operator==(const Places&) const = default;
};

struct Batch {
  std::string name;
  Fingerprint job;
  std::vector<Counter> counters;
  std::optional<std::int64_t> wanted;
  std::string opened, closed;  // UTC, "yyyy-mm-ddThh:mm:ssZ"; not closed: empty
  Places places;
  std::int64_t passed = 0, passedInPart = 0, failed = 0;  // runs

  std::int64_t done() const { return passed + passedInPart; }
};

// Whether a chip more has a place in the batch. Later: not now, but others have the last ones in work, and one may come
// back. Never: all are spent, or in doubt until a person settles them.
enum class Room { Now, Later, Never };
Room roomIn(const Batch& batch);
// How many chips of those wanted it has, and what has become of the others' places: "198 of 200 done, 2 in work".
std::string takenText(const Batch& batch);
// The same as a message: "The batch "B7" is full: 198 of 200 done, 2 in work."
std::string fullText(const Batch& batch);
// Why the batch takes no chip with this job, whether it is full or not; empty: it does.
std::string closedOrOtherJob(const Batch& batch, const Fingerprint& job);
// Why the batch takes no further chip with this job, in words; empty: it does.
std::string refusalOf(const Batch& batch, const Fingerprint& job);

// A place in the batch that a station has for the chip in its hands.
struct Reservation {
  std::string run;  // the run's identity, unique for ever
  std::string batch;
  std::int64_t ordinal = 0;           // 0: the first chip
  std::vector<std::int64_t> numbers;  // one for each counter, in the batch's order
};

enum class Verdict { Passed, PassedInPart, Failed };

struct RunRow {
  std::string run;  // identity: a row that comes twice is kept once
  std::string batch, station, port, adapter;
  std::string began;         // UTC, "yyyy-mm-ddThh:mm:ssZ"
  double seconds = 0;        // from the chip's answer to the end
  std::string stageSeconds;  // "Erase 0.31 Program 4.20": each stage that took time
  Verdict verdict = Verdict::Failed;
  std::string words;  // of the failure
  std::string chip, firmware, factoryId;
  std::string numbers;  // what the chip carries; empty: none
  std::string codeSum, dataSum;
  std::int64_t bytesLeftOut = 0;
  std::string programVersion;
  std::string operatorName;
};

// "123", or "123/7" of two counters.
std::string textOf(const std::vector<std::int64_t>& numbers);

// A place whose station died with it.
struct Doubt {
  std::string batch, station, since;  // UTC
  std::int64_t ordinal = 0;
  std::vector<std::int64_t> numbers;
};

}  // namespace kvr::records
