#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/TextRules.h"

namespace tarvex {

class TextReader;
class TextWriter;

// A number that describes a factor, under the name that a user knows it by.
struct Parameter {
  const char* name;
  double value;
};

// One input of the model. The root class by itself is the plain factor of an external sample.
class Factor {
 public:
  static constexpr std::size_t kMaxName = 19;   // characters of a name in a record
  static constexpr std::size_t kMaxNote = 254;  // characters of a note in a record
  static constexpr NameRule kNameRule{"the factor name", kMaxName};
  static constexpr LineRule kNoteRule{"the note", kMaxNote};

  Factor() = default;
  virtual ~Factor() = default;
  Factor& operator=(const Factor&) = delete;

  // A factor of the same class with the same name, note and parameters; its `status` is the default and, where there
  // is one, its inverse table empty.
  virtual std::unique_ptr<Factor> clone() const;
  virtual std::int32_t getType() const;
  // What the record holds behind `status`, in its order; empty for lists of values and for relations.
  virtual std::vector<Parameter> parameters() const;
  // Why nothing can be sampled from the factor: the text of the setter that refuses what a file brought in, or the
  // parameter that isn't finite. Empty for a usable factor.
  virtual std::string parameterProblem() const;

  // False, with the rule and the value in errorText, for a text that the record can't hold.
  [[nodiscard]] bool setName(const std::string& text);
  [[nodiscard]] bool setNote(const std::string& text);

  // The factor record: type, name and note lines, then `status` and the parameters. A name or a note that breaks its
  // rule fails the writer.
  void write(TextWriter& out) const;
  // The record behind its type line, up to the last parameter's last character. Bad content fails the reader;
  // parameters that their setters refuse don't: see parameterProblem().
  void read(TextReader& in);

  bool isConstant() const { return typeName == "Constant"; }
  bool isRelation() const { return typeName == "Relation"; }
  // Sampled and correlatable: everything but constants and relations.
  bool isStochastic() const { return !isConstant() && !isRelation(); }

  std::string errorText = "No errors";  // why the last setter refused
  std::string typeName = "Factor";
  std::int32_t status = 1;
  std::string name = "Noname";
  std::string note;

 protected:
  Factor(const char* type, const char* defaultName) : typeName(type), name(defaultName) {}
  Factor(const Factor& other) : typeName(other.typeName), name(other.name), note(other.note) {}

  // The text of the setter that refuses the parameters as they stand; null when all of them are taken.
  virtual const char* brokenRule() const { return nullptr; }

  // What follows `status`: the parameters, each with a tab before it, and the line's end. Without parameters the tab
  // alone.
  virtual void writeParameters(TextWriter& out) const;
  virtual void readParameters(TextReader& in);

  // The end of a setter: true, or false with the reason left in errorText. `problem` is null or empty for none.
  bool accept(const char* problem);
  bool accept(const std::string& problem) { return accept(problem.c_str()); }
  // Stores `value` in `field` where there is no problem.
  bool assign(double& field, double value, const char* problem);
};

}  // namespace tarvex
