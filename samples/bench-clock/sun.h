#ifndef SUN_H
#define SUN_H

#include "board.h"

/* Minutes of the day for the date of `now`, between the weeks of the table by line, summer time included. */
uint16_t sun_rise(void);
uint16_t sun_set(void);
bool sun_is_up(void);

#endif
