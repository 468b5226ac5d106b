#include "host/record/crossing.h"

#include <utility>

namespace Kest::Host {
namespace {

constexpr const char* kPlugin = "plugin";
constexpr const char* kHost = "host";

bool IsTowardsPlugin(Crossing::Kind kind) {
  return kind == Crossing::Kind::kEnter || kind == Crossing::Kind::kResume;
}

bool IsCall(Crossing::Kind kind) {
  return kind == Crossing::Kind::kEnter || kind == Crossing::Kind::kCall;
}

// False: the member is there and is no number.
bool ReadNumber(const Json& line, const char* name, uint64_t* number) {
  const auto found = line.find(name);
  if (found == line.end()) return true;
  if (!found->is_number_unsigned()) return false;
  *number = found->get<uint64_t>();
  return true;
}

bool ReadString(const Json& line, const char* name, std::string* text) {
  const auto found = line.find(name);
  if (found == line.end() || !found->is_string()) return false;
  *text = found->get_ref<const std::string&>();
  return true;
}

bool ReadKind(const Json& line, Crossing* crossing) {
  std::string to;
  if (!ReadString(line, "to", &to) || (to != kPlugin && to != kHost)) return false;
  const bool isCall = ReadString(line, "call", &crossing->function);
  if (isCall == ReadString(line, "return", &crossing->function)) return false;
  if (isCall) {
    crossing->kind = to == kPlugin ? Crossing::Kind::kEnter : Crossing::Kind::kCall;
  } else {
    crossing->kind = to == kPlugin ? Crossing::Kind::kResume : Crossing::Kind::kLeave;
  }
  return true;
}

}  // namespace

Json ToJson(const Crossing& crossing) {
  Json line = {{"n", crossing.number}, {"task", crossing.task}, {"thread", crossing.thread}};
  if (crossing.session != 0) line["session"] = crossing.session;
  line["to"] = IsTowardsPlugin(crossing.kind) ? kPlugin : kHost;
  line[IsCall(crossing.kind) ? "call" : "return"] = crossing.function;
  if (!crossing.arguments.is_null()) line["args"] = crossing.arguments;
  if (!crossing.result.is_null()) line["result"] = crossing.result;
  return line;
}

Maybe<Crossing> ToCrossing(const Json& line) {
  if (!line.is_object()) return Failure{"not a JSON object"};
  Crossing crossing;
  if (!ReadNumber(line, "n", &crossing.number) || crossing.number == 0) {
    return Failure{"\"n\" must be a number above 0"};
  }
  if (!ReadNumber(line, "task", &crossing.task)) return Failure{"\"task\" must be a number"};
  if (!ReadNumber(line, "session", &crossing.session)) {
    return Failure{"\"session\" must be a number"};
  }
  if (!ReadString(line, "thread", &crossing.thread)) return Failure{"\"thread\" must be a string"};
  if (!ReadKind(line, &crossing)) {
    return Failure{R"(needs "to", "plugin" or "host", and either "call" or "return")"};
  }
  const bool enters = crossing.kind == Crossing::Kind::kEnter;
  if (enters && crossing.session == 0) return Failure{"a call of the plugin needs \"session\""};
  if (enters && crossing.task != crossing.number) {
    return Failure{"\"task\" of a call of the plugin must be its \"n\""};
  }
  const auto arguments = line.find("args");
  if (arguments != line.end()) {
    if (!arguments->is_object()) return Failure{"\"args\" must be an object"};
    crossing.arguments = *arguments;
  }
  const auto result = line.find("result");
  if (result != line.end()) crossing.result = *result;
  return crossing;
}

}  // namespace Kest::Host
