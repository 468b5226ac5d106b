// The registry of native types and events, and the untyped builder under DefineStruct and
// DefineEnum (binding/convert/define_struct.h), which is what registration code uses.
#pragma once

#include <deque>
#include <exception>
#include <initializer_list>
#include <list>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "base/kept_memory.h"
#include "base/mutex.h"
#include "binding/types/type_record.h"

namespace Kest {

// Fills one record and copies the texts it is given. Each call returns the builder, so a
// registration reads as one chain. Calls do nothing when the name was registered before or when an
// earlier call of the chain failed. A call fails, changing nothing but logging an error, for a
// field of an enumeration, an enumerator of a structure, or a second field or enumerator of the
// same name.
//
// The record stays only when the chain comes to its end: an exception that ends it half-way takes
// the record out of the registry again, so that a later registration of the name finds none and
// makes a complete one.
// Threads: one builder is used by one thread.
class TypeBuilder {
 public:
  ~TypeBuilder();
  TypeBuilder(TypeBuilder&& other) noexcept
      : registry_(other.registry_),
        record_(std::exchange(other.record_, nullptr)),
        state_(std::exchange(other.state_, State::kRepeat)),
        exceptions_(other.exceptions_) {}
  TypeBuilder& operator=(TypeBuilder&&) = delete;

  TypeBuilder& AddField(FieldRecord field);
  TypeBuilder& AddEnumerator(std::string_view name, int32_t value,
                             std::string_view description = {});
  TypeBuilder& SetNameSpace(std::string_view nameSpace);
  TypeBuilder& SetDescription(std::string_view description);
  TypeBuilder& AddTags(std::initializer_list<std::string_view> tags);
  // Reserves space for as many fields.
  void Expect(size_t fields);

  bool IsRepeat() const { return state_ == State::kRepeat; }
  bool HasFailed() const { return state_ == State::kFailed; }

 private:
  friend class TypeRegistry;
  enum class State : uint8_t { kOpen, kRepeat, kFailed };
  explicit TypeBuilder(TypeRegistry& registry) : registry_(registry) {}
  TypeBuilder(TypeRegistry& registry, std::string_view name, size_t size, const TypeKey& key,
              TypeKind kind);
  bool IsOpen() const { return state_ == State::kOpen; }
  std::string_view Copy(std::string_view text);
  // Whether an entry of that kind and name may be added; if not, the builder has failed.
  template <typename Entries>
  bool Accepts(TypeKind kind, Entries TypeRecord::*entries, std::string_view name);

  TypeRegistry& registry_;
  TypeRecord* record_ = nullptr;  // the one this chain made
  State state_ = State::kRepeat;
  const int exceptions_ = std::uncaught_exceptions();  // in flight when the chain began
};

// Knows every registered type by name and by static key, and every event, in registration order.
// Nothing is ever removed but a record whose registration an exception ended.
// Threads: any; registration and look-up take the registry's lock.
class TypeRegistry {
 public:
  TypeRegistry();
  ~TypeRegistry();
  TypeRegistry(const TypeRegistry&) = delete;
  TypeRegistry& operator=(const TypeRegistry&) = delete;

  // The registry of the process. It is never destroyed.
  static TypeRegistry& Process();
  // Gives the process an empty registry; records of the former one stay valid. REQUIRES: no other
  // thread uses the registry meanwhile.
  static void ResetProcessForTests();

  // The first registration of a name wins: a repeat returns a builder that does nothing. A new name
  // for a key that is taken is refused: the builder has failed. Either is logged as an error unless
  // the same type is registered under the same name again. `key` outlives the registry.
  TypeBuilder RegisterType(std::string_view name, size_t size, const TypeKey& key, TypeKind kind)
      KEST_EXCLUDES(mutex_);
  // Null when unknown.
  const TypeRecord* FindByName(std::string_view name) const KEST_EXCLUDES(mutex_);
  const TypeRecord* FindByKey(const TypeKey& key) const KEST_EXCLUDES(mutex_);
  std::vector<const TypeRecord*> Types() const KEST_EXCLUDES(mutex_);

  // The first registration of a name wins.
  void RegisterEvent(EventRecord event) KEST_EXCLUDES(mutex_);
  void RegisterEvent(std::string_view name, std::string_view description, TypeIdentifier payload)
      KEST_EXCLUDES(mutex_);
  const EventRecord* FindEvent(std::string_view name) const KEST_EXCLUDES(mutex_);
  std::vector<const EventRecord*> Events() const KEST_EXCLUDES(mutex_);

 private:
  friend class TypeBuilder;
  // Enters the type that `builder` is for, and returns null; otherwise the record it conflicts
  // with.
  const TypeRecord* Enter(std::string_view name, size_t size, const TypeKey& key, TypeKind kind,
                          TypeBuilder& builder) KEST_EXCLUDES(mutex_);
  void Withdraw(const TypeRecord* record) noexcept KEST_EXCLUDES(mutex_);
  void KeepName(FieldRecord& field) KEST_REQUIRES(mutex_);
  std::span<const std::string_view> CopyAll(std::span<const std::string_view> texts)
      KEST_REQUIRES(mutex_);

  mutable Mutex mutex_;
  KeptMemory memory_ KEST_GUARDED_BY(mutex_);  // of all records
  // Pointers to records stay valid.
  std::pmr::list<TypeRecord> types_ KEST_GUARDED_BY(mutex_){memory_.Resource()};
  std::deque<EventRecord> events_ KEST_GUARDED_BY(mutex_);
  std::pmr::map<std::string_view, TypeRecord*> byName_ KEST_GUARDED_BY(mutex_){memory_.Resource()};
  std::pmr::unordered_map<const TypeKey*, TypeRecord*> byKey_ KEST_GUARDED_BY(mutex_){
      memory_.Resource()};
};

}  // namespace Kest
