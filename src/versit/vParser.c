/*
 * The versit tokenizer. Bytes go in one at a time through a small state
 * machine (property name, parameters, value); everything it needs to carry
 * between calls lives in the VP record, so the caller may cut the input
 * anywhere and still get exactly the callbacks of the whole text.
 *
 * The machine is byte-driven on purpose: phones fold lines, leave blank
 * lines in odd places and break quoted-printable values wherever they like,
 * and one rule per byte keeps all of those cases in one place. The only
 * shortcut is in CARD_Parse: a run of bytes that the rules would simply
 * append (most of a name, a parameter, a value) is copied at once, with
 * exactly the result of the per-byte rules.
 */
#include <limits.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "versit/vParserInternal.h"

/* Byte classes. Our own table: the C library's isspace depends on the
 * locale, and the versit white-space set must not. The other bits say
 * which bytes end a run that a state simply appends (see CARD_Parse). */
enum {
  VP_CLASS_SPACE = 1,       /* space, \t, \n, \v, \f, \r */
  VP_CLASS_LINE = 2,        /* LF, CR */
  VP_CLASS_STOP_QP = 4,     /* quoted-printable value: LF, CR, '=' */
  VP_CLASS_STOP_NAME = 8,   /* property name: white space, ':', ';' */
  VP_CLASS_STOP_PNAME = 16, /* parameter name: white space, ':', ';', '=' */
  VP_CLASS_STOP_PVALUE = 32 /* parameter value: white space, ':', ';', '\\' */
};

#define VP_SPACE_CLASS                                                  \
  (VP_CLASS_SPACE | VP_CLASS_STOP_NAME | VP_CLASS_STOP_PNAME | VP_CLASS_STOP_PVALUE)

static const unsigned char kClass[256] = {
    [' '] = VP_SPACE_CLASS,
    ['\t'] = VP_SPACE_CLASS,
    ['\n'] = VP_SPACE_CLASS | VP_CLASS_LINE | VP_CLASS_STOP_QP,
    ['\v'] = VP_SPACE_CLASS,
    ['\f'] = VP_SPACE_CLASS,
    ['\r'] = VP_SPACE_CLASS | VP_CLASS_LINE | VP_CLASS_STOP_QP,
    ['='] = VP_CLASS_STOP_QP | VP_CLASS_STOP_PNAME,
    [':'] = VP_CLASS_STOP_NAME | VP_CLASS_STOP_PNAME | VP_CLASS_STOP_PVALUE,
    [';'] = VP_CLASS_STOP_NAME | VP_CLASS_STOP_PNAME | VP_CLASS_STOP_PVALUE,
    ['\\'] = VP_CLASS_STOP_PVALUE,
};

static int vp_isspace(unsigned char c) { return kClass[c] & VP_CLASS_SPACE; }

/* Offsets and pointers share the pair slots; see struct VP. */
static char* vp_offset_word(int offset) { return (char*)(intptr_t)offset; }
static int vp_word_offset(const char* word) { return (int)(intptr_t)word; }

/* Drops the line after a failed grow. The old block is freed rather than
 * leaked; the parameter offsets pointed into it, so they go too. */
static void vp_drop_line(VP* vp) {
  free(vp->line);
  vp->line = NULL;
  vp->lineCapacity = 0;
  vp->lineLength = 0;
  vp->paramCount = 0;
}

static int vp_grow_line(VP* vp, long long needed) {
  long long capacity =
      (needed + VP_LINE_GROWTH - 1) / VP_LINE_GROWTH * VP_LINE_GROWTH;
  char* grown;
  if (capacity > VP_LINE_MAX_CAPACITY) return 0;
  grown = (char*)realloc(vp->line, (size_t)capacity);
  if (grown == NULL) return 0;
  vp->line = grown;
  vp->lineCapacity = (int)capacity;
  return 1;
}

int vcard_add_char_to_line(VP* vp, char c) {
  if (vp->lineLength >= vp->lineCapacity &&
      !vp_grow_line(vp, (long long)vp->lineLength + 1)) {
    vp_drop_line(vp);
    return 0;
  }
  vp->line[vp->lineLength++] = c;
  return 1;
}

