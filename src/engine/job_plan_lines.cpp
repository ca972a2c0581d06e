// A plan in words.
#include <algorithm>
#include <cmath>

#include "engine/job_plan.h"
#include "images/image_facts.h"
#include "platform/text.h"

namespace kvr::engine {
namespace {

std::string megahertzText(double hertz) {
  return platform::numberText(hertz / 1e6) + " MHz";
}

std::string sendText(const PlannedSend& send, int blockSize) {
  return images::rangeText(send.range) + ", " + std::to_string(send.bytes) + " bytes in " +
         std::to_string(send.blocks) + (send.blocks == 1 ? " block of " : " blocks of ") + std::to_string(blockSize);
}

std::string leftOutText(const LeftOut& leftOut) {
  return std::to_string(leftOut.bytes) + (leftOut.bytes == 1 ? " byte" : " bytes") + " of the image, from " +
         images::addressText(leftOut.from) + " on: this model has no place for " + (leftOut.bytes == 1 ? "it" : "them");
}

std::string eraseText(const PlannedErase& erase) {
  const std::string text = images::rangesText(erase.always);
  if (erase.onDemand.empty()) return text;
  return text + "; Data Memory " + images::rangeText(erase.onDemand) + " only if the chip's present options ask for it";
}

std::string changeText(const ChangedOption& change) {
  const std::string meaning = change.meaning.empty() ? "" : " (" + change.meaning + ")";
  return change.word + "=" + change.choice + meaning + ", usually " + change.standard;
}

std::string bytesText(std::span<const std::uint8_t> bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) text += (text.empty() ? "" : " ") + platform::hexText(byte, 2);
  return text;
}

void appendOptions(std::vector<PlanLine>& lines, const JobPlan& plan) {
  if (!plan.writesOptions) return lines.push_back({"Options", "none are written"});
  if (plan.changes.empty()) lines.push_back({"Options", "as a freshly selected model has them"});
  for (const ChangedOption& change : plan.changes) lines.push_back({"Options", changeText(change)});
  lines.push_back({"Option bytes", bytesText(plan.optionBytes)});
}

void appendWarnings(std::vector<PlanLine>& lines, const JobPlan& plan) {
  if (plan.leftOut.bytes > 0) lines.push_back({"Left out", leftOutText(plan.leftOut), true});
  if (plan.dataIgnored) lines.push_back({"Data file", std::string(catalogue::kDataFileNotProgrammed), true});
  if (!plan.numbersFit)
    lines.push_back({"Serial number", "does not fit this model: the run will end before anything is erased", true});
}

std::string durationLine(const Job& job, const JobPlan& plan) {
  if (plan.baud == 0) return "cannot be told: no baud rate fits the clock";
  const bool own = job.model.traits().measuresOscillator();
  return "about " + durationText(plan.seconds) + " from the chip's answer on, at " + std::to_string(plan.baud) +
         " baud" + (own || job.fixedLink ? "" : " if its clock is " + megahertzText(plan.clockHz));
}

}  // namespace

std::string durationText(double seconds) {
  const auto whole = std::max<std::int64_t>(1, static_cast<std::int64_t>(std::ceil(seconds)));
  if (whole < 60) return std::to_string(whole) + " s";
  const std::string rest = whole % 60 == 0 ? "" : " " + std::to_string(whole % 60) + " s";
  return std::to_string(whole / 60) + " min" + rest;
}

std::vector<PlanLine> planLines(const Job& job, const JobPlan& plan) {
  std::vector<PlanLine> lines;
  if (!plan.refusal.empty()) lines.push_back({"Cannot start", plan.refusal, true});
  lines.push_back({"Model", job.model.name()});
  for (const PlannedSend& send : plan.sends)
    if (send.bytes > 0) lines.push_back({send.data ? "Sends data" : "Sends code", sendText(send, job.model.blockSize)});
  appendWarnings(lines, plan);
  lines.push_back({"Erases", eraseText(plan.erase)});
  appendOptions(lines, plan);
  if (plan.measures)
    lines.push_back({"Oscillator", "is measured and trimmed to " + megahertzText(job.wantedFrequencyHz)});
  lines.push_back({"Takes", durationLine(job, plan)});
  return lines;
}

std::string planText(const std::vector<PlanLine>& lines, std::size_t column) {
  std::string text, last;
  for (const PlanLine& line : lines) {
    std::string head = column > 0 && line.about == last ? "" : line.about + ":";
    head.resize(std::max(column, head.size() + 1), ' ');
    text += (text.empty() ? "" : "\n") + head + line.text;
    last = line.about;
  }
  return text;
}

}  // namespace kvr::engine
