// MapText keeps the JSON of the inventory as it was last published, so that publishing it again and
// returning it cost a memory copy at most: one text of the versioned map, of which that of the map
// without a version is a part, and of that the text of each item.
//
//   ItemTexts made;
//   made.Add(changedItem);
//   MapText::Draft draft;
//   if (!text.Prepare(pace, items, made, &draft)) return;  // nothing has changed, nor if it throws
//   text.Keep(std::move(draft), version);                  // cannot fail
//
// Threads:  module tasks only.
// Lifetime: what it returns is valid until the next Keep, unless it is shared. Items are known by
//           their address, so those of the last Keep are alive until the next Prepare has returned.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/shared_text.h"
#include "loot/state/pace.h"
#include "loot/wire/loot_resources.h"

namespace Kest::Client::Loot {

// The member of an item in the JSON of a map: "\"id\":{..}".
struct MemberText {
  const Api::PlayerLoot* item = nullptr;
  const char* text = nullptr;
  size_t size = 0;
  size_t valueAt = 0;  // where the item's own JSON begins

  std::string_view Value() const { return {text + valueAt, size - valueAt}; }
};

// The members of items that are to become part of the map. It shares the items.
class ItemTexts {
 public:
  // Writes the member of an item. One that does not convert is left out.
  void Add(const Api::PlayerLootPointer& item);
  // Whether there is an item, of those that come next in the order in which they were added.
  bool HasNext(const Api::PlayerLoot& item);
  // From here on, the first come next.
  void Rewind() { next_ = 0; }

  const std::vector<MemberText>& Members() const { return members_; }

 private:
  std::string* TextWithSpaceFor(size_t bytes);

  std::vector<Api::PlayerLootPointer> items_;
  std::list<std::string> texts_;  // never grown: the members point into them
  std::vector<MemberText> members_;
  std::string scratch_;
  size_t next_ = 0;
};

class MapText {
  struct Buffer {
    explicit Buffer(size_t size) : capacity(size) {}
    size_t capacity;
    std::unique_ptr<char[]> bytes = std::make_unique_for_overwrite<char[]>(capacity);
    std::atomic<int> holders = 0;  // of shared texts: while there are any, the bytes stay
  };

 public:
  MapText() = default;
  MapText(MapText&&) = default;
  MapText& operator=(MapText&&) = default;

  // The text as Keep will leave it. Where the present buffer can hold it and no shared
  // text is held, its bytes move only then.
  class Draft {
    friend class MapText;
    // Members one after the other, with commas between.
    struct Run {
      const char* from;
      size_t to;  // in the map
      size_t size;
      bool isKept;  // from the present text
    };

    void Append(const MemberText& member, bool isKept);

    bool isMade = false;
    std::vector<MemberText> members;
    std::vector<Run> runs;  // by rising `to`
    size_t size = 0;        // of the map
    size_t madeBytes = 0;   // of the members that are not kept
    const char* lastKept = nullptr;
    bool isInOrder = true;           // what is kept
    std::shared_ptr<Buffer> buffer;  // null: the present one
  };

  // The text of all `items` in their order: of those in `made` as it is there, of the others as it
  // was. When an item has no text, the draft is that of no text. False: given up in a pause of
  // `pace`, which must not go on once `items` have changed.
  bool Prepare(Pace& pace, const Api::PlayerLootItems& items, const ItemTexts& made,
               Draft* draft) const;
  // REQUIRES: `draft` was prepared last, nothing was shared since, and the texts it was made of are
  //           alive.
  void Keep(Draft draft, int64_t version) noexcept;

  // {"id":{..},..}
  std::string_view Items() const;
  // {"version":1,"playerLoot":{"id":{..},..}}
  std::string_view Versioned() const;
  // The same, to be held for as long as one likes and given up on any thread.
  SharedText ShareItems() const { return Share(Items()); }
  SharedText ShareVersioned() const { return Share(Versioned()); }
  // An item's JSON. It is looked for from `*place` on, which then is after it.
  std::string_view Item(const Api::PlayerLoot& item, size_t* place) const;

 private:
  // The halves of Prepare: finds the text and the place of each item; copies them.
  bool Lay(Pace& pace, const Api::PlayerLootItems& items, const ItemTexts& made,
           Draft* draft) const;
  static bool CopyRuns(Pace& pace, const std::vector<Draft::Run>& runs, char* map);
  bool CanHoldInPlace(size_t bytes) const;
  // Does in the present buffer what CopyRuns does in a new one.
  void MoveInPlace(const std::vector<Draft::Run>& runs) noexcept;
  void WriteVersion(int64_t version) noexcept;
  SharedText Share(std::string_view text) const;

  static constexpr size_t kFront = 64;  // holds the version and what is around it

  char* Map() const { return buffer_->bytes.get() + kFront; }

  bool isMade_ = false;              // without a text, all that is returned is empty
  std::vector<MemberText> members_;  // in the order of the text
  std::shared_ptr<Buffer> buffer_;   // the map begins at kFront
  size_t size_ = 0;                  // of the map
  size_t versionedAt_ = 0;           // where the versioned map begins
};

}  // namespace Kest::Client::Loot
