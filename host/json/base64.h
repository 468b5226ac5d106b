// Bytes as base64 text with padding (RFC 4648).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Kest::Host {

std::string EncodeBase64(std::string_view bytes);

// Nothing when `text` is not what EncodeBase64 returns for some bytes.
std::optional<std::string> DecodeBase64(std::string_view text);

}  // namespace Kest::Host
