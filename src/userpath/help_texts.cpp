#include "userpath/help_texts.h"

namespace kvr::userpath {

std::string triggerHelpText() {
  return R"(1.  Add a program which contains self-defined program command into the user application program
    It listens on the serial port. You choose the command, its length and the line settings; a command of several
    bytes is not met by accident.

2.  After the application received the self-defined program command, delay one second,
    then reset by software to the ISP program. In that second this program closes the port, opens it again with the
    settings of the download and begins to look for the MCU.

3.  The command to reset by software to ISP Program is  MOV ISP_CONTR, #60H.
    Nothing behind this instruction is executed any more.

4.  On this page, write the command in hexadecimal, two digits a byte, and set baud, parity ("Verify"), data bits and
    stop bits as the application has set its serial port.

5.  Open the code file, then click "Send self-defined program command". The command goes out, and the download
    begins at once. The power need not be turned off and on. An application that does not answer to the command
    is still reached: the download waits for a cold start as always.

6.  With "Reload the file when the file is changed and send the Command automaticlly." checked, the same happens by
    itself each time your compiler has written the code file anew.
)";
}

std::string hardwareHelpText() {
  return R"(ISP: In System Programming
   The MCU is programmed on its board, through the serial port. A program in the MCU, the ISP code, receives the new
   code. It stands in an area of its own and takes nothing of what your program uses.

IAP: In Application Programming
   Your program itself erases and writes flash: the Data Memory, and on models whose name ends in "i" also its own
   code.

Cold Start:
   The power of the MCU has been off and comes on. Only then, and after a software reset to the ISP program, the ISP code
   runs: it looks at the serial port for a short time, and when no download begins it starts your program. A press of
   a reset button is a warm start and does not reach the ISP code.

   So: click the download button first, then turn the power of the MCU on. When the power has been on before, turn it off
   long enough for the supply to fall to 0: capacitors, or the serial line itself, may feed the MCU for a while.

Lines
   RxD and TxD of the serial port, crossed by the level converter, and ground. When the option for it is chosen,
   P1.0 and P1.1 have to be connected to ground for a download.
)";
}

}  // namespace kvr::userpath
