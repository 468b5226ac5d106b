// How the auditor works.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace Kest::Host {

enum class AuditMode {
  kOff,
  kOn,
  kStrict,  // the first finding ends the host
};
inline constexpr std::array<std::string_view, 3> kAuditModes = {"off", "on", "strict"};
inline std::string_view AuditModeName(AuditMode mode) {
  return kAuditModes[static_cast<size_t>(mode)];
}

}  // namespace Kest::Host
