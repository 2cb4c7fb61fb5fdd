/* Reads each file the given number of times and serialises its XMP, in one process. Prints a line for each reading,
 * "file-number nanoseconds properties bytes". Times only reading and serialising. Uses only the public headers.
 *
 * lxbridge_files REPETITIONS FILE... */
#include <lxbridge/lxbridge.h>
#include <lxbridge/xmp.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

static long long Now(void) {
  struct timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * 1000000000LL + now.tv_nsec;
}

static LxXmpNext CountProperty(void* user, const LxXmpNode* node) {
  if (node->depth == 1) ++*(long*)user;
  return node->depth == 1 ? LX_XMP_PASS_OVER : LX_XMP_GO_ON;
}

int main(int argc, char** argv) {
  const int repetitions = argc > 2 ? atoi(argv[1]) : 0;
  if (repetitions < 1) return 2;
  LxInterchangeInit();
  if (LxXmpStart() != LX_XMP_OK) return 1;
  for (int i = 0; i < repetitions; ++i) {
    for (int file = 2; file < argc; ++file) {
      LxXmpText packet = {"", 0};
      long properties = 0;
      const long long begun = Now();
      LxInterchangeHandle handle = LxInterchangeNew(argv[file]);
      CXMPMeta* xmp = LxInterchangeGetXMP(handle);
      const LxXmpStatus status = LxXmpSerialize(xmp, 0, 0, &packet);
      const long long read = Now() - begun;
      if (status != LX_XMP_OK) return 1;
      const size_t length = packet.length;
      if (LxXmpVisit(xmp, NULL, NULL, CountProperty, &properties) != LX_XMP_OK) return 1;
      const long long freeing = Now();
      LxInterchangeDelete(handle);
      printf("%d %lld %ld %zu\n", file - 2, read + (Now() - freeing), properties, length);
    }
  }
  LxXmpStop();
  LxInterchangeTerm();
  return 0;
}
