/* 32 x 8 dots: text that stands or runs, a large clock, a bar. */
#ifndef MATRIX_H
#define MATRIX_H

#include "board.h"

#define TEXT_SIZE 32

void matrix_init(void);
void matrix_brightness(uint8_t level); /* 0 .. 15 */
void matrix_clock(uint8_t hour, uint8_t minute, bool colon);
void matrix_bar(uint8_t filled); /* columns of the bottom row, 0 .. 32 */
void matrix_run_text(const char __code *text); /* a constant text runs through once */
void matrix_run_line(char __xdata *text); /* the same for a typed one; copied */
bool matrix_is_running(void);
void matrix_step(void); /* one column further, when a text is running */
void matrix_show(void); /* sends the picture to the drivers */

#endif
