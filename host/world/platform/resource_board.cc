#include "host/world/platform/resource_board.h"

#include "host/json/json_text.h"

namespace Kest::Host {

void ResourceBoard::Set(const std::string& path, const Json& value) {
  std::string text = WriteJson(value);
  std::string& kept = texts_[path];
  if (kept == text) return;
  const bool isNew = kept.empty();
  kept = std::move(text);
  outbox_.push_back(Event(path, isNew ? "Create" : "Update", kept));
}

void ResourceBoard::Remove(const std::string& path) {
  const auto found = texts_.find(path);
  if (found == texts_.end()) return;
  texts_.erase(found);
  outbox_.push_back(Event(path, "Delete", ""));
}

const std::string* ResourceBoard::Find(std::string_view path) const {
  const auto found = texts_.find(path);
  return found == texts_.end() ? nullptr : &found->second;
}

WorldEvent ResourceBoard::Event(std::string_view path, std::string_view eventType,
                                std::string_view data) {
  std::string payload = "{\"uri\":" + JsonString(path) + ",\"eventType\":" + JsonString(eventType);
  if (!data.empty()) payload.append(",\"data\":").append(data);
  payload += '}';
  std::string name(kResourceEventPrefix);
  return {WorldEvent::Channel::kResource, name.append(path), std::move(payload)};
}

}  // namespace Kest::Host
