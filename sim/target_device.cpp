#include "sim/target_device.h"

#include "sim/chip.h"
#include "sim/json.h"

namespace sim {

namespace {

class ChipTarget : public TargetDevice {
 public:
  explicit ChipTarget(const ChipConfig& config) : chip_(config) {}
  Device& device() override { return chip_; }
  void powerOn(Micros at) override { chip_.powerOn(at); }
  void powerOff(Micros at) override { chip_.powerOff(at); }
  int releases() const override { return chip_.releases(); }
  bool inSession() const override { return chip_.state() == ChipState::session || chip_.state() == ChipState::greeted; }

  char parityOf(int baud, std::uint8_t first) const override {
    if (const auto line = chip_.line()) return line->parity;
    if (baud == 115200 && first == 0xFE) return 'n';  // the fixed link has none, whatever the family
    return !chip_.row().parityUsed ? 'n' : chip_.row().parityEven ? 'e' : 'o';
  }

  std::string report() const override {
    const FlashMemory& memory = chip_.memory();
    return JsonObject()
        .text("device", "chip")
        .text("model", chip_.row().name)
        .text("letter", std::string(1, chip_.letter()))
        .number("firmware", chip_.firmware())
        .text("state", nameOf(chip_.state()))
        .number("clockHz", chip_.clockHz())
        .number("applicationClockHz", chip_.applicationClockHz())
        .number("sessions", chip_.sessions())
        .number("releases", chip_.releases())
        .number("erases", chip_.erases())
        .number("dataFrames", chip_.dataFrames())
        .number("blocksDone", chip_.blocksDone())
        .number("optionWrites", chip_.optionWrites())
        .number("unerasedWrites", static_cast<double>(memory.unerasedWrites()))
        .number("watchdogPin", chip_.watchdogPin().value_or(-1))
        .number("statedSeconds", static_cast<double>(chip_.journal().statedTotal()) / kSecond)
        .notes("violations", chip_.violations())
        .notes("log", chip_.journal().notes())
        .hex("options", chip_.options())
        .hex("factoryId", chip_.factoryId())
        .hex("flash", memory.bytes())
        .str();
  }

 private:
  Chip chip_;
};

std::unique_ptr<TargetDevice> makeChip(const TargetOptions& options, int index, std::string& error) {
  const McuRecord* row = kvr::catalogue::findByName(options.model);
  if (!row) {
    error = "no model " + options.model;
    return nullptr;
  }
  ChipConfig config = configFor(*row, options.clockHz, options.seed + static_cast<std::uint64_t>(index));
  config.letter = options.letter;
  config.firmware = options.firmware;
  for (const auto& [name, value] : options.faults) {
    if (setChipFault(config, name, value)) continue;
    error = "no fault " + name + (value.empty() ? "" : " with value " + value);
    return nullptr;
  }
  return std::make_unique<ChipTarget>(config);
}

}  // namespace

std::unique_ptr<TargetDevice> makeTargetDevice(const TargetOptions& options, int index, std::string& error) {
  if (options.device == "chip") return makeChip(options, index, error);
  error = "no device " + options.device;
  return nullptr;
}

}  // namespace sim
