// Shared by the fault sweeps: one file through the whole pipeline, from its path to its packet.
#ifndef LXBRIDGE_TESTS_FAULTS_WHOLE_PIPELINE_H_
#define LXBRIDGE_TESTS_FAULTS_WHOLE_PIPELINE_H_

#include <new>
#include <stdexcept>
#include <string>

#include "api/interchange.h"
#include "clients/broker/broker_client.h"
#include "clients/xmp/xmp_client.h"
#include "kit/base/memory.h"
#include "tests/support/broker_procs.h"
#include "tests/support/rich_files.h"

namespace lxtest {

inline const BrokerProcs& RealBroker() {
  static const BrokerProcs broker(TALOrdinal5());
  return broker;
}

// The objects that live in the broker; compared before and after.
struct Living {
  std::uint32_t containers = RealBroker().containers.getLiveCount();
  std::uint32_t errors = RealBroker().errors.getLiveCount();
  bool operator==(const Living&) const = default;
};

// The clients, started with that lookup procedure; a failed start is left to what comes after, as the library does.
class Clients {
 public:
  explicit Clients(TALLookupProc lookup = TALOrdinal5()) {
    if (LxInstalledMemProcs() == nullptr) LxInstallMemProcs(LxRuntimeMemProcs());
    try {
      (void)TAL_T_NMT::StartBrokerClient(lookup);
    } catch (const TAL_T_NMT::CTALError& error) {
      startError_ = error.what();
    }
    (void)StartXMPClient(lookup);
  }
  ~Clients() {
    StopXMPClient();
    TAL_T_NMT::ShutDownBrokerClient();
  }
  Clients(const Clients&) = delete;
  Clients& operator=(const Clients&) = delete;
  [[nodiscard]] const std::string& startError() const { return startError_; }

 private:
  std::string startError_;
};

enum class Outcome { kImported, kNoMemory, kRefused, kNotStarted };

// How the action ends. Other exceptions leave it.
template <typename Action>
Outcome OutcomeOf(Action action) {
  try {
    action();
    return Outcome::kImported;
  } catch (const std::bad_alloc&) {
    return Outcome::kNoMemory;
  } catch (const TAL_T_NMT::CTALError&) {
    return Outcome::kRefused;
  } catch (const std::logic_error&) {
    return Outcome::kNotStarted;
  }
}
// Imports the file and drops the result.
template <typename Look>
Outcome Import(const std::string& path, Look look) {
  return OutcomeOf([&] {
    LxInterchange interchange(path.c_str());
    look(interchange);
  });
}
inline Outcome Import(const std::string& path) {
  return Import(path, [](LxInterchange&) {});
}

// The packet of an imported file. The clients must be started.
inline std::string PacketOf(LxInterchange& interchange) {
  const CXMPMeta& meta = *interchange.Xmp().Meta();
  XMPTextOut packet = {};
  const std::string error =
      RealBroker().Take(meta.Methods().serializeToBuffer(meta.Object(), &packet, 0, 0, nullptr, nullptr, 0));
  return error.empty() ? std::string(packet.text, packet.length) : "error: " + error;
}
inline std::string PacketOf(const std::string& path) {
  LxInterchange interchange(path.c_str());
  return PacketOf(interchange);
}

}  // namespace lxtest

#endif  // LXBRIDGE_TESTS_FAULTS_WHOLE_PIPELINE_H_
