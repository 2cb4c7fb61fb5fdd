/* System functions for a host that loads libraries at run time. Each system has one implementation (library_posix.c,
 * library_windows.c), chosen by the build. */
#ifndef LXBRIDGE_EXAMPLES_LIBRARY_H_
#define LXBRIDGE_EXAMPLES_LIBRARY_H_

typedef struct Library Library;
typedef void (*Procedure)(void);

/* "LxBridge" means LxBridge.dll in the program's directory, or libLxBridge.so on the program's search path. Null, after
 * a line on standard error: it cannot be loaded. */
Library* OpenLibrary(const char* name);
void CloseLibrary(Library* library);

/* A procedure of a library, by ordinal if libraries have ordinals, else by name. Null, after a line on standard error:
 * it does not exist. */
Procedure FindProcedure(Library* library, const char* name, int ordinal);

/* The arguments of main() in UTF-8, as the library expects paths. */
char** PathArguments(int* count, char** arguments);

#endif /* LXBRIDGE_EXAMPLES_LIBRARY_H_ */
