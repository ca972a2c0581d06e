#include "commands.h"

#include "alarm.h"
#include "calendar.h"
#include "format.h"
#include "matrix.h"
#include "sun.h"
#include "thermo.h"
#include "timebase.h"
#include "tune.h"
#include "uart.h"

typedef void (*Action)(char __xdata *rest);

typedef struct {
  const char __code *word;
  const char __code *arguments;
  const char __code *help;
  Action action;
} Command;

static void end_line(void) { uart_text("\r\n"); }

static void usage(void) { uart_line("What? Type 'help' for the form of each command."); }

static void put_minute_of_day(uint16_t minutes) {
  put_two((uint8_t)(minutes / 60));
  uart_put(':');
  put_two((uint8_t)(minutes % 60));
}

static void show_time(void) {
  put_two(now.hour);
  uart_put(':');
  put_two(now.minute);
  uart_put(':');
  put_two(now.second);
  uart_line(calendar_is_summer() ? " summer time" : " winter time");
}

static void show_date(void) {
  uart_text(calendar_day_name(calendar_weekday(now.year, now.month, now.day)));
  uart_text(", ");
  put_unsigned(now.day);
  uart_put(' ');
  uart_text(calendar_month_name(now.month));
  uart_put(' ');
  put_unsigned(now.year);
  uart_text(", day ");
  put_unsigned(calendar_day_of_year(now.year, now.month, now.day));
  uart_text(", week ");
  put_unsigned(calendar_week(now.year, now.month, now.day));
  end_line();
}

static bool take_clock(char __xdata **at, uint8_t *hour, uint8_t *minute) {
  uint16_t h, m;
  if (!take_number(at, &h) || !take_char(at, ':') || !take_number(at, &m) || h > 23 || m > 59) return false;
  *hour = (uint8_t)h;
  *minute = (uint8_t)m;
  return true;
}

static void do_time(char __xdata *rest) {
  uint8_t hour, minute;
  uint16_t second = 0;
  if (*rest != 0) {
    if (!take_clock(&rest, &hour, &minute)) {
      usage();
      return;
    }
    if (take_char(&rest, ':') && (!take_number(&rest, &second) || second > 59)) {
      usage();
      return;
    }
    now.hour = hour;
    now.minute = minute;
    now.second = (uint8_t)second;
  }
  show_time();
}

static void do_date(char __xdata *rest) {
  uint16_t year, month, day;
  if (*rest != 0) {
    if (!take_number(&rest, &year) || !take_char(&rest, '-') || !take_number(&rest, &month) || !take_char(&rest, '-') ||
        !take_number(&rest, &day) || month > 12 || day > 31 || !calendar_is_valid(year, (uint8_t)month, (uint8_t)day)) {
      usage();
      return;
    }
    now.year = year;
    now.month = (uint8_t)month;
    now.day = (uint8_t)day;
  }
  show_date();
}

static void show_days(uint8_t days) {
  static const char __code letters[] = "MTWTFSS";
  uint8_t i;
  for (i = 0; i < 7; i++) uart_put(days & (1 << i) ? letters[i] : '-');
}

static void list_alarms(void) {
  uint8_t i;
  uint16_t left = alarm_minutes_to_next();
  for (i = 0; i < ALARM_COUNT; i++) {
    Alarm __xdata *a = alarm_at(i);
    put_unsigned(i + 1);
    uart_text("  ");
    put_two(a->hour);
    uart_put(':');
    put_two(a->minute);
    uart_text("  ");
    show_days(a->days);
    uart_text("  ");
    uart_line(tune_name(a->tune));
  }
  if (left == 0xFFFF) return;
  uart_text("next in ");
  put_unsigned(left / 60);
  uart_text(" h ");
  put_unsigned(left % 60);
  uart_line(" min");
}

/* alarm 2 6:45 w 3: number, time, w for workdays / e for weekends / d for daily, tune; alarm 2 off */
static void do_alarm(char __xdata *rest) {
  uint16_t number, tune = 0;
  uint8_t hour, minute, days = ALARM_EVERY_DAY;
  Alarm __xdata *a;
  if (*rest == 0) {
    list_alarms();
    return;
  }
  if (!take_number(&rest, &number) || number < 1 || number > ALARM_COUNT) {
    usage();
    return;
  }
  a = alarm_at((uint8_t)(number - 1));
  skip_blanks(&rest);
  if (*rest == 'o') {
    a->days = 0;
    list_alarms();
    return;
  }
  if (!take_clock(&rest, &hour, &minute)) {
    usage();
    return;
  }
  skip_blanks(&rest);
  if (take_char(&rest, 'w')) days = ALARM_WORKDAYS;
  if (take_char(&rest, 'e')) days = ALARM_EVERY_DAY & ~ALARM_WORKDAYS;
  (void)take_char(&rest, 'd');
  if (take_number(&rest, &tune) && tune >= TUNE_COUNT) {
    usage();
    return;
  }
  a->hour = hour;
  a->minute = minute;
  a->days = days;
  a->tune = (uint8_t)tune;
  list_alarms();
}

static void do_temp(char __xdata *rest) {
  uint8_t i;
  if (*rest == 'r') thermo_forget();
  uart_text("now ");
  put_tenths(thermo_tenths());
  uart_text(", lowest ");
  put_tenths(thermo_lowest());
  uart_text(", highest ");
  put_tenths(thermo_highest());
  uart_text(" C (reading ");
  put_hex(thermo_raw());
  uart_line("h)");
  uart_text("last hours:");
  for (i = 0; i < THERMO_CELLS; i++) {
    int8_t degrees = thermo_hour_mean(now.hour - i);
    uart_put(' ');
    put_tenths((int16_t)degrees * 10);
  }
  end_line();
}

