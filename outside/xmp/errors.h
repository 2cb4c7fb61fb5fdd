// The errors of the toolkit. They are raised as exceptions inside it; at its boundary each becomes a broker error
// reference with the same message and id.
#ifndef LXBRIDGE_OUTSIDE_XMP_ERRORS_H_
#define LXBRIDGE_OUTSIDE_XMP_ERRORS_H_

#include <cstdint>
#include <stdexcept>
#include <string>

namespace velto {

// The ids of error references. Clients may store them, so a number never changes its meaning.
enum class ErrorId : std::int32_t {
  kInternal = 1,
  kNotStarted = 2,
  kBadObject = 3,     // Not a toolkit object, or a deleted one.
  kBadParameter = 4,  // A null or invalid argument.
  kBadSchema = 5,     // A namespace that is not registered, or an invalid URI.
  kBadName = 6,       // Not an XML name.
  kBadPath = 7,       // Not a path.
  kBadIndex = 8,      // An array index outside the array.
  kBadOptions = 9,    // Option bits that contradict each other or do not fit the operation.
  kBadForm = 10,      // The property has another form than the operation needs.
  kBadValue = 11,     // A text that is not of the requested type.
  kBadDate = 12,      // Date fields or a date text that denote no instant.
  kTooDeep = 13,      // Nested deeper than the limit.
  kBadXML = 14,       // The packet is not well-formed, or has a document type.
  kBadRDF = 15,       // The packet is well-formed, but not the RDF that XMP allows.
  kTooLong = 17,      // A packet that exceeds its exact length, or a text longer than 32 bits can count.
  kBadLanguage = 19,  // Not a language tag.
  kNotThere = 20,     // The operation needs a property that does not exist.
  kNotSupported = 21,
};

class ToolkitError : public std::runtime_error {
 public:
  ToolkitError(ErrorId id, const std::string& message) : std::runtime_error(message), id_(id) {}
  ErrorId id() const noexcept { return id_; }

 private:
  ErrorId id_;
};

}  // namespace velto

#endif  // LXBRIDGE_OUTSIDE_XMP_ERRORS_H_
