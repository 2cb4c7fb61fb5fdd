// The two entry points of the library, ordinals 1 and 2.
#include "outside/xmp/boundary.h"

extern "C" std::uint32_t VeltoXMPOrdinal1(TALLookupProc lookup, std::uint32_t clientVersion, std::uint32_t* version) {
  if (version != nullptr) *version = velto::kToolkitVersion;
  // A client of a later major version may call procedures that do not exist here.
  if (clientVersion >> 24 > velto::kToolkitVersion >> 24) return 0;
  return velto::startToolkit(lookup) ? 1 : 0;
}

extern "C" std::uint32_t VeltoXMPOrdinal2() {
  velto::stopToolkit();
  return 1;
}
