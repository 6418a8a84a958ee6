#pragma once

#include <initializer_list>

namespace tarvex {

// The rules of parameters. Each gives the text of the setter that refuses the value, or null for one that it takes; a
// nan breaks every rule. Setters ask them, and so does Factor::parameterProblem() for what a file brought in.

inline const char* aboveZero(double value, const char* text) {
  return value > 0.0 ? nullptr : text;
}

// The location of the kinds that have one.
inline const char* locationProblem(double b) {
  return b >= 0.0 ? nullptr : "b must be >= 0";
}

inline const char* truncationProblem(double right) {
  return right > 0.0 && right < 1.0 ? nullptr : "Truncation must be between 0 and 1";
}

// The first rule that is broken; null for none.
inline const char* firstProblem(std::initializer_list<const char*> problems) {
  for (const char* problem : problems)
    if (problem != nullptr) return problem;
  return nullptr;
}

}  // namespace tarvex
