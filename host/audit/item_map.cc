#include "host/audit/item_map.h"

#include "host/audit/json_digest.h"

namespace Kest::Host {
namespace {

ReadMap ReadMapAt(std::string_view json, int depth) {
  ReadMap map;
  int64_t count = 0;
  map.digest = DigestJson(json, ArrayOrder::kKept,
                          [&](int at, std::string_view name, uint64_t digest, int64_t integer) {
                            if (at == depth + 1 && name == "count") count = integer;
                            if (at == depth) {
                              map.items.insert_or_assign(std::string(name), digest);
                              map.counts.insert_or_assign(std::string(name), count);
                            } else if (at == 1 && name == "version") {
                              map.version = integer;
                            }
                          });
  return map;
}

}  // namespace

ReadMap ReadItemMap(std::string_view json) {
  return ReadMapAt(json, 1);
}

ReadMap ReadVersionedItemMap(std::string_view json) {
  return ReadMapAt(json, 2);
}

}  // namespace Kest::Host
