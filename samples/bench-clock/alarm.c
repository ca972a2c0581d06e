#include "alarm.h"

#include "calendar.h"
#include "tune.h"

#define MINUTES_OF_DAY 1440

static Alarm __xdata alarms[ALARM_COUNT];

Alarm __xdata *alarm_at(uint8_t number) { return &alarms[number]; }

static uint8_t today(void) { return calendar_weekday(now.year, now.month, now.day); }

void alarm_check(void) {
  uint8_t i, bit = 1 << today();
  for (i = 0; i < ALARM_COUNT; i++) {
    Alarm __xdata *a = &alarms[i];
    if ((a->days & bit) && a->hour == now.hour && a->minute == now.minute) tune_play(a->tune);
  }
}

uint16_t alarm_minutes_to_next(void) {
  uint16_t best = 0xFFFF, minute = (uint16_t)now.hour * 60 + now.minute;
  uint8_t i, ahead;
  for (i = 0; i < ALARM_COUNT; i++) {
    Alarm __xdata *a = &alarms[i];
    uint16_t at = (uint16_t)a->hour * 60 + a->minute;
    for (ahead = 0; ahead <= 7; ahead++) {
      uint16_t distance = ahead * MINUTES_OF_DAY + at;
      if (!(a->days & (1 << (today() + ahead) % 7)) || distance <= minute) continue;
      distance -= minute;
      if (distance < best) best = distance;
    }
  }
  return best;
}
