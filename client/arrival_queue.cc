#include "client/arrival_queue.h"

#include <utility>

namespace Kest::Client {

ArrivalQueue::Place ArrivalQueue::MakePlace(Handler handle) {
  std::map<uint64_t, Delivery> made;
  made.emplace(0, Delivery{std::move(handle), {}});
  return made.extract(made.begin());
}

void ArrivalQueue::Arrive(Place place, uint64_t arrival,
                          PluginServiceProxyResponse response) noexcept {
  place.key() = arrival;
  place.mapped().response = std::move(response);
  MutexLock hold(mutex_);
  deliveries_.insert(std::move(place));
}

std::optional<uint64_t> ArrivalQueue::First() const {
  MutexLock hold(mutex_);
  if (deliveries_.empty()) return std::nullopt;
  return deliveries_.begin()->first;
}

ArrivalQueue::Place ArrivalQueue::TakeFirst() {
  MutexLock hold(mutex_);
  return deliveries_.extract(deliveries_.begin());
}

void ArrivalQueue::Clear() {
  std::map<uint64_t, Delivery> dropped;
  MutexLock hold(mutex_);
  dropped.swap(deliveries_);
}

}  // namespace Kest::Client
