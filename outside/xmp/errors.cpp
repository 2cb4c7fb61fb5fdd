// The texts of the error ids.
#include "outside/xmp/errors.h"

namespace velto {

const char* errorText(std::int32_t id) noexcept {
  switch (static_cast<ErrorId>(id)) {
    case ErrorId::kInternal:
      return "internal error";
    case ErrorId::kNotStarted:
      return "the toolkit has not been started";
    case ErrorId::kBadObject:
      return "not a toolkit object";
    case ErrorId::kBadParameter:
      return "bad parameter";
    case ErrorId::kBadSchema:
      return "namespace not registered";
    case ErrorId::kBadName:
      return "not an XML name";
    case ErrorId::kBadPath:
      return "bad path";
    case ErrorId::kBadIndex:
      return "array index out of range";
    case ErrorId::kBadOptions:
      return "bad options";
    case ErrorId::kBadForm:
      return "property of another form";
    case ErrorId::kBadValue:
      return "value of another type";
    case ErrorId::kBadDate:
      return "no date";
    case ErrorId::kTooDeep:
      return "nested too deep";
    case ErrorId::kBadXML:
      return "packet not well-formed";
    case ErrorId::kBadRDF:
      return "not the RDF of XMP";
    case ErrorId::kBadEncoding:
      return "unknown encoding";
    case ErrorId::kTooLong:
      return "too long";
    case ErrorId::kStandardNamespace:
      return "a standard namespace";
    case ErrorId::kBadLanguage:
      return "not a language tag";
    case ErrorId::kNotThere:
      return "no such property";
  }
  return nullptr;
}

}  // namespace velto
