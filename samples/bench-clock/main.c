#include "alarm.h"
#include "calendar.h"
#include "matrix.h"
#include "shell.h"
#include "sun.h"
#include "thermo.h"
#include "timebase.h"
#include "tune.h"
#include "uart.h"

#define RUN_STEP 8 /* ticks a column */

static __idata uint16_t last_step;
static __idata uint8_t keys_before;

static const char __code greeting[] = "Good day!  ";
static const char __code day_text[] = "The sun is up";
static const char __code night_text[] = "The sun is down";

static void every_second(void) {
  calendar_add_second();
  thermo_sample();
  if (now.second == 0) {
    alarm_check();
    if (now.minute == 0) {
      thermo_keep_hour(now.hour);
      if (now.hour >= 8 && now.hour <= 20 && !tune_is_playing()) tune_play(1);
    }
    matrix_brightness(sun_is_up() ? 10 : 2);
  }
  if (!matrix_is_running()) {
    matrix_clock(now.hour, now.minute, now.second & 1);
    matrix_bar(now.second / 2 + 1);
    matrix_show();
  }
}

static char __xdata *put_digits(char __xdata *at, uint8_t value) {
  *at++ = '0' + value / 10;
  *at++ = '0' + value % 10;
  return at;
}

static char __xdata scratch[12];

static void show_date_on_matrix(void) {
  char __xdata *at = put_digits(scratch, now.day);
  *at++ = '.';
  at = put_digits(at, now.month);
  *at++ = '.';
  at = put_digits(at, (uint8_t)(now.year / 100));
  at = put_digits(at, (uint8_t)(now.year % 100));
  *at = 0;
  matrix_run_line(scratch);
}

static void show_temperature_on_matrix(void) {
  int16_t tenths = thermo_tenths();
  char __xdata *at = scratch;
  if (tenths < 0) {
    *at++ = '-';
    tenths = -tenths;
  }
  if (tenths >= 1000) *at++ = '1';
  at = put_digits(at, (uint8_t)(tenths / 10 % 100));
  *at++ = '.';
  *at++ = '0' + (uint8_t)(tenths % 10);
  *at++ = ' ';
  *at++ = 'C';
  *at = 0;
  matrix_run_line(scratch);
}

static void keys_step(void) {
  uint8_t keys = (uint8_t)~KEY_PORT & KEY_MASK;
  uint8_t pressed = keys & (uint8_t)~keys_before;
  keys_before = keys;
  if (pressed & 0x04) show_date_on_matrix();
  if (pressed & 0x08) show_temperature_on_matrix();
  if (pressed & 0x10) matrix_run_text(sun_is_up() ? day_text : night_text);
  if (pressed & 0x20) tune_stop();
}

void main(void) {
  now.year = 2024;
  now.month = now.day = 1;
  timebase_init();
  uart_init();
  tune_init();
  matrix_init();
  EA = 1;
  shell_init();
  matrix_run_text(greeting);
  for (;;) {
    if (timebase_take_second()) every_second();
    if (timebase_elapsed(last_step, RUN_STEP)) {
      last_step = timebase_ticks();
      keys_step();
      if (matrix_is_running()) {
        matrix_step();
        matrix_show();
      }
    }
    tune_step();
    shell_step();
  }
}
