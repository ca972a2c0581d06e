#include "sun.h"

#include "calendar.h"
#include "sun_table.h"

static uint16_t minutes_of(uint8_t which) {
  uint16_t day = calendar_day_of_year(now.year, now.month, now.day) - 1;
  uint8_t week = (uint8_t)(day / 7), rest = (uint8_t)(day % 7);
  uint8_t next = week < 52 ? week + 1 : 0;
  int16_t here = (int16_t)sun_minutes[week][which];
  int16_t there = (int16_t)sun_minutes[next][which];
  return (uint16_t)(here + (there - here) * (int16_t)rest / 7) + (calendar_is_summer() ? 60 : 0);
}

uint16_t sun_rise(void) { return minutes_of(0); }

uint16_t sun_set(void) { return minutes_of(1); }

bool sun_is_up(void) {
  uint16_t minute = (uint16_t)now.hour * 60 + now.minute;
  return minute >= sun_rise() && minute < sun_set();
}
