/* A line editor on the serial line and the commands behind it. */
#ifndef SHELL_H
#define SHELL_H

#include "board.h"

#define LINE_SIZE 32

void shell_init(void);
void shell_step(void); /* takes what has come in; runs a command when a line is whole */

#endif
