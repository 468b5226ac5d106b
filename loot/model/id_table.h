// Hash tables from an id to a record of another plugin.
#pragma once

#include <cstdint>
#include <functional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Kest::Client::Loot {

template <class Key, class Value>
using IdTable = std::unordered_map<Key, Value>;

// Replaces `*table` by `records`; of equal ids the last stays. `value` selects what is kept of a
// record: by default all of it. Nothing is changed when memory runs out.
template <class Key, class Value, class Record, class ValueOf = std::identity>
void RefillTable(std::vector<Record> records, Key Record::*id, IdTable<Key, Value>* table,
                 ValueOf value = {}) {
  constexpr size_t kStartBuckets = 8;
  IdTable<Key, Value> replacement(kStartBuckets);
  replacement.reserve(records.size());
  for (Record& record : records) {
    const Key key = record.*id;
    replacement.insert_or_assign(key, std::invoke(value, std::move(record)));
  }
  table->swap(replacement);
}

// Null for an id without an entry, also for one that the key type cannot hold.
template <class Key, class Value>
const Value* FindById(const IdTable<Key, Value>& table, int64_t id) {
  if (!std::in_range<Key>(id)) return nullptr;
  const auto found = table.find(static_cast<Key>(id));
  return found == table.end() ? nullptr : &found->second;
}

}  // namespace Kest::Client::Loot
