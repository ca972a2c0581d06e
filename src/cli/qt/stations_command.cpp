#include "cli/qt/stations_command.h"

#include <QCoreApplication>

#include "cli/checks.h"
#include "cli/store_arguments.h"
#include "stations/crew.h"

namespace kvr::cli {
namespace {

constexpr platform::Millis kRedraw{250};

// "left=/dev/ttyUSB0", or the port alone: then its number is the name.
stations::Place placeOf(const std::string& word, std::size_t index) {
  const std::size_t sign = word.find('=');
  if (sign == std::string::npos || sign == 0) return {std::to_string(index + 1), word};
  return {word.substr(0, sign), word.substr(sign + 1)};
}

bool sameButProgress(stations::Tile a, const stations::Tile& b) {
  a.fraction = b.fraction;
  return a.sign == b.sign && a.words == b.words && a.number == b.number && a.counts == b.counts &&
         a.running == b.running && a.adapterGone == b.adapterGone && a.chipLeft == b.chipLeft;
}

Fields fieldsOf(const stations::Tile& tile) {
  return {{"name", tile.name},
          {"port", tile.port},
          {"sign", std::string(signs::wordOf(tile.sign))},
          {"words", tile.words},
          {"number", tile.number},
          {"passed", std::int64_t{tile.counts.passed}},
          {"passedInPart", std::int64_t{tile.counts.inPart}},
          {"failed", std::int64_t{tile.counts.failed}},
          {"lastFailure", tile.lastFailure},
          {"chipLeft", tile.chipLeft},
          {"running", tile.running}};
}

// The crew at work, shown until all stations rest.
class Watch {
 public:
  Watch(const Desk& desk, stations::Crew& crew)
      : desk_(desk),
        crew_(crew),
        told_(crew.size()),
        redraw_(
            desk.loop, [this] { tick(); }, platform::Timer::Kind::Periodic) {
    redraw_.setInterval(kRedraw);
  }

  void untilRest() {
    crew_.startAll();
    redraw_.start();
    tick();
    while (crew_.busy() || anyRunning()) desk_.loop.runOnce();
    redraw_.stop();
    tick();
  }

 private:
  bool anyRunning() {
    for (std::size_t i = 0; i < crew_.size(); ++i)
      if (crew_.station(i).tile().running) return true;
    return false;
  }

  // As Stop for Ctrl-C; when the terminal or the reader has gone, the chips in hand are finished.
  void heedStop() {
    const Cut cut = desk_.stopper.pending();
    if (cut == Cut::None || stopped_) return;
    stopped_ = true;
    if (cut == Cut::HangUp || cut == Cut::OutputClosed || cut == Cut::InputClosed)
      crew_.finishAll();
    else
      crew_.stopAll();
  }

  void tick() {
    heedStop();
    crew_.adaptersChanged();
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < crew_.size(); ++i) {
      const stations::Tile& tile = crew_.station(i).tile();
      lines.push_back(stations::lineOf(tile));
      if (told_[i] && sameButProgress(*told_[i], tile)) continue;
      told_[i] = tile;
      desk_.out.tile(i, fieldsOf(tile), lines.back());
    }
    desk_.out.tiles(lines);
  }

  const Desk& desk_;
  stations::Crew& crew_;
  std::vector<std::optional<stations::Tile>> told_;
  platform::Timer redraw_;
  bool stopped_ = false;
};

class StationsCommand : public Command {
 public:
  std::string name() const override { return "stations"; }
  std::string about() const override { return "Program several chips at once, each at a port of its own"; }
  std::string example() const override {
    return "kvr stations --project product.KVR --batch B7 --port left=/dev/ttyUSB0 --port right=/dev/ttyUSB1";
  }

  void declare(CLI::App& app) override {
    app.add_option("--project", work_.project, "Project file: model, options and images")
        ->required()
        ->type_name("FILE");
    app.add_option("-p,--port", ports_, "A station's port, as kvr program takes it; NAME= gives the station its name")
        ->required()
        ->allow_extra_args(false)
        ->type_name("[NAME=]PORT");
    app.add_option("--batch", work_.batch, "Numbers and results are this batch's")->type_name("NAME");
    app.add_option("--delay", work_.delaySeconds, "Seconds between two chips (4)")
        ->type_name("S")
        ->check(quiet(CLI::Range(0.0, 86400.0)));
    store_.declare(app);
  }

  ExitCode run(const Desk& desk) override {
    if (!store_.store.empty() && !qputenv("KVR_RECORDS", QByteArray::fromStdString(store_.store)))
      return fail(desk, ExitCode::Records, "The record store cannot be told to the stations.");
    stations::Crew crew(QCoreApplication::applicationFilePath().toStdString(), [&desk](const std::string& port) {
      const std::string device = choosePort(port, desk.ports).device;
      return desk.ports.exists(device) ? device : std::string();
    });
    crew.work = work_;
    crew.work.project = desk.files.absolute(work_.project);
    for (std::size_t i = 0; i < ports_.size(); ++i)
      if (!crew.add(placeOf(ports_[i], i)))
        return fail(desk, ExitCode::WrongUse, "More than " + std::to_string(stations::Crew::kMost) + " stations.");
    if (const auto doubled = crew.doubled())
      return fail(desk, ExitCode::WrongUse, "Two stations have the port " + crew.place(*doubled).adapter + ".");
    Watch(desk, crew).untilRest();
    return endOf(desk, crew);
  }

 private:
  static ExitCode endOf(const Desk& desk, stations::Crew& crew) {
    if (desk.stopper.pending() != Cut::None) return exitCodeOf(desk.stopper.pending());
    for (std::size_t i = 0; i < crew.size(); ++i)
      if (crew.station(i).tile().sign == signs::Sign::Fail) return ExitCode::ChipFailed;
    return ExitCode::Passed;
  }

  stations::Work work_;
  std::vector<std::string> ports_;
  StoreArguments store_;
};

}  // namespace

std::unique_ptr<Command> makeStationsCommand() {
  return std::make_unique<StationsCommand>();
}

}  // namespace kvr::cli
