// A small API of its own: functions that return what they were given, and one of each result.
#pragma once

#include <algorithm>
#include <cmath>
#include <new>
#include <stdexcept>

#include "api/dispatcher.h"
#include "binding/convert/define_struct.h"

namespace Kest::Sample {

struct Slot {
  std::string name;
  int32_t count = 7;
};
struct Unregistered {};

// Returns the arguments it got as members of a structure.
class Functions {
 public:
  BindingProperty Query(std::optional<BindingProperty> o, std::optional<std::vector<Slot>> list,
                        std::optional<Slot> slot, std::optional<int32_t> n, bool flag) {
    BindingProperty result = BindingProperty::Structure();
    if (o) result.GetOrAddMember("o") = *o;
    if (slot) list.emplace().push_back(*slot);
    if (list) result.GetOrAddMember("list").SetCollection();
    for (const Slot& s : list.value_or(std::vector<Slot>())) {
      result.GetOrAddMember("list").Append().SetString(s.name + "*" + std::to_string(s.count));
    }
    if (n) result.GetOrAddMember("n").SetSigned(*n);
    if (flag) result.GetOrAddMember("flag").SetBool(flag);
    return result;
  }
  Maybe<std::string> Path(const std::string& id, int64_t number) const {
    return id + ":" + std::to_string(number);
  }
  bool SetFlag(bool value) { return value; }
  std::string Header(const std::string& name, const std::optional<std::string>& any) {
    return name + "/" + any.value_or("-");
  }
  std::vector<std::string> Body(std::vector<std::string> items, std::optional<bool> reverse) {
    if (reverse.value_or(false)) std::reverse(items.begin(), items.end());
    return items;
  }
  uint64_t Size(const BindingProperty& list) { return list.Size(); }

  Maybe<Nothing> Succeed() { return Nothing{}; }
  Maybe<std::shared_ptr<const std::vector<Slot>>> Held() const { return held_; }
  Maybe<Slot> Fail(std::string text, int32_t status) { return Failure{std::move(text), status}; }
  double NoNumber() { return std::nan(""); }
  Maybe<Unregistered> NoType() { return Unregistered{}; }
  std::shared_ptr<const Slot> NoSlot() { return nullptr; }
  void Throw(const std::string& what) {
    if (what == "memory") throw std::bad_alloc();
    if (what == "number") throw 7;
    throw std::runtime_error(what == "nothing" ? "" : what);
  }

 private:
  std::shared_ptr<const std::vector<Slot>> held_ =
      std::make_shared<const std::vector<Slot>>(std::vector<Slot>{{"first", 1}, {"second", 2}});
};

// The functions of routes, in a registry of their own.
class Api {
 public:
  Api() {
    const auto route = [this](const char* path, const char* name, auto handler) {
      return dispatcher_.Route(HttpMethod::kGet, path, name, &functions_, handler);
    };
    DefineStruct<Slot>(registry_, "Slot").Field<&Slot::name>(kRequired).Field<&Slot::count>();
    auto query = route("/query", "Query", &Functions::Query).Query("o").Query("list");
    query.Query("slot").Query("n").Query("flag");
    route("/path/{id}/{number}", "Path", &Functions::Path).Path("id").Path("number");
    route("/rest/{+name}", "Rest", &Functions::Header).Any("name").Any("any");
    route("/stray}/{name}", "Stray", &Functions::Header).Path("name").Query("any");
    route("/flag/{value}", "SetFlag", &Functions::SetFlag).Path("value");
    route("/header", "Header", &Functions::Header).Header("name").Any("any");
    route("/body", "Body", &Functions::Body).Body("items").Query("reverse");
    route("/size", "Size", &Functions::Size).Query("list");
    route("/succeed", "Succeed", &Functions::Succeed);
    route("/held", "Held", &Functions::Held).Describe("What is held");
    route("/fail", "Fail", &Functions::Fail).Query("text").Query("status");
    route("/no-number", "NoNumber", &Functions::NoNumber);
    route("/no-type", "NoType", &Functions::NoType);
    route("/no-slot", "NoSlot", &Functions::NoSlot);
    route("/throw/{what}", "Throw", &Functions::Throw).Path("what");
  }

  const Dispatcher& dispatcher() const { return dispatcher_; }

  Response Get(std::string_view url, std::string_view contentType = {},
               std::string_view body = {}) const {
    return dispatcher_.Handle({"GET", url, contentType, body, {}, {}});
  }

 private:
  TypeRegistry registry_;
  Functions functions_;
  Dispatcher dispatcher_{registry_};
};

// "200 {...}" or "400 text".
inline std::string Summary(const Response& response) {
  return std::to_string(response.status) + " " + response.body + response.message;
}

}  // namespace Kest::Sample
