/* A host in C: the public header alone, and the five functions in their order. */
#include <lxbridge/lxbridge.h>

int main(void) {
  LxInterchangeHandle handle;
  CXMPMeta* xmp;
  bool same;

  if (!LxInterchangeInit()) return 1;
  handle = LxInterchangeNew("/nowhere/at/all.jpg");
  xmp = LxInterchangeGetXMP(handle);
  same = handle != 0 && xmp != 0 && LxInterchangeGetXMP(handle) == xmp;
  LxInterchangeDelete(handle);
  LxInterchangeTerm();
  return same ? 0 : 1;
}
