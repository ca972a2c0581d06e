#include "shell.h"

#include "commands.h"
#include "uart.h"

#define BACKSPACE 0x08
#define DELETE 0x7F
#define CTRL_C 0x03
#define CTRL_U 0x15

static char __xdata line[LINE_SIZE];
static __idata uint8_t length;
static __idata char before;

static void prompt(void) {
  length = 0;
  uart_text("> ");
}

void shell_init(void) {
  uart_line("\r\nBench clock. Type 'help'.");
  prompt();
}

static void rub_out(void) {
  if (length == 0) return;
  length--;
  uart_text("\b \b");
}

static void take(char c) {
  switch (c) {
    case '\r':
    case '\n':
      if (c == '\n' && before == '\r') break;
      uart_text("\r\n");
      line[length] = 0;
      commands_run(line);
      prompt();
      break;
    case BACKSPACE:
    case DELETE:
      rub_out();
      break;
    case CTRL_U:
      while (length != 0) rub_out();
      break;
    case CTRL_C:
      uart_line("^C");
      prompt();
      break;
    default:
      if (c < ' ' || c > '~' || length >= LINE_SIZE - 1) {
        uart_put('\a');
      } else {
        line[length++] = c;
        uart_put(c);
      }
  }
  before = c;
}

void shell_step(void) {
  while (uart_has_byte()) take(uart_get());
}
