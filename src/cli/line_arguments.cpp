#include "cli/line_arguments.h"

#include "cli/checks.h"

namespace kvr::cli {
namespace {

constexpr double kLongestWait = 1e6;  // seconds

}  // namespace

void LineArguments::declare(CLI::App& app) {
  app.add_option("-p,--port", port_,
                 "COM3, a path, a name of /dev/serial/by-id or usb:VID:PID[:SERIAL]; "
                 "without it the only adapter there is")
      ->type_name("PORT");
  app.add_option("--timeout", timeoutSeconds_, "Seconds to wait for a chip; 0: for ever (0)")
      ->type_name("S")
      ->check(quiet(CLI::Range(0.0, kLongestWait)));
}

ExitCode LineArguments::take(const Desk& desk) const {
  const PortChoice choice = choosePort(port_, desk.ports);
  if (choice.device.empty()) return fail(desk, ExitCode::Port, choice.problem, choice.next);
  desk.ports.use(choice.device);
  return ExitCode::Passed;
}

void LineArguments::limit(const Desk& desk, RunConsole& console) const {
  if (timeoutSeconds_ <= 0) return;
  console.limitWait(std::chrono::ceil<platform::Millis>(std::chrono::duration<double>(timeoutSeconds_)),
                    [&desk] { desk.stopper.end(Cut::Timeout); });
}

}  // namespace kvr::cli
