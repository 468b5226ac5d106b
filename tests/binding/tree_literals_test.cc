#include "binding/tree/tree_literals.h"

#include <sstream>

#include "binding/tree/print_tree.h"
#include "tests/binding/binding_samples.h"

namespace Kest::Samples {
namespace {

TEST(TreeLiterals, MakeEachKindAndPrintAsTheyAreWritten) {
  const BindingProperty tree = Structure{
      {"a", 3u},
      {"b", Collection{true, -2, 2.5, nullptr, std::string("x\"y"), Blob("k\x7f"), Enum(1)}},
      {"c", Structure{}},
      {"d", Collection{}}};
  EXPECT_EQ(Json(tree), R"({"a":3,"b":[true,-2,2.5,null,"x\"y","k)"
                        "\x7f"
                        R"(","Epic"],"c":{},"d":[]})");
  EXPECT_EQ(tree.FindMember("a")->kind(), BindingKind::kUnsigned);
  std::ostringstream printed;
  printed << tree;
  EXPECT_EQ(printed.str(),
            R"({"a": 3u, "b": [true, -2, 2.5, null, "x\"y", blob 6b7f, Epic], "c": {}, "d": []})");
}

}  // namespace
}  // namespace Kest::Samples
