#include "binding/types/type_registry.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <utility>

#include "log/logger.h"
#include "log/positional_format.h"

namespace Kest {
namespace {

// Never destroyed: code that runs last in the process may still convert values.
std::atomic<TypeRegistry*>& ProcessSlot() {
  static std::atomic<TypeRegistry*> slot = new TypeRegistry();
  return slot;
}

constexpr size_t kLongestMember = 100;
constexpr size_t kMemberSlack = 4 + 16;  // the punctuation, and what may be read after it

template <typename Records>
bool Contains(const Records& records, std::string_view name) {
  return std::any_of(records.begin(), records.end(),
                     [name](const auto& record) { return record.name == name; });
}

template <typename Records>
auto Pointers(const Records& records) {
  std::vector<const typename Records::value_type*> pointers;
  pointers.reserve(records.size());
  for (const auto& record : records) pointers.push_back(&record);
  return pointers;
}

void LogMisuse(const std::string& message) {
  LogError("%s", message.c_str());
}

// Whether an enumeration or structure, or an element that is one, has no record.
bool LacksRecord(const TypeIdentifier& type) {
  const TypeId id = type.elementId == TypeId::kNone ? type.id : type.elementId;
  return type.record == nullptr && (id == TypeId::kEnum || id == TypeId::kStruct);
}

}  // namespace

template <typename Entries>
bool TypeBuilder::Accepts(TypeKind kind, Entries TypeRecord::*entries, std::string_view name) {
  if (!IsOpen()) return false;
  if (record_->kind == kind && !Contains(record_->*entries, name)) return true;
  state_ = State::kFailed;
  LogMisuse(Format("Type %1: \"%2\" is %3. The rest of its registration is dropped.", record_->name,
                   name,
                   record_->kind == kind ? "a duplicate" : "an entry of another kind of type"));
  return false;
}

// It delegates, so that the destructor also runs when entering the type fails half-way.
TypeBuilder::TypeBuilder(TypeRegistry& registry, std::string_view name, size_t size,
                         const TypeKey& key, TypeKind kind)
    : TypeBuilder(registry) {
  if (const TypeRecord* conflict = registry_.Enter(name, size, key, kind, *this)) {
    LogMisuse(Format("Type %1 (%2) conflicts with type %3 (%4), which was registered before.", name,
                     key.name, conflict->name, conflict->staticKey->name));
  }
}

TypeBuilder::~TypeBuilder() {
  const bool isBrokenOff = std::uncaught_exceptions() > exceptions_;
  if (record_ != nullptr && isBrokenOff) registry_.Withdraw(record_);
}

TypeBuilder& TypeBuilder::AddField(FieldRecord field) {
  if (Accepts(TypeKind::kStructure, &TypeRecord::fields, field.name)) {
    if (LacksRecord(field.type)) {
      LogMisuse(
          Format("Type %1: field \"%2\" (%3) holds a type that is not registered. Register "
                 "that one first.",
                 record_->name, field.name, field.staticKey->name));
    }
    MutexLock lock(registry_.mutex_);
    registry_.KeepName(field);
    field.description = registry_.memory_.Copy(field.description);
    field.tags = registry_.CopyAll(field.tags);
    record_->fields.push_back(field);
  }
  return *this;
}

TypeBuilder& TypeBuilder::AddEnumerator(std::string_view name, int32_t value,
                                        std::string_view description) {
  if (Accepts(TypeKind::kEnumeration, &TypeRecord::enumerators, name)) {
    MutexLock lock(registry_.mutex_);
    record_->enumerators.push_back(
        {registry_.memory_.Copy(name), registry_.memory_.Copy(description), value});
  }
  return *this;
}

TypeBuilder& TypeBuilder::SetNameSpace(std::string_view nameSpace) {
  if (IsOpen()) record_->nameSpace = Copy(nameSpace);
  return *this;
}

TypeBuilder& TypeBuilder::SetDescription(std::string_view description) {
  if (IsOpen()) record_->description = Copy(description);
  return *this;
}

TypeBuilder& TypeBuilder::AddTags(std::initializer_list<std::string_view> tags) {
  if (!IsOpen()) return *this;
  MutexLock lock(registry_.mutex_);
  for (const std::string_view tag : tags) record_->tags.push_back(registry_.memory_.Copy(tag));
  return *this;
}

void TypeBuilder::Expect(size_t fields) {
  if (!IsOpen()) return;
  MutexLock lock(registry_.mutex_);
  record_->fields.reserve(record_->fields.size() + fields);
}

std::string_view TypeBuilder::Copy(std::string_view text) {
  MutexLock lock(registry_.mutex_);
  return registry_.memory_.Copy(text);
}

TypeRegistry::TypeRegistry() = default;
TypeRegistry::~TypeRegistry() = default;

TypeRegistry& TypeRegistry::Process() {
  return *ProcessSlot().load(std::memory_order_acquire);
}

void TypeRegistry::ResetProcessForTests() {
  // The former registry stays alive in this list, for records and leak checkers alike.
  static auto* former = new std::vector<TypeRegistry*>();
  former->push_back(ProcessSlot().exchange(new TypeRegistry(), std::memory_order_acq_rel));
}

TypeBuilder TypeRegistry::RegisterType(std::string_view name, size_t size, const TypeKey& key,
                                       TypeKind kind) {
  return {*this, name, size, key, kind};
}

const TypeRecord* TypeRegistry::Enter(std::string_view name, size_t size, const TypeKey& key,
                                      TypeKind kind, TypeBuilder& builder) {
  MutexLock lock(mutex_);
  const auto named = byName_.find(name);
  if (named != byName_.end()) return named->second->staticKey != &key ? named->second : nullptr;
  const auto keyed = byKey_.find(&key);
  if (keyed != byKey_.end()) {
    builder.state_ = TypeBuilder::State::kFailed;
    return keyed->second;
  }
  TypeRecord& record = types_.emplace_back(memory_.Resource());
  builder.record_ = &record;
  builder.state_ = TypeBuilder::State::kOpen;
  record.kind = kind;
  record.size = size;
  record.name = memory_.Copy(name);
  record.staticKey = &key;
  record.registry = this;
  byName_.emplace(record.name, &record);
  byKey_.emplace(&key, &record);
  return nullptr;
}

void TypeRegistry::KeepName(FieldRecord& field) {
  const auto isPlain = [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; };
  if (field.name.size() > kLongestMember || !std::ranges::all_of(field.name, isPlain)) {
    field.name = memory_.Copy(field.name);
    return;
  }
  std::array<char, kLongestMember + kMemberSlack> text{',', '"'};
  char* const end = std::ranges::copy(field.name, text.data() + 2).out;
  end[0] = '"';
  end[1] = ':';
  const size_t size = field.name.size() + 4;
  field.jsonMember = memory_.Copy({text.data(), size + 16}).substr(0, size);
  field.name = field.jsonMember.substr(2, field.name.size());
}

std::span<const std::string_view> TypeRegistry::CopyAll(std::span<const std::string_view> texts) {
  if (texts.empty()) return {};
  std::pmr::polymorphic_allocator<std::string_view> memory(memory_.Resource());
  std::string_view* const copies = memory.allocate(texts.size());
  for (size_t i = 0; i < texts.size(); ++i) copies[i] = memory_.Copy(texts[i]);
  return {copies, texts.size()};
}

void TypeRegistry::Withdraw(const TypeRecord* record) noexcept {
  MutexLock lock(mutex_);
  std::erase_if(byName_, [record](const auto& entry) { return entry.second == record; });
  std::erase_if(byKey_, [record](const auto& entry) { return entry.second == record; });
  types_.remove_if([record](const TypeRecord& type) { return &type == record; });
}

const TypeRecord* TypeRegistry::FindByName(std::string_view name) const {
  MutexLock lock(mutex_);
  const auto found = byName_.find(name);
  return found != byName_.end() ? found->second : nullptr;
}

const TypeRecord* TypeRegistry::FindByKey(const TypeKey& key) const {
  MutexLock lock(mutex_);
  const auto found = byKey_.find(&key);
  return found != byKey_.end() ? found->second : nullptr;
}

std::vector<const TypeRecord*> TypeRegistry::Types() const {
  MutexLock lock(mutex_);
  return Pointers(types_);
}

void TypeRegistry::RegisterEvent(EventRecord event) {
  MutexLock lock(mutex_);
  if (!Contains(events_, event.name)) events_.push_back(std::move(event));
}

void TypeRegistry::RegisterEvent(std::string_view name, std::string_view description,
                                 TypeIdentifier payload) {
  EventRecord event;
  event.name = name;
  event.description = description;
  event.payload = payload;
  RegisterEvent(std::move(event));
}

const EventRecord* TypeRegistry::FindEvent(std::string_view name) const {
  MutexLock lock(mutex_);
  const auto found = std::find_if(events_.begin(), events_.end(),
                                  [name](const EventRecord& event) { return event.name == name; });
  return found != events_.end() ? &*found : nullptr;
}

std::vector<const EventRecord*> TypeRegistry::Events() const {
  MutexLock lock(mutex_);
  return Pointers(events_);
}

}  // namespace Kest
