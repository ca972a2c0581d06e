// What the program needs of a serial port. One port object serves several holders in turn (see engine/port_lease.h).
//
// Port mode, in every implementation: binary, NUL bytes kept, no end-of-file handling, no flow control unless asked
// for, receive event at one waiting byte, no transmit event. `close` and a change of settings first let go out what was
// written, since a chip must get whole frames: for one second at most; what is left then is thrown away, never sent at
// another rate.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kvr::platform {

// Why a port could not be opened, in a form that code can compare.
struct PortError {
  enum class Kind { None, NoSuchDevice, Denied, Busy, BadSettings, Vanished, Other };
  Kind kind = Kind::None;
  std::string text;  // for the user, such as "/dev/ttyUSB0: permission denied, join group dialout"
  explicit operator bool() const { return kind != Kind::None; }
};

enum class ModemLine { Dtr, Rts };

// Who holds the sender back when the receiver has no room.
enum class FlowControl { None, RtsCts, XonXoff };

// The modem lines that the other side sets.
struct InputLines {
  bool cts = false;
  bool dsr = false;
  bool dcd = false;
  bool ri = false;
  bool operator==(const InputLines&) const = default;
};

class SerialLink {
 public:
  virtual ~SerialLink() = default;

  virtual void setPortNumber(int number) = 0;  // COM port 1..16
  virtual int portNumber() const = 0;

  // An open asks which device the number means now. After `holdDevice` only the first one does: all further opens
  // are of the device that it opened, until another number is set or `releaseDevice`. See device_hold.h.
  virtual void holdDevice() {}
  virtual void releaseDevice() {}
  // The device of the open port, or of the last one that was opened; empty when there was none.
  virtual std::string device() const { return {}; }

  // "9600,n,8,1": baud, parity letter (n, e, o), data bits, stop bits (1, 1.5, 2). Set while closed it takes effect at
  // the next open; set while open, at once. An error: the text is no such thing, or the open port refuses it (a
  // pseudo-terminal, which has no parity, takes any).
  virtual PortError setSettings(const std::string& text) = 0;
  virtual std::string settings() const = 0;  // the text last set

  virtual PortError open() = 0;  // opening an open port is an error of kind Busy
  virtual void close() = 0;      // closing a closed port does nothing
  virtual bool isOpen() const = 0;

  virtual void write(std::span<const std::uint8_t> bytes) = 0;  // queues; on a closed port the bytes are lost
  virtual std::size_t outBytesPending() const = 0;              // written and not yet gone out
  virtual std::size_t inBytesPending() const = 0;
  virtual std::vector<std::uint8_t> readBytes(std::size_t maxCount) = 0;  // 0: all that wait
  virtual std::vector<std::uint8_t> peekBytes() = 0;                      // all that wait; they go on waiting
  virtual void clearOut() = 0;
  virtual void clearIn() = 0;  // also takes back a receive event that has not been handled yet

  // Modem lines. Set while the port is closed, the state is that with which the next open starts, as free of a pulse as
  // the system allows; both are on after an open for which nothing was set.
  virtual void setDtr(bool on) = 0;
  virtual void setRts(bool on) = 0;
  // Flow control. Set while the port is closed it is for the next open, set while open it is used at once; an open for
  // which nothing was set has none. An error: the open port refuses it. With RtsCts the line RTS is the driver's.
  virtual PortError setFlowControl(FlowControl) { return {}; }
  // Holds the line in the break state while on; nothing on a closed port.
  virtual void setBreak(bool) {}
  // The lines as they are now; nothing when the port is closed or has none (a pseudo-terminal).
  virtual std::optional<InputLines> inputLines() const { return std::nullopt; }
  // The rate that the open port really runs at, baud; 0 when the system does not tell.
  virtual int trueBaud() const { return 0; }

  // For a line that switches something beside the conversation, such as the target's supply: it is put to this state at
  // once, or with the next open, and from then on nothing but the next call moves it: no open, no close, no `setDtr`
  // and no `setRts`. To that end a close keeps the device in hand. The first open of a device may move the line for a
  // moment (systems raise both lines then), and so may the end of the program.
  virtual void keepLine(ModemLine line, bool on) = 0;
  virtual void freeLine() = 0;        // it goes with the others again; a device that was kept in hand is given back
  virtual bool lineKept() const = 0;  // false also when the device that was opened has no such line

  // Raised from the event loop while at least one byte waits and it was not raised for that byte before. A handler that
  // leaves bytes unread is called again when more arrive. Closing takes an unhandled event back.
  void onReceive(std::function<void()> handler) { receive_ = std::move(handler); }
  // The open port went away (an adapter pulled out); the port is already closed when this is called.
  void onVanished(std::function<void(const PortError&)> handler) { vanished_ = std::move(handler); }

 protected:
  std::function<void()> receive_;
  std::function<void(const PortError&)> vanished_;
};

}  // namespace kvr::platform
