// Structures of every kind of member, written straight from memory, beside the trees of the same
// values, which are written member by member.
#include <random>

#include "tests/binding/tree_text.h"

namespace Kest {
namespace {

using namespace Samples;

struct Members {
  std::string first;
  int8_t tiny = 0;
  uint8_t byte = 0;
  int32_t number = 0;
  uint32_t natural = 0;
  int64_t large = 0;
  uint64_t larger = 0;
  std::string text;
  double ratio = 0;
  bool flag = false;
  Grade grade = Grade::kPlain;
  std::shared_ptr<const std::string> shared;
  Part part;
  std::string oddlyNamed;
  int32_t aNameOf32CharactersIsLongInBytes = 0;
  std::string last;
};

const TypeRegistry& MemberRegistry() {
  static const TypeRegistry& registry = []() -> TypeRegistry& {
    static TypeRegistry types;
    DefineEnum<Grade>(types, "Grade").Enumerator("Epic", Grade::kEpic);
    DefineStruct<Part>(types, "Part").Fields<&Part::name, &Part::count>();
    DefineStruct<Members>(types, "Members")
        .Fields<&Members::first, &Members::tiny, &Members::byte, &Members::number,
                &Members::natural, &Members::large, &Members::larger, &Members::text,
                &Members::ratio, &Members::flag, &Members::grade, &Members::shared,
                &Members::part>()
        .Field<&Members::oddlyNamed>("a \"name\" \xc3\xa4")
        .Fields<&Members::aNameOf32CharactersIsLongInBytes>()
        .Field<&Members::last>(std::string(300, 'n'));
    return types;
  }();
  return registry;
}

class Draw {
 public:
  uint64_t Below(uint64_t bound) { return engine_() % bound; }
  // Of any width.
  uint64_t Number() { return engine_() >> Below(64); }
  // Mostly plain and short; sometimes with what needs an escape, or beyond ASCII, at any place.
  std::string Text() {
    std::string text;
    const size_t parts = Below(8) == 0 ? Below(6000) : Below(70);
    for (size_t i = 0; i < parts; ++i) text += static_cast<char>('a' + Below(26));
    constexpr std::string_view kOdd[] = {"\"",
                                         "\\",
                                         "\x01",
                                         "\x1f",
                                         "\n",
                                         "\x7f",
                                         "\xc3\xa4",
                                         "\xe2\x82\xac",
                                         "/",
                                         "\xc2\x80",
                                         "\xf0\x9f\x8e\x81",
                                         " "};
    for (uint64_t i = Below(3); i > 0; --i) {
      text.insert(Below(text.size() + 1) / 3 * 3 % (text.size() + 1), kOdd[Below(std::size(kOdd))]);
    }
    if (Below(2) == 0) text.shrink_to_fit();
    return text;
  }
  Members Values() {
    Members members;
    members.first = Text();
    members.tiny = static_cast<int8_t>(Number());
    members.byte = static_cast<uint8_t>(Number());
    members.number = static_cast<int32_t>(Number());
    members.natural = static_cast<uint32_t>(Number());
    members.large = static_cast<int64_t>(Below(2) == 0 ? Number() : -Number());
    members.larger = Number();
    members.text = Text();
    members.ratio = static_cast<double>(Number()) / 8;
    members.flag = Below(2) == 0;
    members.grade = static_cast<Grade>(Below(3));
    if (Below(2) == 0) members.shared = std::make_shared<const std::string>(Text());
    members.part = {Text(), static_cast<int32_t>(Number())};
    members.oddlyNamed = Text();
    members.aNameOf32CharactersIsLongInBytes = -static_cast<int32_t>(Below(200));
    members.last = Text();
    return members;
  }

 private:
  std::mt19937_64 engine_{301};
};

TEST(NativeMembers, AreWrittenAsTheirTreesAre) {
  Draw draw;
  for (int round = 0; round < 3000; ++round) {
    std::map<std::string, std::shared_ptr<const Members>> items;
    for (uint64_t i = draw.Below(5); i > 0; --i) {
      items[draw.Text()] =
          draw.Below(5) == 0 ? nullptr : std::make_shared<const Members>(draw.Values());
    }
    ConversionContext context(MemberRegistry());
    const BindingProperty tree = ToProperty(context, items);
    std::string json;
    std::string bytes;
    WriteJsonValue(context, items, &json);
    MessagePackWriter writer(&bytes);
    Read(context, items, writer);
    writer.Finish(context);
    ASSERT_EQ(context.ErrorMessage(), "");
    ASSERT_EQ(json, Json(tree)) << "round " << round;
    ASSERT_EQ(Json(Tree(json)), json) << "round " << round;
    std::string packedTree;
    WritePacked(context, tree, &packedTree);
    ASSERT_TRUE(bytes == packedTree) << "round " << round;
  }
}

}  // namespace
}  // namespace Kest
