#include "factors/EquationProgram.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <map>
#include <tuple>

#include "factors/Evaluator.h"
#include "factors/EvaluatorPass.h"
#include "factors/integerPower.h"

namespace tarvex {
namespace {

constexpr std::size_t kMaxRegisters = 4096;  // beyond what anybody writes: four megabytes of rows

}  // namespace

// Notes down what the evaluator would compute. Equal steps are taken once.
class EquationProgram::Compiler {
 public:
  using Value = std::size_t;

  explicit Compiler(EquationProgram& program) : program_(program) {}

  bool isTooLong() const { return program_.registers_ > kMaxRegisters; }
  bool bind(const Input& input) {
    if (symbols_.size() == Evaluator::kMaxSymbols) return false;
    const Value value = input.hasColumn ? newRegister() : number(0.0);
    if (input.hasColumn) program_.inputs_.push_back({value, input.column});
    symbols_.emplace(input.name, value);
    return true;
  }

  Value number(double value) {
    const auto [found, isNew] = constants_.try_emplace(std::bit_cast<std::uint64_t>(value), 0);
    if (isNew) std::fill_n(rowsOf(found->second = newRegister()), kBlockRows, value);
    return found->second;
  }
  bool read(std::string_view name, Value& value) {
    Value* const symbol = lookup(name);
    if (symbol != nullptr) value = *symbol;
    return symbol != nullptr;
  }
  bool assign(char operation, std::string_view name, Value right, Value& value) {
    Value* const symbol = lookup(name);
    if (symbol == nullptr) return false;
    value = *symbol = assigned(operation, *symbol, right);
    return true;
  }
  bool combine(Operation operation, Value right, Value& value) {
    value = step({Kind::kCombine, operation, nullptr, value, right, value, 0});
    return true;
  }
  Value power(Value base, Value exponent) {
    for (int whole = kLeastPower; whole <= kLargestPower; ++whole) {
      const auto constant = constants_.find(std::bit_cast<std::uint64_t>(static_cast<double>(whole)));
      if (constant != constants_.end() && constant->second == exponent)
        return step({Kind::kIntegerPower, {}, nullptr, base, base, static_cast<std::size_t>(whole), 0});
    }
    return step({Kind::kPower, {}, nullptr, base, exponent, base, 0});
  }
  Value negate(Value value) { return step({Kind::kNegate, {}, nullptr, value, value, value, 0}); }
  Value invert(Value value) { return step({Kind::kInvert, {}, nullptr, value, value, value, 0}); }
  Value choose(Value condition, Value yes, Value no) {
    return step({Kind::kChoose, {}, nullptr, condition, yes, no, 0});
  }
  Value call(const Function& function, const Value* arguments) {
    const Value first = arguments[0];
    if (function.one != nullptr) return step({Kind::kOne, {}, &function, first, first, first, 0});
    return step({Kind::kTwo, {}, &function, first, arguments[1], first, 0});
  }

 private:
  double* rowsOf(Value place) { return program_.numbers_.data() + place * kBlockRows; }

  // A text that is too long has one last register for all the rest of it.
  Value newRegister() {
    if (isTooLong()) return program_.registers_ - 1;
    program_.numbers_.resize((program_.registers_ + 1) * kBlockRows);
    return program_.registers_++;
  }
  // Null when the table of symbols is full.
  Value* lookup(std::string_view name) {
    const auto found = symbols_.find(name);
    if (found != symbols_.end()) return &found->second;
    if (symbols_.size() == Evaluator::kMaxSymbols) return nullptr;
    return &symbols_.emplace(name, number(0.0)).first->second;
  }
  Value assigned(char operation, Value before, Value right) {
    constexpr std::string_view kSigns = "+-*";
    constexpr Operation kOperations[] = {Operation::kAdd, Operation::kSubtract, Operation::kMultiply};
    if (operation == '/') return step({Kind::kQuotient, {}, nullptr, before, right, before, 0});
    const std::size_t sign = kSigns.find(operation);
    if (sign == std::string_view::npos) return right;
    return step({Kind::kCombine, kOperations[sign], nullptr, before, right, before, 0});
  }
  Value step(Step step) {
    if (isTooLong()) return step.a;
    const auto [found, isNew] =
        known_.try_emplace({step.kind, step.operation, step.function, step.a, step.b, step.c}, 0);
    if (isNew) {
      found->second = step.out = newRegister();
      program_.steps_.push_back(step);
    }
    return found->second;
  }

