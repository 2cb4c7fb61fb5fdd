// The five exported functions, with the library's start and stop.
#include <memory>
#include <string>

#include "api/host_interface.h"
#include "api/include/lxbridge/lxbridge.h"
#include "api/interchange.h"
#include "clients/broker/broker_client.h"
#include "clients/xmp/xmp_client.h"
#include "kit/base/kept_memory.h"
#include "kit/base/memory.h"

namespace {

bool initialised = false;
bool kitInitialised = false;  // Never cleared: blocks of the kit may outlive LxInterchangeTerm.

void InitKit() noexcept {
  if (kitInitialised) return;
  LxInstallMemProcs(LxRuntimeMemProcs());
  kitInitialised = true;
}

}  // namespace

bool LxInterchangeInit() {
  if (initialised) return true;
  (void)TAL_T_NMT::StartBrokerClient(TALOrdinal5());
  const TALLookupProc lookup = TALOrdinal5();
  (void)StartXMPClient(lookup);
  InitKit();
  LxStartKeepingMemory();
  RegisterHostInterface(lookup);
  initialised = true;
  return true;
}

void LxInterchangeTerm() {
  if (!initialised) return;
  UnregisterHostInterface();
  StopXMPClient();
  TAL_T_NMT::ShutDownBrokerClient();
  initialised = false;
  LxStopKeepingMemory();
}

LxInterchangeHandle LxInterchangeNew(const char* path) {
  const std::string copy(path);
  auto cell = std::make_unique<LxInterchangeCell>();
  cell->interchange = std::make_unique<LxInterchange>(copy.c_str());
  return cell.release();
}

CXMPMeta* LxInterchangeGetXMP(LxInterchangeHandle handle) {
  return handle->interchange->Xmp().Meta();
}

void LxInterchangeDelete(LxInterchangeHandle handle) {
  delete handle;
}
