#include "binding/json/json_adapter.h"

#include <new>

#include "base/utf8.h"
#include "binding/json/json_checked_reader.h"
#include "binding/json/json_scanner.h"
#include "binding/tree/tree_builder.h"

namespace Kest {
namespace {

BindingProperty ReadDocument(ConversionContext& context, std::string_view text,
                             size_t* errorOffset) {
  const std::string_view document = WithoutByteOrderMark(text);
  {
    TreeBuilder builder(document.size());
    if (TryScanJson(builder, document)) return builder.Take();
  }
  TreeBuilder builder(document.size());
  const JsonFailure failure = ReadJsonChecked(builder, document);
  if (failure.message.empty()) return builder.Take();
  context.Fail(failure.message);
  if (errorOffset != nullptr) *errorOffset = failure.offset + (text.size() - document.size());
  return {};
}

}  // namespace

BindingProperty ReadJson(ConversionContext& context, std::string_view text, size_t* errorOffset) {
  if (!context.Ok()) return {};
  if (text.size() > kMaxJsonBytes) {
    context.Fail("Body is too large");
    return {};
  }
  try {
    return ReadDocument(context, text, errorOffset);
  } catch (const std::bad_alloc&) {
    context.FailOutOfMemory();
    return {};
  }
}

void WriteJson(ConversionContext& context, const BindingProperty& tree, std::string* out) {
  if (!context.Ok()) return;
  JsonWriter writer(out);
  CheckWritten(context, WriteTree(tree, writer), writer);
  writer.Finish(context);
}

}  // namespace Kest
