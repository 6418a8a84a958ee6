#include <unordered_set>

#include "base/Names.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "model/InternalModel.h"

namespace tarvex {

namespace {

constexpr std::uint64_t kBytesOfVariable = 4;  // at least: a name and a count, each with its line end

void writeUses(TextWriter& out, const std::vector<std::int32_t>& uses) {
  out << uses.size() << '\n';
  if (uses.empty()) return;
  for (const std::int32_t index : uses) out << index << '\t';
  out << '\n';
}

// A count and as many indices, which the model finds out again by itself.
bool skipUses(TextReader& in) {
  std::int32_t count = 0;
  in.expect("the number of uses of a variable") >> count;
  if (in.ok() && count < 0) return in.refuse("the number of uses must be at least 0, not " + std::to_string(count));
  in.expect("the index of an equation");
  for (std::int32_t ignored = 0; count > 0 && in.ok(); --count) in >> ignored;
  in.skipLine();
  return in.ok();
}

}  // namespace

void InternalModel::write(TextWriter& out) {
  errorText_ = "noerror";
  kNameRule.write(out, name_);
  out << variables_.size() << '\n';
  for (const ModelVariable& variable : variables_) {
    out << variable.name << '\n';
    writeUses(out, variable.usedBy);
  }
  if (variables_.empty()) out << '\n';
  out << expressions_.size() << '\n';
  for (const ModelExpression& expression : expressions_) {
    out << expression.name << '\n';
    kEquationRule.write(out, expression.text);
    out << expression.type << '\n';
    out << expression.usedBy.size() << '\n';
  }
  kFileNameRule.write(out, fileName_);
}

bool InternalModel::read(TextReader& in) {
  clear();
  errorText_ = "Error reading model file";
  std::string line;
  if (kNameRule.read(in, line) && firstWord(line).empty()) in.refuse("the name of the model is empty");
  name_ = firstWord(line);
  std::string path;
  if (in.ok() && readVariables(in) && readExpressions(in) &&
      in.expect("the path of the model").readLine(path, kFileNameRule.maxChars)) {
    fileName_ = path.empty() ? kNoFile : path;
    errorText_.clear();
    return true;
  }
  const std::string reason = errorText_;
  clear();
  errorText_ = reason;
  return false;
}

bool InternalModel::readVariables(TextReader& in) {
  std::int32_t count = 0;
  in.expect("the number of variables") >> count;
  in.skipLine();
  if (!in.checkCount(count, kBytesOfVariable)) return false;
  std::unordered_set<std::string> seen;
  for (std::int32_t i = 0; i < count; ++i) {
    std::string line;
    if (!in.expect("the name of a variable").readLine(line, kNameRule.maxChars)) return false;
    const std::string word(firstWord(line));
    if (!isModelName(word)) return in.refuse("'" + word + "' is no name of a variable");
    if (!seen.insert(word).second) return in.refuse("the variable " + word + " is there twice");
    variables_.push_back({word, {}});
    if (!skipUses(in)) return false;
  }
  if (count == 0) in.skipLine();
  return in.ok();
}

bool InternalModel::readExpressions(TextReader& in) {
  std::int32_t count = 0;
  in.expect("the number of equations") >> count;
  if (in.fail()) return false;
  if (count < 0) {
    fail("Error reading number of outputs variables!");
    return in.refuse("the number of equations must be at least 0, not " + std::to_string(count));
  }
  if (count > kMaxExpressions) {
    fail("Too much model outputs variables found: max output var = 500");
    return in.refuse("the number of equations must be at most 500, not " + std::to_string(count));
  }
  in.skipLine();
  for (std::int32_t i = 0; i < count; ++i) {
    if (readExpression(in, i)) continue;
    fail("Error in adding an expression");
    return false;
  }
  return true;
}

bool InternalModel::readExpression(TextReader& in, std::int32_t index) {
  std::string name;
  std::string text;
  if (!in.expect("the name of an equation").readLine(name, kNameRule.maxChars)) return false;
  if (!isModelName(name)) return in.refuse("'" + name + "' is no name of an equation");
  if (!kEquationRule.read(in, text)) return false;
  // Added at once, so that a refusal names this line.
  if (!addExpression(index, name, text, 0)) return in.refuse(problem_.empty() ? errorText_ : problem_);
  std::int32_t type = 0;
  std::int32_t uses = 0;
  in.expect("the type of an equation") >> type;
  if (in.ok() && type != 0 && type != 1) in.refuse("the type must be 0 or 1, not " + std::to_string(type));
  in.expect("the number of uses") >> uses;
  in.skipLine();
  expressions_.back().type = static_cast<std::int16_t>(type);
  return in.ok();
}

bool loadModelFile(const std::string& path, InternalModel& model, std::string& message) {
  TextReader in = TextReader::fromFile(path);
  InternalModel loaded;
  if (!loaded.read(in)) {
    message = withProblem("Error reading the internal model file", in);
    return false;
  }
  if (!loaded.setFileName(path)) {
    message = "Error reading the internal model file\n" + loaded.errorText();
    return false;
  }
  message = loaded.warningText();
  model = std::move(loaded);
  return true;
}

bool saveModelFile(const std::string& path, InternalModel& model, std::string& message) {
  TextWriter out(path);
  InternalModel saved = model;
  if (!saved.setFileName(path)) out.refuse(saved.errorText());
  saved.write(out);
  if (!out.commit()) {
    message = withProblem("Error writing the internal model file", out);
    return false;
  }
  model = std::move(saved);
  return true;
}

}  // namespace tarvex
