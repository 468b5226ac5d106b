// InProgress counts what is under way, so that it can be reported: each piece of work holds a mark
// until it ends, in whichever way. Threads: any.
#pragma once

#include <cstddef>
#include <memory>

namespace Kest::Client::Loot {

class InProgress {
 public:
  using Mark = std::shared_ptr<const void>;

  // Allocates nothing. A mark may outlive the count.
  Mark Begin() const { return all_; }
  // Marks that are held.
  size_t Count() const { return static_cast<size_t>(all_.use_count() - 1); }

 private:
  Mark all_ = std::make_shared<const char>('\0');
};

}  // namespace Kest::Client::Loot
