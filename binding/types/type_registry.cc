#include "binding/types/type_registry.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "log/positional_format.h"

namespace Kest {
namespace {

// Never destroyed: whatever runs last in the process may still convert values.
std::atomic<TypeRegistry*>& ProcessSlot() {
  static std::atomic<TypeRegistry*> slot = new TypeRegistry();
  return slot;
}

template <typename Records>
bool Contains(const Records& records, std::string_view name) {
  return std::any_of(records.begin(), records.end(),
                     [name](const auto& record) { return record.name == name; });
}

template <typename Record>
std::vector<const Record*> Pointers(const std::deque<Record>& records) {
  std::vector<const Record*> pointers;
  pointers.reserve(records.size());
  for (const Record& record : records) pointers.push_back(&record);
  return pointers;
}

}  // namespace

// Whether the next call of the chain may act; `condition` false is a failure.
bool TypeBuilder::Requires(bool condition) {
  if (state_ == State::kOpen && !condition) state_ = State::kFailed;
  return state_ == State::kOpen;
}

TypeBuilder& TypeBuilder::AddField(FieldRecord field) {
  if (!Requires(true)) return *this;
  if (Requires(record_->kind == TypeKind::kStructure && !Contains(record_->fields, field.name))) {
    record_->fields.push_back(std::move(field));
  }
  return *this;
}

TypeBuilder& TypeBuilder::AddEnumerator(std::string_view name, int32_t value,
                                        std::string_view description) {
  if (!Requires(true)) return *this;
  if (Requires(record_->kind == TypeKind::kEnumeration && !Contains(record_->enumerators, name))) {
    record_->enumerators.push_back({std::string(name), std::string(description), value});
  }
  return *this;
}

TypeBuilder& TypeBuilder::SetNameSpace(std::string_view nameSpace) {
  if (Requires(true)) record_->nameSpace = nameSpace;
  return *this;
}

TypeBuilder& TypeBuilder::SetDescription(std::string_view description) {
  if (Requires(true)) record_->description = description;
  return *this;
}

TypeBuilder& TypeBuilder::AddTag(std::string_view tag) {
  if (Requires(true)) record_->tags.emplace_back(tag);
  return *this;
}

TypeBuilder& TypeBuilder::AddTags(std::initializer_list<std::string_view> tags) {
  for (const std::string_view tag : tags) AddTag(tag);
  return *this;
}

TypeRegistry::TypeRegistry() = default;
TypeRegistry::~TypeRegistry() = default;

TypeRegistry& TypeRegistry::Process() {
  return *ProcessSlot().load(std::memory_order_acquire);
}

void TypeRegistry::ResetProcessForTests() {
  // The former registry stays alive behind this list, for records and leak checkers alike.
  static auto* former = new std::vector<TypeRegistry*>();
  former->push_back(ProcessSlot().exchange(new TypeRegistry(), std::memory_order_acq_rel));
}

TypeBuilder TypeRegistry::RegisterType(std::string_view name, size_t size, uint32_t key,
                                       TypeKind kind) {
  MutexLock lock(mutex_);
  if (byName_.find(name) != byName_.end()) return {nullptr, TypeBuilder::State::kRepeat};
#ifndef NDEBUG
  if (byKey_.count(key) != 0) return {nullptr, TypeBuilder::State::kFailed};
#endif
  TypeRecord& record = types_.emplace_back();
  record.kind = kind;
  record.size = size;
  record.name = name;
  record.staticKey = key;
  record.staticKeyText = Format("#%08X", key);
  record.registry = this;
  byName_.emplace(record.name, &record);
  byKey_.emplace(key, &record);
  return {&record, TypeBuilder::State::kOpen};
}

const TypeRecord* TypeRegistry::FindByName(std::string_view name) const {
  MutexLock lock(mutex_);
  const auto found = byName_.find(name);
  return found != byName_.end() ? found->second : nullptr;
}

const TypeRecord* TypeRegistry::FindByKey(uint32_t key) const {
  MutexLock lock(mutex_);
  const auto found = byKey_.find(key);
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
