/* Bench clock: an 8052 core at 11.0592 MHz with 256 bytes of on-chip external RAM, four MAX7219 with 8x8 dot
   matrices, an ADC0831 with a thermistor, a buzzer. */
#ifndef BOARD_H
#define BOARD_H

#include <8052.h>
#include <stdbool.h>
#include <stdint.h>

#define OSC_HZ 11059200UL
#define TICK_HZ 200 /* timer 0 overflows */
#define TIMER2_VECTOR 5
#define TIMER0_RELOAD (65536UL - OSC_HZ / 12 / TICK_HZ)

#define MATRIX_DATA P1_0
#define MATRIX_CLOCK P1_1
#define MATRIX_LOAD P1_2
#define ADC_SELECT P1_3
#define ADC_CLOCK P1_4
#define ADC_DATA P1_5
#define BUZZER P1_6
#define LED_ALIVE P1_7
#define KEY_PORT P3
#define KEY_MASK 0x3C /* P3.2 .. P3.5, low when pressed */

#endif
