#include "host/world/artwork/tile.h"

#include <algorithm>
#include <cctype>
#include <vector>

namespace Kest::Host {
namespace {

constexpr std::string_view kRental = "_RENTAL";
constexpr size_t kLineLength = 17;  // characters of the name
constexpr size_t kMostLines = 2;
constexpr std::string_view kEllipsis = "\xE2\x80\xA6";

struct RarityColour {
  std::string_view rarity;
  std::string_view colour;
};

constexpr RarityColour kRarityColours[] = {
    {"EPIC", "#4cc2ff"}, {"LEGENDARY", "#ff6b5e"}, {"MYTHIC", "#c98bff"}, {"ULTIMATE", "#ffb347"}};

// A sign is a path in a square of 48; it is filled by the even-odd rule.
struct TypeSign {
  std::string_view type;
  std::string_view colour;
  std::string_view path;
};

constexpr TypeSign kTypeSigns[] = {
    {"CHEST", "#d9a441", "M6 18q0-10 10-10h16q10 0 10 10v4H28v-4h-8v4H6zM6 25h14v5h8v-5h14v15H6z"},
    {"CHAMPION", "#7fd1ae",
     "M24 4l17 6v13q0 14-17 21Q7 37 7 23V10zM15 19v5l7 3v9h4v-9l7-3v-5l-9 4z"},
    {"SKIN", "#6fb7ff", "M17 6q7 7 14 0l13 8-5 10-6-3v21H15V21l-6 3-5-10z"},
    {"CHROMA", "#ff9ec7",
     "M24 5q20 2 19 19-1 9-10 8-7-1-6 5 0 6-6 6Q5 40 5 23 6 6 24 5zM16 13a4 4 0 1 0 .1 0zM31 "
     "13a4 4 0 1 0 .1 0zM12 25a4 4 0 1 0 .1 0z"},
    {"WARDSKIN", "#b8d86b",
     "M3 24Q24-2 45 24 24 50 3 24zM24 14a10 10 0 1 0 .1 0zM24 20a4 4 0 1 1-.1 0z"},
    {"SUMMONERICON", "#8ea6ff",
     "M24 3a21 21 0 1 0 .1 0zM24 11a7 7 0 1 1-.1 0zM10 36q2-11 14-11t14 11q-6 6-14 6t-14-6z"},
    {"EMOTE", "#ffd95e",
     "M24 4a20 20 0 1 0 .1 0zM16 15a3 4 0 1 1-.1 0zM32 15a3 4 0 1 1-.1 0zM12 27h24q-2 11-12 "
     "11T12 27z"},
    {"TOURNAMENTLOGO", "#e5c07b",
     "M13 5h22v4h8q0 14-10 16-3 4-7 5v6h7v6H15v-6h7v-6q-4-1-7-5Q5 23 5 9h8zM9 13q1 5 4 7v-7zM35 "
     "13v7q3-2 4-7z"},
    {"CURRENCY", "#f0b95a",
     "M24 4a20 20 0 1 0 .1 0zM24 10a14 14 0 1 1-.1 0zM24 14l10 10-10 10-10-10z"},
    {"MATERIAL", "#c0b6a4",
     "M15 13a11 11 0 1 0 10 14h5v6h6v-6h3v4h6V21H25q-2-8-10-8zM14 20a4 4 0 1 1-.1 0z"},
    {"BOOST", "#7ee787", "M28 3L9 27h12l-3 18 21-26H27z"},
    {"RECIPE", "#a8b3c4", "M20 4h8v10l13 24q2 6-5 6H12q-7 0-5-6l13-24zM17 28h14l-4-8h-6z"},
    {"TABLE", "#a8b3c4",
     "M9 5h30q4 0 4 4v30q0 4-4 4H9q-4 0-4-4V9q0-4 4-4zM14 11a4 4 0 1 0 .1 0zM24 20a4 4 0 1 0 .1 "
     "0zM34 29a4 4 0 1 0 .1 0z"},
    {"", "#9aa7b8", "M24 3l21 21-21 21L3 24zM24 12L12 24l12 12 12-12z"}};  // any other

bool EqualUpper(std::string_view text, std::string_view upper) {
  return std::equal(text.begin(), text.end(), upper.begin(), upper.end(),
                    [](unsigned char a, char b) { return std::toupper(a) == b; });
}

const TypeSign& SignOf(std::string_view type) {
  const auto found =
      std::find_if(std::begin(kTypeSigns), std::end(kTypeSigns) - 1,
                   [type](const TypeSign& sign) { return type.starts_with(sign.type); });
  return *found;
}

std::string_view ColourOf(const Artwork& artwork, const TypeSign& sign) {
  for (const RarityColour& known : kRarityColours) {
    if (EqualUpper(artwork.rarity, known.rarity)) return known.colour;
  }
  return sign.colour;
}

std::string Escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;  // XML has none of these
    }
  }
  return out;
}

