#include "host/world/input/document_layers.h"

#include <algorithm>
#include <array>
#include <unordered_map>
#include <utility>

namespace Kest::Host {
namespace {

// Lists whose elements have names, and the members that make the name.
struct NamedList {
  std::string_view list;
  std::array<const char*, 2> members;
};
constexpr NamedList kNamedLists[] = {
    {"definitions", {"lootName", nullptr}}, {"inventory", {"lootName", "refId"}},
    {"recipes", {"recipeName", nullptr}},   {"messages", {"name", nullptr}},
    {"champions", {"id", nullptr}},         {"skins", {"id", nullptr}},
    {"chromas", {"id", nullptr}},           {"wardSkins", {"id", nullptr}},
    {"summonerIcons", {"id", nullptr}},     {"emotes", {"id", nullptr}},
    {"tournamentLogos", {"id", nullptr}},   {"LootItems", {"id", nullptr}},
    {"LootRecipes", {"id", nullptr}},       {"LootTables", {"id", nullptr}},
};

const NamedList* FindNamedList(std::string_view list) {
  const auto* const found =
      std::find_if(std::begin(kNamedLists), std::end(kNamedLists),
                   [list](const NamedList& named) { return named.list == list; });
  return found == std::end(kNamedLists) ? nullptr : found;
}

// The element's name; empty when it has none.
std::string NameOf(const NamedList& list, const Json& element) {
  std::string name;
  for (const char* const member : list.members) {
    if (member == nullptr || !element.is_object()) continue;
    const auto found = element.find(member);
    if (found != element.end() && !found->is_structured()) name += WriteJson(*found);
    name += ' ';
  }
  return name;
}

using Pair = std::pair<Json*, const Json*>;

// What is the same element in both goes to `pairs`, once all others are appended.
void MergeLists(const NamedList& list, Json* base, const Json& over, std::vector<Pair>* pairs) {
  std::unordered_map<std::string, size_t> places;
  for (size_t i = 0; i < base->size(); ++i) places.emplace(NameOf(list, (*base)[i]), i);
  const size_t before = base->size();
  std::vector<std::pair<size_t, const Json*>> same;
  for (const Json& element : over) {
    const auto found = places.find(NameOf(list, element));
    if (found != places.end() && found->second < before && element.is_object()) {
      same.emplace_back(found->second, &element);
    } else {
      base->push_back(element);
    }
  }
  for (const auto& [place, element] : same) pairs->emplace_back(&(*base)[place], element);
}

void MergeObjects(Json* base, const Json& over, std::vector<Pair>* pairs) {
  std::vector<std::pair<std::string, const Json*>> shared;
  for (const auto& [name, value] : over.items()) {
    const auto found = base->find(name);
    if (value.is_null()) {
      base->erase(name);
    } else if (found == base->end()) {
      base->push_back({name, value});
    } else if ((found->is_object() && value.is_object()) ||
               (found->is_array() && value.is_array() && FindNamedList(name) != nullptr)) {
      shared.emplace_back(name, &value);
    } else {
      *found = value;
    }
  }
  // Members stay where they are from here on.
  for (const auto& [name, value] : shared) {
    Json& member = *base->find(name);
    if (value->is_object()) {
      pairs->emplace_back(&member, value);
    } else {
      MergeLists(*FindNamedList(name), &member, *value, pairs);
    }
  }
}

}  // namespace

void RemoveMember(Json* root, std::string_view path) {
  Json* parent = root;
  for (size_t dot = path.find('.'); dot != path.npos; dot = path.find('.')) {
    const auto found = parent->is_object() ? parent->find(path.substr(0, dot)) : parent->end();
    if (found == parent->end()) return;
    parent = &*found;
    path.remove_prefix(dot + 1);
  }
  if (parent->is_object()) parent->erase(std::string(path));
}

void MergeOver(Json* base, const Json& over) {
  if (!base->is_object() || !over.is_object()) {
    *base = over;
    return;
  }
  std::vector<Pair> pairs = {{base, &over}};
  while (!pairs.empty()) {
    const Pair pair = pairs.back();
    pairs.pop_back();
    MergeObjects(pair.first, *pair.second, &pairs);
  }
}

ValuePath PathTo(const Json& root, const Json& part) {
  ValuePath path = {&root};
  std::vector<Json::const_iterator> next = {root.begin()};
  while (!path.empty() && path.back() != &part) {
    const Json& value = *path.back();
    if (!value.is_structured() || next.back() == value.end()) {
      path.pop_back();
      next.pop_back();
      continue;
    }
    const Json& child = *next.back()++;
    path.push_back(&child);
    next.push_back(child.begin());
  }
  return path;
}

const Json* FindInLayer(const Json& layer, const ValuePath& path) {
  const Json* found = path.empty() ? nullptr : &layer;
  std::string_view list;  // the name of the member that was found last
  for (size_t depth = 1; depth < path.size() && found != nullptr; ++depth) {
    const Json& parent = *path[depth - 1];
    const Json& child = *path[depth];
    const Json* within = nullptr;
    if (parent.is_object() && found->is_object()) {
      for (auto member = parent.begin(); member != parent.end(); ++member) {
        if (&*member != &child) continue;
        list = member.key();
        const auto same = found->find(member.key());
        if (same != found->end()) within = &*same;
      }
    } else if (parent.is_array() && found->is_array()) {
      const NamedList* const named = FindNamedList(list);
      const auto place = static_cast<size_t>(&child - &parent.front());
      if (named == nullptr && place < found->size()) within = &(*found)[place];
      for (size_t i = 0; named != nullptr && i < found->size() && within == nullptr; ++i) {
        if (NameOf(*named, (*found)[i]) == NameOf(*named, child)) within = &(*found)[i];
      }
    }
    found = within;
  }
  return found;
}

}  // namespace Kest::Host
