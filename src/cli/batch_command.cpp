// kvr batch: the batches of the record store.
#include <algorithm>

#include "batches/chip_numbers.h"
#include "batches/fingerprint.h"
#include "cli/batch_text.h"
#include "cli/checks.h"
#include "cli/command.h"
#include "cli/job_source.h"
#include "cli/serial_numbers.h"
#include "cli/store_arguments.h"
#include "engine/job_plan.h"

namespace kvr::cli {
namespace {

class BatchCommand : public Command {
 public:
  std::string name() const override { return "batch"; }
  std::string about() const override { return "The batches of a production line: make one, show, close, export"; }
  std::string example() const override {
    return "kvr batch new B7 --project product.KVR --wanted 500 --serial-next 1\n"
           "  kvr program --project product.KVR --batch B7 --station left --forever";
  }

  void declare(CLI::App& app) override {
    app.require_subcommand(1);
    declareNew(*part(app, "new", "Make a batch of the job that these arguments say", &BatchCommand::make));
    part(app, "list", "List the batches, the newest first", &BatchCommand::list);
    named(part(app, "show", "Tell all about a batch", &BatchCommand::show));
    named(part(app, "close", "Let no further chip into a batch", &BatchCommand::close));
    CLI::App* out = named(part(app, "export", "Write its runs as CSV, one a line", &BatchCommand::exportRuns));
    out->add_option("-o,--output", output_, "Into this file")->type_name("FILE.csv");
    out->add_flag("-f,--force", force_, "Write over a file that is there");
    CLI::App* doubt = named(part(app, "doubt", "List its numbers in doubt, or settle one", &BatchCommand::doubt));
    auto* spend = doubt->add_option("--spend", spend_, "There is a good chip with this number")->type_name("N");
    doubt->add_option("--free", free_, "There is none: the next chip may have it")->type_name("N")->excludes(spend);
    part(app, "store", "Tell where the record store is, or choose another one for good", &BatchCommand::place)
        ->add_option("place", place_, "A file, or postgresql://USER@HOST/DATABASE")
        ->type_name("PLACE");
  }

  ExitCode run(const Desk& desk) override {
    const Problem problem = (this->*chosen_)(desk);
    return problem ? fail(desk, problem.code, problem.why, problem.next) : ExitCode::Passed;
  }

 private:
  using Part = Problem (BatchCommand::*)(const Desk&);

  CLI::App* part(CLI::App& app, const std::string& name, const std::string& about, Part what) {
    CLI::App* sub = app.add_subcommand(name, about);
    store_.declare(*sub);
    sub->final_callback([this, what] { chosen_ = what; });
    return sub;
  }
  CLI::App* named(CLI::App* sub) {
    sub->add_option("name", name_, "Name of the batch")->required()->type_name("NAME");
    return sub;
  }
  void declareNew(CLI::App& app) {
    named(&app);
    job_.declare(app);
    serial_.declare(app);
    app.add_option("--wanted", wanted_, "Good chips after which it is full")
        ->type_name("N")
        ->check(quiet(CLI::Range(1, 1000000000)));
  }

  Problem make(const Desk& desk) {
    JobSource source;
    if (const Problem problem = JobMaker(job_, desk.files, desk.codec).make(source)) return problem;
    for (const std::string& remark : source.remarks) desk.out.note(remark);
    batches::Layout layout;
    if (const Problem problem = serial_.counters(source, job_.yes, layout)) return problem;
    records::NewBatch batch{.name = name_,
                            .job = batches::fingerprintOf(source.job, layout),
                            .counters = batches::countersOf(layout),
                            .wanted = wanted_};
    if (const Problem problem = tryNumbers(source.job, layout, batch)) return problem;
    OpenBooks books;
    if (const Problem problem = store_.open(desk, books)) return problem;
    if (const records::StoreFault fault = books.store->addBatch(batch); !fault.none()) return problemOf(fault);
    return tell(desk, *books.store);
  }

  // Its first and its last number have a place in the chip.
  static Problem tryNumbers(const engine::Job& job, const batches::Layout& layout, const records::NewBatch& batch) {
    for (const std::int64_t ordinal : {std::int64_t{0}, batch.wanted.value_or(1) - 1}) {
      engine::Job trial = job;
      std::vector<std::int64_t> numbers;
      for (const records::Counter& counter : batch.counters) numbers.push_back(counter.at(ordinal));
      std::string why = batches::writeNumbers(trial, layout, numbers);
      const engine::JobPlan plan = engine::planJob(trial);
      if (why.empty()) why = plan.refusal;
      if (why.empty() && !plan.numbersFit) why = "The serial number does not fit this chip.";
      if (!why.empty()) return {ExitCode::Refused, why, "`kvr job` tells what a run would do."};
    }
    return {};
  }

  Problem tell(const Desk& desk, records::RecordStore& store) const {
    const auto found = store.batch(name_);
    if (found.ok()) desk.out.result("batch", batchFields(found.value), batchLines(found.value));
    return problemOf(found.fault);
  }

