// The table of services that a host hands to a plugin, with the object that serves it.
#pragma once

#include "plugin/host_interface.h"

namespace Kest::Host {

// A plugin gives each entry the table's address back; the owner is stored after the table, so that
// an entry finds it there.
template <typename Owner>
struct OwnedServices {
  // `Entries` has a static function for each entry, by the entry's name with a capital letter.
  // Those of causes may be missing; the table then says that the host has none.
  template <typename Entries>
  static OwnedServices Make(Owner* owner) {
    OwnedServices services = {
        {sizeof(KestHostServices), Entries::Request, Entries::Subscribe, Entries::Unsubscribe,
         Entries::Publish, Entries::PostTask, Entries::WaitBegin, Entries::WaitEnd, Entries::Yield,
         Entries::Log, Entries::Telemetry, Entries::Identify, Entries::Now, Entries::CreateUuid,
         nullptr, nullptr},
        owner};
    if constexpr (requires { Entries::Cause; }) {
      services.table.cause = Entries::Cause;
      services.table.setCause = Entries::SetCause;
    }
    return services;
  }

  static Owner& Of(const KestHostServices* self) {
    return *reinterpret_cast<const OwnedServices*>(self)->owner;
  }

  KestHostServices table;  // first: its address is this object's
  Owner* owner;
};

}  // namespace Kest::Host
