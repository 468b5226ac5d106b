#include "client/outgoing_request.h"

#include "log/positional_format.h"

namespace Kest::Client {

namespace {

// Indexed by RequestStep.
constexpr std::string_view kStepMessages[] = {
    "Request not sent: Error converting parameters for {method} {url}: {error}",
    "Error response for {method} {url}: {error}",
    "Error reading streamed response for {method} {url}: {error}",
    "Error converting response for {method} {url}: {error}",
};

bool IsUnreserved(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
         c == '.' || c == '_' || c == '~';
}

void AppendEncoded(std::string_view text, std::string* out) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  for (const char c : text) {
    if (IsUnreserved(c)) {
      *out += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      *out += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
}

}  // namespace

void OutgoingRequest::AddQuery(std::string_view name, const BindingProperty& value) {
  std::string text;
  if (value.kind() == BindingKind::kString) {
    text = value.AsString();
  } else {
    WriteJson(context_, value, &text);
  }
  target_ += target_.find('?') == std::string::npos ? '?' : '&';
  AppendEncoded(name, &target_);
  target_ += '=';
  AppendEncoded(text, &target_);
}

Failure OutgoingRequest::ArgumentFailure() const {
  return Fail(RequestStep::kArguments, context_.ErrorMessage(), 400);
}

Failure OutgoingRequest::Fail(RequestStep step, std::string_view error, int32_t status) const {
  return {FormatNamed(kStepMessages[static_cast<size_t>(step)],
                      {{"method", MethodName(method_)}, {"url", url_}, {"error", error}}),
          status};
}

}  // namespace Kest::Client
