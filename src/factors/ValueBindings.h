#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex {

class Evaluator;

// The assignments "name = value;" that stand in front of a text of the calculator language, without their text. Made
// once for a text and a list of names, applied to many rows of values. Of equal names the first one's value holds, as
// it is prepended first and so assigned last.
class ValueBindings {
 public:
  ValueBindings() = default;
  ValueBindings(std::string_view text, const std::vector<std::string>& names);

  // Binds `values`, one per name in the same order, which enter as they are (see enteringValue). False when the
  // assignments could not be evaluated: a name is none of the language, there are too many, or a value that the text
  // uses isn't finite and so has no text form that reads as a number.
  [[nodiscard]] bool apply(Evaluator& evaluator, const double* values) const;

  struct Slot {
    std::string name;
    std::size_t position;  // in the list of names
    bool used;             // by the text; else only its place in the symbol table counts
  };
  const std::vector<Slot>& slots() const { return slots_; }  // sorted by name
  // False where apply() is false whatever the values are.
  bool possible() const { return possible_; }

 private:
  std::vector<Slot> slots_;
  bool possible_ = true;
};

}  // namespace tarvex
