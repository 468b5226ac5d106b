#include "loot/calls/collection_sources.h"

#include <algorithm>
#include <utility>

#include "client/sibling_client.h"
#include "log/logger.h"

namespace Kest::Client::Loot {

template <class T, class Keep>
void CollectionSources::FollowOne(std::string url, uint8_t readinessBits, Keep keep) {
  followed_.reserve(followed_.size() + 1);  // so that what is subscribed is kept
  client_.Subscribe<T>(url, [this, readinessBits, keep](const T* value, ResourceEventType) {
    if (value == nullptr) return;
    (collections_.*keep)(*value);
    readiness_.OnSourceRead(readinessBits);
  });
  followed_.push_back({std::move(url), readinessBits});
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
  skinsOf_ = champions_;
  for (const Followed& followed : followed_) client_.Unsubscribe(followed.url);
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
  followed_.push_back({std::move(url), kReadyChampions});
}

void CollectionSources::OnChampions(const std::string& skinsUrl) {
  const uint64_t champions = ++champions_;
  const InProgress::Mark mark = skinsRequests_.Begin();
  skinsUrl_ = skinsUrl;
  Maybe<Skins> skins = client_.Request<Skins>(HttpMethod::kGet, skinsUrl);
  // The skins of newer champions came first, or the player has left.
  if (champions <= skinsOf_) return;
  if (!skins) {
    LogError("Failed to retrieve %s with error %s", skinsUrl.c_str(),
             skins.GetFailure().text.c_str());
    skinsFailure_ = skins.GetFailure().text;
    return readiness_.OnSourceRead(kReadyChampions);
  }
  skinsFailure_.clear();
  skinsOf_ = champions;
  collections_.ReplaceSkins(std::move(skins.GetValue()));
  readiness_.OnSourceRead(kReadyChampions | kReadySkins);
}

const std::string* CollectionSources::UrlOf(ReadinessBit bit) const {
  const auto followed = std::ranges::find(followed_, static_cast<uint8_t>(bit), &Followed::bits);
  return followed == followed_.end() ? nullptr : &followed->url;
}

std::string_view CollectionSources::ConversionFailureOf(ReadinessBit bit) const {
  const std::string* const url = UrlOf(bit == kReadySkins ? kReadyChampions : bit);
  return url == nullptr ? std::string_view() : client_.ConversionFailureOf(*url);
}

SourceWait CollectionSources::WaitOf(ReadinessBit bit) const {
  if (followed_.empty()) return {"signIn", "Waits until a player is signed in.", {}};
  const bool isOfChampions = bit == kReadyChampions || bit == kReadySkins;
  if (isOfChampions && skinsRequests_.Count() > 0) {
    return {"request", "The champions have come; their skins are being requested.", skinsUrl_};
  }
  if (bit == kReadySkins) {
    if (!skinsFailure_.empty()) {
      return {"champions", "Waits for the next change of the champions: " + skinsFailure_, {}};
    }
    return {"champions", "Waits for the champions: the skins are requested after them.", {}};
  }
  const std::string* const followed = UrlOf(bit);
  const std::string url = followed == nullptr ? std::string() : *followed;
  return {"resource", "Waits for the resource " + url + ".", url};
}

}  // namespace Kest::Client::Loot
