/* Reload values of timer 2 for half a period of the notes C4 to B6 (440 Hz for A4). */
#ifndef NOTES_H
#define NOTES_H

#include "board.h"

static const uint16_t __code note_reload[36] = {
    63775, 63874, 63967, 64055, 64138, 64217, 64291, 64360, 64426, 64489, 64548, 64603,
    64655, 64705, 64751, 64795, 64837, 64876, 64913, 64948, 64981, 65012, 65042, 65069,
    65096, 65120, 65144, 65166, 65187, 65206, 65225, 65242, 65259, 65274, 65289, 65303,
};

#endif