void vcard_clear_line(VP* vp) {
  vp->state = 0;
  vp->lineLength = 0;
  if (vp->lineCapacity > VP_LINE_KEEP_LIMIT) {
    free(vp->line);
    vp->line = NULL;
    vp->lineCapacity = 0;
  }
  vp->skipLeadingSpace = 1;
  vp->paramCount = 0;
  vp->escapeNext = 0;
  vp->encoding = VP_ENCODING_NONE;
  vp->qpPending = 0;
  memset(vp->quad, 0, sizeof vp->quad);
  vp->quadCount = 0;
}

int card_add_param(VP* vp, int nameOffset) {
  if (vp->paramCount >= vp->paramCapacity) {
    /* Each pair takes at least two line bytes, so the count stays far
     * below INT_MAX; the checks keep the sizes exact on 32-bit systems. */
    char** grown = NULL;
    if (vp->paramCapacity <= INT_MAX / 2) {
      int pairs = vp->paramCapacity < 8 ? 8 : vp->paramCapacity * 2;
      if ((size_t)pairs <= SIZE_MAX / (2 * sizeof(char*))) {
        grown = (char**)realloc(vp->params, (size_t)pairs * 2 * sizeof(char*));
      }
      if (grown != NULL) vp->paramCapacity = pairs;
    }
    if (grown == NULL) {
      free(vp->params);
      vp->params = NULL;
      vp->paramCount = 0;
      vp->paramCapacity = 0;
      return 0;
    }
    vp->params = grown;
  }
  vp->params[2 * vp->paramCount] = vp_offset_word(nameOffset);
  vp->params[2 * vp->paramCount + 1] = NULL;
  vp->paramCount++;
  return 1;
}

int card_set_paramvalue(VP* vp, int valueOffset) {
  if (vp->params == NULL || vp->paramCount == 0) return 0;
  vp->params[2 * vp->paramCount - 1] = vp_offset_word(valueOffset);
  return 1;
}

unsigned char Base64ToOrd(char c) {
  if (c >= 'A' && c <= 'Z') return (unsigned char)(c - 'A');
  if (c >= 'a' && c <= 'z') return (unsigned char)(c - 'a' + 26);
  if (c >= '0' && c <= '9') return (unsigned char)(c - '0' + 52);
  if (c == '+') return 62;
  if (c == '/') return 63;
  return 255;
}

/* Which encoding a parameter names: ENCODING=X or a bare X. Exact,
 * case-sensitive texts; anything else leaves the encoding alone. */
static void vp_note_encoding(VP* vp, const char* name, const char* value) {
  const char* text = name[0] == 'E' && strcmp(name, "ENCODING") == 0 ? value : name;
  if (text == NULL) return;
  /* Most parameters (TYPE=..., CHARSET=..., HOME) start with none of the
   * three letters. */
  if (text[0] != 'Q' && text[0] != 'B' && text[0] != '8') return;
  if (strcmp(text, "QUOTED-PRINTABLE") == 0) {
    vp->encoding = VP_ENCODING_QUOTED_PRINTABLE;
  } else if (strcmp(text, "BASE64") == 0) {
    vp->encoding = VP_ENCODING_BASE64;
  } else if (strcmp(text, "8BIT") == 0) {
    vp->encoding = VP_ENCODING_8BIT;
  }
}

/* `text` equals the upper-case `word`, ASCII letters in either case. */
static int vp_same_word_blind(const char* text, const char* word) {
  for (; *word != '\0'; ++text, ++word) {
    char c = *text;
    if (c >= 'a' && c <= 'z') c = (char)(c - 'a' + 'A');
    if (c != *word) return 0;
  }
  return *text == '\0';
}

/* The lenient reading of the same: any case, and the spellings exports
 * use, "QUOTEDPRINTABLE" and the vCard 3 "ENCODING=b". The name is upper
 * case already. */
