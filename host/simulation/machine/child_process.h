// Runs work in a copy of this process, so that a crash or an endless loop ends only the copy.
#pragma once

#include <functional>
#include <string>

namespace Kest::Host {

struct ChildResult {
  std::string text;     // what the work returned
  std::string failure;  // how the child ended before its work did; empty: it did not
};

// Ends the child after `mostSeconds` of processor time. Where the system cannot copy a process, the
// work runs in this one.
ChildResult RunInChild(const std::function<std::string()>& work, unsigned mostSeconds);

}  // namespace Kest::Host
