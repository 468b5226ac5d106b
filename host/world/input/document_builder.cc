#include "host/world/input/document_builder.h"

#include <utility>

#include "host/json/json_text.h"

namespace Kest::Host {

bool DocumentBuilder::key(std::string& name) {
  if (!open_.back().names.insert(name).second) {
    return Fail("duplicate member " + JsonString(name));
  }
  name_ = std::move(name);
  hasName_ = true;
  return true;
}

bool DocumentBuilder::parse_error(size_t, const std::string&,
                                  const nlohmann::detail::exception& error) {
  const std::string_view message = error.what();  // "[the library's name for it] message"
  return Fail(std::string(message.substr(message.find("] ") + 2)));
}

bool DocumentBuilder::Add(Json value) {
  Place(std::move(value));
  return true;
}

bool DocumentBuilder::Fail(std::string problem) {
  problem_ = std::move(problem);
  return false;
}

bool DocumentBuilder::WantsName() const {
  return !open_.empty() && open_.back().value->is_object() && !hasName_;
}

// A container's address holds while it is open: nothing is added beside it meanwhile.
Json* DocumentBuilder::Place(Json value) {
  if (open_.empty()) return &(root_ = std::move(value));
  Json& parent = *open_.back().value;
  if (parent.is_array()) {
    parent.push_back(std::move(value));
    return &parent.back();
  }
  hasName_ = false;
  // Its own emplace would look for the name first.
  auto& members = parent.get_ref<Json::object_t&>();
  return &members.emplace_back(std::move(name_), std::move(value)).second;
}

bool DocumentBuilder::Open(Json container) {
  if (open_.size() == kMaxDepth) {
    return Fail("nesting is deeper than " + std::to_string(kMaxDepth));
  }
  open_.push_back({Place(std::move(container)), {}});
  return true;
}

bool DocumentBuilder::Close() {
  open_.pop_back();
  return true;
}

}  // namespace Kest::Host
