#include "client/arrival_queue.h"

#include <utility>

namespace Kest::Client {

ArrivalQueue::Place ArrivalQueue::MakePlace(std::unique_ptr<ResponseHandler> handler) {
  auto delivery = std::make_shared<Delivery>();
  delivery->handler = std::move(handler);
  std::map<uint64_t, std::shared_ptr<Delivery>> made;
  made.emplace(0, std::move(delivery));
  return made.extract(made.begin());
}

void ArrivalQueue::Arrive(Place place, uint64_t arrival,
                          PluginServiceProxyResponse response) noexcept {
  place.key() = arrival;
  place.mapped()->response = std::move(response);
  MutexLock hold(mutex_);
  deliveries_.insert(std::move(place));
}

void ArrivalQueue::Read(const std::shared_ptr<Delivery>& delivery) noexcept {
  delivery->handler->Read(std::exchange(delivery->response, {}));
  MutexLock hold(mutex_);
  delivery->isRead = true;
}

std::optional<uint64_t> ArrivalQueue::First() const {
  MutexLock hold(mutex_);
  if (deliveries_.empty() || !deliveries_.begin()->second->isRead) return std::nullopt;
  return deliveries_.begin()->first;
}

ArrivalQueue::Place ArrivalQueue::TakeFirst() {
  MutexLock hold(mutex_);
  return deliveries_.extract(deliveries_.begin());
}

void ArrivalQueue::Clear() {
  std::map<uint64_t, std::shared_ptr<Delivery>> dropped;
  MutexLock hold(mutex_);
  dropped.swap(deliveries_);
}

}  // namespace Kest::Client
