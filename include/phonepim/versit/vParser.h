/*
 * The versit tokenizer: a push parser for vCard 2.1 and vCalendar 1.0 text.
 *
 * It is fed raw bytes, in one call or many, unfolds folded lines, removes
 * quoted-printable soft line breaks (leaving "=XX" escapes for the caller),
 * decodes BASE64 on a property's first physical line, and reports each
 * property through two callbacks. Plain C; usable from a C compiler.
 *
 * Any split of the input into pieces gives exactly the callbacks that the
 * whole input gives in one call.
 */
#ifndef PHONEPIM_VERSIT_VPARSER_H
#define PHONEPIM_VERSIT_VPARSER_H

#ifdef __cplusplus
extern "C" {
#endif

/** The parser record; opaque. */
typedef struct VP VP;

/**
 * Property callback. `name` is the NUL-terminated property name. `params`
 * holds pointer pairs name0, value0, name1, value1, ... ended by a pair of
 * nulls; a bare parameter (";QUOTED-PRINTABLE") has a null value. Names and
 * values are only valid during the call: copy what you need.
 */
typedef void (*CARD_PropHandler)(void* userData, const char* name, char** params);

/**
 * Data callback. Called once with the value bytes (length > 0, not
 * terminated) when the value is not empty, then always once with (NULL, 0)
 * to end the property. The bytes are only valid during the call.
 */
typedef void (*CARD_DataHandler)(void* userData, const char* data, int length);

/** A new parser, or NULL when memory runs out. Free it with CARD_ParserFree. */
VP* CARD_ParserCreate(void);

/** Frees the parser and its buffers. NULL is allowed. */
void CARD_ParserFree(VP* parser);

void CARD_SetUserData(VP* parser, void* userData);
void* CARD_GetUserData(VP* parser);

/** Sets the callbacks; either may be NULL. */
void CARD_SetPropHandler(VP* parser, CARD_PropHandler handler);
void CARD_SetDataHandler(VP* parser, CARD_DataHandler handler);

/**
 * Lenient reading of real phone exports (off by default; set it before the
 * first byte). It changes these decisions, and no others:
 * - an empty line is only a line end, also in CRLF text (its CR does not
 *   fold the next line into the property before it), and a
 *   quoted-printable soft break followed by an empty line ends the value;
 * - a BASE64 value is not decoded here: its text arrives whole, however
 *   it is folded (DecodeBase64Text decodes it, white space and all);
 * - the property name and each parameter name (up to a '(' that opens a
 *   label) arrive in upper case, and the encoding words are recognised in
 *   any case, with "QUOTEDPRINTABLE" and "B" as Outlook and vCard 3
 *   exports write them.
 */
void CARD_SetLenient(VP* parser, int lenient);

/**
 * Feeds `length` bytes. With `final` non-zero a line end is processed after
 * the last byte, completing the last property. Returns 1 on success and 0
 * when the text is rejected (an empty parameter such as "TEL;:", an empty
 * parameter value "TEL;TYPE=:", a bad BASE64 group, memory exhausted); the
 * rest of the input is then not read and the parser should be freed.
 */
int CARD_Parse(VP* parser, const char* data, int length, int final);

#ifdef __cplusplus
}
#endif

#endif /* PHONEPIM_VERSIT_VPARSER_H */
