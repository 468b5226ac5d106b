// A hash of a JSON document that does not depend on the order of members, and is the same in every
// build. Nesting costs no stack.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

namespace Kest::Host {

enum class ArrayOrder { kKept, kIgnored };

// Called when a member is complete. Depth 1: a member of the document itself. `integer` is the
// last integer read, the member's own when it is one.
using OnMember =
    std::function<void(int depth, std::string_view name, uint64_t digest, int64_t integer)>;

// 0: `json` is not one JSON document.
uint64_t DigestJson(std::string_view json, ArrayOrder order = ArrayOrder::kKept,
                    const OnMember& onMember = nullptr);

// What DigestJson returns for a list of documents with these digests, whose order is ignored.
uint64_t DigestOfList(std::span<const uint64_t> digests);

// Hashes bytes; Mix combines two hashes, in order.
uint64_t DigestText(std::string_view text);
uint64_t Mix(uint64_t first, uint64_t second);

}  // namespace Kest::Host
