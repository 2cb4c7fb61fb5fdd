// The errors of the toolkit. They are raised inside it and stop at its boundary, where each becomes a
// broker error reference with the same message and id.
#ifndef LXBRIDGE_OUTSIDE_XMP_ERRORS_H_
#define LXBRIDGE_OUTSIDE_XMP_ERRORS_H_

#include <cstdint>
#include <stdexcept>
#include <string>

namespace velto {

// The ids of error references. Clients may keep them, so a number never changes its meaning.
enum class ErrorId : std::int32_t {
  kInternal = 1,
  kNotStarted = 2,
  kBadObject = 3,     // No toolkit object, or one that is no more.
  kBadParameter = 4,  // A null or senseless argument.
  kBadSchema = 5,     // A namespace that is not registered, or no namespace at all.
  kBadName = 6,       // Not an XML name.
  kBadPath = 7,       // Not a path.
  kBadIndex = 8,      // An array index outside the array.
  kBadOptions = 9,    // Option bits that contradict each other or the operation.
  kBadForm = 10,      // The property is of another form than the operation needs.
  kBadValue = 11,     // A text that is not of the type asked for.
  kBadDate = 12,      // Date fields or a date text that name no instant.
  kTooDeep = 13,      // Nested deeper than the limit.
  kBadXML = 14,       // The packet is not well-formed, or has a document type.
  kBadRDF = 15,       // The packet is well-formed, but not the RDF that XMP allows.
  kBadEncoding = 16,  // Bytes in no encoding that packets have.
  kTooLong = 17,      // A packet that does not fit its exact length, or a text beyond 32 bits of length.
  kStandardNamespace = 18,
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
