// Display texts of photographic quantities (exposure, aperture, distances), of GPS positions and times, and of the few
// maker-note numbers whose type alone does not determine the text.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "kit/base/byte_order.h"
#include "kit/model/display_parts.h"
#include "kit/model/value.h"

namespace {

// The nearest integer, halves upwards, clamped to the range of the type.
std::int32_t Rounded(double value) noexcept {
  const double floor = std::floor(value + 0.5);
  if (floor >= std::numeric_limits<std::int32_t>::max()) return std::numeric_limits<std::int32_t>::max();
  if (floor <= std::numeric_limits<std::int32_t>::min()) return std::numeric_limits<std::int32_t>::min();
  return static_cast<std::int32_t>(floor);
}

void AppendRounded(LxDisplayBuffer* out, double value) noexcept {
  LxAppendInteger(out, Rounded(value));
}

// "1/250s"
void AppendFraction(LxDisplayBuffer* out, double denominator) noexcept {
  LxAppendText(out, "1/");
  AppendRounded(out, denominator);
  LxAppendChar(out, 's');
}

void AppendExposureTime(LxDisplayBuffer* out, double seconds) noexcept {
  if (seconds <= 0) {
    LxAppendText(out, "0s");
  } else if (seconds > 1000) {
    LxAppendText(out, "> 1000s");
  } else if (seconds <= 0.25) {
    AppendFraction(out, 1 / seconds);
  } else {
    LxAppendFixed(out, seconds, 1);
    LxAppendChar(out, 's');
  }
}

void AppendFNumber(LxDisplayBuffer* out, double number) noexcept {
  if (number <= 0) {
    LxAppendText(out, "f0");
  } else if (number > 1000) {
    LxAppendText(out, "> f1000");
  } else {
    LxAppendChar(out, 'f');
    if (number < 8) {
      LxAppendFixed(out, number, 1);
    } else {
      AppendRounded(out, number);
    }
  }
}

// The Taylor series of e^x: |x| is at most ln 2 / 2 here, so 16 terms leave an error of 1e-21.
constexpr std::size_t kTerms = 16;
constexpr std::array<double, kTerms> kInverseFactorials = [] {
  std::array<double, kTerms> inverse = {1};
  double factor = 0;
  for (std::size_t term = 1; term < kTerms; ++term) inverse[term] = inverse[term - 1] / ++factor;
  return inverse;
}();

// 2^exponent, for exponents of a few dozen at most. pow() may differ between systems in the last bit, and would be the
// library's only use of the mathematics library.
double PowerOfTwo(double exponent) noexcept {
  int whole = static_cast<int>(exponent < 0 ? exponent - 0.5 : exponent + 0.5);
  const double x = (exponent - whole) * 0.693147180559945309417;  // ln 2
  double sum = 0;
  for (std::size_t term = kTerms; term > 0; --term) sum = sum * x + kInverseFactorials[term - 1];
  for (; whole > 0; --whole) sum *= 2;
  for (; whole < 0; ++whole) sum /= 2;
  return sum;
}

// APEX (Exif 2.2, annex C): the time is 2^-v. The factors turn powers of two into the times printed on cameras: 15/16
// turns 1/16 and 1/64 into 1/15 and 1/60, 125/128 turns 1/128 to 1/1024 into 1/125 to 1/1000.
void AppendShutterSpeed(LxDisplayBuffer* out, double apex) noexcept {
  if (apex < -10) {
    LxAppendText(out, "> 1024s");
  } else if (apex > 14) {
    LxAppendText(out, "< 1/16384s");
  } else if (apex < 2) {
    LxAppendFixed(out, PowerOfTwo(-apex), 1);
    LxAppendChar(out, 's');
  } else if (apex < 3.5) {
    AppendFraction(out, PowerOfTwo(apex));
  } else if (apex < 6.5) {
    AppendFraction(out, PowerOfTwo(apex) * 0.9375);
  } else {
    AppendFraction(out, PowerOfTwo(apex) * 0.9765625);
  }
}

// APEX: the f-number is 2^(v/2).
void AppendAperture(LxDisplayBuffer* out, double apex) noexcept {
  if (apex > 20) {
    LxAppendText(out, "> f1024");
  } else if (apex < -8) {
    LxAppendText(out, "f0");
  } else {
    LxAppendChar(out, 'f');
    if (apex < 6) {
      LxAppendFixed(out, PowerOfTwo(apex / 2), 1);
    } else {
      AppendRounded(out, PowerOfTwo(apex / 2));
    }
  }
}

void AppendExposureValue(LxDisplayBuffer* out, double value) noexcept {
  if (value < -100) {
    LxAppendText(out, "< -100ev");
  } else if (value > 100) {
    LxAppendText(out, "> 100ev");
  } else {
    LxAppendFixed(out, value, 2);
    LxAppendText(out, "ev");
  }
}

void AppendDistance(LxDisplayBuffer* out, double metres) noexcept {
  if (metres < 0) {
    LxAppendText(out, "0m");
  } else if (metres > 1000) {
    LxAppendText(out, "> 1000m");
  } else {
    LxAppendFixed(out, metres, metres < 10 ? 2 : 1);
    LxAppendChar(out, 'm');
  }
}

void AppendFocalLength(LxDisplayBuffer* out, double millimetres) noexcept {
  if (millimetres <= 0) {
    LxAppendText(out, "0mm");
  } else if (millimetres > 10000) {
    LxAppendText(out, "> 10000mm");
  } else {
    if (millimetres >= 10) {
      AppendRounded(out, millimetres);
    } else {
      LxAppendFixed(out, millimetres, 1);
    }
    LxAppendText(out, "mm");
  }
}

// The first element as a number. False: the type is not numeric, or the value is too short.
bool TakeNumber(const LxMetadataItem* item, int order, double* out) noexcept {
  switch (item->typeCode) {
    case kLxTypeRational:
      if (item->valueLength < 8) return false;
      *out = LxUnsignedQuotient(item, order, 0);
      return true;
    case kLxTypeSRational: {
      if (item->valueLength < 8) return false;
      const auto numerator = static_cast<std::int32_t>(LxGet32(item->value, order));
      const auto denominator = static_cast<std::int32_t>(LxGet32(item->value + 4, order));
      *out = static_cast<double>(numerator) / (denominator != 0 ? denominator : 1);
      return true;
    }
    case kLxTypeShort:
      if (item->valueLength < 2) return false;
      *out = LxGet16(item->value, order);
      return true;
    default:
      return false;
  }
}

// "%02d", or "%06.3f" if `digits` is 3.
void AppendTwoPlaces(LxDisplayBuffer* out, std::int32_t value) noexcept {
  if (value >= 0 && value < 10) LxAppendChar(out, '0');
  LxAppendInteger(out, value);
}
void AppendSeconds(LxDisplayBuffer* out, double seconds) noexcept {
  const std::size_t start = out->length;
  LxAppendFixed(out, seconds, 3);
  if (out->length - start != 5)
    return;  // Only "d.ddd" needs padding, which depends on the rounded text: 9.9996 is "10.000".
  LxAppendChar(out, out->bytes[out->length - 1]);
  for (std::size_t i = out->length - 2; i > start; --i) out->bytes[i] = out->bytes[i - 1];
  out->bytes[start] = '0';
}

}  // namespace

