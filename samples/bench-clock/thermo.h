/* The thermistor behind the ADC0831, smoothed over sixteen readings. */
#ifndef THERMO_H
#define THERMO_H

#include "board.h"

#define THERMO_CELLS 8

void thermo_sample(void); /* once a second */
int16_t thermo_tenths(void);
int16_t thermo_lowest(void);
int16_t thermo_highest(void);
uint8_t thermo_raw(void);
void thermo_forget(void); /* lowest and highest start anew */
void thermo_keep_hour(uint8_t hour); /* notes the mean for the little diagram */
int8_t thermo_hour_mean(uint8_t cell); /* whole degrees, cell 0 is the latest */

#endif
