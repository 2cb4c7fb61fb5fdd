// Simple values as truth values, numbers and dates.
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/session.h"

namespace {

using lxhost::Change;
using lxhost::OnObject;
using lxhost::ThrowIfError;

// The public record has the toolkit's layout.
static_assert(sizeof(LxXmpDate) == sizeof(XMPDateTime) && offsetof(LxXmpDate, day) == offsetof(XMPDateTime, day) &&
              offsetof(LxXmpDate, second) == offsetof(XMPDateTime, second) &&
              offsetof(LxXmpDate, zoneMinute) == offsetof(XMPDateTime, zoneMinute) &&
              offsetof(LxXmpDate, nanosecond) == offsetof(XMPDateTime, nanosecond));

XMPDateTime ToolkitDate(const LxXmpDate& date) noexcept {
  return {date.year,   date.month,    date.day,      date.hour,       date.minute,
          date.second, date.zoneSign, date.zoneHour, date.zoneMinute, date.nanosecond};
}

LxXmpDate HostDate(const XMPDateTime& date) noexcept {
  return {date.year,   date.month,    date.day,      date.hour,       date.minute,
          date.second, date.zoneSign, date.zoneHour, date.zoneMinute, date.nanosecond};
}

// Calls get(methods, object, &value, &options, &found) with a value of the toolkit's type.
template <typename Value, typename Getter, typename Giver>
LxXmpStatus Get(CXMPMeta* xmp, bool argumentsThere, Getter get, Giver give) noexcept {
  return OnObject(xmp, argumentsThere, [&](const XMPMetaMethods& methods, XMPObjectRef object) {
    Value value{};
    std::uint32_t options = 0;
    std::uint8_t found = 0;
    ThrowIfError(get(methods, object, &value, &options, &found));
    if (found == 0) return LX_XMP_NOT_FOUND;
    give(value);
    return LX_XMP_OK;
  });
}

// Whether a text is a rational in the form of EXIF properties (CIPA DC-010): two integers separated by a slash.
bool ReadRational(std::string_view text, double* value) noexcept {
  const char* const end = text.data() + text.size();
  std::int64_t numerator = 0;
  std::int64_t denominator = 0;
  const auto [slash, fault] = std::from_chars(text.data(), end, numerator);
  if (fault != std::errc() || slash == end || *slash != '/') return false;
  const auto [last, secondFault] = std::from_chars(slash + 1, end, denominator);
  if (secondFault != std::errc() || last != end || denominator == 0) return false;
  *value = static_cast<double>(numerator) / static_cast<double>(denominator);
  return true;
}

}  // namespace

LxXmpStatus LxXmpGetBool(CXMPMeta* xmp, const char* namespaceUri, const char* path, int* value) {
  return Get<std::uint8_t>(
      xmp, namespaceUri != nullptr && path != nullptr && value != nullptr,
      [&](const XMPMetaMethods& methods, XMPObjectRef object, auto... out) {
        return methods.getPropertyBool(object, namespaceUri, path, out...);
      },
      [&](std::uint8_t found) { *value = found != 0 ? 1 : 0; });
}

LxXmpStatus LxXmpGetInteger(CXMPMeta* xmp, const char* namespaceUri, const char* path, std::int64_t* value) {
  return Get<std::int64_t>(
      xmp, namespaceUri != nullptr && path != nullptr && value != nullptr,
      [&](const XMPMetaMethods& methods, XMPObjectRef object, auto... out) {
        return methods.getPropertyInt64(object, namespaceUri, path, out...);
      },
      [&](std::int64_t found) { *value = found; });
}

LxXmpStatus LxXmpGetReal(CXMPMeta* xmp, const char* namespaceUri, const char* path, double* value) {
  return OnObject(xmp, namespaceUri != nullptr && path != nullptr && value != nullptr,
                  [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                    XMPTextOut text = {nullptr, 0};
                    std::uint32_t options = 0;
                    std::uint8_t found = 0;
                    ThrowIfError(methods.getProperty(object, namespaceUri, path, &text, &options, &found));
                    if (found == 0) return LX_XMP_NOT_FOUND;
                    double number = 0;
                    const bool isRational = text.text != nullptr && ReadRational({text.text, text.length}, &number);
                    ThrowIfError(methods.unlockObject(object, 0));
                    if (!isRational) {
                      ThrowIfError(methods.getPropertyFloat(object, namespaceUri, path, &number, &options, &found));
                    }
                    *value = number;
                    return LX_XMP_OK;
                  });
}

LxXmpStatus LxXmpGetDate(CXMPMeta* xmp, const char* namespaceUri, const char* path, LxXmpDate* value) {
  return Get<XMPDateTime>(
      xmp, namespaceUri != nullptr && path != nullptr && value != nullptr,
      [&](const XMPMetaMethods& methods, XMPObjectRef object, auto... out) {
        return methods.getPropertyDate(object, namespaceUri, path, out...);
      },
      [&](const XMPDateTime& found) { *value = HostDate(found); });
}

LxXmpStatus LxXmpSetBool(CXMPMeta* xmp, const char* namespaceUri, const char* path, int value) {
  return Change(xmp, namespaceUri != nullptr && path != nullptr,
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.setPropertyBool(object, namespaceUri, path, value != 0 ? 1 : 0, 0);
                });
}

LxXmpStatus LxXmpSetInteger(CXMPMeta* xmp, const char* namespaceUri, const char* path, std::int64_t value) {
  return Change(xmp, namespaceUri != nullptr && path != nullptr,
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.setPropertyInt64(object, namespaceUri, path, value, 0);
                });
}

LxXmpStatus LxXmpSetReal(CXMPMeta* xmp, const char* namespaceUri, const char* path, double value) {
  return Change(xmp, namespaceUri != nullptr && path != nullptr,
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  return methods.setPropertyFloat(object, namespaceUri, path, value, 0);
                });
}

LxXmpStatus LxXmpSetDate(CXMPMeta* xmp, const char* namespaceUri, const char* path, const LxXmpDate* value) {
  return Change(xmp, namespaceUri != nullptr && path != nullptr && value != nullptr,
                [&](const XMPMetaMethods& methods, XMPObjectRef object) {
                  const XMPDateTime date = ToolkitDate(*value);
                  return methods.setPropertyDate(object, namespaceUri, path, &date, 0);
                });
}

LxXmpStatus LxXmpNow(LxXmpDate* now) {
  return lxhost::Guarded([&] {
    if (now == nullptr) return lxhost::NullArgument();
    XMPDateTime date{};
    ThrowIfError(XMPUtilsTable().currentDateTime(&date));
    *now = HostDate(date);
    return LX_XMP_OK;
  });
}
