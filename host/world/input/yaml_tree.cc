#include "host/world/input/yaml_tree.h"

#include <yaml.h>

#include <algorithm>
#include <new>

#include "base/utf8.h"
#include "host/world/input/document_builder.h"
#include "host/world/input/yaml_scalar.h"

namespace Kest::Host {
namespace {

Mark ToMark(const yaml_mark_t& mark) {
  return {mark.line + 1, mark.column + 1};
}

// Bytes that are no characters are found before characters are counted.
Mark MarkOfByte(std::string_view text, size_t offset) {
  Mark mark = {1, 1};
  for (const char c : text.substr(0, std::min(offset, text.size()))) {
    if (c == '\n') {
      mark = {mark.line + 1, 1};
    } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
      ++mark.column;
    }
  }
  return mark;
}

class YamlEventReader {
 public:
  explicit YamlEventReader(std::string_view text) : text_(text) {
    if (yaml_parser_initialize(&parser_) == 0) throw std::bad_alloc();
    yaml_parser_set_encoding(&parser_, YAML_UTF8_ENCODING);
    yaml_parser_set_input_string(&parser_, reinterpret_cast<const unsigned char*>(text.data()),
                                 text.size());
  }
  ~YamlEventReader() { yaml_parser_delete(&parser_); }
  YamlEventReader(const YamlEventReader&) = delete;
  YamlEventReader& operator=(const YamlEventReader&) = delete;

  YamlTree Read() {
    yaml_event_type_t type = YAML_NO_EVENT;
    do {
      yaml_event_t event;
      if (yaml_parser_parse(&parser_, &event) == 0) {
        FailToParse();
        break;
      }
      type = event.type;
      mark_ = ToMark(event.start_mark);
      if (!Take(event)) Fail(builder_.Problem(), mark_);
      yaml_event_delete(&event);
    } while (type != YAML_STREAM_END_EVENT && tree_.problem.empty());
    tree_.root = std::move(builder_.Root());
    return std::move(tree_);
  }

 private:
  // False: the builder, or this class, has a problem with the event.
  bool Take(const yaml_event_t& event) {
    switch (event.type) {
      case YAML_DOCUMENT_START_EVENT:
        return ++documents_ == 1 || Fail("a second document begins here", mark_);
      case YAML_ALIAS_EVENT:
        return Fail("aliases are not supported", mark_);
      case YAML_SCALAR_EVENT:
        return TakeScalar(event.data.scalar);
      case YAML_SEQUENCE_START_EVENT:
        return BeginValue(event.data.sequence_start.tag) && builder_.start_array(0);
      case YAML_MAPPING_START_EVENT:
        return BeginValue(event.data.mapping_start.tag) && builder_.start_object(0);
      case YAML_SEQUENCE_END_EVENT:
        return builder_.end_array();
      case YAML_MAPPING_END_EVENT:
        return builder_.end_object();
      default:
        return true;
    }
  }

  template <typename Scalar>
  bool TakeScalar(const Scalar& scalar) {
    std::string text(reinterpret_cast<const char*>(scalar.value), scalar.length);
    if (builder_.WantsName()) {
      nameMark_ = mark_;
      return builder_.key(text);
    }
    if (!BeginValue(scalar.tag)) return false;
    if (scalar.style != YAML_PLAIN_SCALAR_STYLE) return builder_.string(text);
    std::optional<Json> value = ResolvePlainScalar(text);
    return value ? builder_.Add(std::move(*value)) : Fail("number out of range", mark_);
  }

  bool BeginValue(const yaml_char_t* tag) {
    if (builder_.WantsName()) return Fail("a member's name must be a scalar", mark_);
    if (tag != nullptr) return Fail("tags are not supported", mark_);
    tree_.places.push_back({nameMark_.line != 0 ? nameMark_ : mark_, mark_});
    nameMark_ = {};
    return true;
  }

  bool Fail(std::string_view problem, Mark mark) {
    if (!tree_.problem.empty()) return false;
    tree_.problem = problem;
    tree_.problemMark = mark;
    return false;
  }

  void FailToParse() {
    if (parser_.problem == nullptr) throw std::bad_alloc();
    Fail(parser_.problem, parser_.error == YAML_READER_ERROR
                              ? MarkOfByte(text_, parser_.problem_offset)
                              : ToMark(parser_.problem_mark));
  }

  std::string_view text_;
  yaml_parser_t parser_;
  DocumentBuilder builder_;
  YamlTree tree_;
  Mark mark_;      // of the event
  Mark nameMark_;  // of the name whose value comes next; line 0: there is none
  int documents_ = 0;
};

}  // namespace

YamlTree ReadYamlTree(std::string_view text) {
  text = WithoutByteOrderMark(text);
  return YamlEventReader(text.empty() ? " " : text).Read();  // null is no text to the parser
}

}  // namespace Kest::Host
