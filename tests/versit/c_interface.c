/* The tokenizer's header compiled as C, as a C host would use it. */
#include <string.h>

#include "phonepim/versit/vParser.h"

static void on_property(void* userData, const char* name, char** params) {
  int* seen = (int*)userData;
  seen[0] += strcmp(name, "TEL") == 0 && strcmp(params[0], "TYPE") == 0 && strcmp(params[1], "CELL") == 0 &&
             params[2] == NULL && params[3] == NULL;
}

static void on_data(void* userData, const char* data, int length) {
  int* seen = (int*)userData;
  seen[data == NULL ? 2 : 1] += data == NULL || (length == 3 && memcmp(data, "123", 3) == 0);
}

int versit_c_interface_check(void);

/* 0 when "TEL;TYPE=CELL:123" comes back as one property with its value. */
int versit_c_interface_check(void) {
  static const char text[] = "TEL;TYPE=CELL:123\r\n";
  int seen[3] = {0, 0, 0};
  int ok;
  VP* parser = CARD_ParserCreate();
  if (parser == NULL) return 1;
  CARD_SetUserData(parser, seen);
  CARD_SetPropHandler(parser, on_property);
  CARD_SetDataHandler(parser, on_data);
  ok = CARD_Parse(parser, text, (int)strlen(text), 1);
  CARD_ParserFree(parser);
  return ok == 1 && seen[0] == 1 && seen[1] == 1 && seen[2] == 1 ? 0 : 2;
}
