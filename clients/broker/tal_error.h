// The exception of the client layers: one error of the interface broker.
#ifndef LXBRIDGE_CLIENTS_BROKER_TAL_ERROR_H_
#define LXBRIDGE_CLIENTS_BROKER_TAL_ERROR_H_

#include <cstdint>
#include <exception>

#include "clients/broker/broker_abi.h"

namespace TAL_T_NMT {

// Holds a counted broker error, or none. Its texts belong to the broker and live as long as this object, so
// constructing and copying do not allocate. An object that outlives the broker client's shutdown keeps its texts but
// cannot release its reference: the broker is gone.
class CTALError : public std::exception {
 public:
  CTALError() noexcept = default;
  explicit CTALError(TALErrorRef adopted) noexcept;  // Takes over the reference; null: holds none.
  // A new error through the broker's "NewError". Without an error interface it holds none.
  CTALError(const char* message, const char* component, std::int32_t id) noexcept;
  CTALError(const CTALError& other) noexcept;
  CTALError& operator=(const CTALError& other) noexcept;
  ~CTALError() override;

  const char* what() const noexcept override { return message_; }  // The message; "" without an error.
  const char* Component() const noexcept;
  std::int32_t Id() const noexcept;
  TALErrorRef Reference() const noexcept { return error_; }  // Not passed to the caller.

 private:
  TALErrorRef error_ = nullptr;
  const char* message_ = "";
};

[[noreturn]] void ThrowError(TALErrorRef adopted);

// Checks the result of every call of a broker or toolkit procedure: raises it unless it is null.
inline void ThrowIfError(TALErrorRef adopted) {
  if (adopted) [[unlikely]]
    ThrowError(adopted);
}

}  // namespace TAL_T_NMT

#endif  // LXBRIDGE_CLIENTS_BROKER_TAL_ERROR_H_
