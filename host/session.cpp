// The session's start and stop, the last failure, and the texts returned to each thread.
#include "host/session.h"

#include <pthread.h>

#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <string_view>

#include "clients/broker/broker_client.h"
#include "kit/base/utf8.h"

namespace lxhost {
namespace {

using TAL_T_NMT::CTALError;

static_assert(LX_XMP_VERSION == ((LX_VERSION_MAJOR << 16) | (LX_VERSION_MINOR << 8) | LX_VERSION_PATCH),
              "the public header is of another version");

// --- the last failure -----------------------------------------------------------------------------------------------

// Of fixed size, since running out of memory must be reported, too.
struct LastFailure {
  LxXmpStatus status;
  char message[512];
};
constinit thread_local LastFailure lastFailure = {LX_XMP_OK, ""};

// Control characters become blanks, bytes that are not UTF-8 question marks.
void KeepMessage(std::string_view message) noexcept {
  std::size_t length = 0;
  for (std::size_t at = 0; at < message.size();) {
    char32_t character = 0;
    const std::size_t taken = LxDecodeUtf8(message, at, &character);
    const bool isPlain = taken != 0 && !LxIsTerminalControl(character);
    const std::size_t put = isPlain ? taken : 1;
    if (length + put >= sizeof lastFailure.message) break;
    if (isPlain) {
      message.copy(lastFailure.message + length, put, at);
    } else {
      lastFailure.message[length] = taken != 0 ? ' ' : '?';
    }
    length += put;
    at += taken != 0 ? taken : 1;
  }
  lastFailure.message[length] = '\0';
}

LxXmpStatus FailBy(const CTALError& error) noexcept {
  const TALErrorProcs* procs = TAL_T_NMT::ErrorProcs();
  if (procs == nullptr) return Fail(LX_XMP_UNAVAILABLE, "the interface broker is stopped");
  if (error.Reference() == procs->getCoreError(0)) return Fail(LX_XMP_NO_MEMORY, error.what());
  // This is how the clients report a missing procedure; a missing method has a text but no component.
  if (*error.what() == '\0') return Fail(LX_XMP_UNAVAILABLE, "the broker or the XMP toolkit lacks a procedure");
  return Fail(*error.Component() == '\0' ? LX_XMP_UNAVAILABLE : LX_XMP_REFUSED, error.what());
}

// --- the session and the texts of its threads -----------------------------------------------------------------------

struct ThreadTexts : GivenTexts {
  ThreadTexts* next = nullptr;
};

std::mutex lock;  // Guards start and stop of sessions, and the list of texts.
constinit std::atomic<int> sessions = 0;
// Each thread's texts are found by a key of the thread library. An object with a destructor would keep the library in
// memory after the host unloads it.
constinit pthread_key_t textsKey{};
constinit ThreadTexts* allTexts = nullptr;

// Runs at a thread's end. If the last LxXmpStop came first, the texts are no longer in the list.
extern "C" void DropTexts(void* texts) {
  const std::lock_guard<std::mutex> guard(lock);
  for (ThreadTexts** link = &allTexts; *link != nullptr; link = &(*link)->next) {
    if (*link != texts) continue;
    ThreadTexts* dropped = *link;
    *link = dropped->next;
    delete dropped;
    return;
  }
}

LxXmpStatus StartClients() noexcept {
  LxXmpStatus status = LX_XMP_OK;
  try {
    const TALLookupProc lookup = TALOrdinal5();
    if (!TAL_T_NMT::StartBrokerClient(lookup)) {
      status = Fail(LX_XMP_UNAVAILABLE, "the interface broker did not start");
    } else if (!StartXMPClient(lookup)) {
      status = Fail(LX_XMP_UNAVAILABLE, "the XMP toolkit did not start");
    } else if (pthread_key_create(&textsKey, DropTexts) != 0) {
      StopXMPClient();
      status = Fail(LX_XMP_NO_MEMORY, "the system has no thread-specific keys left");
    }
  } catch (const std::bad_alloc&) {
    status = Fail(LX_XMP_NO_MEMORY, "out of memory");
  } catch (const std::exception& error) {
    status = Fail(LX_XMP_UNAVAILABLE, error.what());
  }
  // Only after the handlers: they still read the error, which belongs to the broker.
  if (status != LX_XMP_OK) TAL_T_NMT::ShutDownBrokerClient();
  return status;
}

}  // namespace

LxXmpStatus Fail(LxXmpStatus status, const char* message) noexcept {
  KeepMessage(message);
  lastFailure.status = status;
  return status;
}

LxXmpStatus FailByException() noexcept {
  try {
    throw;
  } catch (const CTALError& error) {
    return FailBy(error);
  } catch (const std::bad_alloc&) {
    return Fail(LX_XMP_NO_MEMORY, "out of memory");
  } catch (const std::exception& error) {
    return Fail(LX_XMP_UNAVAILABLE, error.what());
  } catch (...) {
    return Fail(LX_XMP_UNAVAILABLE, "the XMP toolkit's client failed");
  }
}

LxXmpStatus NullArgument() noexcept {
  return Fail(LX_XMP_BAD_ARGUMENT, "an argument is null");
}

bool IsStarted() noexcept {
  return sessions.load(std::memory_order_relaxed) > 0;
}

GivenTexts* TextsOfThread() noexcept {
  if (void* texts = pthread_getspecific(textsKey)) return static_cast<ThreadTexts*>(texts);
  auto* texts = new (std::nothrow) ThreadTexts();
  if (texts == nullptr || pthread_setspecific(textsKey, texts) != 0) {
    delete texts;
    return nullptr;
  }
  const std::lock_guard<std::mutex> guard(lock);
  texts->next = std::exchange(allTexts, texts);
  return texts;
}

void DropTextsOfThread() noexcept {
  void* texts = pthread_getspecific(textsKey);
  if (texts == nullptr) return;
  (void)pthread_setspecific(textsKey, nullptr);  // Needs no memory, since the thread has set the key before.
  DropTexts(texts);
}

}  // namespace lxhost

std::uint32_t LxXmpVersion() {
  return LX_XMP_VERSION;
}

LxXmpStatus LxXmpStart() {
  const std::lock_guard<std::mutex> guard(lxhost::lock);
  if (!lxhost::IsStarted()) {
    const LxXmpStatus status = lxhost::StartClients();
    if (status != LX_XMP_OK) return status;
  }
  ++lxhost::sessions;
  return LX_XMP_OK;
}

void LxXmpStop() {
  const std::lock_guard<std::mutex> guard(lxhost::lock);
  if (!lxhost::IsStarted() || --lxhost::sessions > 0) return;
  pthread_key_delete(lxhost::textsKey);
  while (lxhost::ThreadTexts* texts = lxhost::allTexts) {
    lxhost::allTexts = texts->next;
    delete texts;
  }
  StopXMPClient();
  TAL_T_NMT::ShutDownBrokerClient();
}

LxXmpStatus LxXmpLastError() {
  return lxhost::lastFailure.status;
}

const char* LxXmpLastMessage() {
  return lxhost::lastFailure.message;
}
