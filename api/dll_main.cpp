// What the library does when Windows loads it: it has nothing to do for threads, so it is not told of them. Nothing is
// started here; that is LxInterchangeInit's.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    DisableThreadLibraryCalls(module);
    // The C++ runtime stays for the life of the process: each time it is loaded it takes memory for exceptions that it
    // never gives back.
    HMODULE runtime = nullptr;
    (void)GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN, L"libstdc++-6.dll", &runtime);
  }
  return TRUE;
}
