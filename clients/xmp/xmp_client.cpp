// Start and stop of the toolkit: the only file that calls its ordinals.
#include "clients/xmp/xmp_client.h"

bool StartXMPClient(TALLookupProc lookup) noexcept {
  std::uint32_t toolkitVersion = 0;  // The boundary's names say what a toolkit can do; nothing depends on its version.
  return VeltoXMPOrdinal1(lookup, kXMPClientVersion, &toolkitVersion) != 0;
}

void StopXMPClient() noexcept {
  (void)VeltoXMPOrdinal2();
}
