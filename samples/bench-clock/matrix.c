#include "matrix.h"

#include "font.h"

#define WIDTH 32
#define CHIPS 4

#define REG_DECODE 0x09
#define REG_INTENSITY 0x0A
#define REG_SCAN_LIMIT 0x0B
#define REG_SHUTDOWN 0x0C
#define REG_TEST 0x0F

static uint8_t __xdata picture[WIDTH];
static char __xdata line[TEXT_SIZE];
static const char __code *__idata constant; /* runs instead of `line` when not null */
static __idata uint8_t place, column, tail;
static __idata bool running;

static const uint16_t __code set_up[] = {REG_SHUTDOWN << 8 | 1, REG_TEST << 8, REG_DECODE << 8, REG_SCAN_LIMIT << 8 | 7,
                                         REG_INTENSITY << 8 | 4};

static void send_byte(uint8_t value) {
  uint8_t i;
  for (i = 0; i < 8; i++) {
    MATRIX_DATA = (value & 0x80) != 0;
    MATRIX_CLOCK = 1;
    value <<= 1;
    MATRIX_CLOCK = 0;
  }
}

static void send_to_all(uint8_t reg, uint8_t value) {
  uint8_t chip;
  MATRIX_LOAD = 0;
  for (chip = 0; chip < CHIPS; chip++) {
    send_byte(reg);
    send_byte(value);
  }
  MATRIX_LOAD = 1;
}

static void clear(void) {
  uint8_t i;
  for (i = 0; i < WIDTH; i++) picture[i] = 0;
}

void matrix_init(void) {
  uint8_t i;
  for (i = 0; i < sizeof(set_up) / sizeof(set_up[0]); i++) send_to_all(set_up[i] >> 8, (uint8_t)set_up[i]);
  clear();
  matrix_show();
}

void matrix_brightness(uint8_t level) { send_to_all(REG_INTENSITY, level & 15); }

void matrix_show(void) {
  uint8_t digit, chip;
  for (digit = 0; digit < 8; digit++) {
    MATRIX_LOAD = 0;
    for (chip = 0; chip < CHIPS; chip++) {
      send_byte(digit + 1);
      send_byte(picture[(CHIPS - 1 - chip) * 8 + digit]);
    }
    MATRIX_LOAD = 1;
  }
}

static void draw_figure(uint8_t at, uint8_t figure) {
  uint8_t i;
  for (i = 0; i < 6; i++) picture[at + i] = figures[figure][i];
}

void matrix_clock(uint8_t hour, uint8_t minute, bool colon) {
  if (running) return;
  clear();
  if (hour >= 10) draw_figure(0, hour / 10);
  draw_figure(7, hour % 10);
  if (colon) picture[15] = picture[16] = 0x66;
  draw_figure(19, minute / 10);
  draw_figure(26, minute % 10);
}

void matrix_bar(uint8_t filled) {
  uint8_t i;
  for (i = 0; i < WIDTH; i++) {
    if (i < filled) {
      picture[i] |= 0x80;
    } else {
      picture[i] &= 0x7F;
    }
  }
}

static void start(void) {
  place = column = 0;
  tail = WIDTH;
  running = true;
}

void matrix_run_text(const char __code *text) {
  constant = text;
  start();
}

void matrix_run_line(char __xdata *text) {
  uint8_t i;
  for (i = 0; i < TEXT_SIZE - 1 && text[i] != 0; i++) line[i] = text[i];
  line[i] = 0;
  constant = 0;
  start();
}

bool matrix_is_running(void) { return running; }

/* The column that enters on the right: of the character at `place`, a gap of one, or the empty tail behind the text. */
static uint8_t entering(void) {
  char c = constant ? constant[place] : line[place];
  uint8_t dots;
  if (c == 0) {
    if (--tail == 0) running = false;
    return 0;
  }
  if (c < FONT_FIRST || c > FONT_LAST) c = '?';
  dots = column < 5 ? font[c - FONT_FIRST][column] : 0;
  if (++column == 6) {
    column = 0;
    place++;
  }
  return dots;
}

void matrix_step(void) {
  uint8_t i;
  if (!running) return;
  for (i = 0; i < WIDTH - 1; i++) picture[i] = picture[i + 1];
  picture[WIDTH - 1] = entering();
}
