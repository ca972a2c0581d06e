/* Numbers as text on the serial line, and from text. */
#ifndef FORMAT_H
#define FORMAT_H

#include "board.h"

void put_unsigned(uint32_t value);
void put_two(uint8_t value); /* 00 .. 99 */
void put_hex(uint8_t value);
void put_tenths(int16_t value); /* 215: 21.5 */

/* Reads decimal digits and moves the pointer behind them; false when there is none. */
bool take_number(char __xdata **at, uint16_t *value);
bool take_char(char __xdata **at, char wanted);
void skip_blanks(char __xdata **at);

#endif
