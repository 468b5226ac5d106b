// Decodes the signed token of an inventory: up to three segments separated by ".", header, payload
// and signature, each base64. The signature is kept and never verified: the token comes from the
// platform through the host.
#pragma once

#include <string>
#include <string_view>

#include "binding/tree/binding_property.h"

namespace Kest::Client::Loot {

// A header or payload that is missing or unreadable is a structure with the one member "error",
// which holds the reason.
struct SignedToken {
  BindingProperty header;
  BindingProperty payload;
  std::string signature = "NO_VALID_CRYPTO_SEGMENT_FOUND_IN_TOKEN";
};

SignedToken DecodeToken(std::string_view token);

// Decodes base64, the URL-safe alphabet included; padding may be missing. Decoding ends at the
// first character that belongs to neither.
std::string DecodeBase64(std::string_view text);

}  // namespace Kest::Client::Loot
