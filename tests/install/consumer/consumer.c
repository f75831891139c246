/* The tokenizer from a C compiler, against the installed package. */
#include <phonepim/versit/vParser.h>

#include <stdio.h>
#include <string.h>

struct c_record {
  int properties;
  int parametersOk;
  char data[16];
  int dataLength;
  int ends;
};

static void on_property(void* userData, const char* name, char** params) {
  struct c_record* record = (struct c_record*)userData;
  record->properties++;
  record->parametersOk = strcmp(name, "TEL") == 0 && params[0] != NULL && strcmp(params[0], "TYPE") == 0 &&
                         params[1] != NULL && strcmp(params[1], "CELL") == 0 && params[2] == NULL &&
                         params[3] == NULL;
}

static void on_data(void* userData, const char* data, int length) {
  struct c_record* record = (struct c_record*)userData;
  if (data == NULL) {
    record->ends++;
  } else if (length > 0 && record->dataLength + length <= (int)sizeof record->data) {
    memcpy(record->data + record->dataLength, data, (size_t)length);
    record->dataLength += length;
  }
}

int main(void) {
  static const char text[] = "TEL;TYPE=CELL:123\r\n";
  struct c_record record;
  VP* parser = CARD_ParserCreate();
  int ok;
  if (parser == NULL) return 1;
  memset(&record, 0, sizeof record);
  CARD_SetUserData(parser, &record);
  CARD_SetPropHandler(parser, on_property);
  CARD_SetDataHandler(parser, on_data);
  ok = CARD_Parse(parser, text, (int)strlen(text), 1);
  CARD_ParserFree(parser);
  if (ok != 1) return 2;
  if (record.properties != 1 || !record.parametersOk) return 3;
  if (record.dataLength != 3 || memcmp(record.data, "123", 3) != 0) return 4;
  if (record.ends != 1) return 5;
  puts("c consumer ok");
  return 0;
}