bool BeginsCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

size_t Characters(std::string_view text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), BeginsCharacter));
}

// At most that many characters; an ellipsis is the last of what is cut.
std::string Cut(std::string_view text, size_t characters) {
  if (Characters(text) <= characters) return std::string(text);
  size_t end = 0;
  for (size_t seen = 0; end < text.size(); ++end) {
    if (BeginsCharacter(text[end]) && ++seen == characters) break;
  }
  return std::string(text.substr(0, end)).append(kEllipsis);
}

// The name in lines, broken at spaces; the last line has what is left, cut.
std::vector<std::string> Lines(std::string_view name) {
  std::vector<std::string> lines;
  while (lines.size() + 1 < kMostLines && Characters(name) > kLineLength) {
    size_t space = std::string_view::npos;
    for (size_t at = name.find(' ');
         at != std::string_view::npos && Characters(name.substr(0, at)) <= kLineLength;
         at = name.find(' ', at + 1)) {
      space = at;
    }
    if (space == std::string_view::npos) break;
    lines.emplace_back(name.substr(0, space));
    name.remove_prefix(space + 1);
  }
  lines.push_back(Cut(name, kLineLength));
  return lines;
}

std::string Text(size_t y, std::string_view attributes, std::string_view text) {
  return "<text x=\"64\" y=\"" + std::to_string(y) + "\" text-anchor=\"middle\" " +
         std::string(attributes) + ">" + Escaped(text) + "</text>\n";
}

std::string Label(std::string_view type) {
  std::string label(type);
  std::replace(label.begin(), label.end(), '_', ' ');
  return Cut(label, 20);
}

}  // namespace

std::string DrawTile(const Artwork& artwork) {
  const TypeSign& sign = SignOf(artwork.type);
  const std::string colour(ColourOf(artwork, sign));
  const bool isRental = artwork.type.ends_with(kRental);
  std::string svg =
      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"128\" height=\"128\" "
      "viewBox=\"0 0 128 128\" font-family=\"system-ui,sans-serif\">\n<title>";
  svg += Escaped(artwork.name) + "</title>\n";
  svg +=
      "<defs><radialGradient id=\"glow\" cx=\".5\" cy=\".42\" r=\".7\"><stop stop-color=\"" +
      colour + "\" stop-opacity=\".38\"/><stop offset=\"1\" stop-color=\"" + colour +
      "\" stop-opacity=\".04\"/></radialGradient></defs>\n"
      "<rect width=\"128\" height=\"128\" rx=\"10\" fill=\"#141a24\"/>\n"
      "<rect width=\"128\" height=\"128\" rx=\"10\" fill=\"url(#glow)\"/>\n"
      "<rect x=\"1.5\" y=\"1.5\" width=\"125\" height=\"125\" rx=\"8.5\" fill=\"none\" stroke=\"" +
      colour + "\" stroke-width=\"3\"" + (isRental ? " stroke-dasharray=\"9 5\"" : "") + "/>\n";
  svg += Text(18, "font-size=\"8.5\" letter-spacing=\".8\" fill=\"#aab6c8\"", Label(artwork.type));
  svg += "<path transform=\"translate(37 25) scale(1.125)\" fill=\"" + colour +
         "\" fill-rule=\"evenodd\" d=\"" + std::string(sign.path) + "\"/>\n";
  const std::vector<std::string> lines = Lines(artwork.name);
  size_t y = 108 - 7 * (lines.size() - 1);
  for (const std::string& line : lines) {
    svg += Text(y, "font-size=\"12\" font-weight=\"600\" fill=\"#f2f5fa\"", line);
    y += 14;
  }
  return svg += "</svg>\n";
}

}  // namespace Kest::Host
