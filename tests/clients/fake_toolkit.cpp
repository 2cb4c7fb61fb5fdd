// A toolkit for tests of the toolkit client.
#include "tests/clients/fake_toolkit.h"

#include <map>
#include <sstream>

#include "tests/clients/bent_broker.h"

FakeToolkit toolkit;

namespace {

TALKindRef kind = nullptr;
TALContainerRef latest = nullptr;  // Calls on any other object are recorded as such.

std::string Printed(const char* text) {
  return text ? text : "null";
}
std::string Printed(std::uint32_t number) {
  return std::to_string(number);
}
std::string Printed(std::int32_t number) {
  return std::to_string(number);
}
std::string Printed(std::uint8_t number) {
  return std::to_string(number);
}

template <typename... Args>
TALErrorRef Called(const std::string& name, Args... args) {
  std::string call = name + "(";
  ((call += (call.back() == '(' ? "" : ", ") + Printed(args)), ...);
  toolkit.calls.push_back(call + ")");
  return toolkit.failing == name ? TheBroker().errors.newError(("no " + name).c_str(), "XMP", 7) : nullptr;
}

template <typename... Args>
TALErrorRef CalledOn(XMPObjectRef self, const std::string& name, Args... args) {
  return Called(self == latest ? name : "other object's " + name, args...);
}

void Give(XMPTextOut* out) {
  if (out) *out = {toolkit.text.data(), static_cast<std::uint32_t>(toolkit.text.size())};
}
void Give(std::uint32_t* out) {
  if (out) *out = toolkit.number;
}

template <typename Value>
TALErrorRef Answer(TALErrorRef error, Value* value, std::uint32_t* options, std::uint8_t* found) {
  if (error) return error;
  *found = toolkit.found ? 1 : 0;
  if (!toolkit.found) return nullptr;
  Give(value);
  Give(options);
  return nullptr;
}

TALErrorRef NewWithBuffer(const char* bytes, std::uint32_t length, XMPObjectRef* result) {
  *result = nullptr;
  if (TALErrorRef error = Called("NewWithBuffer", bytes, length)) return error;
  if (toolkit.givesNoObject) return nullptr;
  const TALErrorRef error = TheBroker().containers.newContainer(result, kind, nullptr);
  latest = *result;
  return error;
}

// What a client that copied a text too late, or not at all, would find.
TALErrorRef Unlock(TALErrorRef error) {
  toolkit.text.assign(toolkit.text.size(), '#');
  return error;
}

template <typename Procedure>
TALProc AsProc(Procedure procedure) {
  return reinterpret_cast<TALProc>(+procedure);
}

// The procedures that the client uses; all others are there and are not called.
TALProc Find(const std::string& qualifiedName) {
  static const std::map<std::string, TALProc> kProcedures = {
      {"XMPMeta_NewWithBuffer_Ctor", AsProc(NewWithBuffer)},
      {"XMPMeta_ParseFromBuffer_Method",
       AsProc([](XMPObjectRef self, const char* bytes, std::uint32_t length, std::uint32_t options) {
         return CalledOn(self, "ParseFromBuffer", bytes, length, options);
       })},
      {"XMPMeta_SetProperty_Method",
       AsProc([](XMPObjectRef self, const char* schema, const char* name, const char* text, std::uint32_t options) {
         return CalledOn(self, "SetProperty", schema, name, text, options);
       })},
      {"XMPMeta_SetProperty_Bool_Method",
       AsProc([](XMPObjectRef self, const char* schema, const char* name, std::uint8_t value, std::uint32_t options) {
         return CalledOn(self, "SetProperty_Bool", schema, name, value, options);
       })},
      {"XMPMeta_SetProperty_Date_Method", AsProc([](XMPObjectRef self, const char* schema, const char* name,
                                                    const XMPDateTime* value, std::uint32_t options) {
         return CalledOn(self, "SetProperty_Date", schema, name, value->year, value->nanosecond, options);
       })},
      {"XMPMeta_AppendArrayItem_Method",
       AsProc([](XMPObjectRef self, const char* schema, const char* array, std::uint32_t arrayOptions, const char* text,
                 std::uint32_t itemOptions) {
         return CalledOn(self, "AppendArrayItem", schema, array, arrayOptions, text, itemOptions);
       })},
      {"XMPMeta_SetStructField_Method",
       AsProc([](XMPObjectRef self, const char* schema, const char* structName, const char* fieldSchema,
                 const char* field, const char* text, std::uint32_t options) {
         return CalledOn(self, "SetStructField", schema, structName, fieldSchema, field, text, options);
       })},
      {"XMPMeta_SetLocalizedText_Method",
       AsProc([](XMPObjectRef self, const char* schema, const char* name, const char* generic, const char* specific,
                 const char* text, std::uint32_t options) {
         return CalledOn(self, "SetLocalizedText", schema, name, generic, specific, text, options);
       })},
      {"XMPMeta_DeleteProperty_Method", AsProc([](XMPObjectRef self, const char* schema, const char* name) {
         return CalledOn(self, "DeleteProperty", schema, name);
       })},
      {"XMPMeta_DoesPropertyExist_Method",
       AsProc([](XMPObjectRef self, const char* schema, const char* name, std::uint8_t* found) {
         *found = toolkit.found ? 1 : 0;
         return CalledOn(self, "DoesPropertyExist", schema, name);
       })},
      {"XMPMeta_GetProperty_Method", AsProc([](XMPObjectRef self, const char* schema, const char* name,
                                               XMPTextOut* value, std::uint32_t* options, std::uint8_t* found) {
         return Answer(CalledOn(self, "GetProperty", schema, name), value, options, found);
       })},
      {"XMPMeta_GetProperty_Bool_Method", AsProc([](XMPObjectRef self, const char* schema, const char* name,
                                                    std::uint8_t* value, std::uint32_t* options, std::uint8_t* found) {
         *value = toolkit.flag ? 1 : 0;
         return Answer<std::uint32_t>(CalledOn(self, "GetProperty_Bool", schema, name), nullptr, options, found);
       })},
      {"XMPMeta_GetArrayItem_Method",
       AsProc([](XMPObjectRef self, const char* schema, const char* array, std::int32_t index, XMPTextOut* value,
                 std::uint32_t* options, std::uint8_t* found) {
         return Answer(CalledOn(self, "GetArrayItem", schema, array, index), value, options, found);
       })},
      {"XMPMeta_CountArrayItems_Method",
       AsProc([](XMPObjectRef self, const char* schema, const char* array, std::uint32_t* count) {
         Give(count);
         return CalledOn(self, "CountArrayItems", schema, array);
       })},
      {"XMPMeta_UnlockObject_Method", AsProc([](XMPObjectRef self, std::uint32_t options) {
         return Unlock(CalledOn(self, "UnlockObject", options));
       })},
      {"XMPUtils_RemoveProperties_Static",
       AsProc([](XMPObjectRef self, const char* schema, const char* name, std::uint32_t options) {
         return CalledOn(self, "RemoveProperties", schema, name, options);
       })},
      {"XMPUtils_ComposeStructFieldPath_Static",
       AsProc([](const char* schema, const char* structName, const char* fieldSchema, const char* field,
                 XMPTextOut* path) {
         Give(path);
         return Called("ComposeStructFieldPath", schema, structName, fieldSchema, field);
       })},
      {"XMPUtils_SetTimeZone_Static", AsProc([](XMPDateTime* value) {
         value->zoneHour = 5;
         return Called("SetTimeZone", value->year);
       })},
      {"XMPUtils_UnlockUtils_Static",
       AsProc([](std::uint32_t options) { return Unlock(Called("UnlockUtils", options)); })},
  };
  const auto found = kProcedures.find(qualifiedName);
  return found != kProcedures.end() ? found->second : AsProc([] { std::abort(); });
}

}  // namespace

