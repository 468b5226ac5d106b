#include <algorithm>
#include <charconv>
#include <cmath>

#include "host/world/controls/control_call.h"
#include "host/world/loot/odds.h"

namespace Kest::Host {
namespace {

constexpr int64_t kUsualTrials = 100'000;
constexpr int64_t kMostTrials = 1'000'000;
constexpr int64_t kMostDraws = 10'000'000;  // entries that all trials together may look at
constexpr uint64_t kOddsSeed = 1;           // a question that is repeated has the same result

Json PreparedJson(const PreparedResult& result) {
  Json added = Json::array();
  for (const auto& [key, count] : result.added) {
    added.push_back(Json{{"lootName", key.lootName}, {"refId", key.refId}, {"count", count}});
  }
  return Json{{"recipe", result.recipeName}, {"added", std::move(added)}, {"times", result.times}};
}

Json AllPreparedJson(Platform& platform) {
  Json list = Json::array();
  for (const PreparedResult& result : platform.loot.prepared().results()) {
    list.push_back(PreparedJson(result));
  }
  return list;
}

void ReadItem(FieldReader& item, const WorldData& data, CountsByKey& added) {
  const LootKey key{item.String("lootName"), item.StringOr("refId", "")};
  const int64_t count = item.IntegerOr("count", 1, 1, kMax32);
  if (!item.ok()) return;
  if (const std::string fault = LootKeyFault(data, key); !fault.empty()) item.Fail(fault);
  if (!added.emplace(key, count).second) item.Fail(key.LootId() + " is listed twice");
}

// How often to try. `most` depends on the recipe.
Maybe<int64_t> ReadTrials(const ControlCall& call, int64_t most) {
  const auto text = call.target.Parameter("trials");
  if (!text) return std::min(kUsualTrials, most);
  int64_t trials = 0;
  const char* const end = text->data() + text->size();
  const auto [last, error] = std::from_chars(text->data(), end, trials);
  if (error != std::errc() || last != end || trials < 1 || trials > most) {
    return Failure{"trials must be a number from 1 to " + std::to_string(most) + " for this recipe",
                   400};
  }
  return trials;
}

// Not more digits than mean something, and the same everywhere.
double Rounded(double share) {
  return std::round(share * 1e9) / 1e9;
}

Json ItemJson(const std::string& lootName, const ItemOdds& item, int64_t trials) {
  const ShareInterval interval = WilsonInterval(item.drawn, trials);
  return Json{{"lootName", lootName},
              {"drawn", item.drawn},
              {"quantity", item.quantity},
              {"share", Rounded(static_cast<double>(item.drawn) / static_cast<double>(trials))},
              {"low", Rounded(interval.low)},
              {"high", Rounded(interval.high)},
              {"exact", item.exact ? Json(Rounded(*item.exact)) : Json()}};
}

}  // namespace

ControlResult ShowNextResults(Platform& platform, const ControlCall&) {
  return AllPreparedJson(platform);
}

ControlResult PrepareNextResult(Platform& platform, const ControlCall& call) {
  FieldReader fields(call.body);
  PreparedResult result;
  result.recipeName = fields.String("recipe");
  if (fields.ok() && platform.data.FindRecipe(result.recipeName) == nullptr) {
    fields.FailAt("recipe", "unknown recipe " + result.recipeName);
  }
  if (fields.Find("added") == nullptr) fields.Fail("member \"added\" is missing");
  fields.ForEach("added", [&](FieldReader& item) { ReadItem(item, platform.data, result.added); });
  result.times = fields.IntegerOr("times", 1, 1, kMax32);
  if (!fields.Finish()) return fields.failure();
  Json json = PreparedJson(result);
  if (platform.loot.prepared().Add(std::move(result))) return json;
  return Failure{
      "no more than " + std::to_string(PreparedResults::kMostResults) + " results can be prepared",
      409};
}

ControlResult ForgetNextResults(Platform& platform, const ControlCall&) {
  platform.loot.prepared().Clear();
  return AllPreparedJson(platform);
}

ControlResult ShowOdds(Platform& platform, const ControlCall& call) {
  const std::string& name = call.path.at("recipe");
  const PlatformRecipe* recipe = platform.data.FindRecipe(name);
  if (recipe == nullptr) return Failure{"there is no recipe " + name, 404};
  const int64_t most =
      std::clamp(kMostDraws / DrawCost(platform.data, *recipe), int64_t{1}, kMostTrials);
  const auto trials = ReadTrials(call, most);
  if (!trials) return trials.GetFailure();
  SeededRandom random(kOddsSeed);
  Json items = Json::array();
  for (const auto& [lootName, item] : TryOdds(platform.data, *recipe, platform.inventory,
                                              platform.collections, trials.GetValue(), random)) {
    items.push_back(ItemJson(lootName, item, trials.GetValue()));
  }
  return Json(
      {{"recipe", recipe->recipeName}, {"trials", trials.GetValue()}, {"items", std::move(items)}});
}

}  // namespace Kest::Host