  EquationProgram& program_;
  std::map<std::string_view, Value> symbols_;
  std::map<std::uint64_t, Value> constants_;
  std::map<std::tuple<Kind, Operation, const Function*, Value, Value, Value>, Value> known_;
};

bool EquationProgram::compile(std::string_view text, const std::vector<Input>& inputs, std::string_view result) {
  *this = EquationProgram();
  Compiler compiler(*this);
  const bool fits = std::ranges::all_of(inputs, [&compiler](const Input& input) { return compiler.bind(input); });
  if (!fits || !EvaluatorPass(compiler, text).parse() || !compiler.read(result, result_) || compiler.isTooLong()) {
    *this = EquationProgram();
    return false;
  }
  begin_.resize(registers_);
  return true;
}

void EquationProgram::run(const double* const* columns, std::size_t rows, double* values, double* failed) {
  std::fill_n(failed, rows, 0.0);
  for (std::size_t place = 0; place < registers_; ++place) begin_[place] = numbers_.data() + place * kBlockRows;
  for (const Loaded& input : inputs_) {
    const double* const column = begin_[input.place] = columns[input.column];
    // Only a number less itself is 0.
    for (std::size_t i = 0; i < rows; ++i) failed[i] = column[i] - column[i] == 0.0 ? failed[i] : 1.0;
  }
  for (const Step& step : steps_) runStep(step, rows, failed);
  std::copy_n(begin_[result_], rows, values);
}

template <class Compute>
void EquationProgram::each(const Step& step, std::size_t rows, Compute compute) {
  const double* const a = begin_[step.a];
  const double* const b = begin_[step.b];
  double* const out = numbers_.data() + step.out * kBlockRows;
  for (std::size_t i = 0; i < rows; ++i) out[i] = compute(a[i], b[i]);
}

void EquationProgram::runStep(const Step& step, std::size_t rows, double* failed) {
  switch (step.kind) {
    case Kind::kCombine:
      switch (step.operation) {
        case Operation::kAdd:
          return each(step, rows, [](double a, double b) { return a + b; });
        case Operation::kSubtract:
          return each(step, rows, [](double a, double b) { return a - b; });
        case Operation::kMultiply:
          return each(step, rows, [](double a, double b) { return a * b; });
        case Operation::kDivide: {
          const double* const divisor = begin_[step.b];
          for (std::size_t i = 0; i < rows; ++i) failed[i] = divisor[i] == 0.0 ? 1.0 : failed[i];
          return each(step, rows, [](double a, double b) { return a / b; });
        }
        default:
          return each(step, rows, [&step](double a, double b) { return combine(step.operation, a, b); });
      }
    case Kind::kQuotient:
      return each(step, rows, [](double a, double b) { return a / b; });
    case Kind::kIntegerPower:
      return integerPowers(static_cast<int>(step.c), begin_[step.a], numbers_.data() + step.out * kBlockRows, rows);
    case Kind::kPower:
      return each(step, rows, [](double a, double b) { return std::pow(a, b); });
    case Kind::kNegate:
      return each(step, rows, [](double a, double) { return -a; });
    case Kind::kInvert:
      return each(step, rows, [](double a, double) { return a == 0.0 ? 1.0 : 0.0; });
    case Kind::kChoose: {
      const double* const condition = begin_[step.a];
      const double* const yes = begin_[step.b];
      const double* const no = begin_[step.c];
      double* const out = numbers_.data() + step.out * kBlockRows;
      for (std::size_t i = 0; i < rows; ++i) out[i] = condition[i] != 0.0 ? yes[i] : no[i];
      return;
    }
    case Kind::kOne:
      return each(step, rows, [function = step.function->one](double a, double) { return function(a); });
    case Kind::kTwo:
      return each(step, rows, [function = step.function->two](double a, double b) { return function(a, b); });
  }
}

}  // namespace tarvex
