// Dates.
#include "outside/xmp/dates.h"

#include <atomic>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdlib>

#include "outside/xmp/errors.h"
#include "outside/xmp/machine.h"
#include "outside/xmp/text.h"

namespace velto {
namespace {

constexpr std::int64_t kDay = 86400;
constexpr std::int32_t kNanoseconds = 1000000000;

// ISO 8601 allows year 0 and years beyond 9999 only by agreement; from a camera they mean that there is no date.
constexpr std::int32_t kFirstYear = 1;
constexpr std::int32_t kLastYear = 9999;

bool isWithin(std::int32_t value, std::int32_t low, std::int32_t high) noexcept {
  return value >= low && value <= high;
}

std::chrono::year_month_day calendarDay(const XMPDateTime& date) noexcept {
  return {std::chrono::year(date.year), std::chrono::month(static_cast<unsigned>(date.month)),
          std::chrono::day(static_cast<unsigned>(date.day))};
}

// The first invalid field, or null.
const char* faultOf(const XMPDateTime& date) noexcept {
  if (!isWithin(date.year, kFirstYear, kLastYear)) return "year";
  if (!isWithin(date.month, 1, 12)) return "month";
  if (!isWithin(date.day, 1, 31) || !calendarDay(date).ok()) return "day";
  if (!isWithin(date.hour, 0, 23)) return "hour";
  if (!isWithin(date.minute, 0, 59)) return "minute";
  // ISO 8601 allows leap seconds, but no camera writes them and few readers accept them.
  if (!isWithin(date.second, 0, 59)) return "second";
  if (!isWithin(date.nanosecond, 0, kNanoseconds - 1)) return "nanosecond";
  if (!isWithin(date.zoneSign, -1, 1) || !isWithin(date.zoneHour, 0, 23) || !isWithin(date.zoneMinute, 0, 59)) {
    return "zone";
  }
  if (date.zoneSign == 0 && (date.zoneHour != 0 || date.zoneMinute != 0)) return "zone";
  return nullptr;
}

// Seconds from 1970 to the date and time in the fields, taken as UTC.
std::int64_t shownSeconds(const XMPDateTime& date) noexcept {
  const std::int64_t days = std::chrono::sys_days(calendarDay(date)).time_since_epoch().count();
  return days * kDay + date.hour * 3600 + date.minute * 60 + date.second;
}

void setShownSeconds(XMPDateTime& date, std::int64_t seconds) {
  std::int64_t days = seconds / kDay;
  std::int64_t rest = seconds % kDay;
  if (rest < 0) {
    rest += kDay;
    --days;
  }
  const std::chrono::year_month_day day{std::chrono::sys_days(std::chrono::days(days))};
  date.year = static_cast<std::int32_t>(static_cast<int>(day.year()));
  date.month = static_cast<std::int32_t>(static_cast<unsigned>(day.month()));
  date.day = static_cast<std::int32_t>(static_cast<unsigned>(day.day()));
  date.hour = static_cast<std::int32_t>(rest / 3600);
  date.minute = static_cast<std::int32_t>(rest / 60 % 60);
  date.second = static_cast<std::int32_t>(rest % 60);
  checkDate(date);
}

// ISO 8601 zones have no seconds; those of local mean times before standard time are dropped.
void setZone(XMPDateTime& date, std::int64_t offset) noexcept {
  const std::int64_t minutes = std::abs(offset) / 60;
  date.zoneSign = minutes == 0 ? 0 : (offset < 0 ? -1 : 1);
  date.zoneHour = static_cast<std::int32_t>(minutes / 60);
  date.zoneMinute = static_cast<std::int32_t>(minutes % 60);
}

std::int64_t findOffsetAtShown(std::int64_t shown) noexcept {
  const std::int64_t before = machineOffset(shown - kDay);
  if (machineOffset(shown - before) == before) return before;
  const std::int64_t after = machineOffset(shown + kDay);
  return machineOffset(shown - after) == after ? after : before;
}

// A photograph is mostly taken, digitised and written at the same time, so the latest result is kept.
std::int64_t machineOffsetAtShown(std::int64_t shown) noexcept {
  // The minute and its offset in minutes, in one word, so that threads see both or neither.
  static constinit std::atomic<std::uint64_t> latest{0};
  const std::int64_t minute = (shown < 0 ? shown - 59 : shown) / 60;
  const auto key = static_cast<std::uint64_t>(minute + (std::int64_t{1} << 40)) << 16;
  const std::uint64_t kept = latest.load(std::memory_order_relaxed);
  if ((kept & ~std::uint64_t{0xFFFF}) == key) return static_cast<std::int16_t>(kept & 0xFFFF) * std::int64_t{60};
  const std::int64_t offset = findOffsetAtShown(shown);
  if (offset % 60 == 0)
    latest.store(key | (static_cast<std::uint64_t>(offset / 60) & 0xFFFF), std::memory_order_relaxed);
  return offset;
}

class DateReader {
 public:
  explicit DateReader(std::string_view text) : text_(text) {}

