#include "calendar.h"

__idata DateTime now;
static __idata bool summer;
static __idata bool repeated; /* the hour 2 to 3 of the autumn night has already run twice */

static const uint8_t __code month_days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
static const uint16_t __code days_before[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
static const uint8_t __code sakamoto[] = {0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
static const char __code day_names[7][10] = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};
static const char __code month_names[12][10] = {"January", "February", "March",     "April",   "May",      "June",
                                                "July",    "August",   "September", "October", "November", "December"};

static bool is_leap(uint16_t year) { return (year & 3) == 0 && (year % 100 != 0 || year % 400 == 0); }

static uint8_t days_in(uint16_t year, uint8_t month) {
  return month == 2 && is_leap(year) ? 29 : month_days[month - 1];
}

bool calendar_is_valid(uint16_t year, uint8_t month, uint8_t day) {
  if (year < 2000 || year > 2099 || month < 1 || month > 12) return false;
  return day >= 1 && day <= days_in(year, month);
}

uint8_t calendar_weekday(uint16_t year, uint8_t month, uint8_t day) {
  if (month < 3) year--;
  return (uint8_t)((year + year / 4 - year / 100 + year / 400 + sakamoto[month - 1] + day + 6) % 7);
}

uint16_t calendar_day_of_year(uint16_t year, uint8_t month, uint8_t day) {
  return days_before[month - 1] + day + (month > 2 && is_leap(year) ? 1 : 0);
}

static uint8_t weeks_in(uint16_t year) {
  uint8_t last = calendar_weekday(year, 12, 31);
  if (last == 3) return 53;
  return last == 4 && is_leap(year) ? 53 : 52;
}

uint8_t calendar_week(uint16_t year, uint8_t month, uint8_t day) {
  int16_t week = ((int16_t)calendar_day_of_year(year, month, day) - calendar_weekday(year, month, day) + 9) / 7;
  if (week < 1) return weeks_in(year - 1);
  return week > weeks_in(year) ? 1 : (uint8_t)week;
}

/* The day of the month's last Sunday; both months of the rule have 31 days. */
static uint8_t last_sunday(uint8_t month) { return 31 - (calendar_weekday(now.year, month, 31) + 1) % 7; }

static void follow_summer_time(void) {
  if (now.minute != 0 || now.second != 0) return;
  if (now.month == 3 && now.hour == 2 && now.day == last_sunday(3)) {
    now.hour = 3;
    summer = true;
  } else if (now.month == 10 && now.hour == 3 && now.day == last_sunday(10)) {
    if (repeated) {
      repeated = false;
    } else {
      now.hour = 2;
      summer = false;
      repeated = true;
    }
  }
}

static void next_day(void) {
  if (now.day < days_in(now.year, now.month)) {
    now.day++;
    return;
  }
  now.day = 1;
  if (now.month < 12) {
    now.month++;
    return;
  }
  now.month = 1;
  now.year++;
}

void calendar_add_second(void) {
  if (++now.second < 60) return;
  now.second = 0;
  if (++now.minute < 60) return;
  now.minute = 0;
  if (++now.hour >= 24) {
    now.hour = 0;
    next_day();
  }
  follow_summer_time();
}

bool calendar_is_summer(void) {
  uint8_t change;
  if (now.month < 3 || now.month > 10) return false;
  if (now.month > 3 && now.month < 10) return true;
  change = last_sunday(now.month);
  if (now.day != change) return (now.day > change) == (now.month == 3);
  return now.month == 3 ? now.hour >= 3 : summer && now.hour < 3;
}

const char __code *calendar_day_name(uint8_t weekday) { return day_names[weekday]; }

const char __code *calendar_month_name(uint8_t month) { return month_names[month - 1]; }
