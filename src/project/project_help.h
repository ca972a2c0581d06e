// How projects are used, in two pages.
#pragma once

namespace kvr::project {

inline constexpr const char* kProjectHelp[] = {
    "When programing, you or your colleage may not remember the MCU type, the file name or other\n"
    "option settings. However, using project management will resolve the problem.\n"
    "\n"
    "1.  Select the MCU type, open a file, set the options and the auto increment.\n"
    "\n"
    "2.  Click 'Save Project File'. A file whose name ends in \".KVR\" will be created.\n"
    "\n"
    "3.  When programming, click 'Open Project File'.\n"
    "\n"
    "4.  Check the MCU type, the options and the auto increment.\n"
    "\n"
    "5.  Click 'lock parameters and options' after the project file has been opened. Click\n"
    "    'Modify Parameters and Options' before you change anything.",
    "6.  If the auto increment is used, note the increment number for the next time.\n"
    "\n"
    "7.  Click 'Re-Program' in mass production.",
};

}  // namespace kvr::project
