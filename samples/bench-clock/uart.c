#include "uart.h"

#define RX_SIZE 16
#define TX_SIZE 16

static volatile char __idata rx_ring[RX_SIZE];
static volatile char __idata tx_ring[TX_SIZE];
static volatile uint8_t rx_in, rx_out, tx_in, tx_out;
static volatile uint8_t overruns;
static volatile __bit sending;

void uart_init(void) {
  SCON = 0x50;
  TMOD = (TMOD & 0x0F) | 0x20;
  TH1 = (uint8_t)(256 - OSC_HZ / 12 / 32 / 9600);
  TL1 = TH1;
  TR1 = 1;
  ES = 1;
}

void uart_isr(void) __interrupt(SI0_VECTOR) __using(2) {
  uint8_t next;
  if (RI) {
    RI = 0;
    next = (rx_in + 1) & (RX_SIZE - 1);
    if (next == rx_out) {
      overruns++;
    } else {
      rx_ring[rx_in] = SBUF;
      rx_in = next;
    }
  }
  if (TI) {
    TI = 0;
    if (tx_in == tx_out) {
      sending = 0;
    } else {
      SBUF = tx_ring[tx_out];
      tx_out = (tx_out + 1) & (TX_SIZE - 1);
    }
  }
}

bool uart_has_byte(void) { return rx_in != rx_out; }

char uart_get(void) {
  char c = rx_ring[rx_out];
  rx_out = (rx_out + 1) & (RX_SIZE - 1);
  return c;
}

void uart_put(char c) {
  uint8_t next = (tx_in + 1) & (TX_SIZE - 1);
  while (next == tx_out) {
  }
  ES = 0;
  if (sending) {
    tx_ring[tx_in] = c;
    tx_in = next;
  } else {
    sending = 1;
    SBUF = c;
  }
  ES = 1;
}

void uart_text(const char __code *text) {
  while (*text) uart_put(*text++);
}

void uart_line(const char __code *text) {
  uart_text(text);
  uart_text("\r\n");
}

uint8_t uart_overruns(void) { return overruns; }