static void vp_note_encoding_blind(VP* vp, const char* name, const char* value) {
  /* The first letter spares most names a call. */
  const int named = name[0] == 'E' && strcmp(name, "ENCODING") == 0;
  const char* text = named ? value : name;
  char first;
  if (text == NULL) return;
  /* As above: most parameters start with none of the letters. */
  first = text[0] >= 'a' && text[0] <= 'z' ? (char)(text[0] - 'a' + 'A') : text[0];
  if (first != 'Q' && first != 'B' && first != '8') return;
  if (vp_same_word_blind(text, "QUOTED-PRINTABLE") ||
      vp_same_word_blind(text, "QUOTEDPRINTABLE")) {
    vp->encoding = VP_ENCODING_QUOTED_PRINTABLE;
  } else if (vp_same_word_blind(text, "BASE64") || (named && vp_same_word_blind(text, "B"))) {
    /* Not decoded here: the caller gets the text, however it is folded. */
    vp->encoding = VP_ENCODING_BASE64_TEXT;
  } else if (vp_same_word_blind(text, "8BIT")) {
    vp->encoding = VP_ENCODING_8BIT;
  }
}

/* Upper-cases a name in the line, up to its NUL or a '(' that opens a
 * label: "X-CUSTOM(Night line)" keeps its label as written. */
static void vp_upper_name(char* name) {
  for (; *name != '\0' && *name != '('; ++name) {
    if (*name >= 'a' && *name <= 'z') *name = (char)(*name - 'a' + 'A');
  }
}

/* Lenient reading of the names of a property whose parameters are
 * pointers now: upper case, and the encoding words in any case. Out of
 * line: the standard reading's path through vcard_end_prop stays short. */
#if defined(__GNUC__)
__attribute__((noinline))
#endif
/* Whether the `n` bytes at `text` hold an ASCII lower-case letter: eight
 * at a time (a byte lies between 0x60 and 0x7B, the bit trick exact for
 * bytes below 0x80; bytes above are masked out first). */
static int vp_has_lower(const char* text, int n) {
  const uint64_t ones = 0x0101010101010101ULL;
  const uint64_t highs = 0x8080808080808080ULL;
  int i = 0;
  for (; n - i >= 8; i += 8) {
    uint64_t word;
    uint64_t low;
    memcpy(&word, text + i, 8);
    low = word & ~highs;
    /* Above 0x60 in the low seven bits, below 0x7B, and the top bit clear. */
    if (((ones * (127 + 0x7B) - low) & ~word & (low + ones * (127 - 0x60)) & highs) != 0) {
      return 1;
    }
  }
  for (; i < n; ++i) {
    if (text[i] >= 'a' && text[i] <= 'z') return 1;
  }
  return 0;
}

static void vp_lenient_names(VP* vp) {
  int i;
  /* Phones write names, parameters and most parameter values in upper
   * case: one look over the whole line spares the name by name pass. */
  const int upper = vp_has_lower(vp->line, vp->lineLength);
  if (upper) vp_upper_name(vp->line);
  for (i = 0; i < vp->paramCount; ++i) {
    if (upper) vp_upper_name(vp->params[2 * i]);
    vp_note_encoding_blind(vp, vp->params[2 * i], vp->params[2 * i + 1]);
  }
}

int vcard_end_prop(VP* vp) {
  if (vp->propHandler != NULL) {
    int i;
    if (!vcard_add_char_to_line(vp, '\0')) return 0;
    /* The line no longer moves while the handler runs: offsets become
     * pointers now. */
    for (i = 0; i < vp->paramCount; ++i) {
      char** pair = vp->params + 2 * i;
      int nameOffset = vp_word_offset(pair[0]);
      int valueOffset = vp_word_offset(pair[1]);
      pair[0] = vp->line + nameOffset;
      pair[1] = valueOffset != 0 ? vp->line + valueOffset : NULL;
      if (!vp->lenient) vp_note_encoding(vp, pair[0], pair[1]);
    }
    if (vp->lenient) vp_lenient_names(vp);
    /* A handler must always be able to walk to the null pair. */
    if (!card_add_param(vp, 0)) return 0;
    vp->propHandler(vp->userData, vp->line, vp->params);
  }
  vp->lineLength = 0;
  vp->state = 5;
  return 1;
}

