// Builds a value from the calls of a reader, the JSON parser's or the YAML reader's. A call returns
// false, and Problem() says why, for a duplicate name and for nesting beyond kMaxDepth.
#pragma once

#include <set>
#include <string>
#include <vector>

#include "host/json/json.h"

namespace Kest::Host {

constexpr size_t kMaxDepth = 64;

class DocumentBuilder final : public nlohmann::json_sax<Json> {
 public:
  bool null() override { return Add(nullptr); }
  bool boolean(bool value) override { return Add(value); }
  bool number_integer(int64_t value) override { return Add(value); }
  bool number_unsigned(uint64_t value) override { return Add(value); }
  bool number_float(double value, const std::string&) override { return Add(value); }
  bool string(std::string& value) override { return Add(std::move(value)); }
  bool binary(Json::binary_t&) override { return false; }
  bool start_object(size_t) override { return Open(Json::object()); }
  bool start_array(size_t) override { return Open(Json::array()); }
  bool end_object() override { return Close(); }
  bool end_array() override { return Close(); }
  bool key(std::string& name) override;
  bool parse_error(size_t, const std::string&, const nlohmann::detail::exception& error) override;

  bool Add(Json value);
  bool Fail(std::string problem);
  // Whether the next call must be key() or end_object().
  bool WantsName() const;
  Json& Root() { return root_; }
  const std::string& Problem() const { return problem_; }

 private:
  struct Container {
    Json* value;
    std::set<std::string> names;  // of an object's members
  };

  Json* Place(Json value);
  bool Open(Json container);
  bool Close();

  Json root_;
  std::vector<Container> open_;
  std::string name_;  // of the member whose value comes next
  bool hasName_ = false;
  std::string problem_;
};

}  // namespace Kest::Host
