/* 9600 baud, 8 data bits, no parity; both directions buffered. */
#ifndef UART_H
#define UART_H

#include "board.h"

void uart_init(void);
void uart_isr(void) __interrupt(SI0_VECTOR) __using(2);
bool uart_has_byte(void);
char uart_get(void);
void uart_put(char c);
void uart_text(const char __code *text);
void uart_line(const char __code *text);
uint8_t uart_overruns(void);

#endif
