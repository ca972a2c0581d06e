#include "tune.h"

#include "notes.h"
#include "timebase.h"

/* A tune is pairs of note and length in eighths; note 0 rests, 1 is C4; a length of 0 ends it. */
#define REST 0
enum { C4 = 1, CS4, D4, DS4, E4, F4, FS4, G4, GS4, A4, AS4, B4, C5, CS5, D5, DS5, E5, F5, FS5, G5, GS5, A5, AS5, B5, C6 };

static const uint8_t __code chime[] = {E5, 4, C5, 4, D5, 4, G4, 8, REST, 2, G4, 4, D5, 4, E5, 4, C5, 8, 0, 0};
static const uint8_t __code joy[] = {E4, 4, E4, 4, F4, 4, G4, 4, G4, 4, F4, 4, E4, 4, D4, 4, C4, 4, C4, 4, D4, 4,
                                     E4, 4, E4, 6, D4, 2, D4, 8, E4, 4, E4, 4, F4, 4, G4, 4, G4, 4, F4, 4, E4, 4,
                                     D4, 4, C4, 4, C4, 4, D4, 4, E4, 4, D4, 6, C4, 2, C4, 8, 0, 0};
static const uint8_t __code round_song[] = {C4, 4, D4, 4, E4, 4, C4, 4, C4, 4, D4, 4, E4, 4, C4, 4, E4, 4, F4, 4, G4, 8,
                                            E4, 4, F4, 4, G4, 8, G4, 2, A4, 2, G4, 2, F4, 2, E4, 4, C4, 4, G4, 2, A4, 2,
                                            G4, 2, F4, 2, E4, 4, C4, 4, C4, 4, G4, 4, C4, 8, C4, 4, G4, 4, C4, 8, 0, 0};
static const uint8_t __code scale[] = {C4, 2, D4, 2, E4, 2, F4, 2, G4, 2, A4, 2, B4, 2, C5, 2, D5, 2, E5,
                                       2,  F5, 2, G5, 2, A5, 2, B5, 2, C6, 6, 0, 0};
static const uint8_t __code alarm_bell[] = {A5, 1, REST, 1, A5, 1, REST, 1, A5, 1, REST, 5, FS5, 1, REST, 1, FS5,
                                            1,  REST, 1, FS5, 1, REST, 5, A5, 1, REST, 1, A5, 1, REST, 1, A5, 4, 0, 0};

static const uint8_t __code *const __code tunes[TUNE_COUNT] = {alarm_bell, chime, joy, round_song, scale};
static const char __code names[TUNE_COUNT][8] = {"bell", "chime", "joy", "round", "scale"};

/* Morse from 0 to Z: a leading one, then a one for each dash. */
static const uint8_t __code morse[] = {0x3F, 0x2F, 0x27, 0x23, 0x21, 0x20, 0x30, 0x38, 0x3C, 0x3E, 0x78, 0x6A, 0x01, 0x31, 0x01,
                                       0x4C, 0x5A, 0x05, 0x18, 0x1A, 0x0C, 0x02, 0x12, 0x0E, 0x10, 0x04, 0x17, 0x0D, 0x14, 0x07,
                                       0x06, 0x0F, 0x16, 0x1D, 0x0A, 0x08, 0x03, 0x09, 0x11, 0x0B, 0x19, 0x1B, 0x1C};

#define EIGHTH 16   /* ticks */
#define MORSE_DOT 14
#define MORSE_SIZE 16

static const uint8_t __code *__idata at; /* null when no tune is playing */
static char __xdata letters[MORSE_SIZE];
static __idata uint8_t letter, signs_left, sign_bits;
static __idata bool in_morse, in_gap;
static __idata uint16_t since, span;

void tune_init(void) {
  T2CON = 0;
  ET2 = 1;
}

void tune_isr(void) __interrupt(TIMER2_VECTOR) __using(1) {
  TF2 = 0;
  BUZZER = !BUZZER;
}

static void sound(uint8_t note) {
  if (note == REST) {
    TR2 = 0;
    BUZZER = 1;
    return;
  }
  RCAP2H = note_reload[note - 1] >> 8;
  RCAP2L = (uint8_t)note_reload[note - 1];
  TR2 = 1;
}

static void hold(uint16_t ticks) {
  since = timebase_ticks();
  span = ticks;
}

void tune_stop(void) {
  sound(REST);
  at = 0;
  in_morse = false;
}

void tune_play(uint8_t number) {
  tune_stop();
  if (number >= TUNE_COUNT) return;
  at = tunes[number];
  hold(0);
}

void tune_morse(char __xdata *text) {
  uint8_t i;
  tune_stop();
  for (i = 0; i < MORSE_SIZE - 1 && text[i] != 0; i++) letters[i] = text[i];
  letters[i] = 0;
  letter = signs_left = 0;
  in_gap = true;
  in_morse = true;
  hold(0);
}

bool tune_is_playing(void) { return at != 0 || in_morse; }

static void next_note(void) {
  uint8_t note = at[0], length = at[1];
  if (length == 0) {
    tune_stop();
    return;
  }
  at += 2;
  sound(note);
  hold((uint16_t)length * EIGHTH);
}

static uint8_t morse_of(char c) {
  if (c >= 'a' && c <= 'z') c -= 'a' - 'A';
  return c >= '0' && c <= 'Z' ? morse[c - '0'] : 1;
}

/* Takes the next letter: its signs stand left-aligned in `sign_bits`. */
static void next_letter(void) {
  char c = letters[letter];
  if (c == 0) {
    tune_stop();
    return;
  }
  letter++;
  sign_bits = morse_of(c);
  signs_left = 8;
  while (!(sign_bits & 0x80)) {
    sign_bits <<= 1;
    signs_left--;
  }
  sign_bits <<= 1;
  signs_left--;
  hold(signs_left == 0 ? MORSE_DOT * 4 : MORSE_DOT * 2);
}

static void next_sign(void) {
  if (!in_gap) {
    sound(REST);
    in_gap = true;
    hold(MORSE_DOT);
    return;
  }
  if (signs_left == 0) {
    next_letter();
    return;
  }
  sound(A5);
  hold(sign_bits & 0x80 ? MORSE_DOT * 3 : MORSE_DOT);
  sign_bits <<= 1;
  signs_left--;
  in_gap = false;
}

void tune_step(void) {
  if (!tune_is_playing() || !timebase_elapsed(since, span)) return;
  if (in_morse) {
    next_sign();
  } else {
    next_note();
  }
}

const char __code *tune_name(uint8_t number) { return names[number]; }
