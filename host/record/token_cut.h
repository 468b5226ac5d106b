// Takes the signatures out of the tokens of the signed inventory: a token without one proves
// nothing. Header and payload stay, since the plugin reads them; it does not read the signature.
#pragma once

#include <string>
#include <string_view>

namespace Kest::Host {

// Whether the response of a request to this URL has tokens.
bool HasTokens(std::string_view url);

// "header.payload.signature" becomes "header.payload.(masked)", at each place of `text`.
std::string WithoutSignatures(std::string_view text);

}  // namespace Kest::Host
