// kvr job: what a run would do with these arguments, and the job as a project file.
#include "cli/command.h"
#include "cli/image_fields.h"
#include "cli/job_source.h"
#include "cli/project_of.h"
#include "cli/serial_numbers.h"
#include "engine/job_plan.h"
#include "platform/text.h"

namespace kvr::cli {
namespace {

constexpr std::size_t kColumn = 15;

List sendsOf(const engine::JobPlan& plan) {
  List list;
  for (const engine::PlannedSend& send : plan.sends) {
    Fields fields = rangeFields(send.range);
    fields.push_back({"image", std::string(send.data ? "data" : "code")});
    fields.push_back({"blocks", std::int64_t{send.blocks}});
    fields.push_back({"frames", std::int64_t{send.frames}});
    fields.push_back({"bytes", send.bytes});
    list.push_back(std::move(fields));
  }
  return list;
}

Fields eraseOf(const engine::PlannedErase& erase) {
  Fields fields = {{"always", listOf(erase.always)}};
  if (!erase.onDemand.empty()) fields.push_back({"ifChipAsks", rangeFields(erase.onDemand)});
  return fields;
}

List changesOf(const engine::JobPlan& plan) {
  List list;
  for (const engine::ChangedOption& change : plan.changes)
    list.push_back(Fields{{"name", change.word}, {"choice", change.choice}, {"default", change.standard}});
  return list;
}

List bytesOf(const engine::JobPlan& plan) {
  List list;
  for (const std::uint8_t byte : plan.optionBytes) list.push_back(std::int64_t{byte});
  return list;
}

Fields planFields(const engine::Job& job, const engine::JobPlan& plan) {
  return {{"model", job.model.name()},
          {"refusal", plan.refusal},
          {"sends", sendsOf(plan)},
          {"bytesLeftOut", plan.leftOut.bytes},
          {"leftOutFrom", std::int64_t{plan.leftOut.from}},
          {"serialNumbersFit", plan.numbersFit},
          {"erases", eraseOf(plan.erase)},
          {"optionBytes", bytesOf(plan)},
          {"changedOptions", changesOf(plan)},
          {"baud", std::int64_t{plan.baud}},
          {"seconds", plan.seconds}};
}

class JobCommand : public Command {
 public:
  std::string name() const override { return "job"; }
  std::string about() const override { return "Tell what a run would do, without a chip; save it as a project"; }
  std::string example() const override {
    return "kvr job --model Ivy-HF0S firmware.hex --option wdt-prescaler=64 -o firmware.KVR";
  }

  void declare(CLI::App& app) override {
    job_.declare(app);
    job_.declareLine(app);
    serial_.declare(app);
    app.add_option("-o,--output", output_, "Save the job as a project file")->type_name("FILE.KVR");
    app.add_flag("-f,--force", force_, "Write over a file that is there");
  }

  ExitCode run(const Desk& desk) override {
    JobSource source;
    std::vector<images::AutoIncrement> counters;
    if (const Problem problem = make(desk, source, counters))
      return fail(desk, problem.code, problem.why, problem.next);
    const engine::JobPlan plan = engine::planJob(source.job);
    desk.out.result("plan", planFields(source.job, plan),
                    engine::planText(engine::planLines(source.job, plan), kColumn));
    if (!output_.empty())
      if (const Problem problem = save(desk, source, counters))
        return fail(desk, problem.code, problem.why, problem.next);
    return plan.refusal.empty() && plan.numbersFit ? ExitCode::Passed : ExitCode::Refused;
  }

 private:
  Problem make(const Desk& desk, JobSource& source, std::vector<images::AutoIncrement>& counters) {
    if (Problem problem = JobMaker(job_, desk.files, desk.codec).make(source)) return problem;
    for (const std::string& remark : source.remarks) desk.out.note(remark);
    if (Problem problem = serial_.counters(source, true, counters)) return problem;
    return numbers_.start(source, counters);
  }

  Problem save(const Desk& desk, const JobSource& source, const std::vector<images::AutoIncrement>& counters) const {
    if (!force_ && desk.files.fileExists(output_))
      return {ExitCode::File, output_ + " is there already.", "Say --force to write over it."};
    const auto written = desk.files.replace(output_, project::textOf(projectOf(source, job_, counters, desk.files)));
    if (!written) return {ExitCode::File, output_ + " cannot be written: " + written.error, {}};
    desk.out.result("written", {{"file", output_}}, "Saved:         " + output_);
    return {};
  }

  JobArguments job_;
  SerialArguments serial_;
  SerialNumbers numbers_;
  std::string output_;
  bool force_ = false;
};

}  // namespace

std::unique_ptr<Command> makeJobCommand() {
  return std::make_unique<JobCommand>();
}

}  // namespace kvr::cli