  Problem list(const Desk& desk) {
    OpenBooks books;
    if (const Problem problem = store_.open(desk, books)) return problem;
    const auto all = books.store->batches();
    for (const records::Batch& batch : all.value) desk.out.result("batch", batchFields(batch), batchLine(batch));
    return problemOf(all.fault);
  }

  Problem show(const Desk& desk) {
    OpenBooks books;
    const Problem problem = store_.open(desk, books);
    return problem ? problem : tell(desk, *books.store);
  }

  Problem close(const Desk& desk) {
    OpenBooks books;
    if (const Problem problem = store_.open(desk, books)) return problem;
    const records::StoreFault fault = books.store->closeBatch(name_);
    return fault.none() ? tell(desk, *books.store) : problemOf(fault);
  }

  Problem exportRuns(const Desk& desk) {
    if (!output_.empty() && !force_ && desk.files.fileExists(output_))
      return {ExitCode::File, output_ + " is there already.", "Say --force to write over it."};
    OpenBooks books;
    if (const Problem problem = store_.open(desk, books)) return problem;
    if (const auto found = books.store->batch(name_); !found.ok()) return problemOf(found.fault);
    return output_.empty() ? exportOut(desk, *books.store) : exportFile(desk, *books.store);
  }

  Problem exportOut(const Desk& desk, records::RecordStore& store) const {
    desk.out.result("columns", {{"columns", csvHeader()}}, csvHeader());
    return problemOf(store.readRuns(name_, [&](const records::RunRow& row) {
      desk.out.result("run", runFields(row), csvLine(row));
      return desk.stopper.pending() == Cut::None;
    }));
  }

  Problem exportFile(const Desk& desk, records::RecordStore& store) const {
    std::string text = csvHeader() + "\r\n";
    const records::StoreFault fault = store.readRuns(name_, [&](const records::RunRow& row) {
      text += csvLine(row) + "\r\n";
      return true;
    });
    if (!fault.none()) return problemOf(fault);
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    if (const auto written = desk.files.replace(output_, {bytes, text.size()}); !written)
      return {ExitCode::File, output_ + " cannot be written: " + written.error, {}};
    desk.out.result("written", {{"file", output_}}, "Written: " + output_);
    return {};
  }

  // What a user calls a place: its number, that of its first counter, or, without a counter, which chip it is.
  static bool isCalled(const records::Doubt& doubt, const std::string& word) {
    if (doubt.numbers.empty()) return word == std::to_string(doubt.ordinal + 1);
    return word == records::textOf(doubt.numbers) || word == std::to_string(doubt.numbers.front());
  }

  Problem doubt(const Desk& desk) {
    OpenBooks books;
    if (const Problem problem = store_.open(desk, books)) return problem;
    const auto doubts = books.store->doubts(name_);
    if (!doubts.ok()) return problemOf(doubts.fault);
    const std::string& word = spend_.empty() ? free_ : spend_;
    if (word.empty()) {
      for (const records::Doubt& one : doubts.value) tell(desk, one);
      return {};
    }
    const auto found =
        std::find_if(doubts.value.begin(), doubts.value.end(), [&](const auto& one) { return isCalled(one, word); });
    if (found == doubts.value.end())
      return {ExitCode::Refused, "The number " + word + " is not in doubt.", "`kvr batch doubt` lists those that are."};
    const auto how = spend_.empty() ? records::Settlement::Free : records::Settlement::Spent;
    const records::StoreFault fault = books.store->settle(name_, found->ordinal, how);
    return fault.none() ? tell(desk, *books.store) : problemOf(fault);
  }

  static void tell(const Desk& desk, const records::Doubt& doubt) {
    const std::string number =
        doubt.numbers.empty() ? std::to_string(doubt.ordinal + 1) : records::textOf(doubt.numbers);
    desk.out.result(
        "doubt", {{"number", number}, {"place", doubt.ordinal + 1}, {"station", doubt.station}, {"since", doubt.since}},
        number + "  reserved by " + doubt.station + " at " + doubt.since);
  }

  Problem place(const Desk& desk) {
    if (!place_.empty()) {
      store_.store = place_;
      OpenBooks books;
      if (const Problem problem = store_.open(desk, books)) return problem;
      if (const std::string why = desk.records.keepLocation(place_); !why.empty())
        return {ExitCode::File, "The settings cannot be written: " + why, {}};
    }
    const std::string location = store_.location(desk);
    desk.out.result("store", {{"location", location}}, location);
    return {};
  }

  StoreArguments store_;
  JobArguments job_;
  SerialArguments serial_;
  Part chosen_ = &BatchCommand::list;
  std::string name_, output_, spend_, free_, place_;
  std::optional<std::int64_t> wanted_;
  bool force_ = false;
};

}  // namespace

std::unique_ptr<Command> makeBatchCommand() {
  return std::make_unique<BatchCommand>();
}

}  // namespace kvr::cli