static void do_sun(char __xdata *rest) {
  (void)rest;
  uart_text("rises ");
  put_minute_of_day(sun_rise());
  uart_text(", sets ");
  put_minute_of_day(sun_set());
  uart_line(sun_is_up() ? ", is up" : ", is down");
}

static void do_show(char __xdata *rest) {
  if (*rest == 0) {
    usage();
  } else {
    matrix_run_line(rest);
  }
}

static void do_bright(char __xdata *rest) {
  uint16_t level;
  if (!take_number(&rest, &level) || level > 15) {
    usage();
    return;
  }
  matrix_brightness((uint8_t)level);
}

static void do_tune(char __xdata *rest) {
  uint16_t number;
  uint8_t i;
  if (take_number(&rest, &number) && number < TUNE_COUNT) {
    tune_play((uint8_t)number);
    return;
  }
  tune_stop();
  for (i = 0; i < TUNE_COUNT; i++) {
    put_unsigned(i);
    uart_put(' ');
    uart_line(tune_name(i));
  }
}

static void do_morse(char __xdata *rest) { tune_morse(rest); }

static void do_dump(char __xdata *rest) {
  uint16_t address = 0;
  uint8_t row, i;
  (void)take_number(&rest, &address);
  for (row = 0; row < 8; row++) {
    const uint8_t __code *at = (const uint8_t __code *)(address + row * 16);
    put_hex((uint8_t)((uint16_t)at >> 8));
    put_hex((uint8_t)(uint16_t)at);
    uart_put(' ');
    for (i = 0; i < 16; i++) {
      uart_put(' ');
      put_hex(at[i]);
    }
    uart_text("  ");
    for (i = 0; i < 16; i++) uart_put(at[i] >= ' ' && at[i] <= '~' ? (char)at[i] : '.');
    end_line();
  }
}

/* CRC-16 over the program memory, to tell one build from another in the field. */
static uint16_t code_crc(uint16_t end) {
  uint16_t crc = 0xFFFF, address;
  uint8_t i;
  for (address = 0; address != end; address++) {
    crc ^= *(const uint8_t __code *)address;
    for (i = 0; i < 8; i++) crc = crc & 1 ? (crc >> 1) ^ 0xA001 : crc >> 1;
  }
  return crc;
}

static void do_state(char __xdata *rest) {
  uint32_t seconds = timebase_uptime();
  uint16_t crc;
  (void)rest;
  uart_text("up ");
  put_unsigned(seconds / 86400);
  uart_text(" d ");
  put_minute_of_day((uint16_t)(seconds % 86400 / 60));
  uart_text(", bytes lost ");
  put_unsigned(uart_overruns());
  crc = code_crc(0x2000);
  uart_text(", program ");
  put_hex(crc >> 8);
  put_hex((uint8_t)crc);
  end_line();
}

static void do_about(char __xdata *rest) {
  (void)rest;
  uart_line("A clock for the bench: dot matrix of 32 x 8, thermometer, alarms, sun table.");
  uart_line("Time follows European summer time by itself; set it once with");
  uart_line("  date 2024-05-17");
  uart_line("  time 12:34:56");
  uart_line("Keys: 1 shows the date, 2 the temperature, 3 the sun, 4 ends a tune.");
}

static void do_help(char __xdata *rest);

static const Command __code commands[] = {
    {"help", "", "this list", do_help},
    {"time", "[h:mm[:ss]]", "shows or sets the time of day", do_time},
    {"date", "[yyyy-mm-dd]", "shows or sets the date", do_date},
    {"alarm", "[n h:mm [w|e|d] [tune] | n off]", "lists or sets the alarms", do_alarm},
    {"temp", "[reset]", "temperature, lowest, highest, the last hours", do_temp},
    {"sun", "", "sunrise and sunset of today", do_sun},
    {"show", "text", "lets a text run through the display", do_show},
    {"bright", "0..15", "brightness of the display", do_bright},
    {"tune", "[number]", "plays a tune, or stops and lists them", do_tune},
    {"morse", "text", "sounds a text in Morse", do_morse},
    {"dump", "[address]", "128 bytes of program memory", do_dump},
    {"state", "", "time since reset, lost bytes, program check", do_state},
    {"about", "", "what this is", do_about},
};

#define COMMAND_COUNT (sizeof(commands) / sizeof(commands[0]))

static void do_help(char __xdata *rest) {
  uint8_t i;
  (void)rest;
  for (i = 0; i < COMMAND_COUNT; i++) {
    uart_text("  ");
    uart_text(commands[i].word);
    uart_put(' ');
    uart_line(commands[i].arguments);
    uart_text("      ");
    uart_line(commands[i].help);
  }
}

/* The text behind the word when the line begins with it, else null. */
static char __xdata *behind_word(char __xdata *line, const char __code *word) {
  while (*word != 0) {
    if (*line++ != *word++) return 0;
  }
  if (*line != 0 && *line != ' ') return 0;
  while (*line == ' ') line++;
  return line;
}

void commands_run(char __xdata *line) {
  uint8_t i;
  skip_blanks(&line);
  if (*line == 0) return;
  for (i = 0; i < COMMAND_COUNT; i++) {
    char __xdata *rest = behind_word(line, commands[i].word);
    if (rest != 0) {
      commands[i].action(rest);
      return;
    }
  }
  usage();
}
