// kvr: everything that the window does with chips, as a command.
#include <QCoreApplication>

#include "cli/arguments.h"
#include "cli/json_output.h"
#include "cli/qt/json_text.h"
#include "cli/qt/machine_ports.h"
#include "cli/qt/process_input.h"
#include "cli/qt/process_streams.h"
#include "cli/qt/signals.h"
#include "cli/qt/stations_command.h"
#include "cli/text_output.h"
#include "platform/qt/iconv_codec.h"
#include "platform/qt/qt_clock.h"
#include "platform/qt/qt_files.h"
#include "platform/qt/qt_loop.h"
#include "platform/qt/qt_serial_link.h"
#include "platform/qt/qt_store.h"
#include "records/qt/qt_record_desk.h"

namespace {

using namespace kvr;

int run(cli::Arguments& arguments, cli::ProcessStreams& streams) {
  platform::QtLoop loop;
  platform::QtFiles files;
  const platform::QtClock clock;
  const platform::IconvCodec codec;
  cli::MachinePorts ports;
  platform::QtSerialLink link(loop, [&](int) { return ports.device(); });
  engine::RunTracer tracer(loop, clock, link);
  engine::PortLease lease(loop, tracer.link());
  cli::Stopper stopper(lease);
  stopper.stop.onRequest = [&tracer] { tracer.stopAsked(); };
  const cli::Signals signals([&](cli::Cut cut) { loop.post([&stopper, cut] { stopper.end(cut); }); });
  streams.onOutGone = [&] { stopper.endAfterThis(cli::Cut::OutputClosed); };
  const cli::Manner& manner = arguments.manner();
  cli::TextOutput text(streams, {.quiet = manner.quiet, .plain = manner.noColor});
  cli::JsonOutput json(streams, loop, manner.quiet, cli::jsonText);
  cli::Output& out = manner.json ? static_cast<cli::Output&>(json) : text;
  records::QtRecordDesk records([] { return std::make_unique<platform::QtStore>(); });
  cli::ProcessInput input(loop);
  return static_cast<int>(arguments.command().run(
      {loop, files, clock, codec, ports, lease, stopper, tracer, out, records, input, manner.verbose}));
}

}  // namespace

int main(int argc, char** argv) {
  cli::ProcessStreams streams;
  auto commands = cli::allCommands();
  commands.push_back(cli::makeStationsCommand());
  cli::Arguments arguments(std::move(commands));
  if (!arguments.read({argv + 1, argv + argc})) {
    if (arguments.code() == cli::ExitCode::Passed)
      streams.out(arguments.text());
    else
      streams.err(arguments.text());
    return static_cast<int>(arguments.code());
  }
  const QCoreApplication application(argc, argv);
  return run(arguments, streams);
}
