// "ZXMPMeta_StaticInterface": making objects, the namespace registry, facts about the toolkit.
#include <cstdint>
#include <memory>

#include "outside/xmp/boundary.h"
#include "outside/xmp/registry.h"

namespace velto {
namespace {

TextStore& texts() {
  static TextStore store;
  return store;
}

TALErrorRef newWithBuffer(const char* bytes, std::uint32_t length, XMPObjectRef* result) {
  return guarded([&] {
    *required(result, "there is no place for the new object") = nullptr;
    const std::string_view packet = requiredBytes(bytes, length);
    auto instance = std::make_unique<Instance>();
    if (!packet.empty()) {
      PacketParser parser;
      parser.feed(packet.data(), packet.size(), true);
      instance->object.merge(parser.result());
    }
    *result = wrapInstance(std::move(instance));
  });
}

TALErrorRef newEmpty(XMPObjectRef* result) {
  return guarded([&] {
    *required(result, "there is no place for the new object") = nullptr;
    *result = wrapInstance(std::make_unique<Instance>());
  });
}

TALErrorRef newCopy(XMPObjectRef source, XMPObjectRef* result) {
  return guarded([&] {
    *required(result, "there is no place for the new object") = nullptr;
    const Instance& original = instanceOf(source);
    auto instance = std::make_unique<Instance>();
    instance->object.copyFrom(original.object);
    *result = wrapInstance(std::move(instance));
  });
}

TALErrorRef getVersion(std::uint32_t* version) {
  return guarded([&] { give(version, kToolkitVersion); });
}

TALErrorRef getVersionText(XMPTextOut* text) {
  return guarded([&] { giveText(texts(), text, kToolkitVersionText); });
}

TALErrorRef registerNamespaceProc(const char* uri, const char* suggestedPrefix, XMPTextOut* registered) {
  return guarded([&] {
    required(uri, "the namespace is null");
    required(suggestedPrefix, "the prefix is null");
    giveText(texts(), registered, keepNamespace(uri, suggestedPrefix)->prefix);
  });
}

TALErrorRef deleteNamespaceProc(const char* uri) {
  return guarded([&] { deleteNamespace(required(uri, "the namespace is null")); });
}

TALErrorRef getNamespacePrefix(const char* uri, XMPTextOut* prefix, std::uint8_t* found) {
  return guarded([&] {
    const Namespace* known = findNamespace(required(uri, "the namespace is null"));
    giveText(texts(), prefix, known != nullptr ? std::string_view(known->prefix) : std::string_view());
    giveAnswer(found, known != nullptr);
  });
}

TALErrorRef getNamespaceURI(const char* prefix, XMPTextOut* uri, std::uint8_t* found) {
  return guarded([&] {
    const Namespace* known = findPrefix(required(prefix, "the prefix is null"));
    giveText(texts(), uri, known != nullptr ? std::string_view(known->uri) : std::string_view());
    giveAnswer(found, known != nullptr);
  });
}

TALErrorRef countNamespacesProc(std::uint32_t* count) {
  return guarded([&] { give(count, static_cast<std::uint32_t>(countNamespaces())); });
}

TALErrorRef getNamespaceAt(std::uint32_t index, XMPTextOut* uri, XMPTextOut* prefix) {
  return guarded([&] {
    const Namespace* known = namespaceAt(index);
    if (known == nullptr) throw ToolkitError(ErrorId::kBadIndex, "there are not so many namespaces");
    giveText(texts(), uri, known->uri);
    giveText(texts(), prefix, known->prefix);
  });
}

TALErrorRef getDepthLimit(std::uint32_t* limit) {
  return guarded([&] { give(limit, kDepthLimit); });
}

TALErrorRef getObjectKind(TALKindRef* kind) {
  return guarded([&] { give(kind, objectKind()); });
}

TALErrorRef countObjectsProc(std::uint32_t* count) {
  return guarded([&] { give(count, countObjects()); });
}

TALErrorRef isPacketProc(const char* bytes, std::uint32_t length, std::uint8_t* answer) {
  return guarded([&] { giveAnswer(answer, isPacket(requiredBytes(bytes, length))); });
}

TALErrorRef getErrorText(std::int32_t id, XMPTextOut* text) {
  return guarded([&] {
    const char* known = errorText(id);
    giveText(texts(), text, known != nullptr ? known : "unknown error");
  });
}

TALErrorRef unlockStatics(std::uint32_t options) {
  return guarded([&] {
    requireNoOptions(options);
    texts().unlock();
  });
}

}  // namespace

constinit const XMPMetaStatics kMetaStatics = {
    newWithBuffer,       newEmpty,           newCopy,
    getVersion,          getVersionText,     registerNamespaceProc,
    deleteNamespaceProc, getNamespacePrefix, getNamespaceURI,
    countNamespacesProc, getNamespaceAt,     getDepthLimit,
    getObjectKind,       countObjectsProc,   isPacketProc,
    getErrorText,        unlockStatics,
};

}  // namespace velto
