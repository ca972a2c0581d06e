#include "engine/programming.h"

#include <algorithm>
#include <array>

#include "engine/status_frame.h"
#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr Millis kFirstGenerationErase{5000};
constexpr Millis kExtendedErase{10000};
constexpr int kShortestStatus = 20;  // length of a frame that carries the eight counts
constexpr catalogue::FirmwareVersion kOldestWithFactoryId{6, 3};

// What a first-generation chip says to an erase has no mark of its own. It must not be mistaken for a late answer to
// something else: to a ping (a status frame, far longer), to the test or change of speed, to a reading of options.
bool mayAnswerErase(const Reply& reply) {
  constexpr std::array<std::uint8_t, 4> kOthers = {0x8E, 0x8F, 0x80, 0x50};
  return reply.length() < kShortestStatus &&
         std::find(kOthers.begin(), kOthers.end(), reply.command()) == kOthers.end();
}

}  // namespace

std::int32_t firmwareLimit(const TargetInfo& chip, const catalogue::McuRecord& selected) {
  const catalogue::FamilyTraits& traits = traitsOf(selected);
  if (!chip.quirks().firmwareKeepsTop && !traits.firmwareKeepsTop) return SendPlan::kNoLimit;
  const bool told = !traits.tellsSize || chip.reservedKnown;
  const int reserved = told ? chip.reservedBytes : reservedFromVersion(chip.firmware, chip.reservedBytes);
  return reserved > 1024 ? selected.dataEnd + 1024 - reserved : SendPlan::kNoLimit;
}

bool Programming::erase(const Contact& contact, const ImagePlan& plan) {
  c_.say("We are erasing MCU flash...");
  c_.stampStart();
  const int sectors = eraseSectorCount(contact.chip, c_.record(), c_.job.code.rangeEnd);
  const AddressRange range = eraseRange(contact.chip, c_.record(), plan, contact.options.reported);
  const Bytes frame = buildEraseFrame(contact.chip, c_.record(), sectors, range);
  return c_.record().extSession ? eraseExtended(frame, contact) : eraseFirstGeneration(frame);
}

bool Programming::eraseFirstGeneration(const Bytes& frame) {
  TargetLink& link = c_.link;
  if (!link.reopen()) return false;
  bool erased = false;
  for (int i = 0; i < 3 && !erased && !link.stopped(); ++i) {
    if (i > 0) c_.note(Setback::EraseAgain);
    link.sendWithRoom(frame);
    erased = link.awaitFrame(kFirstGenerationErase, mayAnswerErase).has_value();
  }
  if (erased) c_.view().append(" ( " + c_.elapsedText() + " )");
  link.delay(Millis(100), why::kBeforeData);
  return erased;
}

// The answer to the change of speed must be the last frame that came: it says that the chip is ready to be erased.
bool Programming::eraseExtended(const Bytes& frame, const Contact& contact) {
  TargetLink& link = c_.link;
  const auto& last = link.lastReply();
  if (!contact.chip.fixedBaudLink && !(last && last->command() == 0x84)) return false;
  link.beginFrame();
  link.write(frame);
  const auto reply = link.awaitFrame(kExtendedErase);
  if (!reply || reply->command() != 0x00) return false;
  c_.view().append(" ( " + c_.elapsedText() + " )");
  if (contact.chip.firmware >= kOldestWithFactoryId) noteFactoryId(*reply);
  return true;
}

void Programming::noteFactoryId(const Reply& reply) {
  if (reply.length() < 14) return;
  for (std::size_t i = 4; i <= 10; ++i) factoryId_ += platform::hexText(reply[i], 2);
}

bool Programming::program(DataFrameFormat& format, const SendPlan& plan, double clockHz) {
  c_.stampStart();
  c_.say("Programming... ( Begin: " + c_.timeOfDay() + " )");
  if (!BlockWriter(c_, format, plan, clockHz).program()) {
    if (c_.stopped()) return false;
    c_.failNow(3, "Programing failed. ");
    c_.say("Try to use the lower baud. ");
    return false;
  }
  timeText_ = c_.elapsedText();
  c_.say("Program OK");
  c_.say("Verify  OK  ( Total: " + timeText_ + " )");
  c_.enter(Stage::Finish);
  return finish();
}

// Only here does silence count as success.
bool Programming::finish() {
  if (c_.record().noOptions || !c_.record().extSession) return true;
  const auto reply = c_.link.exchange(buildGenericFrame(c_.record(), 0x69, 0, c_.reportedCode, c_.form()), Millis(200));
  if (!reply || reply->command() == 0x8D) return true;
  return c_.fail(2, "The code has already programed, but the Options haven't been modified.");
}

}  // namespace kvr::engine
