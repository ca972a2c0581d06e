// Reads the chip's option bytes, and brings them in line with what the job wants.
#pragma once

#include "engine/run_context.h"

namespace kvr::engine {

class OptionWrite {
 public:
  explicit OptionWrite(RunContext& context) : c_(context) {}

  // The job's choices as option bytes, with the measured trim when there is one.
  void compose(Contact& contact) const;
  // What the status frame told, in the pane and beside the options. The three bytes are those after the counts.
  void report(Contact& contact, std::uint8_t status11, std::uint8_t status12, std::uint8_t status13);

  // Asks for status and options, up to three times. False: no frame that holds them came.
  [[nodiscard]] bool read(Contact& contact);
  // The same, up to four times, for a chip that has not told what it is.
  [[nodiscard]] bool readPatiently(Contact& contact);
  // The write step by family. True: the chip holds what was wanted, or needed nothing. False: the user knows why.
  [[nodiscard]] bool write(Contact& contact);

 private:
  bool failed();
  bool done();
  std::optional<Reply> sendAndWait(const Bytes& frame, Millis limit);
  std::optional<Reply> sendTwice(const Bytes& frame, Millis limit);
  bool sendUntilDone(const Bytes& frame, Millis limit);
  void parse(Contact& contact, const Reply& reply);
  bool holdsOptions(const Contact& contact, const Reply& reply) const;
  bool writeAlder(Contact& contact);
  bool writeCedarLike(Contact& contact);
  bool writeLater(Contact& contact, bool allTold);  // false: bytes to compare are not known of this chip
  bool sendLater(Contact& contact);
  bool writeRowan(Contact& contact);
  RunContext& c_;
};

}  // namespace kvr::engine
