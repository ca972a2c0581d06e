/* Date and time of day, years 2000 to 2099, with summer time by the European rule. */
#ifndef CALENDAR_H
#define CALENDAR_H

#include "board.h"

typedef struct {
  uint16_t year;
  uint8_t month, day; /* from 1 */
  uint8_t hour, minute, second;
} DateTime;

extern __idata DateTime now;

bool calendar_is_valid(uint16_t year, uint8_t month, uint8_t day);
void calendar_add_second(void); /* one second later, with the jumps of summer time */
uint8_t calendar_weekday(uint16_t year, uint8_t month, uint8_t day); /* 0 Monday .. 6 Sunday */
uint16_t calendar_day_of_year(uint16_t year, uint8_t month, uint8_t day); /* from 1 */
uint8_t calendar_week(uint16_t year, uint8_t month, uint8_t day); /* by ISO 8601 */
bool calendar_is_summer(void);
const char __code *calendar_day_name(uint8_t weekday);
const char __code *calendar_month_name(uint8_t month);

#endif
