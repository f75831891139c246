/*
 * The versit tokenizer. Bytes go in one at a time through a small state
 * machine (property name, parameters, value); everything it needs to carry
 * between calls lives in the VP record, so the caller may cut the input
 * anywhere and still get exactly the callbacks of the whole text.
 *
 * The machine is byte-driven on purpose: phones fold lines, leave blank
 * lines in odd places and break quoted-printable values wherever they like,
 * and one rule per byte keeps all of those cases in one place. The only
 * shortcut is the bulk copy of plain value runs in CARD_Parse, which appends
 * exactly what the per-byte rules would append.
 */
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "versit/vParserInternal.h"

/* Byte classes. Our own table: the C library's isspace depends on the
 * locale, and the versit white-space set must not. */
enum {
  VP_CLASS_SPACE = 1,    /* space, \t, \n, \v, \f, \r */
  VP_CLASS_STOP_TEXT = 2, /* ends a plain value run: LF, CR */
  VP_CLASS_STOP_QP = 4    /* ends a quoted-printable value run: LF, CR, '=' */
};

static const unsigned char kClass[256] = {
    [' '] = VP_CLASS_SPACE,
    ['\t'] = VP_CLASS_SPACE,
    ['\n'] = VP_CLASS_SPACE | VP_CLASS_STOP_TEXT | VP_CLASS_STOP_QP,
    ['\v'] = VP_CLASS_SPACE,
    ['\f'] = VP_CLASS_SPACE,
    ['\r'] = VP_CLASS_SPACE | VP_CLASS_STOP_TEXT | VP_CLASS_STOP_QP,
    ['='] = VP_CLASS_STOP_QP,
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
  size_t pairs = (size_t)vp->paramCount + 1;
  char** grown;
  if (pairs > SIZE_MAX / (2 * sizeof(char*))) {
    grown = NULL;
  } else {
    grown = (char**)realloc(vp->params, pairs * 2 * sizeof(char*));
  }
  if (grown == NULL) {
    free(vp->params);
    vp->params = NULL;
    vp->paramCount = 0;
    return 0;
  }
  vp->params = grown;
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
  const char* text = strcmp(name, "ENCODING") == 0 ? value : name;
  if (text == NULL) return;
  if (strcmp(text, "QUOTED-PRINTABLE") == 0) {
    vp->encoding = VP_ENCODING_QUOTED_PRINTABLE;
  } else if (strcmp(text, "BASE64") == 0) {
    vp->encoding = VP_ENCODING_BASE64;
  } else if (strcmp(text, "8BIT") == 0) {
    vp->encoding = VP_ENCODING_8BIT;
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
      vp_note_encoding(vp, pair[0], pair[1]);
    }
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

int vcard_process_char(VP* vp, char ch) {
  unsigned char c = (unsigned char)ch;
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

VP* CARD_ParserCreate(void) {
  VP* vp = (VP*)calloc(1, sizeof *vp);
  if (vp == NULL) return NULL;
  vp->atLineStart = 1;
  vp->isContinuation = 0;
  vcard_clear_line(vp);
  return vp;
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

/* Appends a run of plain value bytes in one copy. The buffer grows once, to
 * the capacity the byte-by-byte rule would have reached. When that is not
 * possible the bytes go one by one, so the limits behave exactly as there. */
static void vp_append_run(VP* vp, const unsigned char* run, int n) {
  long long needed = (long long)vp->lineLength + n;
  int i;
  if (needed <= vp->lineCapacity || vp_grow_line(vp, needed)) {
    memcpy(vp->line + vp->lineLength, run, (size_t)n);
    vp->lineLength += n;
    return;
  }
  for (i = 0; i < n; ++i) vcard_add_char_to_line(vp, (char)run[i]);
}

/* Length of the run at p..end that the value rules would simply append (or
 * drop, with no data callback), or 0 when p's byte needs the per-byte
 * rules. Only valid in state 5 after the leading white space. */
static int vp_plain_run(const VP* vp, const unsigned char* p, const unsigned char* end) {
  const unsigned char* q = p;
  unsigned char stop;
  if (vp->dataHandler == NULL) {
    /* Every value byte is dropped; only the line end matters. */
    const void* lf = memchr(p, '\n', (size_t)(end - p));
    return (int)((lf != NULL ? (const unsigned char*)lf : end) - p);
  }
  if (vp->encoding == VP_ENCODING_NONE || vp->encoding == VP_ENCODING_8BIT) {
    stop = VP_CLASS_STOP_TEXT;
  } else if (vp->encoding == VP_ENCODING_QUOTED_PRINTABLE && !vp->qpPending) {
    stop = VP_CLASS_STOP_QP;
  } else {
    return 0;
  }
  while (q < end && !(kClass[*q] & stop)) ++q;
  return (int)(q - p);
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
        ++p;
        continue;
      }
      if (!vp->isContinuation && vp_isspace(c)) {
        /* One leading white-space byte folds the line and is removed; a
         * CR here is the CR of an empty CRLF line. */
        vp->isContinuation = 1;
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
        if (!vcard_process_char(vp, '\n')) return 0;
      } else if (vp->encoding == VP_ENCODING_QUOTED_PRINTABLE) {
        vp->qpPending = 0;
      }
    }
    if (vp->state == 5 && !vp->skipLeadingSpace) {
      int run = vp_plain_run(vp, p, end);
      if (run > 0) {
        if (vp->dataHandler != NULL) vp_append_run(vp, p, run);
        p += run;
        continue;
      }
    }
    if (c == '\n') {
      vp->atLineStart = 1;
      vp->isContinuation = 0;
    } else if (!vcard_process_char(vp, (char)c)) {
      return 0;
    }
    ++p;
  }
  if (final && !vcard_process_char(vp, '\n')) return 0;
  return 1;
}
