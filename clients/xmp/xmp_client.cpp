// Starts and stops the toolkit: the only file that calls its ordinals.
#include "clients/xmp/xmp_client.h"

bool StartXMPClient(TALLookupProc lookup) noexcept {
  std::uint32_t toolkitVersion = 0;  // Procedure names tell what a toolkit can do, so its version is not used.
  return VeltoXMPOrdinal1(lookup, kXMPClientVersion, &toolkitVersion) != 0;
}

void StopXMPClient() noexcept {
  (void)VeltoXMPOrdinal2();
}
