/* Loading libraries on Windows. */
#include <stdio.h>
#include <stdlib.h>
#include <windows.h>

#include <shellapi.h>

#include "examples/library.h"

Library* OpenLibrary(const char* name) {
  HMODULE library = LoadLibraryA(name);
  if (library == NULL) fprintf(stderr, "%s.dll cannot be loaded: error %lu\n", name, GetLastError());
  return (Library*)library;
}

void CloseLibrary(Library* library) {
  FreeLibrary((HMODULE)library);
}

Procedure FindProcedure(Library* library, const char* name, int ordinal) {
  FARPROC procedure = GetProcAddress((HMODULE)library, MAKEINTRESOURCEA(ordinal));
  if (procedure == NULL) fprintf(stderr, "there is no %s at ordinal %d\n", name, ordinal);
  return (Procedure)procedure;
}

static char* NewUtf8(const wchar_t* text) {
  int length = WideCharToMultiByte(CP_UTF8, 0, text, -1, NULL, 0, NULL, NULL);
  char* utf8 = length > 0 ? malloc((size_t)length) : NULL;
  if (utf8 != NULL) WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8, length, NULL, NULL);
  return utf8;
}

char** PathArguments(int* count, char** arguments) {
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), count);
  char** paths = wide == NULL ? NULL : calloc((size_t)*count + 1, sizeof *paths);
  if (paths == NULL) return arguments;
  int made = 0;
  while (made < *count && (paths[made] = NewUtf8(wide[made])) != NULL) ++made;
  LocalFree(wide);
  if (made == *count) return paths;
  while (made > 0) free(paths[--made]);
  free(paths);
  return arguments;
}
