// Counted errors: message, component and id in one block.
#include "outside/broker/errors.h"

#include <cstring>
#include <new>

#include "outside/broker/memory.h"

struct TALErrorRecord {
  std::uint32_t count;  // kForever: one of the core errors, which nobody frees.
  std::int32_t id;
  const char* message;  // Behind the record, as is the component.
  const char* component;
};

namespace {

constexpr std::uint32_t kForever = 0;

constinit TALErrorRecord coreErrors[] = {
    {kForever, static_cast<std::int32_t>(BrokerErrorId::kNoMemory), "Out of memory", "TAL"},
    {kForever, static_cast<std::int32_t>(BrokerErrorId::kInternal), "Internal error", "TAL"},
};
constinit std::uint32_t liveErrors = 0;

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
  ++liveErrors;
  return ::new (block) TALErrorRecord{1, id, texts, texts + messageSize};
}

void AddRef(TALErrorRef error) noexcept {
  if (error && error->count != kForever) ++error->count;
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
  return liveErrors;
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
  if (!error || error->count == kForever || --error->count != 0) return;
  --liveErrors;
  BrokerFree(error);
}

constinit const TALErrorProcs kErrorProcs = {
    GetCoreError, NewError, AddRef, ReleaseBrokerError, GetMessageText, GetComponent, GetId, GetLiveCount,
};
