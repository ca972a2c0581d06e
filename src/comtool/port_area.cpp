#include "comtool/port_area.h"

#include <algorithm>
#include <cmath>

#include "platform/text.h"

namespace kvr::comtool {

namespace {

bool isBaud(const std::string& text) {
  const std::string digits = platform::trim(text);
  if (digits.empty() || digits.size() > 8) return false;
  if (!std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; })) return false;
  const int baud = platform::wholeOf(digits);
  return baud >= PortArea::kLeastBaud && baud <= PortArea::kHighestBaud;
}

}  // namespace

std::string portSettings(const std::string& baud, const std::string& parity, const std::string& dataBits,
                         const std::string& stopBits) {
  return platform::trim(baud) + "," + parity.substr(0, 1) + "," + platform::trim(dataBits) + "," +
         platform::trim(stopBits);
}

PortArea::PortArea(const ToolContext& context)
    : dialogs_(context.world.dialogs),
      lease_(context.lease),
      activity_(context.activity),
      lock_(context.lock),
      panel_(context.panel),
      mainPort_(context.mainPort),
      goodBaud_(panel_.com_Debug_Baud.text()),
      typing_(context.world.loop, [this] {
        if (isBaud(panel_.com_Debug_Baud.text())) reopen();
      }) {
  connectBaud();
  panel_.comb_Flow.onClick = [this] { changeFlow(); };
  lockToken_ = lock_.changed.watch([this] { applyLock(); });
}

// Used at once; what the adapter refuses is off again.
void PortArea::changeFlow() {
  applyLock();
  if (!holds()) return;
  if (const auto error = lease_.link().setFlowControl(flow())) {
    panel_.comb_Flow.setListIndex(0);
    applyLock();
    return dialogs_.message(platform::kTitle, error.text, platform::BoxIcon::Warning);
  }
  if (flow() != platform::FlowControl::RtsCts) lease_.link().setRts(panel_.che_RTS.value());
}

// A rate of the list is used at once; one that is typed, when the typing rests or the box is left.
void PortArea::connectBaud() {
  platform::ComboBox& box = panel_.com_Debug_Baud;
  typing_.setInterval(kTypingRest);
  box.onClick = [this] {
    typing_.stop();
    reopen();
  };
  box.onChange = [this] { typing_.start(); };
  box.onLeave = [this] { baudLeft(); };
  baudToken_ = box.changed.watch([this, &box] {
    if (box.listIndex() >= 0) goodBaud_ = box.text();
  });
}

void PortArea::baudLeft() {
  if (!isBaud(panel_.com_Debug_Baud.text())) return refuseBaud();
  if (!typing_.isActive()) return;
  typing_.stop();
  reopen();
}

void PortArea::refuseBaud() {
  typing_.stop();
  panel_.com_Debug_Baud.setText(goodBaud_);
  dialogs_.message(platform::kTitle, kBadBaud, platform::BoxIcon::Warning);
}

void PortArea::reopen() {
  if (!isOpen()) return;
  releasePort();
  takePort();
}

// While a run is on, the terminal must not take the port away from it. While the options are locked, an open port may
// be closed.
void PortArea::applyLock() {
  const bool on = lock_.free() || (!lock_.busy() && isOpen());
  for (std::size_t i = 0; i < ToolPanel::kPages; ++i) {
    panel_.comOpenCOM[i].setEnabled(on);
    panel_.imgOpen[i].setEnabled(on);
  }
  panel_.che_RTS.setEnabled(flow() != platform::FlowControl::RtsCts);  // then it is the driver's
}

void PortArea::takePort() {
  if (isOpen()) return;
  if (panel_.com_Debug_Baud.trimmed().empty()) panel_.com_Debug_Baud.setText(goodBaud_);
  if (!isBaud(panel_.com_Debug_Baud.text())) {
    if (onPortError) onPortError();
    return refuseBaud();
  }
  if (const auto error = tryOpen()) fail(error);
}

platform::PortError PortArea::tryOpen() {
  platform::PortError error = openLink();
  if (!error) error = checkRate();
  if (error) {
    lease_.close();
    return error;
  }
  goodBaud_ = panel_.com_Debug_Baud.text();
  showState(true);
  applyModemLines();
  lease_.hold(*this);
  if (onOpened) onOpened();
  return {};
}

