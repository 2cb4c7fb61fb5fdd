/* What a host that loads libraries at run time asks the system for. One implementation a system (library_posix.c,
 * library_windows.c), chosen by the build. Touches nothing of the tree. */
#ifndef LXBRIDGE_EXAMPLES_LIBRARY_H_
#define LXBRIDGE_EXAMPLES_LIBRARY_H_

typedef struct Library Library;
typedef void (*Procedure)(void);

/* "LxBridge" is LxBridge.dll, from the directory of the program, or libLxBridge.so, from where the program was built to
 * look. Null, after a line on standard error: it cannot be loaded. */
Library* OpenLibrary(const char* name);
void CloseLibrary(Library* library);

/* A procedure of a library: by its ordinal where libraries have ordinals, else by its name. Null, after a line on
 * standard error: there is none. */
Procedure FindProcedure(Library* library, const char* name, int ordinal);

/* The arguments of main() as the library takes paths: UTF-8. */
char** PathArguments(int* count, char** arguments);

#endif /* LXBRIDGE_EXAMPLES_LIBRARY_H_ */
