// Any text as a signed token, and as the payload of one that is in order. No error leaves but as a
// listed text inside the token, and a token that loads is the same when it is encoded again.
#include "binding/json/json_adapter.h"
#include "fuzz/described_tree.h"
#include "fuzz/failure_messages.h"
#include "fuzz/fuzz_support.h"
#include "fuzz/properties.h"
#include "loot/token/signed_token.h"
#include "tests/loot/token_text.h"

namespace Kest::Fuzz {
namespace {

using namespace Client::Loot;

SignedToken Decode(std::string_view text) {
  const DecoderBounds bounds;
  return DecodeToken(text);
}

// A segment that failed holds its reason alone. So may one that came like that, which is rare
// enough to be asked for a listed text as well.
void CheckFailure(const BindingProperty& part) {
  const BindingProperty* error = part.FindMember("error");
  if (error == nullptr || part.Size() != 1 || error->kind() != BindingKind::kString) return;
  RequireListed(error->AsString(), {kTokenJsonFailures});
}

// The segment as JSON; false when its texts cannot come back as they are.
bool TryWrite(const BindingProperty& part, std::string* text) {
  if (DescribeTree(part, TreeView::kJson).repaired) return false;
  ConversionContext context;
  WriteJson(context, part, text);
  Require(context.Ok(), "a segment can be written", context.ErrorMessage());
  return true;
}

void CheckToken(std::string_view text) {
  const SignedToken token = Decode(text);
  std::string header, payload;
  if (!TryWrite(token.header, &header) || !TryWrite(token.payload, &payload)) return;
  const std::string again = EncodeBase64(header) + "." + EncodeBase64(payload, "-_") + "." +
                            EncodeBase64(token.signature);
  const SignedToken read = Decode(again);
  RequireSame(ExactTree(token.header), ExactTree(read.header), "header encoded again");
  RequireSame(ExactTree(token.payload), ExactTree(read.payload), "payload encoded again");
  if (token.signature.empty()) return;  // an empty segment stands for none
  RequireSame(token.signature, read.signature, "signature encoded again");
}

}  // namespace

void CheckTokenLoad(std::string_view input) {
  CheckToken(input);
  CheckToken(MakeToken(input));
  const std::string token = MakeToken(Stretched(input, '\x01'));
  CheckFailure(Decode(token).payload);
}

}  // namespace Kest::Fuzz
