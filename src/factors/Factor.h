#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace tarvex {

class TextReader;
class TextWriter;

// One input of the model. The root class by itself is the plain factor of an external sample.
class Factor {
 public:
  Factor();
  virtual ~Factor() = default;
  Factor& operator=(const Factor&) = delete;

  // A factor of the same class with the same name, note and parameters; its `status` is the default and, where there
  // is one, its inverse table empty.
  virtual std::unique_ptr<Factor> clone() const;
  virtual std::int32_t getType() const;

  // The factor record: type, name and note lines, then `status` and the parameters.
  void write(TextWriter& out) const;
  // The record behind its type line. Bad content sets the reader's fail state.
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
  Factor(const Factor& other);
  // The parameters, each with a tab before it, and the line's end; what a class adds to the record.
  virtual void writeParameters(TextWriter& out) const;
  virtual void readParameters(TextReader& in);
};

// The factor class that a file or a panel calls `typeName`, with its defaults; null for an unknown name. "Dummy" is
// known, "Factor" too.
std::unique_ptr<Factor> makeFactor(const std::string& typeName);

}  // namespace tarvex