/* A complete BASE64 group: up to three bytes. '=' in the third or fourth
 * place ends the group early (padding). */
static int vp_decode_quad(VP* vp) {
  unsigned first = Base64ToOrd(vp->quad[0]);
  unsigned second = Base64ToOrd(vp->quad[1]);
  if (first == 255 || second == 255) return 0;
  vcard_add_char_to_line(vp, (char)(unsigned char)((second >> 4) | (first << 2)));
  if (vp->quad[2] != '=') {
    unsigned third = Base64ToOrd(vp->quad[2]);
    if (third == 255) return 0;
    vcard_add_char_to_line(vp,
                           (char)(unsigned char)((third >> 2) | ((second & 15) << 4)));
    if (vp->quad[3] != '=') {
      unsigned fourth = Base64ToOrd(vp->quad[3]);
      if (fourth == 255) return 0;
      vcard_add_char_to_line(vp, (char)(unsigned char)(fourth | ((third & 3) << 6)));
    }
  }
  memset(vp->quad, 0, sizeof vp->quad);
  vp->quadCount = 0;
  return 1;
}

/* One value byte (state 5, neither LF nor CR). Failed appends are not
 * reported here: a value that runs out of memory is cut, not rejected. */
static int vp_value_byte(VP* vp, char ch) {
  unsigned char c = (unsigned char)ch;
  if (vp->skipLeadingSpace) {
    if (vp_isspace(c)) return 1;
    vp->skipLeadingSpace = 0;
  }
  if (vp->dataHandler == NULL) return 1;
  switch (vp->encoding) {
    case VP_ENCODING_QUOTED_PRINTABLE:
      if (vp->qpPending) {
        /* A NUL digit leaves the first slot "empty": it is overwritten. */
        if (vp->quad[0] == 0) {
          vp->quad[0] = ch;
          return 1;
        }
        vp->quad[1] = ch;
        /* The escape goes through unchanged; the caller decodes it. */
        vcard_add_char_to_line(vp, '=');
        vcard_add_char_to_line(vp, vp->quad[0]);
        vcard_add_char_to_line(vp, vp->quad[1]);
        vp->qpPending = 0;
        return 1;
      }
      if (c == '=') {
        /* Held back until we know whether it is a soft line break. */
        vp->qpPending = 1;
        memset(vp->quad, 0, sizeof vp->quad);
        vp->quadCount = 0;
        return 1;
      }
      vcard_add_char_to_line(vp, ch);
      return 1;
    case VP_ENCODING_BASE64:
      if (vp->quadCount < 4 && !vp_isspace(c)) vp->quad[vp->quadCount++] = ch;
      if (vp->quadCount < 4) return 1;
      return vp_decode_quad(vp);
    default:
      vcard_add_char_to_line(vp, ch);
      return 1;
  }
}

static int vp_end_value(VP* vp) {
  if (vp->encoding == VP_ENCODING_QUOTED_PRINTABLE && vp->qpPending) {
    /* Soft line break: the '=' and the line end vanish and the value goes
     * on with the next line. */
    vp->qpPending = 0;
    return 1;
  }
  if (vp->dataHandler != NULL) {
    if (vp->encoding == VP_ENCODING_BASE64) {
      /* Pad a partial group. With one character left the second place
       * becomes '=', which never decodes: reject instead of looping. */
      while (vp->quadCount > 0) {
        if (!vp_value_byte(vp, '=')) return 0;
      }
    }
    if (vp->lineLength > 0) vp->dataHandler(vp->userData, vp->line, vp->lineLength);
    vp->dataHandler(vp->userData, NULL, 0);
  }
  vcard_clear_line(vp);
  return 1;
}

