#include "loot/calls/signed_token.h"

#include <cstdint>
#include <vector>

#include "loot/calls/json_reader.h"

namespace Kest::Client::Loot {
namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::vector<std::string_view> Split(std::string_view token) {
  std::vector<std::string_view> segments;
  for (;;) {
    const size_t dot = token.find('.');
    segments.push_back(token.substr(0, dot));
    if (dot == std::string_view::npos) return segments;
    token.remove_prefix(dot + 1);
  }
}

BindingProperty ErrorObject(std::string_view reason) {
  BindingProperty object;
  object.TakeMember("error").SetString(reason);
  return object;
}

BindingProperty ReadSegment(std::string_view segment) {
  if (segment.empty()) return ErrorObject("The token segment is missing");
  try {
    return json::Reader::Read(DecodeBase64(segment));
  } catch (const json::Exception& error) {
    return ErrorObject(error.what());
  }
}

}  // namespace

std::string DecodeBase64(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3 + 2);
  uint32_t bits = 0;
  int count = 0;
  for (const char raw : text) {
    const char letter = raw == '-' ? '+' : raw == '_' ? '/' : raw;
    const size_t value = kAlphabet.find(letter);
    if (value == std::string_view::npos) break;
    bits = bits << 6 | static_cast<uint32_t>(value);
    count += 6;
    if (count >= 8) {
      count -= 8;
      bytes += static_cast<char>(bits >> count & 0xFFu);
    }
  }
  return bytes;
}

SignedToken DecodeToken(std::string_view token) {
  const std::vector<std::string_view> segments = Split(token);
  const auto segment = [&segments](size_t index) {
    return index < segments.size() ? segments[index] : std::string_view();
  };
  SignedToken decoded;
  decoded.header = ReadSegment(segment(0));
  decoded.payload = ReadSegment(segment(1));
  if (!segment(2).empty()) decoded.signature = DecodeBase64(segment(2));
  return decoded;
}

}  // namespace Kest::Client::Loot
