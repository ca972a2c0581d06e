#include "offline/board_help.h"

namespace kvr::offline {

std::string boardHelpText() {
  return R"(1  Functions: Off-Line program board can program without computer. It is used for mass production,
   or to update the code of a product in the field. The board keeps your code, the options and the number of
   MCU that it may program. Nobody can read the code out of it, so you need not give it to anybody.

   The largest code is 43K or 62K: 43K in one memory, 62K on a board with a second memory bank. When a part
   of the code has no room, the message pane tells how many bytes will not be programmed.

2  Jumpers
   The board's jumpers, named on the board, choose whether it listens to the PC or works alone, and the voltage that it
   supplies to the target MCU. Set them while the power is off, and check the voltage before you put an MCU into
   the socket.

3  Program your code into the board
   3.1  Select the MCU type (Step1), open the code file and the EEPROM file (Step2), select the serial port
        (Step3) and set the options (Step4).
   3.2  On this tab, limit the number of programmed MCU: 1 to 1000000. After that many good MCU the board
        forbids further downloads.
   3.3  A serial value of the tab "Auto Increment" goes with the code: the board advances it after each MCU.
   3.4  Connect the board to the serial port, click "Programming user code to Off-Line ISP-Programming board",
        then turn the board's power on. The program waits 67 minutes for it; Stop ends the wait.
   3.5  Wait for "Program OK." or "Download OK.". After any other end the board's memory holds only a part of
        the image: repeat from 3.4.

4  Program target MCU with the board
   4.1  Turn the board's power on without the PC, put the MCU into the socket and press the start button.
   4.2  The board switches the target's power by itself. Take the MCU out when the LED display shows the result.

5  The LED display tells where the board stands
   On the way:
     "Connecting..."                                     the board looks for an MCU
     "Received response from MCU for first frame"        an MCU has answered
     "try to test new baud rate"                         the line is being made faster
     "New baud rate succeeded, erasing the AP"           the MCU is being erased
     "Programming..."                                    the code is being written
   The end:
     "Program OK"                                        take the MCU out, put the next one in
     "Forbid download"                                   the limit of MCU is used up: write the board again
     "Incorrect MCU type"                                another model sits in the socket than the board was written for
     "Too low Version"                                   the MCU's firmware is too old for this board
     "Connection failed"                                 no MCU, bad contact, or no supply
     "Erasing MCU flash failed", "Program failed",
     "Verify Error", "Program Options failed"            try once more; when it comes again, the MCU is damaged
)";
}

}  // namespace kvr::offline
