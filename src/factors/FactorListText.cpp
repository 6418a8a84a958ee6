#include "factors/FactorListText.h"

#include <algorithm>
#include <vector>

#include "base/NumberText.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/FactorList.h"
#include "factors/TruncatedDistribution.h"
#include "factors/lineEnd.h"
#include "factors/makeFactor.h"

namespace tarvex {
namespace {

constexpr const char* kTruncationsTitle = "Default Truncations:";
constexpr const char* kCountTitle = " Distributions:";
constexpr const char* kTreeTitle = "Correlation information";
constexpr const char* kMatrixTitle = "Correlation Matrix:";
constexpr const char* kSteinTitle = "Stein Information:";

constexpr std::size_t kMaxTitle = 254;        // characters of a title or a type name
constexpr std::uint64_t kShortestNumber = 2;  // bytes: a digit and a separator

bool readTitle(TextReader& in, const char* title) {
  std::string line;
  in.expect(title).readLine(line, kMaxTitle);
  return in.ok() &&
         (line == title || in.refuse("expected the line '" + std::string(title) + "', found '" + line + "'"));
}

// What a correlation is, of a link or a cell of the matrix.
bool checkCorrelation(TextReader& in, double value) {
  return in.ok() && ((value >= -1.0 && value <= 1.0) ||
                     in.refuse("a correlation must be between -1 and 1, not " + numberText(value)));
}

// A row of the unit matrix. Thousands of factors have millions of cells.
void writeUnitRow(std::string_view zeros, std::int32_t row, TextWriter& out) {
  const std::size_t before = 2 * static_cast<std::size_t>(row);
  out << zeros.substr(0, before) << "1\t" << zeros.substr(before + 2) << '\n';
}

// A count that stands alone on its line.
bool readCount(TextReader& in, const char* what, std::int32_t& count) {
  in.expect(what) >> count;
  if (in.ok() && count < 0) in.refuse(std::string(what) + " must not be negative, as " + std::to_string(count) + " is");
  return readLineEnd(in);
}

}  // namespace

void FactorListText::write(const FactorList& list, TextWriter& out) {
  out << kTruncationsTitle << '\n';
  out << TruncatedDistribution::defaultLeftTruncation() << '\t' << TruncatedDistribution::defaultRightTruncation()
      << "\n\n";
  out << list.factorCount() << kCountTitle << '\n';
  for (std::int32_t i = 0; i < list.factorCount(); ++i) {
    list.factor(i).write(out);
    out << '\n';
  }
  writeTree(list, out);
  writeMatrix(list, out);
  writeStein(list, out);
  out << list.correlationMode << '\n';
}

void FactorListText::writeTree(const FactorList& list, TextWriter& out) {
  out << kTreeTitle << '\n';
  for (std::int32_t i = 0; i < list.factorCount(); ++i) {
    const CorrelationNode& node = list.node(i);
    out << node.correlation << ' ' << node.parent << ' ' << node.children.size() << ' ';
    for (const std::int32_t child : node.children) out << child << ' ';
    out << '\n';
  }
}

void FactorListText::writeMatrix(const FactorList& list, TextWriter& out) {
  out << kMatrixTitle << '\n';
  const std::int32_t order = list.correlatableCount();
  std::vector<bool> isCorrelated(static_cast<std::size_t>(order), false);
  for (const CorrelationCell& cell : list.correlatedPairs())
    isCorrelated[static_cast<std::size_t>(cell.row)] = isCorrelated[static_cast<std::size_t>(cell.column)] = true;
  std::string zeros;
  for (std::int32_t i = 0; i < order; ++i) zeros += "0\t";
  for (std::int32_t row = 0; row < order; ++row) {
    if (!isCorrelated[static_cast<std::size_t>(row)]) {
      writeUnitRow(zeros, row, out);
      continue;
    }
    for (std::int32_t column = 0; column < order; ++column) out << list.matrixAt(row, column) << '\t';
    out << '\n';
  }
}

void FactorListText::writeStein(const FactorList& list, TextWriter& out) {
  const sampValues& stein = list.steinInfo;
  const bool filled = stein.rows() > 0;
  out << kSteinTitle << '\n';
  kSteinFileRule.write(out, list.steinFileName);
  out << (filled ? stein.columns() : 0) << '\n' << (filled ? stein.rows() : 0) << '\n' << (filled ? 1 : 0) << '\n';
  std::vector<double> values(static_cast<std::size_t>(stein.columns()));
  for (std::int32_t row = 0; row < stein.rows(); ++row) {
    if (!stein.getRow(row, values.data())) {
      out.refuse(stein.errorText());
      return;
    }
    for (const double value : values) out << value << '\t';
    out << '\n';
  }
}

bool FactorListText::read(FactorList& list, TextReader& in) {
  std::int32_t count = 0;
  if (!readTitle(in, kTruncationsTitle) || !readTruncations(in)) return false;
  in.expect("the number of factors") >> count;
  if (!readTitle(in, kCountTitle)) return false;
  if (count < 0) return in.refuse("the number of factors must not be negative, as " + std::to_string(count) + " is");
  if (!readFactors(list, in, count)) return false;
  // Kept: a file that ends behind fewer records than it announced is a list of those factors, uncorrelated.
  if (list.factorCount() < count) return true;
  return readTree(list, in) && readMatrix(list, in) && readStein(list, in);
}

bool FactorListText::readTruncations(TextReader& in) {
  double left = 0.0;
  double right = 0.0;
  in.expect("the default left truncation") >> left;
  in.expect("the default right truncation") >> right;
  // Kept: a pair that is none is passed over.
  if (in.ok()) static_cast<void>(TruncatedDistribution::setDefaultTruncations(left, right));
  return in.ok();
}

bool FactorListText::readFactors(FactorList& list, TextReader& in, std::int32_t count) {
  for (std::int32_t i = 0; i < count && !in.atEnd(); ++i) {
    std::string typeName;
    if (!in.expect("the type of a factor").readLine(typeName, kMaxTitle)) return false;
    // Kept: a list with a column of an imported sample doesn't load.
    std::unique_ptr<Factor> factor = typeName == "Dummy" ? nullptr : makeFactor(typeName);
    if (factor == nullptr) return in.refuse("expected the type of a factor, found '" + typeName + "'");
    factor->read(in);
    if (!readLineEnd(in)) return false;
    if (!readLineEnd(in)) return false;  // the empty line behind a record
    list.addFactor(std::move(factor));
  }
  return in.ok();
}

bool FactorListText::readTree(FactorList& list, TextReader& in) {
  if (!readTitle(in, kTreeTitle)) return false;
  for (CorrelationNode& node : list.nodes_) {
    std::int32_t children = 0;
    in.expect("the correlation with the parent") >> node.correlation;
    if (!checkCorrelation(in, node.correlation)) return false;
    in.expect("the parent's place in the list") >> node.parent;
    in.expect("the number of children") >> children;
    in.checkCount(children, kShortestNumber);
    for (std::int32_t i = 0; i < children && in.ok(); ++i)
      in.expect("a child's place in the list") >> node.children.emplace_back();
    if (!readLineEnd(in)) return false;
  }
  return isTree(list) || in.refuse(
                             "the lines of the dependence tree don't fit together: each end of a link names the "
                             "other, no link leads to a constant or a relation, none closes a loop");
}

// Each end of a link names the other one, once; both are correlatable; every factor has a root above it.
bool FactorListText::isTree(const FactorList& list) {
  std::vector<std::int32_t> open;
  for (std::int32_t i = 0; i < list.factorCount(); ++i) {
    const std::int32_t parent = list.node(i).parent;
    if (parent == -1) {
      open.push_back(i);
    } else if (list.isCorrelatable(i) != 1 || list.isCorrelatable(parent) != 1) {
      return false;
    }
  }
  std::int32_t reached = static_cast<std::int32_t>(open.size());
  std::vector<bool> seen(static_cast<std::size_t>(list.factorCount()), false);
  while (!open.empty()) {
    const std::int32_t i = open.back();
    open.pop_back();
    for (const std::int32_t child : list.node(i).children) {
      if (list.isCorrelatable(child) != 1 || list.node(child).parent != i) return false;
      if (seen[static_cast<std::size_t>(child)]) return false;
      seen[static_cast<std::size_t>(child)] = true;
      open.push_back(child);
      ++reached;
    }
  }
  return reached == list.factorCount();
}

bool FactorListText::readMatrix(FactorList& list, TextReader& in) {
  if (!readTitle(in, kMatrixTitle)) return false;
  const std::int32_t order = list.correlatableCount();
  if (!in.checkCount(std::int64_t{order} * order, kShortestNumber)) return false;
  for (std::int32_t row = 0; row < order; ++row) {
    for (std::int32_t column = 0; column < order; ++column) {
      float cell = 0.0F;
      in.expect("a cell of the correlation matrix") >> cell;
      if (!checkCorrelation(in, cell)) return false;
      if (row == column && cell != 1.0F)
        return in.refuse("the diagonal of the correlation matrix must be 1, not " + numberText(cell));
      if (row < column && cell != 0.0F) list.setPair(row, column, cell);
      if (row <= column) continue;
      if (const float mirror = list.matrixAt(row, column); cell != mirror)
        return in.refuse("the correlation matrix must be symmetric: " + numberText(cell) + " in row " +
                         std::to_string(row + 1) + ", column " + std::to_string(column + 1) + " stands against " +
                         numberText(mirror));
    }
    if (!readLineEnd(in)) return false;
  }
  return in.ok();
}

bool FactorListText::readStein(FactorList& list, TextReader& in) {
  if (!readTitle(in, kSteinTitle) || !kSteinFileRule.read(in, list.steinFileName)) return false;
  std::int32_t columns = 0;
  std::int32_t rows = 0;
  std::int32_t flag = 0;
  if (!readCount(in, "the columns of the Stein sample", columns)) return false;
  if (!readCount(in, "the rows of the Stein sample", rows)) return false;
  if (!readCount(in, "the flag of the Stein sample", flag)) return false;
  if ((flag != 0) != (rows > 0) || (flag != 0 && columns == 0))
    return in.refuse("the flag of a Stein sample of " + std::to_string(rows) + " rows and " + std::to_string(columns) +
                     " columns can't be " + std::to_string(flag));
  if (flag != 0 && !readSteinRows(list, in, rows, columns)) return false;
  in.expect("the correlation mode") >> list.correlationMode;
  if (in.ok() && (list.correlationMode < kDependenceTree || list.correlationMode > kSteinSample))
    in.refuse("the correlation mode must be 0 to 3, not " + std::to_string(list.correlationMode));
  return readLineEnd(in);
}

bool FactorListText::readSteinRows(FactorList& list, TextReader& in, std::int32_t rows, std::int32_t columns) {
  if (!in.checkCount(std::int64_t{columns} * rows, kShortestNumber)) return false;
  if (!list.steinInfo.allocate(columns)) return in.refuse(list.steinInfo.errorText());
  std::vector<double> values(static_cast<std::size_t>(columns));
  for (std::int32_t row = 0; row < rows; ++row) {
    for (double& value : values) in.expect("a value of the Stein sample") >> value;
    if (in.fail()) return false;
    if (list.steinInfo.addRow(values.data()) == 0) return in.refuse(list.steinInfo.errorText());
  }
  return true;
}

void FactorList::write(TextWriter& out) const {
  FactorListText::write(*this, out);
}

bool FactorList::read(TextReader& in) {
  const double left = TruncatedDistribution::defaultLeftTruncation();
  const double right = TruncatedDistribution::defaultRightTruncation();
  clear();
  if (FactorListText::read(*this, in)) return true;
  // Nothing is lost where it refuses: only a setter of one of the two can have brought in a pair that is none.
  static_cast<void>(TruncatedDistribution::setDefaultTruncations(left, right));
  return false;
}

}  // namespace tarvex
