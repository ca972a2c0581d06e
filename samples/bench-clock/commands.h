#ifndef COMMANDS_H
#define COMMANDS_H

#include "board.h"

void commands_run(char __xdata *line);

#endif
