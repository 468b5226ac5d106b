#include "host/simulation/step.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace Kest::Host {
namespace {

// Indexed by StepKind.
constexpr std::string_view kNames[] = {"ask",    "platform", "wait",    "response", "refuse",
                                       "memory", "cap",      "restart", "quiet"};
constexpr std::string_view kHeader = "simulation";
constexpr std::string_view kOrdered = "ordered";
constexpr std::string_view kFree = "free";

bool HasMethod(StepKind kind) {
  return kind == StepKind::kAsk || kind == StepKind::kPlatform || kind == StepKind::kResponse;
}
bool HasPath(StepKind kind) {
  return kind == StepKind::kAsk || kind == StepKind::kPlatform;
}
bool HasNumber(StepKind kind) {
  return kind == StepKind::kWait || kind == StepKind::kResponse || kind == StepKind::kMemory ||
         kind == StepKind::kCap;
}

// Takes the text up to the next `end`, which goes too.
std::string_view TakeUntil(std::string_view* text, char end) {
  const size_t at = std::min(text->find(end), text->size());
  const std::string_view taken = text->substr(0, at);
  text->remove_prefix(std::min(at + 1, text->size()));
  return taken;
}

template <typename Number>
bool ReadNumber(std::string_view text, Number* number) {
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), *number);
  return error == std::errc() && rest == text.data() + text.size();
}

bool ReadStep(std::string_view line, Step* step) {
  const std::string_view word = TakeUntil(&line, ' ');
  const auto found = std::find(std::begin(kNames), std::end(kNames), word);
  if (found == std::end(kNames)) return false;
  step->kind = static_cast<StepKind>(found - std::begin(kNames));
  if (!ReadNumber(TakeUntil(&line, ' '), &step->random)) return false;
  if (HasMethod(step->kind)) step->method = TakeUntil(&line, ' ');
  if (HasPath(step->kind)) step->path = TakeUntil(&line, ' ');
  if (HasNumber(step->kind) && !ReadNumber(TakeUntil(&line, ' '), &step->number)) return false;
  step->body = line;
  return true;
}

}  // namespace

std::string WriteStep(const Step& step) {
  std::string line(kNames[static_cast<size_t>(step.kind)]);
  line += " " + std::to_string(step.random);
  if (HasMethod(step.kind)) line += " " + step.method;
  if (HasPath(step.kind)) line += " " + step.path;
  if (HasNumber(step.kind)) line += " " + std::to_string(step.number);
  if (!step.body.empty()) line += " " + step.body;
  return line;
}

std::string WriteScript(const Script& script) {
  std::string text(kHeader);
  text += " " + std::to_string(script.seed) + " ";
  text.append(script.inOrder ? kOrdered : kFree).append("\n");
  for (const Step& step : script.steps) text.append(WriteStep(step)).append("\n");
  return text;
}

Maybe<Script> ReadScript(std::string_view text) {
  Script script;
  std::string_view header = TakeUntil(&text, '\n');
  const bool isScript = TakeUntil(&header, ' ') == kHeader;
  if (!isScript || !ReadNumber(TakeUntil(&header, ' '), &script.seed)) {
    return Failure{"line 1: expected \"simulation SEED ordered|free\""};
  }
  script.inOrder = header == kOrdered;
  for (size_t line = 2; !text.empty(); ++line) {
    const std::string_view read = TakeUntil(&text, '\n');
    if (read.empty()) continue;
    if (!ReadStep(read, &script.steps.emplace_back())) {
      return Failure{"line " + std::to_string(line) + ": no step: " + std::string(read)};
    }
  }
  return script;
}

}  // namespace Kest::Host
