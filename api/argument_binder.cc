#include "api/argument_binder.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <string>

#include "api/argument_value.h"
#include "api/query_string.h"
#include "log/positional_format.h"

namespace Kest {
namespace {

constexpr uint64_t kIndexLimit = 2147483648u;

// "a.b.c": the name "a" and the path "b.c". "a." has no path.
struct Key {
  std::string_view name;
  std::string_view path;
};

Key CutKey(std::string_view key) {
  const size_t dot = key.find('.');
  if (dot == std::string_view::npos) return {key, {}};
  return {key.substr(0, dot), key.substr(dot + 1)};
}

bool IsStructured(TypeId id) {
  return id == TypeId::kObject || id == TypeId::kVector || id == TypeId::kStruct;
}

// Whether all of `segment` is a number. One that does not fit becomes the largest.
bool ParseIndex(std::string_view segment, uint64_t* index) {
  int base = 10;
  std::string_view digits = segment;
  if (digits.starts_with("0x") || digits.starts_with("0X")) {
    base = 16;
    digits.remove_prefix(2);
  } else if (digits.starts_with('0')) {
    base = 8;
  }
  const char* const end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, *index, base);
  if (result.ec == std::errc::invalid_argument || result.ptr != end) return false;
  if (result.ec == std::errc::result_out_of_range) *index = UINT64_MAX;
  return true;
}

}  // namespace

ArgumentBinder::ArgumentBinder(const BoundFunction& function, ConversionContext& context)
    : function_(function), context_(context), values_(function.Arguments().size()) {
  for (size_t i = 0; i < values_.size(); ++i) {
    const ArgumentRecord& argument = function.Arguments()[i];
    if (argument.type.id == TypeId::kBool && !argument.optional) values_[i].SetBool(false);
  }
}

void ArgumentBinder::BindHeaders(std::span<const HeaderPair> headers) {
  if (headers.empty()) return;
  std::map<std::string_view, std::string_view> last;
  for (const HeaderPair& header : headers) last[header.name] = header.value;
  for (const auto& [name, value] : last) BindPair(ArgumentLocation::kHeader, name, value);
}

void ArgumentBinder::BindCaptures(const RouteTemplate& route, const RouteCaptures& captures) {
  const auto& parameters = route.Parameters();
  for (size_t i = 0; i < parameters.size() && context_.Ok(); ++i) {
    BindPair(ArgumentLocation::kPath, parameters[i].name,
             PercentDecode(captures.At(i), PlusSign::kIsPlus));
  }
}

void ArgumentBinder::BindQuery(std::string_view query) {
  while (context_.Ok()) {
    const std::optional<QueryPair> pair = TakeQueryPair(&query);
    if (!pair) return;
    BindPair(ArgumentLocation::kQuery, pair->name, pair->value);
  }
}

void ArgumentBinder::BindBody(std::string_view contentType, std::string_view body) {
  const std::optional<size_t> argument = function_.BodyArgument();
  if (!context_.Ok() || body.empty() || !argument) return;
  const std::optional<ValueFormat> format = ChooseBodyFormat(contentType);
  if (!format) return context_.Fail(kUnsupportedContentType);
  const ValueOwner owner = {function_.Arguments()[*argument].name, function_.Name(),
                            /*isBody=*/true};
  DecodeValue(context_, owner, *format, body, &values_[*argument]);
}

void ArgumentBinder::BindList(std::span<const NamedValue> list) {
  for (size_t i = 0; i < list.size() && context_.Ok(); ++i) {
    const NamedValue& value = list[i];
    if (value.name) {
      const Key key = CutKey(*value.name);
      if (const auto argument = FindArgument(key.name)) Store(*argument, key.path, value);
    } else if (i < values_.size()) {
      Store(i, {}, value);
    } else {
      context_.Fail(Format("Unknown argument '%1' for '%2'.", i, function_.Name()));
    }
  }
}

void ArgumentBinder::BindPair(ArgumentLocation location, std::string_view name,
                              std::string_view text) {
  if (!context_.Ok()) return;
  const Key key = CutKey(name);
  const std::optional<size_t> argument = FindArgument(key.name);
  if (!argument) return;
  const ArgumentLocation declared = function_.LocationOf(*argument);
  if (declared != ArgumentLocation::kAny && declared != location) {
    return context_.Fail(Format("Argument '%1' for '%2' was specified in an invalid location.",
                                key.name, function_.Name()));
  }
  if (key.path.empty() && text.empty()) return StoreWithoutValue(*argument);
  NamedValue value;
  value.text = text;
  Store(*argument, key.path, value);
}

void ArgumentBinder::Store(size_t argument, std::string_view path, const NamedValue& value) {
  BindingProperty* const target = WalkPath(&values_[argument], path);
  if (target == nullptr) return;
  std::string_view text = value.text;
  if (value.value != nullptr) {
    if (value.value->kind() != BindingKind::kString) {
      *target = *value.value;
      return;
    }
    text = value.value->AsString();
  }
  const ArgumentRecord& record = function_.Arguments()[argument];
  const bool structured = path.empty() && IsStructured(record.type.id);
  const ValueFormat format = ChooseValueFormat(value.contentType, structured, &text);
  DecodeValue(context_, {record.name, function_.Name()}, format, text, target);
}

void ArgumentBinder::StoreWithoutValue(size_t argument) {
  const ArgumentRecord& record = function_.Arguments()[argument];
  switch (record.type.id) {
    case TypeId::kBool:
      return values_[argument].SetBool(true);
    case TypeId::kObject:
    case TypeId::kStruct:
      return values_[argument].SetStructure();
    case TypeId::kVector:
      return values_[argument].SetCollection();
    default:
      return context_.Fail(Format("Expected value for argument '%1'.", record.name));
  }
}

std::optional<size_t> ArgumentBinder::FindArgument(std::string_view name) {
  const std::optional<size_t> argument = function_.FindArgument(name);
  if (!argument) {
    context_.Fail(Format("Unknown argument '%1' for '%2'.", name, function_.Name()));
  }
  return argument;
}

// `target` itself for an empty path; null when the context has failed.
BindingProperty* ArgumentBinder::WalkPath(BindingProperty* target, std::string_view path) {
  size_t begin = path.empty() ? std::string_view::npos : 0;
  while (begin != std::string_view::npos && target != nullptr) {
    const size_t dot = path.find('.', begin);
    const std::string_view segment = path.substr(begin, dot - begin);
    const bool isIndex = !segment.empty() && segment.front() >= '0' && segment.front() <= '9';
    target = isIndex ? GetOrAddIndexed(target, segment) : &target->GetOrAddMember(segment);
    begin = dot == std::string_view::npos ? dot : dot + 1;
  }
  return target;
}

BindingProperty* ArgumentBinder::GetOrAddIndexed(BindingProperty* target,
                                                 std::string_view segment) {
  uint64_t index = 0;
  if (!ParseIndex(segment, &index)) {
    context_.Fail(Format("Index %1 is in an incorrect format", segment));
    return nullptr;
  }
  const size_t held = target->kind() == BindingKind::kCollection ? target->Size() : 0;
  const uint64_t created = index < held ? 0 : index + 1 - held;
  if (index >= kIndexLimit || created > elementsLeft_) {
    context_.Fail(Format("Index %1 is out of range", segment));
    return nullptr;
  }
  elementsLeft_ -= static_cast<size_t>(created);
  return &target->GetOrAddElement(static_cast<size_t>(index));
}

}  // namespace Kest
