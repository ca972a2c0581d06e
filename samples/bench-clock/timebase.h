#ifndef TIMEBASE_H
#define TIMEBASE_H

#include "board.h"

void timebase_init(void);
void timebase_isr(void) __interrupt(TF0_VECTOR) __using(1);
uint16_t timebase_ticks(void); /* 200 a second, wraps */
uint32_t timebase_uptime(void); /* seconds */
bool timebase_take_second(void); /* true once a second */
bool timebase_elapsed(uint16_t since, uint16_t ticks);

#endif
