// Shared by the targets that create XMP objects: the toolkit for the duration of one input, and the invariants of every
// object.
#ifndef LXBRIDGE_FUZZ_TOOLKIT_CHECKS_H_
#define LXBRIDGE_FUZZ_TOOLKIT_CHECKS_H_

#include <cstring>

#include "clients/broker/broker_client.h"
#include "clients/xmp/xmp_client.h"
#include "clients/xmp/xmp_meta.h"
#include "fuzz/fuzz_target.h"
#include "tests/support/broker_procs.h"

namespace lxfuzz {

// The maximum depth of a node of any object; a schema has depth 0. The data model's own limit is lower.
inline constexpr std::uint32_t kDeepestNode = 64;

inline const BrokerProcs& Broker() {
  static const BrokerProcs broker(TALOrdinal5());
  return broker;
}

// Starts the broker client and the toolkit, stops them in its destructor, and requires that nothing is left in the
// broker. Created for each input, so that starting is tested, too.
class ToolkitSession {
 public:
  ToolkitSession() {
    Require(TAL_T_NMT::StartBrokerClient(TALOrdinal5()) && StartXMPClient(TALOrdinal5()), "a start");
    errors_ = Broker().errors.getLiveCount();
    containers_ = Broker().containers.getLiveCount();
  }
  ~ToolkitSession() {
    Require(Broker().errors.getLiveCount() == errors_, "no error is left");
    Require(Broker().containers.getLiveCount() == containers_, "no object is left");
    StopXMPClient();
    TAL_T_NMT::ShutDownBrokerClient();
  }
  ToolkitSession(const ToolkitSession&) = delete;
  ToolkitSession& operator=(const ToolkitSession&) = delete;

 private:
  std::uint32_t errors_;
  std::uint32_t containers_;
};

// Whether the call succeeded; the error is released.
inline bool Succeeds(TALErrorRef error) {
  TAL_T_NMT::ReleaseError(error);
  return error == nullptr;
}
inline void RequireSuccess(TALErrorRef error, const char* what) {
  const std::string message = Broker().Take(error);
  if (error != nullptr) Fail(what, message);
}

inline std::string Serialized(const CXMPMeta& meta, std::uint32_t options) {
  XMPTextOut packet = {};
  RequireSuccess(meta.Methods().serializeToBuffer(meta.Object(), &packet, options, 0, nullptr, nullptr, 0),
                 "an object is serialised");
  Require(packet.text != nullptr && std::strlen(packet.text) == packet.length, "a text without zero bytes");
  std::string text(packet.text, packet.length);
  (void)Succeeds(meta.Methods().unlockObject(meta.Object(), 0));
  return text;
}

inline std::uint32_t VisitNode(void* user, const XMPVisitedNode* node) {
  ++*static_cast<std::size_t*>(user);
  Require(node->depth <= kDeepestNode, "nesting within the limit");
  Require(node->schema != nullptr && node->prefix != nullptr && node->name != nullptr, "a node has its names");
  Require(node->value.length == 0 || std::strlen(node->value.text) == node->value.length, "a value without zero bytes");
  return 0;
}

// Checks that the walk ends, and that the object's packet reads back as an equal object.
inline void RequireSound(const CXMPMeta& meta, std::uint32_t options) {
  std::size_t nodes = 0;
  RequireSuccess(meta.Methods().visitNodes(meta.Object(), nullptr, nullptr, VisitNode, &nodes), "a visit");
  const std::string packet = Serialized(meta, options);
  const CXMPMeta again;
  RequireSuccess(
      again.Methods().parseFromBuffer(again.Object(), packet.data(), static_cast<std::uint32_t>(packet.size()), 0),
      "a packet of the toolkit's own is parsed");
  std::uint8_t equal = 0;
  RequireSuccess(XMPUtilsTable().compareObjects(meta.Object(), again.Object(), &equal), "a comparison");
  if (equal == 0) Fail("what was serialised reads back equal", "\n" + packet + "\n" + Serialized(again, options));
}

}  // namespace lxfuzz

#endif  // LXBRIDGE_FUZZ_TOOLKIT_CHECKS_H_