  bool atEnd() const noexcept { return text_.empty(); }

  bool take(char c) noexcept {
    if (text_.empty() || text_.front() != c) return false;
    text_.remove_prefix(1);
    return true;
  }

  bool takeDigits(std::size_t count, std::int32_t& value) noexcept {
    if (text_.size() < count) return false;
    value = 0;
    for (std::size_t at = 0; at < count; ++at) {
      if (!isDigit(text_[at])) return false;
      value = value * 10 + (text_[at] - '0');
    }
    text_.remove_prefix(count);
    return true;
  }

  bool takeFraction(std::int32_t& nanosecond) noexcept {
    std::int32_t unit = kNanoseconds / 10;
    std::size_t digits = 0;
    for (; digits < text_.size() && isDigit(text_[digits]); ++digits, unit /= 10) {
      nanosecond += (text_[digits] - '0') * unit;
    }
    text_.remove_prefix(digits);
    return digits != 0;
  }

  bool takeZone(XMPDateTime& date) noexcept {
    if (atEnd() || take('Z')) return true;
    date.zoneSign = take('+') ? 1 : -1;
    if (date.zoneSign < 0 && !take('-')) return false;
    if (!takeDigits(2, date.zoneHour) || !take(':') || !takeDigits(2, date.zoneMinute)) return false;
    if (date.zoneHour == 0 && date.zoneMinute == 0) date.zoneSign = 0;
    return true;
  }

  bool takeTime(XMPDateTime& date) noexcept {
    if (!takeDigits(2, date.hour) || !take(':') || !takeDigits(2, date.minute)) return false;
    if (take(':')) {
      if (!takeDigits(2, date.second)) return false;
      if (take('.') && !takeFraction(date.nanosecond)) return false;
    }
    return takeZone(date);
  }

  bool takeDate(XMPDateTime& date) noexcept {
    if (!takeDigits(4, date.year)) return false;
    if (!take('-')) return true;
    if (!takeDigits(2, date.month)) return false;
    if (!take('-')) return true;
    if (!takeDigits(2, date.day)) return false;
    return !take('T') || takeTime(date);
  }

 private:
  static bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

  std::string_view text_;
};

}  // namespace

void checkDate(const XMPDateTime& date) {
  if (const char* fault = faultOf(date)) {
    throw ToolkitError(ErrorId::kBadDate, std::string("the date is invalid: its ") + fault + " is out of range");
  }
}

DateText formatDate(const XMPDateTime& date) {
  checkDate(date);
  DateText result;
  char* end = result.text;
  const auto put = [&end](std::int32_t value, int digits) {
    for (int at = digits; at-- > 0; value /= 10) end[at] = static_cast<char>('0' + value % 10);
    end += digits;
  };
  put(date.year, 4);
  *end++ = '-';
  put(date.month, 2);
  *end++ = '-';
  put(date.day, 2);
  *end++ = 'T';
  put(date.hour, 2);
  *end++ = ':';
  put(date.minute, 2);
  *end++ = ':';
  put(date.second, 2);
  if (date.nanosecond != 0) {
    *end++ = '.';
    put(date.nanosecond, 9);
    while (end[-1] == '0') --end;
  }
  if (date.zoneSign == 0) {
    *end++ = 'Z';
  } else {
    // ISO 8601 has no "-00:00".
    *end++ = date.zoneSign < 0 && (date.zoneHour != 0 || date.zoneMinute != 0) ? '-' : '+';
    put(date.zoneHour, 2);
    *end++ = ':';
    put(date.zoneMinute, 2);
  }
  *end = '\0';
  return result;
}

XMPDateTime parseDate(std::string_view text) {
  XMPDateTime date{};
  date.month = 1;
  date.day = 1;
  DateReader reader(text);
  if (!reader.takeDate(date) || !reader.atEnd() || faultOf(date) != nullptr) {
    throw ToolkitError(ErrorId::kBadDate, "'" + repairText(text) + "' is not a date");
  }
  return date;
}

XMPDateTime currentDate() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto seconds = std::chrono::floor<std::chrono::seconds>(now);
  const std::int64_t offset = machineOffset(seconds.count());
  XMPDateTime date{};
  setShownSeconds(date, seconds.count() + offset);
  date.nanosecond =
      static_cast<std::int32_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(now - seconds).count());
  setZone(date, offset);
  return date;
}

void setMachineZone(XMPDateTime& date) {
  XMPDateTime zoned = date;
  setZone(zoned, 0);
  checkDate(zoned);
  setZone(zoned, machineOffsetAtShown(shownSeconds(zoned)));
  date = zoned;
}

}  // namespace velto
