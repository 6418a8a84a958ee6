#include <unordered_set>

#include "base/Names.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "model/InternalModel.h"

namespace tarvex {

namespace {

constexpr std::size_t kMaxLine = 4096;

void writeUses(TextWriter& out, const std::vector<std::int32_t>& uses) {
  out << uses.size() << '\n';
  if (uses.empty()) return;
  for (const std::int32_t index : uses) out << index << '\t';
  out << '\n';
}

// A count and as many indices, which the model finds out again by itself.
void skipUses(TextReader& in) {
  std::int32_t count = 0;
  in >> count;
  if (count < 0) in.setFail();
  for (std::int32_t ignored = 0; count > 0 && in.ok(); --count) in >> ignored;
  in.skipLine();
}

}  // namespace

void InternalModel::write(TextWriter& out) {
  errorText_ = "noerror";
  out << name_ << '\n' << variables_.size() << '\n';
  for (const ModelVariable& variable : variables_) {
    out << variable.name << '\n';
    writeUses(out, variable.usedBy);
  }
  if (variables_.empty()) out << '\n';
  out << expressions_.size() << '\n';
  for (const ModelExpression& expression : expressions_) {
    out << expression.name << '\n' << expression.text << '\n' << expression.type << '\n';
    out << expression.usedBy.size() << '\n';
  }
  out << fileName_ << '\n';
}

void InternalModel::read(TextReader& in) {
  clear();
  errorText_ = "Error reading model file";
  std::string line;
  in.readLine(line, kMaxLine);
  if (firstWord(line).empty()) in.setFail();
  name_ = firstWord(line);
  readVariables(in);
  readExpressions(in);
  in.readLine(line, kMaxLine);
  if (in.ok()) {
    setFileName(line);
    errorText_.clear();
  } else {
    const std::string reason = errorText_;
    clear();
    errorText_ = reason;
  }
}

void InternalModel::readVariables(TextReader& in) {
  std::int32_t count = 0;
  in >> count;
  in.skipLine();
  if (count < 0) in.setFail();
  std::unordered_set<std::string> seen;
  for (std::int32_t i = 0; i < count && in.ok(); ++i) {
    std::string line;
    in.readLine(line, kMaxLine);
    const std::string word(firstWord(line));
    // Kept: stricter than the rule for new names, so a variable with an underscore can't be loaded back.
    if (!isValidName(word) || !seen.insert(word).second || !isModelName(word)) {
      in.setFail();
      return;
    }
    variables_.push_back({word, {}});
    skipUses(in);
  }
  if (count == 0) in.skipLine();
}

void InternalModel::readExpressions(TextReader& in) {
  std::int32_t count = 0;
  in >> count;
  if (count < 0 || count > kMaxFileExpressions) {
    fail(count < 0 ? "Error reading number of outputs variables!"
                   : "Too much model outputs variables found: max output var = 500");
    in.setFail();
  }
  in.skipLine();
  for (std::int32_t i = 0; i < count && in.ok(); ++i) {
    std::string name;
    std::string text;
    std::int32_t type = 0;
    std::int32_t uses = 0;
    in.readLine(name, kMaxLine);
    in.readLine(text, kMaxLine);
    in >> type >> uses;
    if (in.fail()) return;
    if ((type != 0 && type != 1) || !addExpression(i, name, text, static_cast<std::int16_t>(type))) {
      fail("Error in adding an expression");
      in.setFail();
      return;
    }
    in.skipLine();
  }
}

bool loadModelFile(const std::string& path, InternalModel& model, std::string& message) {
  TextReader in = TextReader::fromFile(path);
  InternalModel loaded;
  loaded.read(in);
  if (in.fail()) {
    message = "Error reading the internal model file";
    return false;
  }
  model = std::move(loaded);
  model.setFileName(path);
  return true;
}

bool saveModelFile(const std::string& path, InternalModel& model, std::string& message) {
  TextWriter out(path);
  InternalModel saved = model;
  saved.setFileName(path);
  saved.write(out);
  if (!out.commit()) {
    message = "Error writing the internal model file";
    return false;
  }
  model = std::move(saved);
  return true;
}

}  // namespace tarvex