// A driver may take any number and make another rate of it; three percent off nobody reads any more.
platform::PortError PortArea::checkRate() {
  const int wanted = platform::wholeOf(panel_.com_Debug_Baud.text());
  const int made = lease_.link().trueBaud();
  if (made == 0 || std::abs(static_cast<double>(made) - wanted) <= wanted * 0.03) return {};
  return {platform::PortError::Kind::BadSettings, panel_.com_Debug_COM.text() + ": the adapter cannot make " +
                                                      std::to_string(wanted) + " baud; it would run at " +
                                                      std::to_string(made)};
}

platform::FlowControl PortArea::flow() const {
  return static_cast<platform::FlowControl>(std::clamp(panel_.comb_Flow.listIndex(), 0, 2));
}

// The port is closed before its number or its settings change: what another master has set must not leak into this use.
platform::PortError PortArea::openLink() {
  platform::SerialLink& link = lease_.link();
  const int number = panel_.com_Debug_COM.listIndex() + 1;
  if (link.portNumber() != number) {
    lease_.close();
    link.setPortNumber(number);
  }
  const std::string settings = portSettings(panel_.com_Debug_Baud.text(), panel_.com_Debug_ParityCheck.text(),
                                            panel_.com_Debug_DataBits.text(), panel_.com_Debug_StopBits.text());
  if (platform::upper(settings) != platform::upper(link.settings())) {
    lease_.close();
    if (const auto error = link.setSettings(settings)) return error;
  }
  if (link.isOpen()) return link.setFlowControl(flow());
  // Set before the open, so that a board that listens to a line is not reset by a pulse on it.
  link.setDtr(panel_.che_DTR.value());
  link.setRts(panel_.che_RTS.value());
  if (const auto error = link.setFlowControl(flow())) return error;
  return link.open();
}

// A port that was handed over open has both lines up; only what the user switched off is to be told.
void PortArea::applyModemLines() {
  if (!panel_.che_DTR.value()) lease_.link().setDtr(false);
  if (!panel_.che_RTS.value() && flow() != platform::FlowControl::RtsCts) lease_.link().setRts(false);
}

void PortArea::releasePort() {
  if (!lease_.heldBy(*this)) return;
  giveUp();
  lease_.release(*this);
}

void PortArea::giveUp() {
  const bool wasOpen = isOpen();
  // What the other side holds back would never go out, and the window would wait for it.
  const auto lines = flow() == platform::FlowControl::RtsCts ? lease_.link().inputLines() : std::nullopt;
  if (lines && !lines->cts) lease_.link().clearOut();
  lease_.close();
  showState(false);
  if (wasOpen && onClosed) onClosed();
}

void PortArea::showState(bool open) {
  for (std::size_t i = 0; i < ToolPanel::kPages; ++i) {
    panel_.imgOpen[i].setOn(open);
    panel_.comOpenCOM[i].setCaption(open ? kCloseCaption : kOpenCaption);
  }
  const bool samePort = panel_.com_Debug_COM.text() == mainPort_.combCommPort.text();
  if (open ? samePort : samePort || raisedMainLamp_) mainPort_.imgOpen_sys.setOn(open);
  raisedMainLamp_ = open && samePort;
  applyLock();
}

bool PortArea::makeReady() {
  if (holds()) return true;
  if (!mayOpen()) return false;
  takePort();
  return holds();
}

void PortArea::fail(const platform::PortError& error) {
  lease_.close();
  if (onPortError) onPortError();
  dialogs_.message(platform::kTitle, error.text, platform::BoxIcon::Warning);
}

void PortArea::bytesWait() {
  if (onReceive) onReceive();
}

void PortArea::portLost() {
  giveUp();
}

void PortArea::portVanished(const platform::PortError& error) {
  showState(false);
  lease_.release(*this);
  if (onClosed) onClosed();
  if (!panel_.che_Reopen.value()) return fail(error);
  if (onPortError) onPortError();
  if (onAwaited) onAwaited(error);
}

}  // namespace kvr::comtool
