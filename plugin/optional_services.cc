#include "plugin/optional_services.h"

namespace Kest {
namespace {

// Null: the host was compiled against a table that ends before the entry, or left it out.
template <class Entry>
Entry Find(const KestHostServices* services, Entry KestHostServices::*entry, size_t offset) {
  if (services == nullptr || services->size < offset + sizeof(Entry)) return nullptr;
  return services->*entry;
}

}  // namespace

int64_t HostMilliseconds(const KestHostServices* services) {
  const auto now = Find(services, &KestHostServices::now, offsetof(KestHostServices, now));
  return now != nullptr ? now(services) : WallClockMilliseconds();
}

bool CreateHostUuid(const KestHostServices* services, UuidBytes* uuid) {
  const auto create =
      Find(services, &KestHostServices::createUuid, offsetof(KestHostServices, createUuid));
  return create != nullptr ? create(services, uuid->data()) : CreateUuid(uuid);
}

}  // namespace Kest