void LxFormatPhotoQuantity(int order, LxMetadataItem* item) noexcept {
  double value = 0;
  if (!TakeNumber(item, order, &value)) return;
  LxDisplayBuffer out;
  out.length = 0;
  switch (item->tagId) {
    case 0x829A:  // ExposureTime
      AppendExposureTime(&out, value);
      break;
    case 0x829D:  // FNumber
      AppendFNumber(&out, value);
      break;
    case 0x9201:  // ShutterSpeedValue
      AppendShutterSpeed(&out, value);
      break;
    case 0x9202:  // ApertureValue
    case 0x9205:  // MaxApertureValue
      AppendAperture(&out, value);
      break;
    case 0x9203:  // BrightnessValue
    case 0x9204:  // ExposureBiasValue
      AppendExposureValue(&out, value);
      break;
    case 0x9206:  // SubjectDistance
      AppendDistance(&out, value);
      break;
    case 0x920A:  // FocalLength
    case 0xA405:  // FocalLengthIn35mmFilm
      AppendFocalLength(&out, value);
      break;
    default:
      LxAppendFixed(&out, value, 2);
      break;
  }
  LxShowBuffer(item, out);
}

void LxFormatGpsQuantity(int order, LxMetadataItem* item) noexcept {
  if (item->typeCode != kLxTypeRational || item->valueLength < 8 || item->valueLength > 32) return;
  double q[4] = {};
  for (std::int32_t i = 0; i < item->valueLength / 8; ++i) {
    q[i] = std::clamp(LxUnsignedQuotient(item, order, 8 * i), -10000.0, 10000.0);
  }
  LxDisplayBuffer out;
  out.length = 0;
  switch (item->tagId) {
    case 0x0002:  // GPSLatitude
    case 0x0004:  // GPSLongitude
    case 0x0014:  // GPSDestLatitude
    case 0x0016:  // GPSDestLongitude
      LxAppendFixed(&out, q[0], 2);
      LxAppendChar(&out, ' ');
      LxAppendFixed(&out, q[1], 2);
      LxAppendText(&out, "' ");
      LxAppendFixed(&out, q[2], 2);
      LxAppendChar(&out, '"');
      break;
    case 0x0006:  // GPSAltitude
      LxAppendFixed(&out, q[0], 1);
      LxAppendChar(&out, 'm');
      break;
    case 0x0007:  // GPSTimeStamp
      AppendTwoPlaces(&out, Rounded(q[0]));
      LxAppendChar(&out, ':');
      AppendTwoPlaces(&out, Rounded(q[1]));
      LxAppendChar(&out, ':');
      AppendSeconds(&out, q[2]);
      break;
    default:
      LxAppendFixed(&out, q[0], 2);
      break;
  }
  LxShowBuffer(item, out);
}

