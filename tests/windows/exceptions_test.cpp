// A MinGW host in C++ with the shared runtime: lx_exceptions_test PHOTO DAMAGED. Whatever the library raises is caught
// here, and what it raises and catches inside ends nobody. Prints what failed; status 0 if nothing did.
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "api/include/lxbridge/lxbridge.h"
#include "clients/broker/broker_abi.h"
#include "clients/broker/tal_error.h"
#include "clients/xmp/xmp_abi.h"
#include "host/include/lxbridge/xmp.h"

namespace {

template <typename Exception, typename Function>
bool Raises(Function function, const char* message = nullptr) {
  try {
    function();
  } catch (const Exception& error) {
    if (message == nullptr || std::strcmp(error.what(), message) == 0) return true;
    std::printf("raised: %s\n", error.what());
  } catch (...) {
    std::printf("raised something else\n");
  }
  return false;
}

int PropertiesOf(const char* path) {
  int count = 0;
  const auto countNode = [](void* user, const LxXmpNode* node) {
    if (node->depth == 1) ++*static_cast<int*>(user);
    return LX_XMP_GO_ON;
  };
  const LxInterchangeHandle file = LxInterchangeNew(path);
  if (LxXmpVisit(LxInterchangeGetXMP(file), nullptr, nullptr, countNode, &count) != LX_XMP_OK) count = -1;
  LxInterchangeDelete(file);
  return count;
}

void Unregister(const char* interfaceName) {
  const TALProc found = TALOrdinal5()(kTALInterface, "TALUnregisterInterface", "TALUnregisterInterface");
  (void)reinterpret_cast<TALUnregisterInterfaceProc>(found)(interfaceName);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const auto create = [=] { LxInterchangeDelete(LxInterchangeNew(argv[1])); };
  int failures = 0;
  const auto expect = [&](bool holds, const char* what) {
    if (!holds) std::printf("not so: %s\n", what);
    failures += holds ? 0 : 1;
  };
  expect(Raises<std::logic_error>(create, "ZXMPMeta Client initialization failure"), "a library not started raises");
  expect(LxInterchangeInit() && LxXmpStart() == LX_XMP_OK, "the libraries start");
  expect(PropertiesOf(argv[1]) > 10, "the photograph is read");
  expect(PropertiesOf(argv[2]) > 10, "a photograph with a damaged packet is read");
  LxXmpStop();
  Unregister(kXMPMetaStaticInterface);
  expect(Raises<TAL_T_NMT::CTALError>(create), "a toolkit that lacks a procedure raises");
  LxInterchangeTerm();
  Unregister(kTALMemoryInterface);
  expect(Raises<TAL_T_NMT::CTALError>(LxInterchangeInit), "a broker without a memory interface raises");
  return failures == 0 ? 0 : 1;
}
