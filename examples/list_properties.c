/* Lists everything in an image file's XMP object. The libraries LxBridge and LxHost are linked; nothing else is needed.
 *
 *   list_properties photo.jpg
 */
#include <lxbridge/lxbridge.h>
#include <lxbridge/xmp.h>
#include <stdio.h>

/* Prints a line for each node, indented by its depth; control characters in values are printed as spaces. */
static LxXmpNext list_node(void* user, const LxXmpNode* node) {
  size_t i;
  ++*(int*)user;
  if (node->depth == 0) {
    printf("%s\n", node->namespaceUri);
    return LX_XMP_GO_ON;
  }
  printf("%*s%s", 2 * (int)node->depth, "", node->options & LX_XMP_IS_QUALIFIER ? "?" : "");
  if (node->name[0] != '\0') {
    printf("%s:%s", node->prefix, node->name);
  } else {
    printf("-");
  }
  if (node->options & LX_XMP_ARRAY) {
    printf(node->options & LX_XMP_ALTERNATIVE ? " alt" : node->options & LX_XMP_ORDERED ? " seq" : " bag");
  } else if (!(node->options & LX_XMP_STRUCT)) {
    printf(" = ");
    for (i = 0; i < node->value.length; ++i) {
      const char c = node->value.bytes[i];
      putchar((unsigned char)c < ' ' || c == 0x7F ? ' ' : c);
    }
  }
  putchar('\n');
  return LX_XMP_GO_ON;
}

int main(int argc, char** argv) {
  LxInterchangeHandle file;
  LxXmpStatus status;
  int nodes = 0;
  if (argc != 2) {
    fputs("usage: list_properties FILE\n", stderr);
    return 2;
  }
  LxInterchangeInit();
  status = LxXmpStart();
  if (status == LX_XMP_OK) {
    file = LxInterchangeNew(argv[1]); /* Never null: a file that cannot be read gives an empty object. */
    status = LxXmpVisit(LxInterchangeGetXMP(file), NULL, NULL, list_node, &nodes);
    LxInterchangeDelete(file);
    LxXmpStop();
  }
  LxInterchangeTerm();
  if (status != LX_XMP_OK) fprintf(stderr, "list_properties: %s\n", LxXmpLastMessage());
  return status == LX_XMP_OK && nodes > 0 ? 0 : 1;
}
