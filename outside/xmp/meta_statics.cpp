// "ZXMPMeta_StaticInterface": creating objects, and the namespaces shared by the process, which are the only ones an
// empty object knows.
#include <cstdint>
#include <memory>

#include "outside/xmp/boundary.h"
#include "outside/xmp/registry.h"

namespace velto {
namespace {

constinit thread_local ThreadTexts texts;

TALErrorRef newWithBuffer(const char* bytes, std::uint32_t length, XMPObjectRef* result) {
  return guarded([&] {
    *required(result, "the result pointer is null") = nullptr;
    const std::string_view packet = requiredBytes(bytes, length);
    auto instance = std::make_unique<Instance>();
    if (!packet.empty()) {
      PacketParser parser(instance->object);
      parser.feed(packet.data(), packet.size(), true);
    }
    *result = wrapInstance(std::move(instance));
  });
}

TALErrorRef newCopy(XMPObjectRef source, XMPObjectRef* result) {
  return guarded([&] {
    *required(result, "the result pointer is null") = nullptr;
    const Instance& original = instanceOf(source);
    auto instance = std::make_unique<Instance>();
    instance->object.copyFrom(original.object);
    *result = wrapInstance(std::move(instance));
  });
}

TALErrorRef registerNamespaceProc(const char* uri, const char* suggestedPrefix, XMPTextOut* registered) {
  return guarded([&] {
    required(uri, "the namespace is null");
    required(suggestedPrefix, "the prefix is null");
    giveText(texts, registered, registerNamespace(uri, suggestedPrefix));
  });
}

TALErrorRef getNamespacePrefix(const char* uri, XMPTextOut* prefix, std::uint8_t* found) {
  return guarded([&] {
    Storage storage;
    Namespaces shared(storage);
    const Namespace* known = shared.find(required(uri, "the namespace is null"));
    giveText(texts, prefix, known != nullptr ? known->prefix : std::string_view());
    giveAnswer(found, known != nullptr);
  });
}

TALErrorRef getNamespaceURI(const char* prefix, XMPTextOut* uri, std::uint8_t* found) {
  return guarded([&] {
    Storage storage;
    Namespaces shared(storage);
    const Namespace* known = shared.findPrefix(required(prefix, "the prefix is null"));
    giveText(texts, uri, known != nullptr ? known->uri : std::string_view());
    giveAnswer(found, known != nullptr);
  });
}

TALErrorRef unlockStatics(std::uint32_t options) {
  return guarded([&] {
    requireNoOptions(options);
    texts.unlock();
  });
}

}  // namespace

constinit const XMPMetaStatics kMetaStatics = {
    newWithBuffer,
    Unsupported<kXMPMetaStaticNames, 1>{},
    newCopy,
    Unsupported<kXMPMetaStaticNames, 3>{},
    Unsupported<kXMPMetaStaticNames, 4>{},
    registerNamespaceProc,
    Unsupported<kXMPMetaStaticNames, 6>{},
    getNamespacePrefix,
    getNamespaceURI,
    Unsupported<kXMPMetaStaticNames, 9>{},
    Unsupported<kXMPMetaStaticNames, 10>{},
    Unsupported<kXMPMetaStaticNames, 11>{},
    Unsupported<kXMPMetaStaticNames, 12>{},
    Unsupported<kXMPMetaStaticNames, 13>{},
    Unsupported<kXMPMetaStaticNames, 14>{},
    Unsupported<kXMPMetaStaticNames, 15>{},
    unlockStatics,
};

}  // namespace velto
