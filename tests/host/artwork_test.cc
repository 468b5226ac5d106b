#include "host/world/artwork/artwork.h"

#include <gtest/gtest.h>

#include <regex>

#include "host/world/artwork/tile.h"
#include "host/world/file/world_file.h"
#include "host/world/world.h"
#include "tests/support/golden.h"

namespace Kest::Host {
namespace {

// The colour of a tile and what is written on it; all of it when it is no plain XML.
std::string OutlineOf(const std::string& svg) {
  if (!std::regex_match(
          svg,
          std::regex(
              R"((<[^<>&\x01-\x09\x0b-\x1f]+>|(?:[^<>&\x01-\x09\x0b-\x1f]|&(amp|lt|gt|quot);)*)*)"))) {
    return svg;
  }
  std::smatch found;
  std::regex_search(svg, found, std::regex("stroke=\"([^\"]+)\"[^/]*"));
  std::string outline = found[1];
  if (found.str().find("dasharray") != std::string::npos) outline += " dashed";
  const std::regex text("<text[^>]*>([^<]*)</text>");
  for (std::sregex_iterator at(svg.begin(), svg.end(), text), end; at != end; ++at) {
    outline += " | " + (*at)[1].str();
  }
  return outline;
}

TEST(Artwork, EachPictureOfAWorldIsDrawn) {
  const auto world = ReadWorldFile({"sample.json", std::string(World::SampleText())}, {});
  ASSERT_TRUE(world);
  EXPECT_TRUE(Testing::GoldenCases("tests/host/artwork.txt", [&](const std::string& path) {
    const auto artwork = FindArtwork(world.GetValue(), path);
    return artwork ? OutlineOf(DrawTile(*artwork)) : "none";
  }));
}

TEST(Artwork, ATileTakesAnyText) {
  EXPECT_TRUE(Testing::GoldenCases("tests/host/tiles.txt", [](const std::string& name) {
    return OutlineOf(DrawTile({name, "EMOTE_RENTAL", "Epic"}));
  }));
}

}  // namespace
}  // namespace Kest::Host