static inline int vp_process(VP* vp, unsigned char c) {
  const char ch = (char)c;
  switch (vp->state) {
    case 0: /* property name */
      if (c == '\n') {
        /* A line without ':' ("BEGIN" alone) is dropped. */
        vcard_clear_line(vp);
        return 1;
      }
      if (c == '\r') return 1;
      if (c == ':') {
        (void)vcard_end_prop(vp);
        return 1;
      }
      if (c == ';') {
        if (!vcard_add_char_to_line(vp, '\0')) return 0;
        vp->state = 1;
        return 1;
      }
      if (vp_isspace(c)) return 1;
      return vcard_add_char_to_line(vp, ch);

    case 1: /* before a parameter */
      if (c == '\n') {
        vcard_clear_line(vp);
        return 1;
      }
      if (c == ':') {
        /* "TEL;:" - an empty parameter */
        vcard_clear_line(vp);
        return 0;
      }
      if (vp_isspace(c)) return 1;
      if (!card_add_param(vp, vp->lineLength)) return 0;
      vp->state = 2;
      return vcard_add_char_to_line(vp, ch);

    case 2: /* parameter name; white space, LF included, is skipped, so a
               line break inside the parameter list continues the line */
      if (c == ';') {
        if (!vcard_add_char_to_line(vp, '\0')) return 0;
        vp->state = 1;
        return 1;
      }
      if (c == '=') {
        if (!vcard_add_char_to_line(vp, '\0')) return 0;
        vp->state = 3;
        return 1;
      }
      if (c == ':') return vcard_end_prop(vp);
      if (vp_isspace(c)) return 1;
      return vcard_add_char_to_line(vp, ch);

    case 3: /* after '=' */
      if (c == ':' || c == ';') {
        /* "TEL;TYPE=:" - an empty parameter value */
        vcard_clear_line(vp);
        return 0;
      }
      if (vp_isspace(c)) return 1;
      if (!card_set_paramvalue(vp, vp->lineLength)) return 0;
      vp->state = 4;
      return vcard_add_char_to_line(vp, ch);

    case 4: /* parameter value. A backslash escapes the next ';' or '\'
               only; escapeNext survives other bytes, so "a\b;c" keeps
               the ';'. */
      if (c == ':') return vcard_end_prop(vp);
      if (c == ';') {
        if (vp->escapeNext) {
          vp->escapeNext = 0;
          return vcard_add_char_to_line(vp, ';');
        }
        if (!vcard_add_char_to_line(vp, '\0')) return 0;
        vp->state = 1;
        return 1;
      }
      if (vp_isspace(c)) return 1;
      if (c == '\\') {
        if (vp->escapeNext) {
          vp->escapeNext = 0;
          return vcard_add_char_to_line(vp, '\\');
        }
        vp->escapeNext = 1;
        return 1;
      }
      return vcard_add_char_to_line(vp, ch);

    case 5: /* value */
      if (c == '\n') return vp_end_value(vp);
      if (c == '\r') return 1;
      return vp_value_byte(vp, ch);

    default:
      return 1;
  }
}

int vcard_process_char(VP* vp, char c) { return vp_process(vp, (unsigned char)c); }

VP* CARD_ParserCreate(void) {
  VP* vp = (VP*)calloc(1, sizeof *vp);
  if (vp == NULL) return NULL;
  vp->atLineStart = 1;
  vp->isContinuation = 0;
  vcard_clear_line(vp);
  return vp;
}

void vcard_reset_parser(VP* vp) {
  char* const line = vp->line;
  const int lineCapacity = vp->lineCapacity;
  char** const params = vp->params;
  const int paramCapacity = vp->paramCapacity;
  memset(vp, 0, sizeof *vp);
  vp->line = line;
  vp->lineCapacity = lineCapacity;
  vp->params = params;
  vp->paramCapacity = paramCapacity;
  vp->atLineStart = 1;
  vcard_clear_line(vp);
}

void CARD_ParserFree(VP* vp) {
  if (vp == NULL) return;
  free(vp->line);
  free(vp->params);
  free(vp);
}

void CARD_SetUserData(VP* vp, void* userData) { vp->userData = userData; }
void* CARD_GetUserData(VP* vp) { return vp->userData; }
void CARD_SetPropHandler(VP* vp, CARD_PropHandler handler) { vp->propHandler = handler; }
void CARD_SetDataHandler(VP* vp, CARD_DataHandler handler) { vp->dataHandler = handler; }
void CARD_SetLenient(VP* vp, int lenient) { vp->lenient = lenient != 0; }

