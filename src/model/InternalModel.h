#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/TextRules.h"
#include "factors/Equation.h"

namespace tarvex {

class TextReader;
class TextWriter;

// An input of the model; position j takes column j of the sample.
struct ModelVariable {
  std::string name;
  std::vector<std::int32_t> usedBy;  // indices of the expressions that mention it
};

struct ModelExpression {
  std::string name;
  std::string text;
  std::int16_t type = 0;  // 1 output of the model, 0 internal
  double value = 0.0;     // of the last evaluation
  std::vector<std::int32_t> usedBy;
};

// The studied model as a list of equations over named inputs, evaluated in order for each run.
class InternalModel {
 public:
  static constexpr const char* kNoFile = "nofile";  // the name of one that no file holds

  static constexpr std::int32_t kMaxExpressions = 500;

  // What a line of the file takes, asked by setters, writer and reader.
  static constexpr LineRule kNameRule{"the name", 4096};
  static constexpr LineRule kEquationRule{"the equation", 1 << 20};  // far beyond what anybody writes
  static constexpr LineRule kFileNameRule{"the path of the model", 4096};

  // Operations return false on failure: errorText says why, problem() where it can be said in more detail, and the
  // model is unchanged.
  [[nodiscard]] bool addVariable(const std::string& name);
  [[nodiscard]] bool renameVariable(std::int32_t index, const std::string& name);
  void moveVariable(std::int32_t from, std::int32_t to);
  [[nodiscard]] bool removeVariable(std::int32_t index);
  [[nodiscard]] bool addExpression(std::int32_t position, const std::string& name, const std::string& text,
                                   std::int16_t type);
  [[nodiscard]] bool modifyExpression(std::int32_t position, const std::string& name, const std::string& text,
                                      std::int16_t type);
  [[nodiscard]] bool removeExpression(std::int32_t index);
  // Puts an equation into another place. Refused, with the two names in errorText, where an equation would then stand
  // above one that it uses. The uses are noted afresh.
  [[nodiscard]] bool moveExpression(std::int32_t from, std::int32_t to);
  [[nodiscard]] bool getExpression(std::int32_t index, ModelExpression& out);
  [[nodiscard]] bool expressionName(std::int32_t index, std::string& out);
  [[nodiscard]] bool expressionText(std::int32_t index, std::string& out);
  std::int16_t expressionType(std::int32_t index);  // -1 out of range
  [[nodiscard]] bool variableName(std::int32_t index, std::string& out);
  [[nodiscard]] bool outputName(std::int32_t k, std::string& out);  // the k-th expression of type 1
  [[nodiscard]] bool internalName(std::int32_t k, std::string& out);
  std::int32_t numOutputs() const;
  std::int32_t numInternals() const;
  std::int32_t numVariables() const { return static_cast<std::int32_t>(variables_.size()); }
  std::int32_t numExpressions() const { return static_cast<std::int32_t>(expressions_.size()); }
  const std::vector<ModelVariable>& variables() const { return variables_; }
  const std::vector<ModelExpression>& expressions() const { return expressions_; }

  [[nodiscard]] bool setName(const std::string& name);  // empty: "noname"; a name with white space is refused
  const std::string& name() const { return name_; }
  [[nodiscard]] bool setFileName(const std::string& path);  // empty: kNoFile
  const std::string& fileName() const { return fileName_; }

  // One run: `values` holds a double per variable, `outputs` takes one per expression of type 1. Values and
  // intermediate results enter each equation at six significant digits. False when an equation can't be evaluated;
  // `outputs` is then untouched.
  [[nodiscard]] bool evaluate(const double* values, double* outputs);
  // The same for `rows` runs, kBlockRows at most: `values` a run after the other, `outputs` a row for each. `failed` is
  // 1.0 for a run whose equations can't be evaluated, whose outputs are then of no meaning, 0.0 elsewhere.
  static constexpr std::size_t kBlockRows = Equation::kBlockRows;
  void evaluateRows(const double* values, std::size_t rows, double* outputs, double* failed);

  void clear();
  const std::string& errorText() const { return errorText_; }
  void clearError() { errorText_ = "noerror"; }
  // "unknown function 'max'": the reason behind the last refusal of an equation.
  const std::string& problem() const { return problem_; }
  // A line for each equation that was taken although it failed at the values that it was tried with.
  const std::string& warningText() const { return warningText_; }

  // The text of a .imd file. A failed read clears the model and fails the reader; after a good one errorText is empty.
  void write(TextWriter& out);
  [[nodiscard]] bool read(TextReader& in);

 private:
  bool fail(const std::string& text);
  bool isGoodNewVariable(const std::string& name);
  [[nodiscard]] bool checkExpression(std::int32_t position, const std::string& name, const std::string& text);
  void replaceInUsers(const std::vector<std::int32_t>& users, const std::string& oldName, const std::string& newName);
  [[nodiscard]] bool expressionOfType(std::int16_t type, std::int32_t k, std::string& out);
  void prepare();
  [[nodiscard]] bool readVariables(TextReader& in);
  [[nodiscard]] bool readExpressions(TextReader& in);
  [[nodiscard]] bool readExpression(TextReader& in, std::int32_t index);

  std::string name_ = "noname";
  std::string fileName_ = kNoFile;
  std::string errorText_ = "noerror";
  std::string problem_;
  std::string warningText_;
  std::vector<ModelVariable> variables_;
  std::vector<ModelExpression> expressions_;

  // Made by prepare() for evaluate(), dropped by every change of the model.
  bool prepared_ = false;
  std::vector<Equation> equations_;
  // Variables, then expressions: a block of each as it enters the equations, where one of them uses it.
  std::vector<double> entering_;
  std::vector<const double*> columns_;
  std::vector<bool> isUsed_;
};

// Whether `text` mentions `name`, as far as the bookkeeping of uses goes: only the first occurrence is looked at.
bool usesName(const std::string& name, const std::string& text);

// Whether the model takes `name` for a variable or an expression.
bool isModelName(const std::string& name);

// A whole .imd file; its path becomes the model's file name. On failure `model` stays as it was; on success `message`
// has the model's warnings.
[[nodiscard]] bool loadModelFile(const std::string& path, InternalModel& model, std::string& message);
[[nodiscard]] bool saveModelFile(const std::string& path, InternalModel& model, std::string& message);

}  // namespace tarvex
