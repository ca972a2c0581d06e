// kvr ports: the machine's serial ports.
#include <algorithm>

#include "cli/command.h"

namespace kvr::cli {
namespace {

class PortsCommand : public Command {
 public:
  std::string name() const override { return "ports"; }
  std::string about() const override { return "List the serial ports"; }
  std::string example() const override { return "kvr ports --json"; }
  void declare(CLI::App&) override {}

  ExitCode run(const Desk& desk) override {
    const std::vector<ListedPort> ports = listPorts(desk.ports.look());
    for (const ListedPort& port : ports) desk.out.result("port", fieldsOf(port), port.text());
    if (ports.empty()) desk.out.note("No serial port was found. Plug an adapter in.");
    return ExitCode::Passed;
  }

 private:
  static Fields fieldsOf(const ListedPort& port) {
    List numbers;
    for (const int number : port.numbers) numbers.emplace_back("COM" + std::to_string(number));
    return {{"device", port.info.device},
            {"names", numbers},
            {"usb", port.info.usb ? usbName(port.info) : ""},
            {"byId", port.info.byId},
            {"description", port.info.description}};
  }
};

}  // namespace

std::unique_ptr<Command> makePortsCommand() {
  return std::make_unique<PortsCommand>();
}

}  // namespace kvr::cli
