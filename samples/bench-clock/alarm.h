/* Four alarms, each with days of the week. */
#ifndef ALARM_H
#define ALARM_H

#include "board.h"

#define ALARM_COUNT 4
#define ALARM_WORKDAYS 0x1F
#define ALARM_EVERY_DAY 0x7F

typedef struct {
  uint8_t hour, minute;
  uint8_t days; /* bit 0 Monday; 0: off */
  uint8_t tune;
} Alarm;

Alarm __xdata *alarm_at(uint8_t number);
void alarm_check(void); /* once a minute */
uint16_t alarm_minutes_to_next(void); /* 0xFFFF: none is on */

#endif
