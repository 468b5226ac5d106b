#include "host/audit/comparisons.h"

namespace Kest::Host {
namespace {

constexpr size_t kMostNamed = 20;

class Named {
 public:
  void Add(std::string_view id, std::string_view how) {
    if (++count_ <= kMostNamed) text_.append(id).append(how).append("; ");
  }
  std::string Text() const {
    if (count_ <= kMostNamed) return text_;
    return text_ + "and " + std::to_string(count_ - kMostNamed) + " more";
  }

 private:
  size_t count_ = 0;
  std::string text_;
};

// Calls `differs` for each id that has not the same value in both, which are null where it is
// missing.
template <typename Value, typename Differs>
void Compare(const std::map<std::string, Value, std::less<>>& expected,
             const std::map<std::string, Value, std::less<>>& found, Differs differs) {
  for (const auto& [id, value] : found) {
    const auto other = expected.find(id);
    if (other == expected.end()) {
      differs(id, nullptr, &value);
    } else if (other->second != value) {
      differs(id, &other->second, &value);
    }
  }
  for (const auto& [id, value] : expected) {
    if (!found.contains(id)) differs(id, &value, nullptr);
  }
}

}  // namespace

Counts HeldCounts(const Inventory& inventory) {
  Counts counts;
  for (const auto& [key, record] : inventory.records()) counts[key.LootId()] = record.count;
  return counts;
}

std::string Differences(const ItemDigests& expected, const ItemDigests& found) {
  Named named;
  Compare(expected, found, [&](std::string_view id, const uint64_t* wanted, const uint64_t* is) {
    named.Add(id, wanted == nullptr ? " is new" : is == nullptr ? " is missing" : " differs");
  });
  return named.Text();
}

std::string Differences(const Counts& expected, const Counts& found) {
  Named named;
  Compare(expected, found, [&](std::string_view id, const int64_t* wanted, const int64_t* is) {
    std::string how = " x";
    how.append(std::to_string(is == nullptr ? 0 : *is)).append(" instead of x");
    named.Add(id, how.append(std::to_string(wanted == nullptr ? 0 : *wanted)));
  });
  return named.Text();
}

}  // namespace Kest::Host
