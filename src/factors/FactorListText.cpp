#include "factors/FactorListText.h"

#include <algorithm>
#include <vector>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/FactorList.h"
#include "factors/TruncatedDistribution.h"
#include "factors/lineEnd.h"

namespace tarvex {
namespace {

constexpr const char* kTruncationsTitle = "Default Truncations:";
constexpr const char* kCountTitle = " Distributions:";
constexpr const char* kTreeTitle = "Correlation information";
constexpr const char* kMatrixTitle = "Correlation Matrix:";
constexpr const char* kSteinTitle = "Stein Information:";

constexpr std::size_t kMaxTitle = 254;  // characters of a title or a type name
constexpr std::size_t kMaxPath = 4095;
constexpr std::uint64_t kShortestNumber = 2;  // bytes: a digit and a separator

bool readTitle(TextReader& in, const char* title) {
  std::string line;
  in.readLine(line, kMaxTitle);
  return in.ok() && line == title;
}

// The rest of the current line, whatever it holds; at the end of the text there is none.
void readAway(TextReader& in) {
  std::string rest;
  if (!in.atEnd()) in.readLine(rest, kMaxTitle);
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
  for (std::int32_t row = 0; row < order; ++row) {
    for (std::int32_t column = 0; column < order; ++column) out << list.matrixAt(row, column) << '\t';
    out << '\n';
  }
}

void FactorListText::writeStein(const FactorList& list, TextWriter& out) {
  const sampValues& stein = list.steinInfo;
  const bool filled = stein.rows() > 0;
  out << kSteinTitle << '\n' << list.steinFileName << '\n';
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
  in >> count;
  if (!readTitle(in, kCountTitle) || count < 0) return false;
  if (!readFactors(list, in, count)) return false;
  // Kept: a file that ends behind fewer records than it announced is a list of those factors, uncorrelated.
  if (list.factorCount() < count) return true;
  return readTree(list, in) && readMatrix(list, in) && readStein(list, in);
}

bool FactorListText::readTruncations(TextReader& in) {
  double left = 0.0;
  double right = 0.0;
  in >> left >> right;
  if (in.ok()) TruncatedDistribution::setDefaultTruncations(left, right);
  return in.ok();
}

bool FactorListText::readFactors(FactorList& list, TextReader& in, std::int32_t count) {
  for (std::int32_t i = 0; i < count && !in.atEnd(); ++i) {
    std::string typeName;
    in.readLine(typeName, kMaxTitle);
    // Kept: a list with a column of an imported sample doesn't load.
    std::unique_ptr<Factor> factor = typeName == "Dummy" ? nullptr : makeFactor(typeName);
    if (in.fail() || factor == nullptr) return false;
    factor->read(in);
    readAway(in);
    readAway(in);
    if (in.fail()) return false;
    list.addFactor(std::move(factor));
  }
  return true;
}

bool FactorListText::readTree(FactorList& list, TextReader& in) {
  if (!readTitle(in, kTreeTitle)) return false;
  for (CorrelationNode& node : list.nodes_) {
    std::int32_t children = 0;
    in >> node.correlation >> node.parent >> children;
    in.checkCount(children, kShortestNumber);
    for (std::int32_t i = 0; i < children && in.ok(); ++i) in >> node.children.emplace_back();
    readAway(in);
  }
  return in.ok() && isTree(list);
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
  const std::int64_t order = list.correlatableCount();
  if (!in.checkCount(order * order, kShortestNumber)) return false;
  std::vector<float> matrix(static_cast<std::size_t>(order * order));
  bool isUnit = true;
  for (std::int64_t row = 0; row < order; ++row) {
    for (std::int64_t column = 0; column < order && in.ok(); ++column) {
      float& cell = matrix[static_cast<std::size_t>(row * order + column)];
      in >> cell;
      isUnit = isUnit && cell == (row == column ? 1.0F : 0.0F);
    }
    readAway(in);
  }
  if (!isUnit) {
    list.matrix_ = std::move(matrix);
    list.matrixOrder_ = static_cast<std::size_t>(order);
  }
  return in.ok();
}

bool FactorListText::readStein(FactorList& list, TextReader& in) {
  if (!readTitle(in, kSteinTitle)) return false;
  in.readLine(list.steinFileName, kMaxPath);
  std::int32_t columns = 0;
  std::int32_t rows = 0;
  std::int32_t flag = 0;
  for (std::int32_t* number : {&columns, &rows, &flag}) {
    in >> *number;
    readLineEnd(in);
  }
  if (in.fail() || columns < 0 || rows < 0 || (flag != 0) != (rows > 0)) return false;
  if (flag != 0) {
    if (columns == 0 || !in.checkCount(std::int64_t{columns} * rows, kShortestNumber)) return false;
    if (!list.steinInfo.allocate(columns)) return false;
    std::vector<double> values(static_cast<std::size_t>(columns));
    for (std::int32_t row = 0; row < rows; ++row) {
      for (double& value : values) in >> value;
      if (in.fail() || list.steinInfo.addRow(values.data()) == 0) return false;
    }
  }
  in >> list.correlationMode;
  const bool known = list.correlationMode >= kDependenceTree && list.correlationMode <= kSteinSample;
  return readLineEnd(in) && known;
}

void FactorList::write(TextWriter& out) const {
  FactorListText::write(*this, out);
}

bool FactorList::read(TextReader& in) {
  const double left = TruncatedDistribution::defaultLeftTruncation();
  const double right = TruncatedDistribution::defaultRightTruncation();
  clear();
  if (FactorListText::read(*this, in)) return true;
  TruncatedDistribution::setDefaultTruncations(left, right);
  return false;
}

}  // namespace tarvex
