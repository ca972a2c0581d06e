#include "thermo.h"

#include "thermo_table.h"

static __idata uint16_t smooth; /* sixteen times the reading */
static __idata int16_t lowest, highest;
static int8_t __xdata means[THERMO_CELLS];
static __idata bool started;

static void clock_pulse(void) {
  ADC_CLOCK = 1;
  ADC_CLOCK = 0;
}

static uint8_t convert(void) {
  uint8_t i, value = 0;
  ADC_DATA = 1; /* an input */
  ADC_CLOCK = 0;
  ADC_SELECT = 0;
  clock_pulse(); /* start */
  clock_pulse(); /* the leading zero */
  for (i = 0; i < 8; i++) {
    value <<= 1;
    if (ADC_DATA) value |= 1;
    clock_pulse();
  }
  ADC_SELECT = 1;
  return value;
}

uint8_t thermo_raw(void) { return (uint8_t)(smooth >> 4); }

/* Between two entries of the table the sixteenths of the smoothed reading are shared out. */
int16_t thermo_tenths(void) {
  uint8_t low = thermo_raw();
  uint8_t sixteenths = smooth & 15;
  int16_t here = tenths_of[low];
  int16_t step = low < 255 ? tenths_of[low + 1] - here : 0;
  return here + step * (int16_t)sixteenths / 16;
}

void thermo_forget(void) { lowest = highest = thermo_tenths(); }

void thermo_sample(void) {
  uint8_t reading = convert();
  int16_t tenths;
  if (!started) {
    started = true;
    smooth = (uint16_t)reading << 4;
    thermo_forget();
    return;
  }
  smooth = smooth - (smooth >> 4) + reading;
  tenths = thermo_tenths();
  if (tenths < lowest) lowest = tenths;
  if (tenths > highest) highest = tenths;
}

int16_t thermo_lowest(void) { return lowest; }

int16_t thermo_highest(void) { return highest; }

void thermo_keep_hour(uint8_t hour) { means[hour & (THERMO_CELLS - 1)] = (int8_t)(thermo_tenths() / 10); }

int8_t thermo_hour_mean(uint8_t cell) { return means[cell & (THERMO_CELLS - 1)]; }
