/* Timer 2 drives the buzzer; tunes and Morse run in the background. */
#ifndef TUNE_H
#define TUNE_H

#include "board.h"

#define TUNE_COUNT 5

void tune_init(void);
void tune_isr(void) __interrupt(TIMER2_VECTOR) __using(1);
void tune_play(uint8_t number);
void tune_morse(char __xdata *text); /* plays the first 15 characters */
void tune_stop(void);
bool tune_is_playing(void);
void tune_step(void); /* called from the main loop */
const char __code *tune_name(uint8_t number);

#endif
