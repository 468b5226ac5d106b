#include "host/audit/json_digest.h"

#include <bit>
#include <string>
#include <vector>

#include "host/json/json.h"

namespace Kest::Host {
namespace {

constexpr uint64_t kObject = 5;  // the sums of levels begin with these
constexpr uint64_t kArray = 7;

uint64_t DigestOfLevel(uint64_t sum) {
  return Mix(4, sum);
}

uint64_t PartOfUnordered(uint64_t digest) {
  return Mix(6, digest);
}

// One level of the document that is being read.
struct Frame {
  bool isObject = false;
  uint64_t sum = 0;
  std::string name;  // of the member being read
};

class DigestHandler : public nlohmann::json_sax<Json> {
 public:
  DigestHandler(ArrayOrder order, const OnMember& onMember) : order_(order), onMember_(onMember) {}

  uint64_t Result() const { return result_; }

  bool null() override { return Add(DigestText("null")); }
  bool boolean(bool value) override { return Add(DigestText(value ? "true" : "false")); }
  bool number_integer(number_integer_t value) override {
    integer_ = value;
    return Add(Mix(1, static_cast<uint64_t>(value)));
  }
  bool number_unsigned(number_unsigned_t value) override {
    integer_ = static_cast<int64_t>(value);
    return Add(Mix(1, value));
  }
  bool number_float(number_float_t value, const string_t&) override {
    return Add(Mix(2, std::bit_cast<uint64_t>(value)));
  }
  bool string(string_t& value) override { return Add(Mix(3, DigestText(value))); }
  bool binary(binary_t&) override { return false; }
  bool start_object(size_t) override { return Open(true); }
  bool key(string_t& name) override {
    frames_.back().name.swap(name);
    return true;
  }
  bool end_object() override { return Close(); }
  bool start_array(size_t) override { return Open(false); }
  bool end_array() override { return Close(); }
  bool parse_error(size_t, const std::string&, const nlohmann::detail::exception&) override {
    return false;
  }

 private:
  bool Open(bool isObject) {
    frames_.push_back({isObject, isObject ? kObject : kArray, {}});
    return true;
  }
  bool Close() {
    const uint64_t digest = DigestOfLevel(frames_.back().sum);
    frames_.pop_back();
    return Add(digest);
  }
  bool Add(uint64_t digest) {
    if (frames_.empty()) {
      result_ = digest != 0 ? digest : 1;
      return true;
    }
    Frame& frame = frames_.back();
    if (frame.isObject) {
      if (onMember_) onMember_(static_cast<int>(frames_.size()), frame.name, digest, integer_);
      frame.sum += Mix(DigestText(frame.name), digest);
    } else {
      frame.sum = order_ == ArrayOrder::kKept ? Mix(frame.sum, digest)
                                              : frame.sum + PartOfUnordered(digest);
    }
    return true;
  }

  const ArrayOrder order_;
  const OnMember& onMember_;
  std::vector<Frame> frames_;
  int64_t integer_ = 0;
  uint64_t result_ = 0;
};

}  // namespace

uint64_t DigestJson(std::string_view json, ArrayOrder order, const OnMember& onMember) {
  DigestHandler handler(order, onMember);
  return Json::sax_parse(json, &handler) ? handler.Result() : 0;
}

uint64_t DigestOfList(std::span<const uint64_t> digests) {
  uint64_t sum = kArray;
  for (const uint64_t digest : digests) sum += PartOfUnordered(digest);
  return DigestOfLevel(sum);
}

uint64_t DigestText(std::string_view text) {
  uint64_t hash = 0xcbf29ce484222325U;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3U;
  return hash;
}

uint64_t Mix(uint64_t first, uint64_t second) {
  uint64_t hash = (first ^ (second + 0x9e3779b97f4a7c15U)) * 0xbf58476d1ce4e5b9U;
  hash ^= hash >> 29;
  return (hash + (first << 7)) * 0x94d049bb133111ebU;
}

}  // namespace Kest::Host
