/*
 * The tokenizer's record and its internal steps. Private to the library;
 * tests include it to look at the record between calls.
 */
#ifndef PHONEPIM_SRC_VERSIT_VPARSERINTERNAL_H
#define PHONEPIM_SRC_VERSIT_VPARSERINTERNAL_H

#include <limits.h>

#include "phonepim/versit/vParser.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Value encodings of the current property. */
enum {
  VP_ENCODING_NONE = 0,
  VP_ENCODING_QUOTED_PRINTABLE = 1,
  VP_ENCODING_BASE64 = 2,
  VP_ENCODING_8BIT = 3,
  /* Lenient reading's BASE64: passed on as text, like 8BIT, for the caller
   * to decode whole. */
  VP_ENCODING_BASE64_TEXT = 4
};

/* The line buffer grows in steps of this many bytes, so its capacity is
 * always a multiple of it. */
#define VP_LINE_GROWTH 128
/* A line buffer larger than this is given back after each property: one
 * photo must not pin its size for the rest of the address book. */
#define VP_LINE_KEEP_LIMIT 1024
/* The largest line buffer: the last multiple of VP_LINE_GROWTH that an int
 * can count. Appending beyond it fails like an exhausted realloc, so the
 * int lengths and offsets never overflow. */
#define VP_LINE_MAX_CAPACITY (INT_MAX / VP_LINE_GROWTH * VP_LINE_GROWTH)

struct VP {
  int atLineStart;      /* the next byte is the first of a physical line */
  int isContinuation;   /* this physical line began with folding white space */
  char* line;           /* name, parameters, then value (heap, realloc-grown) */
  int lineCapacity;
  int lineLength;
  int state;            /* 0 name, 1 before a parameter, 2 parameter name,
                           3 after '=', 4 parameter value, 5 value */
  int skipLeadingSpace; /* no non-white-space value byte seen yet */
  /* Pairs (name, value). While a line is collected they hold byte offsets
   * into `line` (which may move as it grows); at the end of the name they
   * become pointers. Offset 0 is the property name, so a value offset of
   * 0 means "no value". */
  char** params;
  int paramCount;
  int escapeNext;       /* a backslash was seen in a parameter value */
  int encoding;         /* VP_ENCODING_* */
  int qpPending;        /* a quoted-printable '=' awaits its two hex digits */
  char quad[4];         /* the held-back hex digits or the BASE64 group */
  int quadCount;        /* BASE64 characters in quad */
  void* userData;
  CARD_PropHandler propHandler;
  CARD_DataHandler dataHandler;
  /* Pairs allocated in params. The array grows geometrically instead of
   * by one pair per parameter: a card has dozens of parameters, and a
   * realloc each would cost more than the bytes around them. */
  int paramCapacity;
  int lenient;          /* CARD_SetLenient */
};

/* The internal steps, exposed for the tests; not part of the interface. */
#if defined(__GNUC__)
#define VP_INTERNAL __attribute__((visibility("hidden")))
#else
#define VP_INTERNAL
#endif

/* Feeds one byte to the state machine: 1 to go on, 0 to stop. */
VP_INTERNAL int vcard_process_char(VP* parser, char c);
/* The property name is complete: reports it and starts the value. */
VP_INTERNAL int vcard_end_prop(VP* parser);
VP_INTERNAL void vcard_clear_line(VP* parser);
/* The parser as CARD_ParserCreate makes it, handlers and user data unset,
 * keeping the buffers it grew (a line buffer within VP_LINE_KEEP_LIMIT). */
VP_INTERNAL void vcard_reset_parser(VP* parser);
VP_INTERNAL int vcard_add_char_to_line(VP* parser, char c);
VP_INTERNAL int card_add_param(VP* parser, int nameOffset);
VP_INTERNAL int card_set_paramvalue(VP* parser, int valueOffset);
/* 0-63 for a BASE64 character, 255 for anything else. */
VP_INTERNAL unsigned char Base64ToOrd(char c);

#ifdef __cplusplus
}
#endif

#endif /* PHONEPIM_SRC_VERSIT_VPARSERINTERNAL_H */
