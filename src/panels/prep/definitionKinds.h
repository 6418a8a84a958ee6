#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tarvex {

// A field of numbers on a definition panel.
struct NumberGadget {
  const char* gadget;
  std::size_t parameter;  // its place in Factor::parameters()
  const char* refused;    // what is said to a text that is no number
  bool closesGroup;       // the kind's setters judge the parameters up to here once this one is read
};

// What the members of the family of definition panels differ by: one row a kind of factor.
struct DefinitionKind {
  const char* type;
  const char* file;
  const char* name;   // of the panel
  const char* title;  // before " (Demo mode)" there
  const char* inspectorFile;
  const char* inspectorName;
  const char* inspectorTitle;
  const char* defaultName;           // of a new factor
  bool quotesSetter;                 // a refused value gives "Error: " and the setter's text, else that text alone
  const char* formulaButton;         // null: the one of the file
  std::vector<NumberGadget> fields;  // in the order in which they are read; empty: the panel has others
  const char* formula;               // density and parametrisation
};

const std::vector<DefinitionKind>& definitionKinds();
// Requires: a type that a user can choose (factorKinds()).
const DefinitionKind& definitionKind(const std::string& type);

}  // namespace tarvex
