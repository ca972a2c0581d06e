#include "comtool/tool_guide.h"

namespace kvr::comtool {

namespace {

constexpr std::string_view kGuide = R"(                COM debug Tool guide
Some simple functions will be ignored.

1 COM debug Tool
1.1 Set COM parameters:
  COM port: 1-16
  Baud Rate: 600-256000. If it is greater than 115200, then it needs hardware support.
  Data bits 4-8, parity Even, Odd or None, stop bits 1 or 2.
  A new baud rate is used at once; the other parameters are used when the port is opened next.
  Any whole baud rate can be typed; one that the adapter cannot make is refused.
  "Line..." has data bits, parity, stop bits, flow control (none, RTS/CTS, XON/XOFF), DTR, RTS and Break.
  DTR and RTS are set before the port is opened and can be changed while it is open. CTS, DSR, DCD and RI are shown.
  With "Open again when the adapter comes back" an adapter that was pulled out is waited for.
  A download takes the port away. With "Open COM after the download" the tool takes it back when it has succeeded.

2 Receive Area / Keyboard Send Area
2.1 Receive Data
  Received bytes are displayed as text or as HEX, two digits and a space for each byte.
  A time stamp can be put in front of every line or of every burst of data.
  Scroll up to pause the automatic scrolling, scroll down to the end to go on.
  "Settings..." has the encoding (also of what is sent), a box that hides escape sequences, local echo, and for HEX a new line after a silence.
  "Log to file" writes all that comes to a file with the date in its name, as it came or as it is shown, also while the area is cleared. A full file gets a successor; the oldest ones are deleted.
  Find looks for a text in this area, Save text writes the area to a file.
2.2 Display the length of the received data
  The counters show how many bytes have been received and sent. "Clear counters" sets both to 0.
  The received data can not be too large. If the length of displaying text nearly reaches 62K, then the displayed text will reduce to 32K. The text file can maintain 32K charaters or 10K HEX data.
  At most 230000 characters are displayed; then the port is closed and "Clear Receive" is to be clicked.
  With "Keep the newest" the port stays open, and the oldest text goes instead.
2.3 Send charaters on keyboard
  While the port is open, every key that is typed in this area is sent at once, with Tab, Escape, arrow keys and Ctrl letters.
  Shift+Tab and Ctrl+Tab lead out of the area; the page keys, and the arrow keys with Shift, scroll.
  "Paste", Ctrl+Shift+V or Shift+Insert sends the text of the clipboard, as fast as the line takes it or with pauses. Its line ends become the one that is chosen for sending.

3 send Data
3.1 Single String Send Area
  "Send" sends the string, as text or as HEX. It opens the port if it is closed. Enter sends, too; the up and down keys bring back earlier strings.
  HEX data are digits 0-9, A-F, a-f; spaces are free: "12 34 CD FF", "1234CDFF" and "1 2 3" are all valid. At most 4097 bytes.
  A line end can be added to every text that is sent.
3.1.1 Auto Send, Auto Send Period:
  "Repeat Send" sends the string again and again, "Stop Repeat" ends it. The period is 1-65535 mS.
3.2 Multiple String Send Area
3.2.1 Send a single string
  The numbered button beside a string sends it; tick HEX to send it as HEX data.
3.2.2 Send multiple strings (Character list)
  "Round Send" sends one string after the other, one each period; empty strings are skipped. "Stop Round" ends it.

4 Open/Close Com Area
  "Open COM" opens the port, "Close COM" closes it and stops all automatic sending. The lamp shows which.

5 "Resume Main Window" button
  "Shrink" hides the left column of the window, "Resume" brings it back.
)";

}  // namespace

std::string_view toolGuide() {
  return kGuide;
}

}  // namespace kvr::comtool