void FakeToolkit::Register() {
  const BrokerProcs& broker = TheBroker();
  broker.Take(broker.containers.newKind(&kind, "FakeXMP", nullptr));
  for (const TALProcName& name : kXMPMetaMethodNames) {
    if (withoutMethods) break;
    broker.Take(broker.containers.addMethod(kind, name.shortName, name.qualifiedName, Find(name.qualifiedName)));
  }
  const auto registerAll = [&](const char* interfaceName, const auto& names) {
    for (const TALProcName& name : names) {
      broker.Take(
          broker.core.registerProcAddress(interfaceName, name.shortName, name.qualifiedName, Find(name.qualifiedName)));
    }
  };
  registerAll(kXMPMetaStaticInterface, kXMPMetaStaticNames);
  registerAll(kXMPUtilsStaticInterface, kXMPUtilsStaticNames);
}

void FakeToolkit::Unregister() {
  const BrokerProcs& broker = TheBroker();
  broker.Take(broker.core.unregisterInterface(kXMPMetaStaticInterface));
  broker.Take(broker.core.unregisterInterface(kXMPUtilsStaticInterface));
  broker.Take(broker.containers.deleteKind(kind));
  kind = nullptr;
}

extern "C" std::uint32_t VeltoXMPOrdinal1(TALLookupProc lookup, std::uint32_t clientVersion, std::uint32_t* version) {
  *version = 1;
  if (!lookup) return 0;
  toolkit.calls.push_back("Ordinal1(" + std::to_string(clientVersion) + ")");
  toolkit.Register();
  return 1;
}

extern "C" std::uint32_t VeltoXMPOrdinal2() {
  toolkit.Unregister();
  return 1;
}
