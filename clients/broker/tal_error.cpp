// The exception of the client layers.
#include "clients/broker/tal_error.h"

#include <utility>

#include "clients/broker/broker_client.h"

namespace TAL_T_NMT {

namespace {

TALErrorRef NewError(const char* message, const char* component, std::int32_t id) noexcept {
  const TALErrorProcs* procs = ErrorProcs();
  return procs ? procs->newError(message, component, id) : nullptr;
}

}  // namespace

CTALError::CTALError(TALErrorRef adopted) noexcept : error_(adopted) {
  const TALErrorProcs* procs = adopted ? ErrorProcs() : nullptr;
  const char* message = procs ? procs->getMessageText(adopted) : nullptr;
  if (message) message_ = message;
}

CTALError::CTALError(const char* message, const char* component, std::int32_t id) noexcept
    : CTALError(NewError(message, component, id)) {}

CTALError::CTALError(const CTALError& other) noexcept
    : std::exception(other), error_(other.error_), message_(other.message_) {
  if (!error_) return;
  if (const TALErrorProcs* procs = ErrorProcs()) {
    procs->addRef(error_);
  } else {
    // Without a reference of its own, this copy must not release one or rely on the other's text.
    error_ = nullptr;
    message_ = "";
  }
}

CTALError& CTALError::operator=(const CTALError& other) noexcept {
  CTALError copy(other);
  std::swap(error_, copy.error_);
  std::swap(message_, copy.message_);
  return *this;
}

CTALError::~CTALError() {
  ReleaseError(error_);
}

const char* CTALError::Component() const noexcept {
  const TALErrorProcs* procs = error_ ? ErrorProcs() : nullptr;
  const char* component = procs ? procs->getComponent(error_) : nullptr;
  return component ? component : "";
}

std::int32_t CTALError::Id() const noexcept {
  const TALErrorProcs* procs = error_ ? ErrorProcs() : nullptr;
  return procs ? procs->getId(error_) : 0;
}

void ThrowError(TALErrorRef adopted) {
  throw CTALError(adopted);
}

}  // namespace TAL_T_NMT
