// What the library does when Windows loads it: it has nothing to do for threads, so it is not told of them. Nothing is
// started here; that is LxInterchangeInit's.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(module);
  return TRUE;
}
