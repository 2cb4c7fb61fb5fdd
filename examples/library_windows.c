/* Loading libraries on Windows. Touches nothing of the tree. */
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

char** PathArguments(int* count, char** arguments) {
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), count);
  char** paths = wide == NULL ? NULL : calloc((size_t)*count + 1, sizeof *paths);
  if (paths == NULL) return arguments;
  for (int i = 0; i < *count; ++i) {
    int length = WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, NULL, 0, NULL, NULL);
    paths[i] = malloc((size_t)length + 1);
    if (paths[i] == NULL) return arguments;
    WideCharToMultiByte(CP_UTF8, 0, wide[i], -1, paths[i], length, NULL, NULL);
  }
  LocalFree(wide);
  return paths;
}
