/* The tokenizer's interface from a C compiler. */
#include <phonepim/versit/vParser.h>

#include <stdio.h>

int main(void) {
  puts("c consumer ok");
  return 0;
}