/* Appends the run p..p+n (the input goes on to end) in one copy. The
 * buffer grows once, to the capacity the byte-by-byte rule would have
 * reached. Returns 0, with nothing changed, when it cannot grow: the caller
 * then takes the bytes one by one, so the limits and failures behave
 * exactly as there. */
static inline int vp_append_run(VP* vp, const unsigned char* p, int n,
                                const unsigned char* end) {
  long long needed = (long long)vp->lineLength + n;
  char* dst;
  if (needed > vp->lineCapacity && !vp_grow_line(vp, needed)) return 0;
  dst = vp->line + vp->lineLength;
  if (n <= 16 && end - p >= 16 && vp->lineCapacity - vp->lineLength >= 16) {
    /* Most runs are names and short values: one fixed-size copy, which
     * the compiler inlines, instead of a library call. The bytes after the
     * run land in spare capacity beyond lineLength. */
    memcpy(dst, p, 16);
  } else {
    memcpy(dst, p, (size_t)n);
  }
  vp->lineLength += n;
  return 1;
}

/* Word-at-a-time scanning for plain value runs, which are long (the
 * folded lines of a photo): eight bytes are tested for LF and CR at once,
 * and the byte loop after it finds the exact stop. Portable: no
 * intrinsics, no byte order assumptions. Quoted-printable runs do not use
 * it: their escapes come every few bytes, and the early exits cost more
 * than the word tests save. */
#define VP_ONES UINT64_C(0x0101010101010101)
#define VP_HIGHS UINT64_C(0x8080808080808080)
#define VP_HAS_BYTE(word, byte) \
  ((((word) ^ (VP_ONES * (byte))) - VP_ONES) & ~((word) ^ (VP_ONES * (byte))) & VP_HIGHS)

static const unsigned char* vp_skip_text_words(const unsigned char* p,
                                               const unsigned char* end) {
  while (end - p >= 8) {
    uint64_t word;
    memcpy(&word, p, sizeof word);
    if (VP_HAS_BYTE(word, '\n') | VP_HAS_BYTE(word, '\r')) break;
    p += 8;
  }
  return p;
}

/* A quoted-printable run: plain bytes and complete "=XX" escapes, which
 * the value rules append unchanged. An escape cut by a line end, by the end
 * of the input, or with a NUL first digit (which the rules overwrite) is
 * left to them. */
static const unsigned char* vp_qp_run(const unsigned char* p, const unsigned char* end,
                                      const unsigned char** lastEscape) {
  while (p < end) {
    if (!(kClass[*p] & VP_CLASS_STOP_QP)) {
      ++p;
      continue;
    }
    if (*p != '=' || end - p < 3 || p[1] == 0 || (kClass[p[1]] & VP_CLASS_LINE) ||
        (kClass[p[2]] & VP_CLASS_LINE)) {
      break;
    }
    *lastEscape = p;
    p += 3;
  }
  return p;
}

/* The bytes that end a run in states 0 to 4; 0 where every byte changes
 * the state (before a parameter, after '='). */
static const unsigned char kRunStop[5] = {VP_CLASS_STOP_NAME, 0, VP_CLASS_STOP_PNAME, 0,
                                          VP_CLASS_STOP_PVALUE};

/* Takes the value run (state 5) at p that the rules would simply append
 * (or, with no data callback, drop) and returns its end; returns p itself
 * when p's byte needs the per-byte rules. */
