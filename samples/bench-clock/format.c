#include "format.h"

#include "uart.h"

static const uint32_t __code powers[] = {1000000000UL, 100000000UL, 10000000UL, 1000000UL, 100000UL,
                                         10000UL,      1000UL,      100UL,      10UL};

void put_unsigned(uint32_t value) {
  uint8_t i;
  bool shown = false;
  for (i = 0; i < sizeof(powers) / sizeof(powers[0]); i++) {
    char digit = '0';
    while (value >= powers[i]) {
      value -= powers[i];
      digit++;
    }
    if (digit != '0') shown = true;
    if (shown) uart_put(digit);
  }
  uart_put('0' + (uint8_t)value);
}

void put_two(uint8_t value) {
  uart_put('0' + value / 10 % 10);
  uart_put('0' + value % 10);
}

static void put_nibble(uint8_t value) { uart_put(value < 10 ? '0' + value : 'A' - 10 + value); }

void put_hex(uint8_t value) {
  put_nibble(value >> 4);
  put_nibble(value & 15);
}

void put_tenths(int16_t value) {
  uint16_t size = value < 0 ? (uint16_t)-value : (uint16_t)value;
  if (value < 0) uart_put('-');
  put_unsigned(size / 10);
  uart_put('.');
  uart_put('0' + (uint8_t)(size % 10));
}

void skip_blanks(char __xdata **at) {
  while (**at == ' ') (*at)++;
}

bool take_number(char __xdata **at, uint16_t *value) {
  uint16_t sum = 0;
  bool any = false;
  skip_blanks(at);
  while (**at >= '0' && **at <= '9') {
    sum = sum * 10 + (uint8_t)(**at - '0');
    any = true;
    (*at)++;
  }
  *value = sum;
  return any;
}

bool take_char(char __xdata **at, char wanted) {
  if (**at != wanted) return false;
  (*at)++;
  return true;
}
