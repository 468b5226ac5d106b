#include "loot/token/signed_token.h"

#include <cstdint>

#include "loot/token/json_reader.h"

namespace Kest::Client::Loot {
namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Removes the part before the next "." from the token; empty when nothing is left.
std::string_view TakeSegment(std::string_view* token) {
  const size_t dot = token->find('.');
  const std::string_view segment = token->substr(0, dot);
  token->remove_prefix(dot == std::string_view::npos ? token->size() : dot + 1);
  return segment;
}

BindingProperty ErrorObject(std::string_view reason) {
  BindingProperty object;
  object.GetOrAddMember("error").SetString(reason);
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
  SignedToken decoded;
  decoded.header = ReadSegment(TakeSegment(&token));
  decoded.payload = ReadSegment(TakeSegment(&token));
  const std::string_view signature = TakeSegment(&token);
  if (!signature.empty()) decoded.signature = DecodeBase64(signature);
  return decoded;
}

}  // namespace Kest::Client::Loot
