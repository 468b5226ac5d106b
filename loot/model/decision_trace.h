// A decision with its reason, and the collector of the steps that led to it.
#pragma once

#include <initializer_list>
#include <string_view>
#include <utility>

#include "binding/convert/convert.h"
#include "binding/tree/tree_literals.h"

namespace Kest::Client::Loot {

// A decision and the sentence, a constant, that says what it follows from.
template <class T>
struct Reasoned {
  T value;
  std::string_view because;
};

// A native value as a tree; an enumerator by its registered name.
template <class T>
BindingProperty ValueTree(const T& value) {
  ConversionContext context;
  return ToProperty(context, value);
}

// DecisionTrace collects the steps of a decision in their order, each with a sentence for people
// and its inputs. Functions that decide take a pointer to one, which is null unless an explanation
// is asked for: a step then costs one comparison. Threads: one owner at a time.
class DecisionTrace {
 public:
  using Inputs = std::initializer_list<std::pair<std::string_view, TreeLiteral>>;

  void Add(std::string_view step, std::string_view reason, Inputs inputs = {});

  // [{"step", "reason", inputs}]
  const BindingProperty& Steps() const { return steps_; }

 private:
  BindingProperty steps_ = BindingProperty::Collection();
};

}  // namespace Kest::Client::Loot
