// The runs that are recorded: one of each kind, as a user would start it. Each is a program of its own that nothing has
// touched yet; its name seeds what is chosen at random.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "catalogue/mcu_record.h"
#include "tests/recorder/record.h"

namespace kvr::recorder {

using catalogue::McuRecord;

Record wholeRun(const McuRecord& row, const std::string& name);  // random images and options
Record checkRun(const McuRecord& row, const std::string& name);
Record fixedLinkRun(const McuRecord& row, const std::string& name);
Record triggerRun(const McuRecord& row, const std::string& name);
Record repeatRun(const McuRecord& row, const std::string& name);  // two chips with serial values
Record boardRun(const McuRecord& row, const std::string& name, int version, bool secondBank);
Record demoRun(const McuRecord& row, const std::string& name);
Record trimRun(const McuRecord& row, const std::string& name, const std::string& megahertz, const std::string& rate);
// A chip of another firmware, or with something to say of itself that the usual one does not say.
Record variantRun(const McuRecord& row, const std::string& name, int firmware);
Record wrongModelRun(const McuRecord& row, const std::string& name, const McuRecord& other);
// One of the models, on a faulty line, with a chip that may have faults of its own.
Record faultyRun(const std::vector<const McuRecord*>& models, const std::string& name);

struct Run {
  std::string name;
  std::function<Record(const std::string& name)> play;
};

std::vector<Run> allRuns();

}  // namespace kvr::recorder
