// The session of the host's client, and shared parts of this folder's files: failures, the last message and the texts
// returned to the host. Guarded() catches everything that the clients raise.
#ifndef LXBRIDGE_HOST_SESSION_H_
#define LXBRIDGE_HOST_SESSION_H_

#include <new>
#include <string>
#include <utility>

#include "clients/broker/tal_error.h"
#include "clients/xmp/xmp_client.h"
#include "clients/xmp/xmp_meta.h"
#include "clients/xmp/xmp_text.h"
#include "host/include/lxbridge/xmp.h"

namespace lxhost {

using TAL_T_NMT::ThrowIfError;

// Stores the failure as the thread's last one and returns its status.
LxXmpStatus Fail(LxXmpStatus status, const char* message) noexcept;
// The same for the exception being handled.
LxXmpStatus FailByException() noexcept;
LxXmpStatus NullArgument() noexcept;

bool IsStarted() noexcept;

// The texts returned by one call. They belong to the thread and are freed at its end or with the session.
struct GivenTexts {
  std::string first;
  std::string second;
};
// The calling thread's texts. Null: no memory.
GivenTexts* TextsOfThread() noexcept;
// REQUIRES: a session.
void DropTextsOfThread() noexcept;

template <typename Work>
LxXmpStatus Guarded(Work&& work) noexcept {
  if (!IsStarted()) return Fail(LX_XMP_NO_SESSION, "there is no session: call LxXmpStart first");
  try {
    return std::forward<Work>(work)();
  } catch (...) {
    return FailByException();
  }
}

// Calls work(methods, object). The methods are looked up for each call, since they change with the broker's interfaces.
template <typename Work>
LxXmpStatus OnObject(const CXMPMeta* xmp, bool argumentsThere, Work&& work) noexcept {
  return Guarded([&] {
    if (xmp == nullptr || !argumentsThere) return NullArgument();
    const XMPObjectRef object = xmp->Object();
    if (object == nullptr) return Fail(LX_XMP_BAD_ARGUMENT, "the XMP object has no toolkit object");
    return work(XMPMethodsOf(object), object);
  });
}

// Calls change(methods, object), which returns the toolkit's error or null.
template <typename Changer>
LxXmpStatus Change(CXMPMeta* xmp, bool argumentsThere, Changer change) noexcept {
  return OnObject(xmp, argumentsThere, [&](const XMPMetaMethods& methods, XMPObjectRef object) {
    ThrowIfError(change(methods, object));
    return LX_XMP_OK;
  });
}

// Copies the toolkit's text for the host and unlocks it. `place` is an index of the thread's texts.
template <typename Unlock>
void Give(std::string GivenTexts::*place, const XMPTextOut& text, LxXmpText* out, Unlock unlock) {
  constexpr std::size_t kKeptCapacity = std::size_t{1} << 20;  // Longer texts are not kept for reuse.
  GivenTexts* texts = TextsOfThread();
  if (texts == nullptr) {
    const TAL_T_NMT::CTALError dropped(unlock());  // The first failure is the one reported.
    throw std::bad_alloc();
  }
  std::string& kept = texts->*place;
  if (kept.capacity() > kKeptCapacity) kept = std::string();
  TakeText(text, &kept, unlock);
  *out = {kept.c_str(), kept.size()};
}

}  // namespace lxhost

#endif  // LXBRIDGE_HOST_SESSION_H_
