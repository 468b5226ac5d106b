#include "loot/state/map_text.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <functional>
#include <span>
#include <utility>

#include "binding/json/json_adapter.h"

namespace Kest::Client::Loot {
namespace {

constexpr std::string_view kBeforeVersion = "{\"version\":";
constexpr std::string_view kAfterVersion = ",\"playerLoot\":";
constexpr size_t kMaxVersion = 20;

// What ItemTexts reserves at a time.
constexpr size_t kBytesOfTexts = size_t{256} << 10;
// Bytes that are copied in about the time of one item's work.
constexpr size_t kBytesInStep = 4096;

// What is copied into the present buffer at a time; more has pauses, so it needs another buffer.
constexpr size_t kMostBytesInPlace = size_t{1} << 20;

// The place of the item among the few from `from` on, or the size.
size_t FindNear(const std::vector<MemberText>& texts, size_t from, const Api::PlayerLoot* item) {
  constexpr size_t kFew = 8;
  const size_t end = std::min(from + kFew, texts.size());
  for (size_t i = from; i < end; ++i) {
    if (texts[i].item == item) return i;
  }
  return texts.size();
}

// Finds the texts of items that come mostly in the order of the texts.
class TextFinder {
 public:
  explicit TextFinder(const std::vector<MemberText>& texts) : texts_(texts) {}

  // Looks at the few that come next.
  const MemberText* FindNext(const Api::PlayerLoot* item) {
    return Found(FindNear(texts_, next_, item));
  }
  // Looks at all.
  const MemberText* Find(const Api::PlayerLoot* item) {
    if (byItem_.empty()) Sort();
    const auto itemOf = [this](size_t i) { return texts_[i].item; };
    const auto found = std::ranges::lower_bound(byItem_, item, std::less<>(), itemOf);
    return found != byItem_.end() && itemOf(*found) == item ? Found(*found) : nullptr;
  }

 private:
  const MemberText* Found(size_t i) {
    if (i == texts_.size()) return nullptr;
    next_ = i + 1;
    return &texts_[i];
  }
  void Sort() {
    byItem_.resize(texts_.size());
    for (size_t i = 0; i < texts_.size(); ++i) byItem_[i] = i;
    std::ranges::sort(byItem_, std::less<>(), [this](size_t i) { return texts_[i].item; });
  }

