#include "loot/calls/collection_sources.h"

#include <utility>

#include "client/sibling_client.h"
#include "log/logger.h"
#include "loot/calls/source_readiness.h"

namespace Kest::Client::Loot {

template <class T, class Keep>
void CollectionSources::FollowOne(std::string url, uint8_t readinessBits, Keep keep) {
  followed_.reserve(followed_.size() + 1);  // so that what is subscribed is kept
  client_.Subscribe<T>(url, [this, readinessBits, keep](const T* value, ResourceEventType) {
    if (value == nullptr) return;
    (collections_.*keep)(*value);
    readiness_.OnSourceRead(readinessBits);
  });
  followed_.push_back(std::move(url));
}

void CollectionSources::Follow(uint64_t summonerId) {
  Drop();
  const std::string id = std::to_string(summonerId);
  const std::string collections = "/tav-collections/v1/inventories/" + id;
  FollowChampions("/tav-champions/v1/inventories/" + id);
  FollowOne<std::vector<Api::CollectionsWardSkin>>(collections + "/ward-skins", kReadyWardSkins,
                                                   &Collections::ReplaceWardSkins);
  FollowOne<Api::CollectionsSummonerIcons>(collections + "/summoner-icons", kReadySummonerIcons,
                                           &Collections::ReplaceOwnedSummonerIcons);
  FollowOne<std::vector<Api::CollectionsEmote>>("/tav-inventory/v1/inventory/emotes", kReadyEmotes,
                                                &Collections::ReplaceEmoteInventory);
}

void CollectionSources::Drop() {
  ++latestChampions_;
  for (const std::string& url : followed_) client_.Unsubscribe(url);
  followed_.clear();
}

void CollectionSources::FollowChampions(const std::string& inventory) {
  std::string url = inventory + "/champions-minimal";
  followed_.reserve(followed_.size() + 1);
  client_.Subscribe<Champions>(url, [this, skinsUrl = inventory + "/skins-minimal"](
                                        const Champions* champions, ResourceEventType) {
    if (champions == nullptr) return;
    collections_.ReplaceChampions(*champions);
    OnChampions(skinsUrl);
  });
  followed_.push_back(std::move(url));
}

void CollectionSources::OnChampions(const std::string& skinsUrl) {
  const uint64_t champions = ++latestChampions_;
  Maybe<Skins> skins = client_.Request<Skins>(HttpMethod::kGet, skinsUrl);
  // Newer champions have come while the request was under way, or the player has left.
  if (champions != latestChampions_) return;
  if (!skins) {
    LogError("Failed to retrieve %s with error %s", skinsUrl.c_str(),
             skins.GetFailure().text.c_str());
    return readiness_.OnSourceRead(kReadyChampions);
  }
  collections_.ReplaceSkins(std::move(skins.GetValue()));
  readiness_.OnSourceRead(kReadyChampions | kReadySkins);
}

}  // namespace Kest::Client::Loot
