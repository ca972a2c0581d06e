#include "timebase.h"

#include "tune.h"

static volatile uint16_t ticks;
static volatile uint8_t divider;
static volatile uint8_t pending_seconds;
static __idata uint32_t uptime;

void timebase_init(void) {
  TMOD = (TMOD & 0xF0) | 0x01;
  TH0 = TIMER0_RELOAD >> 8;
  TL0 = TIMER0_RELOAD & 0xFF;
  ET0 = 1;
  TR0 = 1;
}

void timebase_isr(void) __interrupt(TF0_VECTOR) __using(1) {
  TH0 = TIMER0_RELOAD >> 8;
  TL0 += TIMER0_RELOAD & 0xFF;
  ticks++;
  if (++divider >= TICK_HZ) {
    divider = 0;
    pending_seconds++;
    LED_ALIVE = !LED_ALIVE;
  }
}

uint16_t timebase_ticks(void) {
  uint16_t now;
  ET0 = 0;
  now = ticks;
  ET0 = 1;
  return now;
}

uint32_t timebase_uptime(void) { return uptime; }

bool timebase_take_second(void) {
  if (pending_seconds == 0) return false;
  ET0 = 0;
  pending_seconds--;
  ET0 = 1;
  uptime++;
  return true;
}

bool timebase_elapsed(uint16_t since, uint16_t span) { return (uint16_t)(timebase_ticks() - since) >= span; }
