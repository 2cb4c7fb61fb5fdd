// Reference-counted errors: message, component and id in one block.
#include "outside/broker/errors.h"

#include <atomic>
#include <cstring>
#include <new>

#include "outside/broker/memory.h"

struct TALErrorRecord {
  std::atomic<std::uint32_t> count;  // kForever: a core error, which is never freed.
  std::int32_t id;
  const char* message;  // After the record, followed by the component.
  const char* component;
};

namespace {

constexpr std::uint32_t kForever = 0;

constinit TALErrorRecord coreErrors[] = {
    {kForever, static_cast<std::int32_t>(BrokerErrorId::kNoMemory), "Out of memory", "TAL"},
    {kForever, static_cast<std::int32_t>(BrokerErrorId::kInternal), "Internal error", "TAL"},
};
constinit std::atomic<std::uint32_t> liveErrors{0};

// Also true for null, which needs no counting.
bool IsForever(TALErrorRef error) noexcept {
  return !error || error->count.load(std::memory_order_relaxed) == kForever;
}

TALErrorRef GetCoreError(std::uint32_t index) noexcept {
  return index < sizeof coreErrors / sizeof coreErrors[0] ? &coreErrors[index] : nullptr;
}

TALErrorRef NewError(const char* message, const char* component, std::int32_t id) noexcept {
  const std::size_t messageSize = message ? std::strlen(message) + 1 : 1;
  const std::size_t componentSize = component ? std::strlen(component) + 1 : 1;
  void* block = BrokerAlloc(sizeof(TALErrorRecord) + messageSize + componentSize);
  if (!block) return OutOfMemoryError();
  char* texts = static_cast<char*>(block) + sizeof(TALErrorRecord);
  std::memcpy(texts, message ? message : "", messageSize);
  std::memcpy(texts + messageSize, component ? component : "", componentSize);
  liveErrors.fetch_add(1, std::memory_order_relaxed);
  return ::new (block) TALErrorRecord{1, id, texts, texts + messageSize};
}

void AddRef(TALErrorRef error) noexcept {
  if (!IsForever(error)) error->count.fetch_add(1, std::memory_order_relaxed);
}

const char* GetMessageText(TALErrorRef error) noexcept {
  return error ? error->message : "";
}

const char* GetComponent(TALErrorRef error) noexcept {
  return error ? error->component : "";
}

std::int32_t GetId(TALErrorRef error) noexcept {
  return error ? error->id : 0;
}

std::uint32_t GetLiveCount() noexcept {
  return liveErrors.load(std::memory_order_relaxed);
}

}  // namespace

TALErrorRef OutOfMemoryError() noexcept {
  return &coreErrors[0];
}

TALErrorRef NewBrokerError(BrokerErrorId id) noexcept {
  const char* message = "Internal error";
  switch (id) {
    case BrokerErrorId::kNoMemory:
      return &coreErrors[0];
    case BrokerErrorId::kInternal:
      return &coreErrors[1];
    case BrokerErrorId::kNullArgument:
      message = "Null argument";
      break;
    case BrokerErrorId::kAlreadyRegistered:
      message = "Already registered";
      break;
    case BrokerErrorId::kNotRegistered:
      message = "Not registered";
      break;
    case BrokerErrorId::kStillInUse:
      message = "Still in use";
      break;
  }
  return NewError(message, "TAL", static_cast<std::int32_t>(id));
}

void ReleaseBrokerError(TALErrorRef error) noexcept {
  if (IsForever(error) || error->count.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
  liveErrors.fetch_sub(1, std::memory_order_relaxed);
  BrokerFree(error);
}

constinit const TALErrorProcs kErrorProcs = {
    GetCoreError, NewError, AddRef, ReleaseBrokerError, GetMessageText, GetComponent, GetId, GetLiveCount,
};
