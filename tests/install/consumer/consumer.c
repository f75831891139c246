/* The tokenizer from a C compiler, against the installed package. */
#include <phonepim/versit/vParser.h>

#include <stdio.h>
#include <string.h>

/* The callbacks write the line they saw back into userData (64 bytes). */
static void append(void* userData, const char* text, size_t length) {
  char* seen = (char*)userData;
  if (strlen(seen) + length < 64) strncat(seen, text, length);
}

static void on_property(void* userData, const char* name, char** params) {
  append(userData, name, strlen(name));
  for (; params[0] != NULL; params += 2) {
    append(userData, ";", 1);
    append(userData, params[0], strlen(params[0]));
    if (params[1] != NULL) {
      append(userData, "=", 1);
      append(userData, params[1], strlen(params[1]));
    }
  }
  append(userData, ":", 1);
}

static void on_data(void* userData, const char* data, int length) {
  append(userData, data == NULL ? "|" : data, data == NULL ? 1 : (size_t)length);
}

int main(void) {
  static const char text[] = "TEL;TYPE=CELL;PREF:123\r\n";
  char seen[64] = "";
  VP* parser = CARD_ParserCreate();
  if (parser == NULL) return 1;
  CARD_SetUserData(parser, seen);
  CARD_SetPropHandler(parser, on_property);
  CARD_SetDataHandler(parser, on_data);
  const int ok = CARD_Parse(parser, text, (int)strlen(text), 1);
  CARD_ParserFree(parser);
  if (ok != 1 || strcmp(seen, "TEL;TYPE=CELL;PREF:123|") != 0) return 2;
  puts("c consumer ok");
  return 0;
}