void LxFormatMakerSpecial(int order, LxMetadataItem* item) noexcept {
  LxDisplayBuffer out;
  out.length = 0;
  switch (item->tagId) {
    case 0x0002:  // The second number is the sensitivity; the first is ignored.
      if (item->typeCode != kLxTypeShort || item->valueLength != 4) return;
      LxAppendInteger(&out, static_cast<std::int32_t>(LxGet16(item->value + 2, order)));
      break;
    case 0x0084: {  // A lens: shortest and longest focal length, and the maximum aperture at each.
      if (item->typeCode != kLxTypeRational || item->valueLength != 32) return;
      double q[4];
      for (std::int32_t i = 0; i < 4; ++i) q[i] = std::clamp(LxUnsignedQuotient(item, order, 8 * i), 0.0, 10000.0);
      AppendRounded(&out, q[0]);
      LxAppendChar(&out, '-');
      AppendRounded(&out, q[1]);
      LxAppendText(&out, "mm f");
      LxAppendFixed(&out, q[2], 1);
      LxAppendChar(&out, '-');
      LxAppendFixed(&out, q[3], 1);
      break;
    }
    case 0x0E01:  // Settings of the camera's software; the number in them is always little-endian.
      if (item->typeCode != kLxTypeUndefined || item->valueLength < 1371) return;
      LxAppendInteger(&out, item->value[1370] * 256 + item->value[1369]);
      break;
    default:
      return;
  }
  LxShowBuffer(item, out);
}
