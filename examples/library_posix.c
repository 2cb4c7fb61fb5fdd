/* Loading libraries on POSIX systems. */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include "examples/library.h"

Library* OpenLibrary(const char* name) {
  char file[64];
  snprintf(file, sizeof file, "lib%s.so", name);
  void* library = dlopen(file, RTLD_NOW | RTLD_LOCAL);
  if (library == NULL) fprintf(stderr, "%s\n", dlerror());
  return library;
}

void CloseLibrary(Library* library) {
  dlclose(library);
}

Procedure FindProcedure(Library* library, const char* name, int ordinal) {
  (void)ordinal;
  void* address = dlsym(library, name);
  if (address == NULL) fprintf(stderr, "%s\n", dlerror());
  Procedure procedure;
  memcpy(&procedure, &address, sizeof procedure); /* C cannot cast an object pointer to a function pointer. */
  return procedure;
}

char** PathArguments(int* count, char** arguments) {
  (void)count;
  return arguments;
}
