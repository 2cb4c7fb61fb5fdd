// Runs when Windows loads the library. The library does not need thread notifications, so they are disabled. Everything
// else is started by LxInterchangeInit.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    DisableThreadLibraryCalls(module);
    // The C++ runtime stays loaded for the life of the process: each time it is loaded, it allocates memory for
    // exceptions that it never frees.
    HMODULE runtime = nullptr;
    (void)GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN, L"libstdc++-6.dll", &runtime);
  }
  return TRUE;
}
