#include "log/line_template.h"

#include <array>
#include <bit>
#include <charconv>
#include <cstring>

namespace Kest {
namespace {

// Decimal with leading zeros up to `digits`; not for negative numbers.
void AppendPadded(uint64_t value, size_t digits, FixedBuffer& out) {
  char buffer[24];
  const char* end = std::to_chars(buffer, buffer + sizeof(buffer), value).ptr;
  const size_t size = static_cast<size_t>(end - buffer);
  if (size < digits) out.AppendRepeated('0', digits - size);
  out.Append({buffer, size});
}

constexpr std::array<char, 200> kPairs = [] {
  std::array<char, 200> pairs{};
  for (size_t i = 0; i < pairs.size(); ++i) {
    pairs[i] = static_cast<char>('0' + (i % 2 == 0 ? i / 20 : i / 2 % 10));
  }
  return pairs;
}();

// The two digits of a number below 100.
void PutPair(int32_t value, char* to) {
  std::memcpy(to, &kPairs[static_cast<size_t>(value) % 100 * 2], 2);
}

// "2024-05-06T07:08:09" with `separator` between the parts of the time.
void AppendDateAndTime(const LocalTime& time, char separator, FixedBuffer& out) {
  if (time.year > 9999) {
    AppendPadded(static_cast<uint64_t>(time.year), 4, out);
  } else {
    std::array<char, 4> year;
    PutPair(time.year / 100, &year[0]);
    PutPair(time.year, &year[2]);
    out.Append(year);
  }
  std::array<char, 15> rest = {'-', 0, 0, '-', 0, 0, 'T', 0, 0, separator, 0, 0, separator, 0, 0};
  PutPair(time.month, &rest[1]);
  PutPair(time.day, &rest[4]);
  PutPair(time.hour, &rest[7]);
  PutPair(time.minute, &rest[10]);
  PutPair(time.second, &rest[13]);
  out.Append(rest);
}

void AppendGroups(GroupMask groups, FixedBuffer& out) {
  for (bool first = true; groups != 0; groups &= groups - 1, first = false) {
    if (!first) out.Append(';');
    out.Append(GroupName(static_cast<uint32_t>(std::countr_zero(groups))));
  }
}

void AppendElapsed(const LogRecord& record, FixedBuffer& out) {
  const auto elapsed =
      static_cast<uint64_t>(record.elapsed ? *record.elapsed : MillisecondsSinceFirstUse());
  AppendPadded(elapsed / 1000, 6, out);
  out.Append('.');
  AppendPadded(elapsed % 1000, 3, out);
}

void AppendThreadId(FixedBuffer& out) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  const uint32_t id = CurrentThreadId();
  for (int shift = 28; shift >= 0; shift -= 4) out.Append(kDigits[(id >> shift) & 15]);
}

void AppendField(char field, const LogRecord& record, FixedBuffer& out) {
  switch (field) {
    case 'D':
      AppendTimestamp(record.time, out);
      break;
    case 'E':
      out.Append(record.executable);
      break;
    case 'G':
      AppendGroups(record.groups, out);
      break;
    case 'H':
      AppendElapsed(record, out);
      break;
    case 'L':
      out.Append(LevelName(record.level));
      break;
    case 'M':
      out.Append(record.message);
      break;
    case 'T':
      AppendThreadId(out);
      break;
    default:
      out.Append(field);
      break;
  }
}

}  // namespace

std::string_view FormatLine(std::string_view lineTemplate, const LogRecord& record,
                            char (&buffer)[kLineCapacity]) {
  constexpr size_t kEnd = 2;  // line feed and NUL
  FixedBuffer out(buffer, sizeof(buffer) - kEnd);
  while (!lineTemplate.empty() && !out.IsFull()) {
    lineTemplate.remove_prefix(out.AppendUntil('#', lineTemplate));
    if (lineTemplate.size() < 2) break;  // a "#" at the very end prints nothing
    AppendField(lineTemplate[1], record, out);
    lineTemplate.remove_prefix(2);
  }
  size_t size = out.View().size();
  if (!out.View().ends_with('\n')) buffer[size++] = '\n';
  buffer[size] = '\0';
  return {buffer, size};
}

void AppendTimestamp(const LocalTime& time, FixedBuffer& out) {
  AppendDateAndTime(time, ':', out);
  std::array<char, 4> fraction = {'.', static_cast<char>('0' + time.millisecond / 100 % 10)};
  PutPair(time.millisecond, &fraction[2]);
  out.Append(fraction);
}

void AppendFileNameTimestamp(const LocalTime& time, FixedBuffer& out) {
  AppendDateAndTime(time, '-', out);
}

}  // namespace Kest
