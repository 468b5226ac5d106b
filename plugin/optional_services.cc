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

uint64_t HostCause(const KestHostServices* services) {
  const auto cause = Find(services, &KestHostServices::cause, offsetof(KestHostServices, cause));
  return cause != nullptr ? cause(services) : 0;
}

void SetHostCause(const KestHostServices* services, uint64_t cause) {
  const auto setCause =
      Find(services, &KestHostServices::setCause, offsetof(KestHostServices, setCause));
  if (setCause != nullptr) setCause(services, cause);
}

}  // namespace Kest
