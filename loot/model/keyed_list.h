// KeyedList keeps records in the order they came in and finds one by a string member. Of records
// with equal keys the first is found. Threads: module tasks only.
// Lifetime: references and pointers are valid until the next Replace.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Kest::Client::Loot {

template <class Record, std::string Record::*kKey>
class KeyedList {
 public:
  KeyedList() = default;
  explicit KeyedList(std::vector<Record> records) { Replace(std::move(records)); }
  // The index points into the records, so a copy would look into the original.
  KeyedList(const KeyedList&) = delete;
  KeyedList& operator=(const KeyedList&) = delete;

  // Nothing is changed when memory runs out.
  void Replace(std::vector<Record> records) {
    Index index;
    index.reserve(records.size());
    for (const Record& record : records) index.emplace(record.*kKey, &record);
    records_ = std::move(records);  // the records stay where the index points to
    index_ = std::move(index);
  }

  // Null when no record has that key.
  const Record* Find(std::string_view key) const {
    const auto found = index_.find(key);
    return found == index_.end() ? nullptr : found->second;
  }

  const std::vector<Record>& records() const { return records_; }

 private:
  using Index = std::unordered_map<std::string_view, const Record*>;

  std::vector<Record> records_;
  Index index_;
};

}  // namespace Kest::Client::Loot
