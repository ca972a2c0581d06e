#include "engine/chip_run.h"

#include "engine/status_frame.h"
#include "platform/text.h"

namespace kvr::engine {
namespace {

constexpr int kPings = 5;

}  // namespace

ChipRun::ChipRun(const Job& job, const RunServices& services, RunView& view)
    : job_(job),
      link_(services, view, job.port, sumFormOf(job.record())),
      c_(job_, link_),
      optionWrite_(c_),
      handshake_(c_, optionWrite_),
      programming_(c_) {
  link_.setTurnRound(job.turnRound);
}

void ChipRun::begin() {
  c_.view().clearText();
  c_.view().clearChipLabels();
  c_.say("We are trying to connect to target MCU ... ");
}

Outcome ChipRun::program(RunBooks& books) {
  if (const std::string why = refusalOf(job_); !why.empty()) return refused(RunKind::Chip, why);
  begin();
  return end(RunKind::Chip, programChip(books), books);
}

Outcome ChipRun::check() {
  begin();
  Learnt learnt = handshake_.runReadOnly();
  contact_ = std::move(learnt.contact);
  if (learnt.connected) ping();
  NoBooks none;
  return end(RunKind::Check, learnt.connected && contact_->optionsRead, none);
}

bool ChipRun::programChip(RunBooks& books) {
  if (!connect() || !firmwareSupported() || !claim(books)) return false;
  Contact& contact = *contact_;
  const ImageFit fit = fitImages(contact.chip, job_.code.rangeEnd, contact.options.wantedWords.clearUnusedAp == "1");
  if (fit.tooBig) {
    c_.view().beep(2);
    for (const char* line :
         {"", "The Program Code and EEPROM data is too big.", "", "The exceeding part won't program."})
      c_.say(line);
  }
  if (!planFits() || !erase(fit.plan)) return false;
  c_.enter(Stage::Program);
  ChipDataFrames frames(link_, job_.record());
  if (!programming_.program(frames, sends_, contact.chip.targetClockHz)) return false;
  link_.delay(Millis(highestBaudOf(job_) != job_.firstBaud ? 1000 : 100), why::kBeforeOptions);
  c_.view().progressDone();
  c_.enter(Stage::Options);
  if (!job_.record().topBlockFree && c_.traits().layout != catalogue::OptionLayout::None &&
      !optionWrite_.write(contact))
    return false;
  c_.enter(Stage::Report);
  c_.say("Program OK");
  c_.say("Verify  OK ( Total: " + programming_.timeText() + " )");
  c_.say("Encrypt OK.");
  return !measuresOscillator(job_) || reportTrim(c_, contact.rc);
}

bool ChipRun::claim(RunBooks& books) {
  const BooksAnswer answer = books.claim(job_);
  booksFault_ = answer.fault;
  if (!answer.fine()) return c_.fail(3, answer.words + " Nothing has been erased.");
  return !c_.stopped();
}

bool ChipRun::connect() {
  Learnt learnt = handshake_.run();
  contact_ = std::move(learnt.contact);
  return learnt.connected && settle(*contact_);
}

void ChipRun::ping() {
  if (job_.record().extSession) return;
  for (int i = 0; i < kPings && !link_.stopped(); ++i) handshake_.ping();
}

bool ChipRun::settle(Contact& contact) {
  ping();
  if (c_.stopped()) return false;
  if (!contact.chip.modelCodeKnown) {
    const bool read = optionWrite_.readPatiently(contact);
    if (c_.stopped()) return false;
    if (!read) return c_.failNow(3, "Connection failed. ");
  }
  c_.say("Current Baud is: " + std::to_string(contact.baud) + " bps.");
  return handshake_.checkModel(contact.chip);
}

bool ChipRun::firmwareSupported() {
  const TargetInfo& chip = contact_->chip;
  const unsigned oldest = chip.stepping.firstGeneration() ? 4 : 5;
  if (chip.firmware >= catalogue::FirmwareVersion{oldest, 0}) return true;
  box_ = "Sorry, the current program does not support the MCU or Firmware Version is too low.";
  return false;
}

// A chip must not leave with less than the user thinks it carries: what is left out is told, and a number that would
// not arrive ends the run while the chip is still as it was.
bool ChipRun::planFits() {
  sends_ =
      planSends(job_.record(), contact_->chip.firmware, job_.model.blockSize, job_.frameSize, job_.code, job_.data);
  sends_.highest = firmwareLimit(contact_->chip, job_.record());
  leftOut_ = leftOutOf(sends_, job_);
  tellLeftOut();
  if (sends_.bytesSent(job_.model.blockSize) == 0)
    return c_.fail(3, "The image holds nothing for this chip. Nothing has been erased.");
  return carriesNumbers(sends_, job_) ||
         c_.fail(3, "The serial number does not fit this chip. Nothing has been erased.");
}

void ChipRun::tellLeftOut() {
  if (leftOut_.bytes == 0) return;
  if (job_.data.loaded && !catalogue::dataFileIsProgrammed(job_.record()))
    c_.say(std::string(catalogue::kDataFileNotProgrammed));
  c_.say(std::to_string(leftOut_.bytes) + " bytes of the image, from " +
         platform::hexText(static_cast<std::uint32_t>(leftOut_.from), 4) + "H on, are left out.");
}

bool ChipRun::erase(const ImagePlan& plan) {
  c_.enter(Stage::Erase);
  if (contact_->chip.firmware <= catalogue::FirmwareVersion{0, 2}) return true;
  const bool erased = programming_.erase(*contact_, plan);
  if (c_.stopped()) return false;
  if (erased) return true;
  c_.failNow(3, "Erasing MCU failed. ");
  c_.say("Try to use the lower baud.");
  return false;
}

ChipSeen ChipRun::seen() const {
  const TargetInfo& chip = contact_->chip;
  return {.model = chip.targetModelName,
          .code = chip.modelCode(),
          .firmware = chip.firmware.text() + chip.stepping.text(),
          .factoryId = programming_.factoryId(),
          .clockHz = chip.targetClockHz,
          .optionsBefore = contact_->optionsTold,
          .optionsAfter = contact_->options.reported,
          .trim = contact_->trim};
}

Outcome ChipRun::end(RunKind kind, bool good, RunBooks& books) {
  c_.view().progressDone();
  link_.clearQueues();
  if (good && kind == RunKind::Chip && !link_.stopped()) link_.endSession();
  Outcome outcome = c_.outcome(kind, good, leftOut_);
  outcome.wrongModel = handshake_.modelRefused();
  outcome.box = outcome.wrongModel ? c_.words() + "\n" : box_;
  if (!box_.empty()) outcome.words = box_;
  if (contact_) {
    outcome.chip = seen();
    outcome.baud = contact_->baud;
  }
  if (good && kind == RunKind::Chip) outcome.bytesSent = sends_.bytesSent(job_.model.blockSize);
  record(outcome, books);
  if (outcome.passed() && job_.handOver) return outcome;
  link_.close();
  c_.view().lamp(false);
  return outcome;
}

// No PASS without its row: what has become of a chip that nobody recorded is not known on the next day.
void ChipRun::record(Outcome& outcome, RunBooks& books) {
  outcome.books = booksFault_;
  if (booksFault_ == BooksFault::Refused) outcome.ending = Ending::Refused;
  const BooksAnswer answer = books.record(outcome);
  if (answer.fine()) return;
  c_.say(answer.words);
  outcome.books = answer.fault;
  if (!outcome.passed()) {
    outcome.words += " " + answer.words;
    return;
  }
  c_.view().beep(3);
  outcome.ending = Ending::Failed;
  outcome.words = answer.words;
}

}  // namespace kvr::engine
