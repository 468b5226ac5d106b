#include "host/world/input/yaml_writer.h"

#include <yaml.h>

#include <algorithm>
#include <new>
#include <utility>
#include <vector>

#include "base/ascii.h"
#include "host/world/input/field_reader.h"
#include "host/world/input/yaml_scalar.h"

namespace Kest::Host {
namespace {

int Append(void* text, unsigned char* bytes, size_t size) {
  static_cast<std::string*>(text)->append(reinterpret_cast<const char*>(bytes), size);
  return 1;
}

// Whether every reader takes it for a string without quotes, those of older YAML too, to which "on"
// and "2030-12-31" are something else.
bool MayBePlain(const std::string& text) {
  constexpr std::string_view kOtherWords[] = {"y", "n", "yes", "no", "on", "off"};
  const auto resolved = ResolvePlainScalar(text);
  if (!resolved || !resolved->is_string() ||
      std::string_view("+-.0123456789").find(text[0]) != std::string_view::npos) {
    return false;
  }
  const auto isSame = [&text](std::string_view word) { return EqualIgnoringCase(word, text); };
  if (std::any_of(std::begin(kOtherWords), std::end(kOtherWords), isSame)) return false;
  return std::none_of(text.begin(), text.end(),
                      [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

class YamlEventWriter {
 public:
  YamlEventWriter() {
    if (yaml_emitter_initialize(&emitter_) == 0) throw std::bad_alloc();
    yaml_emitter_set_output(&emitter_, Append, &text_);
    yaml_emitter_set_unicode(&emitter_, 1);
    yaml_emitter_set_width(&emitter_, -1);  // long texts stay on one line
    Emit(yaml_stream_start_event_initialize(&event_, YAML_UTF8_ENCODING));
    Emit(yaml_document_start_event_initialize(&event_, nullptr, nullptr, nullptr, 1));
  }
  ~YamlEventWriter() { yaml_emitter_delete(&emitter_); }
  YamlEventWriter(const YamlEventWriter&) = delete;
  YamlEventWriter& operator=(const YamlEventWriter&) = delete;

  void Begin(const Json& container) {
    const bool isEmpty = container.empty();
    if (container.is_object()) {
      Emit(yaml_mapping_start_event_initialize(
          &event_, nullptr, nullptr, 1,
          isEmpty ? YAML_FLOW_MAPPING_STYLE : YAML_BLOCK_MAPPING_STYLE));
    } else {
      Emit(yaml_sequence_start_event_initialize(
          &event_, nullptr, nullptr, 1,
          isEmpty ? YAML_FLOW_SEQUENCE_STYLE : YAML_BLOCK_SEQUENCE_STYLE));
    }
  }
  void End(const Json& container) {
    Emit(container.is_object() ? yaml_mapping_end_event_initialize(&event_)
                               : yaml_sequence_end_event_initialize(&event_));
  }
  void Scalar(const std::string& text, yaml_scalar_style_t style) {
    auto* const bytes = reinterpret_cast<yaml_char_t*>(const_cast<char*>(text.data()));
    Emit(yaml_scalar_event_initialize(&event_, nullptr, nullptr, bytes,
                                      static_cast<int>(text.size()), 1, 1, style));
  }
  void String(const std::string& text) {
    Scalar(text, MayBePlain(text) ? YAML_ANY_SCALAR_STYLE : YAML_DOUBLE_QUOTED_SCALAR_STYLE);
  }

  std::string Finish() {
    Emit(yaml_document_end_event_initialize(&event_, 1));
    Emit(yaml_stream_end_event_initialize(&event_));
    return std::move(text_);
  }

 private:
  // Takes the event over.
  void Emit(int isMade) {
    if (isMade == 0 || yaml_emitter_emit(&emitter_, &event_) == 0) throw std::bad_alloc();
  }

  yaml_emitter_t emitter_;
  yaml_event_t event_;
  std::string text_;
};

struct OpenValue {
  const Json* value;
  Json::const_iterator next;
};

}  // namespace

std::string WriteYaml(const Json& value) {
  YamlEventWriter writer;
  std::vector<OpenValue> open;
  const auto write = [&](const Json& part) {
    if (part.is_structured()) {
      writer.Begin(part);
      open.push_back({&part, part.begin()});
    } else if (const auto* text = part.get_ptr<const std::string*>()) {
      writer.String(*text);
    } else {
      writer.Scalar(WriteJson(part), YAML_PLAIN_SCALAR_STYLE);
    }
  };
  write(value);
  while (!open.empty()) {
    OpenValue& top = open.back();
    if (top.next == top.value->end()) {
      writer.End(*top.value);
      open.pop_back();
      continue;
    }
    if (top.value->is_object()) writer.String(top.next.key());
    const Json& part = *top.next++;
    write(part);
  }
  return writer.Finish();
}

}  // namespace Kest::Host