static const unsigned char* vp_take_value_run(VP* vp, const unsigned char* p,
                                              const unsigned char* end) {
  const unsigned char* q;
  if (vp->skipLeadingSpace) {
    /* The first value byte: white space is the rules' to drop; anything
     * else ends the leading space exactly as they would. */
    if (vp_isspace(*p)) return p;
    vp->skipLeadingSpace = 0;
  }
  if (vp->dataHandler == NULL) {
    /* Every value byte is dropped; only the line end matters. */
    const void* lf = memchr(p, '\n', (size_t)(end - p));
    return lf != NULL ? (const unsigned char*)lf : end;
  }
  switch (vp->encoding) {
    case VP_ENCODING_QUOTED_PRINTABLE: {
      const unsigned char* escape = NULL;
      if (vp->qpPending) return p;
      q = vp_qp_run(p, end, &escape);
      if (q == p || !vp_append_run(vp, p, (int)(q - p), end)) return p;
      if (escape != NULL) {
        /* Leave the record as the rules would after that escape. */
        memset(vp->quad, 0, sizeof vp->quad);
        vp->quad[0] = (char)escape[1];
        vp->quad[1] = (char)escape[2];
        vp->quadCount = 0;
      }
      return q;
    }
    case VP_ENCODING_BASE64:
      return p;
    default:
      q = vp_skip_text_words(p, end);
      while (q < end && !(kClass[*q] & VP_CLASS_LINE)) ++q;
      if (q == p || !vp_append_run(vp, p, (int)(q - p), end)) return p;
      return q;
  }
}

int CARD_Parse(VP* vp, const char* data, int length, int final) {
  const unsigned char* p = (const unsigned char*)data;
  const unsigned char* end = p;
  if (vp == NULL) return 0;
  if (data != NULL && length > 0) end = p + length;

  while (p < end) {
    unsigned char c = *p;
    if (vp->atLineStart) {
      if (c == '\n') {
        /* Empty LF lines are ignored, and so is the folding decision:
         * after "\r" (CRLF empty line) the next line continues. */
        /* Lenient reading: a soft break followed by an empty line was the
         * value's last line, and the next property must not join it. */
        if (vp->lenient) vp->qpPending = 0;
        ++p;
        continue;
      }
      if (!vp->isContinuation && vp_isspace(c)) {
        /* One leading white-space byte folds the line and is removed; a
         * CR here is the CR of an empty CRLF line. Lenient reading skips
         * that CR instead: Outlook and phones leave empty lines after
         * photos and between properties, and they separate, never fold. */
        if (c != '\r' || !vp->lenient) vp->isContinuation = 1;
        ++p;
        continue;
      }
      /* Only a property's first physical line is BASE64: phones put the
       * folded rest of a photo on continuation lines, and the caller
       * decodes that text itself. */
      if (vp->encoding == VP_ENCODING_BASE64) vp->encoding = VP_ENCODING_NONE;
      vp->atLineStart = 0;
      if (!vp->isContinuation) {
        /* The previous line ends only now that we know this one is not a
         * continuation of it. */
        if (!vp_process(vp, '\n')) return 0;
      } else if (vp->encoding == VP_ENCODING_QUOTED_PRINTABLE) {
        vp->qpPending = 0;
      }
    }
    if (c == '\n') {
      vp->atLineStart = 1;
      vp->isContinuation = 0;
      ++p;
      continue;
    }
    if (c == '\r') {
      /* Every state ignores a CR that does not begin a line; this is the
       * CR of each CRLF. */
      ++p;
      continue;
    }
    /* The per-byte rules are the reference; a run that they would only
     * append is copied at once. Runs stop at the end of each piece, so any
     * cut of the input still gives the same callbacks. The byte that ends
     * a run goes straight to the rules unless it ends the line. */
    if (vp->state == 5) {
      const unsigned char* next = vp_take_value_run(vp, p, end);
      if (next != p) {
        p = next;
        if (p == end) break;
        c = *p;
        if (kClass[c] & VP_CLASS_LINE) continue;
      }
    } else if (vp->state < 5 && kRunStop[vp->state] != 0) {
      const unsigned char stop = kRunStop[vp->state];
      const unsigned char* q = p;
      while (q < end && !(kClass[*q] & stop)) ++q;
      if (q != p && vp_append_run(vp, p, (int)(q - p), end)) {
        p = q;
        if (p == end) break;
        c = *p;
        if (kClass[c] & VP_CLASS_LINE) continue;
      }
    }
    if (!vp_process(vp, c)) return 0;
    ++p;
  }
  if (final && !vp_process(vp, '\n')) return 0;
  return 1;
}