  const std::vector<MemberText>& texts_;
  size_t next_ = 0;
  std::vector<size_t> byItem_;  // places in `texts_`; empty until it is needed
};

// The members lie at `text` one after the other, with a comma between.
void SetTexts(std::span<MemberText> members, const char* text) {
  for (MemberText& member : members) {
    member.text = text;
    text += member.size + 1;
  }
}

}  // namespace

void ItemTexts::Add(const Api::PlayerLootPointer& item) {
  ConversionContext context;
  scratch_.clear();
  WriteJsonValue(context, item->lootId, &scratch_);
  scratch_ += ':';
  const size_t valueAt = scratch_.size();
  WriteJsonValue(context, *item, &scratch_);
  if (!context.Ok()) return;
  items_.push_back(item);
  std::string* const text = TextWithSpaceFor(scratch_.size() + 1);
  members_.push_back({item.get(), text->data() + text->size(), scratch_.size(), valueAt});
  text->append(scratch_).append(",");
}

// The first text is as long as it needs to be: mostly it is the only one.
std::string* ItemTexts::TextWithSpaceFor(size_t bytes) {
  if (texts_.empty() || texts_.back().capacity() - texts_.back().size() < bytes) {
    std::string text;
    text.reserve(texts_.empty() ? bytes : std::max(bytes, kBytesOfTexts));
    texts_.push_back(std::move(text));
  }
  return &texts_.back();
}

bool ItemTexts::HasNext(const Api::PlayerLoot& item) {
  const size_t place = FindNear(members_, next_, &item);
  if (place == members_.size()) return false;
  next_ = place + 1;
  return true;
}

void MapText::Draft::Append(const MemberText& member, bool isKept) {
  const size_t to = size + 1;  // after a brace or a comma
  members.push_back(member);
  if (!isKept) madeBytes += member.size;
  size = to + member.size;
  if (!runs.empty()) {
    Run& last = runs.back();
    const char* const end = last.from + last.size;
    if (member.text == end + 1 && *end == ',') {
      last.size += 1 + member.size;
      return;
    }
  }
  runs.push_back({member.text, to, member.size, isKept});
  if (!isKept) return;
  isInOrder = isInOrder && (lastKept == nullptr || lastKept < member.text);
  lastKept = member.text;
}

bool MapText::Lay(Pace& pace, const Api::PlayerLootItems& items, const ItemTexts& made,
                  Draft* draft) const {
  draft->members.reserve(items.size());
  TextFinder kept(members_);
  TextFinder added(made.Members());
  for (const auto& [lootId, item] : items) {
    const MemberText* member = kept.FindNext(item.get());
    bool isKept = member != nullptr;
    if (member == nullptr) member = added.FindNext(item.get());
    if (member == nullptr) member = added.Find(item.get());
    if (member == nullptr) {
      member = kept.Find(item.get());
      isKept = true;
    }
    if (member == nullptr) return true;
    draft->Append(*member, isKept);
    if (!pace.Step()) return false;
  }
  draft->size = std::max<size_t>(draft->size, 1) + 1;
  draft->isMade = true;
  return true;
}

bool MapText::CopyRuns(Pace& pace, const std::vector<Draft::Run>& runs, char* map) {
  for (const Draft::Run& run : runs) {
    for (size_t at = 0; at < run.size; at += kBytesInStep) {
      std::memcpy(map + run.to + at, run.from + at, std::min(kBytesInStep, run.size - at));
      if (!pace.Step()) return false;
    }
  }
  return true;
}

bool MapText::CanHoldInPlace(size_t bytes) const {
  if (buffer_ == nullptr || bytes > buffer_->capacity || buffer_->capacity / 2 > bytes)
    return false;
  return buffer_->holders.load(std::memory_order_acquire) == 0;
}

bool MapText::Prepare(Pace& pace, const Api::PlayerLootItems& items, const ItemTexts& made,
                      Draft* draft) const {
  *draft = {};
  if (!Lay(pace, items, made, draft)) return false;
  if (!draft->isMade) return true;
  const size_t bytes = kFront + draft->size + 1;
  const bool isLittle = draft->madeBytes <= kMostBytesInPlace;
  if (isLittle && draft->isInOrder && CanHoldInPlace(bytes)) {
    SetTexts(draft->members, Map() + 1);
    return true;
  }
  draft->buffer = std::make_shared<Buffer>(bytes + bytes / 32);
  char* const map = draft->buffer->bytes.get() + kFront;
  SetTexts(draft->members, map + 1);
  return CopyRuns(pace, draft->runs, map);
}

void MapText::Keep(Draft draft, int64_t version) noexcept {
  if (!draft.isMade) {
    *this = MapText();
    return;
  }
  if (draft.buffer != nullptr) {
    buffer_.swap(draft.buffer);
  } else {
    MoveInPlace(draft.runs);
  }
  isMade_ = true;
  members_.swap(draft.members);
  size_ = draft.size;
  char* const map = Map();
  for (const Draft::Run& run : draft.runs) map[run.to - 1] = ',';
  map[0] = '{';
  map[size_ - 1] = '}';
  map[size_] = '}';
  WriteVersion(version);
}

// Of the runs that were in the buffer, those that move back never meet those that move forward:
// their order stays.
void MapText::MoveInPlace(const std::vector<Draft::Run>& runs) noexcept {
  char* const map = Map();
  for (auto run = runs.rbegin(); run != runs.rend(); ++run) {
    if (run->isKept && run->from < map + run->to) std::memmove(map + run->to, run->from, run->size);
  }
  for (const Draft::Run& run : runs) {
    if (run.isKept && map + run.to < run.from) std::memmove(map + run.to, run.from, run.size);
  }
  for (const Draft::Run& run : runs) {
    if (!run.isKept) std::memcpy(map + run.to, run.from, run.size);
  }
}

// Its digits end where the rest begins, so that a longer version moves nothing.
void MapText::WriteVersion(int64_t version) noexcept {
  char digits[kMaxVersion];
  const char* const end = std::to_chars(digits, digits + kMaxVersion, version).ptr;
  char* to = Map();
  for (const std::string_view part :
       {kAfterVersion, std::string_view(digits, static_cast<size_t>(end - digits)),
        kBeforeVersion}) {
    to -= part.size();
    std::memcpy(to, part.data(), part.size());
  }
  versionedAt_ = static_cast<size_t>(to - buffer_->bytes.get());
}

std::string_view MapText::Items() const {
  return isMade_ ? std::string_view(Map(), size_) : std::string_view();
}

std::string_view MapText::Versioned() const {
  if (!isMade_) return {};
  return {buffer_->bytes.get() + versionedAt_, kFront - versionedAt_ + size_ + 1};
}

SharedText MapText::Share(std::string_view text) const {
  if (text.empty()) return {};
  ++buffer_->holders;
  const auto end = [held = buffer_](const void*) {
    held->holders.fetch_sub(1, std::memory_order_release);
  };
  return {std::shared_ptr<const void>(text.data(), end), text};
}

std::string_view MapText::Item(const Api::PlayerLoot& item, size_t* place) const {
  while (*place < members_.size()) {
    const MemberText& member = members_[(*place)++];
    if (member.item == &item) return member.Value();
  }
  return {};
}

}  // namespace Kest::Client::Loot
