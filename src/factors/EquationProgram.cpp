#include "factors/EquationProgram.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <map>
#include <set>
#include <tuple>

#include "base/VectorUnits.h"
#include "factors/Evaluator.h"
#include "factors/EvaluatorPass.h"
#include "factors/integerPower.h"

namespace tarvex {
namespace {

constexpr std::size_t kMaxRegisters = 4096;  // beyond what anybody writes: four megabytes of rows

template <class Compute>
TARVEX_INLINE void computeRows(const double* a, const double* b, double* out, std::size_t rows, Compute compute) {
  for (std::size_t i = 0; i < rows; ++i) out[i] = compute(a[i], b[i]);
}

template <class Compute>
TARVEX_WIDE void computeWide(const double* a, const double* b, double* out, std::size_t rows, Compute compute) {
  computeRows(a, b, out, rows, compute);
}

// Operations that a processor has for several numbers at a time.
template <class Compute>
void compute(const double* a, const double* b, double* out, std::size_t rows, Compute operation) {
  if (hasWideUnits())
    computeWide(a, b, out, rows, operation);
  else
    computeRows(a, b, out, rows, operation);
}

// 1.0 where an input of `column` isn't finite: only a finite number less itself is 0.
TARVEX_INLINE void failRows(const double* column, std::size_t rows, double* failed) {
  for (std::size_t i = 0; i < rows; ++i) failed[i] = column[i] - column[i] == 0.0 ? failed[i] : 1.0;
}

TARVEX_WIDE void failRowsWide(const double* column, std::size_t rows, double* failed) {
  failRows(column, rows, failed);
}

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
    if (isNew) {
      found->second = newRegister();
      std::fill_n(rowsOf(found->second), kBlockRows, value);
      isConstant_.insert(found->second);
    }
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
    const bool cannotFail = isConstant_.contains(right) && *rowsOf(right) != 0.0;
    const Kind kind = operation == Operation::kDivide && cannotFail ? Kind::kQuotient : Kind::kCombine;
    value = step({kind, operation, nullptr, value, right, value, 0});
    return true;
  }
  Value power(Value base, Value exponent) {
    for (int whole = kLeastPower; whole <= kLargestPower; ++whole)
      if (isConstant_.contains(exponent) && *rowsOf(exponent) == whole)
        return step({Kind::kIntegerPower, {}, nullptr, base, base, static_cast<std::size_t>(whole), 0});
    return step({Kind::kPower, {}, nullptr, base, exponent, base, 0});
  }
  Value negate(Value value) { return step({Kind::kNegate, {}, nullptr, value, value, value, 0}); }
  Value invert(Value value) { return step({Kind::kInvert, {}, nullptr, value, value, value, 0}); }
  Value choose(Value condition, Value yes, Value no) {
    return step({Kind::kChoose, {}, nullptr, condition, yes, no, 0});
  }
  Value call(const Function& function, const Value* arguments) {
    const Value first = arguments[0];
    if (function.name == "fabs") return step({Kind::kMagnitude, {}, nullptr, first, first, first, 0});
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
      if (!isFolded(step)) program_.steps_.push_back(step);
    }
    return found->second;
  }
  // Takes a step over numbers, but for one that fails.
  bool isFolded(const Step& step) {
    const Value others[] = {step.b, step.kind == Kind::kIntegerPower ? step.a : step.c};
    if (isTooLong() || !isConstant_.contains(step.a) || !isConstant_.contains(others[0]) ||
        !isConstant_.contains(others[1]))
      return false;
    program_.begin_.resize(program_.registers_);
    for (const Value place : {step.a, others[0], others[1]}) program_.begin_[place] = rowsOf(place);
    double failed[kBlockRows] = {};
    program_.runStep(step, kBlockRows, failed);
    if (failed[0] == 0.0) isConstant_.insert(step.out);
    return failed[0] == 0.0;
  }

  EquationProgram& program_;
  std::map<std::string_view, Value> symbols_;
  std::map<std::uint64_t, Value> constants_;
  std::set<Value> isConstant_;  // all rows hold one number from the start
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
    if (hasWideUnits())
      failRowsWide(column, rows, failed);
    else
      failRows(column, rows, failed);
  }
  for (const Step& step : steps_) runStep(step, rows, failed);
  std::copy_n(begin_[result_], rows, values);
}

void EquationProgram::runStep(const Step& step, std::size_t rows, double* failed) {
  const double* const a = begin_[step.a];
  const double* const b = begin_[step.b];
  double* const out = numbers_.data() + step.out * kBlockRows;
  switch (step.kind) {
    case Kind::kCombine:
      switch (step.operation) {
        case Operation::kAdd:
          return compute(a, b, out, rows, [](double x, double y) { return x + y; });
        case Operation::kSubtract:
          return compute(a, b, out, rows, [](double x, double y) { return x - y; });
        case Operation::kMultiply:
          return compute(a, b, out, rows, [](double x, double y) { return x * y; });
        case Operation::kDivide:
          for (std::size_t i = 0; i < rows; ++i) failed[i] = b[i] == 0.0 ? 1.0 : failed[i];
          return compute(a, b, out, rows, [](double x, double y) { return x / y; });
        default:
          return computeRows(a, b, out, rows, [&step](double x, double y) { return combine(step.operation, x, y); });
      }
    case Kind::kQuotient:
      return compute(a, b, out, rows, [](double x, double y) { return x / y; });
    case Kind::kIntegerPower:
      return integerPowers(static_cast<int>(step.c), a, out, rows);
    case Kind::kPower:
      return computeRows(a, b, out, rows, [](double x, double y) { return std::pow(x, y); });
    case Kind::kNegate:
      return compute(a, b, out, rows, [](double x, double) { return -x; });
    case Kind::kMagnitude:
      return compute(a, b, out, rows, [](double x, double) { return std::fabs(x); });
    case Kind::kInvert:
      return compute(a, b, out, rows, [](double x, double) { return x == 0.0 ? 1.0 : 0.0; });
    case Kind::kChoose: {
      const double* const no = begin_[step.c];
      for (std::size_t i = 0; i < rows; ++i) out[i] = a[i] != 0.0 ? b[i] : no[i];
      return;
    }
    case Kind::kOne:
      return computeRows(a, b, out, rows, [function = step.function->one](double x, double) { return function(x); });
    case Kind::kTwo:
      return computeRows(a, b, out, rows,
                         [function = step.function->two](double x, double y) { return function(x, y); });
  }
}

}  // namespace tarvex
