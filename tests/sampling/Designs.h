#pragma once

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "base/sampValues.h"
#include "factors/Constant.h"
#include "factors/FactorList.h"
#include "factors/makeFactor.h"
#include "sampling/Sampler.h"
#include "support/Test.h"

namespace tarvex {

using Table = std::vector<std::vector<double>>;

// A list with a factor per letter: s stochastic, c constant, r relation. Factor i is called "f<i>"; a constant's value
// is 100 + i.
inline FactorList listOf(std::string_view kinds) {
  FactorList list;
  for (const char kind : kinds) {
    const std::int32_t i = list.factorCount();
    std::unique_ptr<Factor> factor = makeFactor(kind == 's' ? "Uniform" : kind == 'c' ? "Constant" : "Relation");
    factor->name = "f" + std::to_string(i);
    if (auto* constant = dynamic_cast<Constant*>(factor.get())) constant->setValue(100.0 + i);
    list.addFactor(std::move(factor));
  }
  return list;
}

inline std::vector<std::int32_t> stochasticOf(std::string_view kinds) {
  std::vector<std::int32_t> indices;
  for (std::size_t i = 0; i < kinds.size(); ++i)
    if (kinds[i] == 's') indices.push_back(static_cast<std::int32_t>(i));
  return indices;
}

inline Table tableOf(const sampValues& store) {
  Table table(static_cast<std::size_t>(store.rows()), std::vector<double>(static_cast<std::size_t>(store.columns())));
  for (std::int32_t row = 0; row < store.rows(); ++row)
    EXPECT_TRUE(store.getRow(row, table[static_cast<std::size_t>(row)].data()));
  return table;
}

inline std::vector<double> columnOf(const Table& table, std::int32_t column) {
  std::vector<double> values;
  for (const std::vector<double>& row : table) values.push_back(row[static_cast<std::size_t>(column)]);
  return values;
}

// A generation from its start, in steps of so many percent. False when the sampler fails.
inline bool generateInto(sampValues& store, Sampler& sampler, FactorList& factors, double step = 50.0) {
  store.clear();
  if (!store.allocate(factors.factorCount())) return false;
  sampler.reset();
  factors.prepareOrder();
  double reached = 0.0;
  for (double target = step; reached >= 0.0 && reached < 50.0; target += step)
    reached = sampler.generate(target, store, factors);
  factors.releaseOrder();
  return reached == 50.0;
}

inline Table generated(Sampler& sampler, FactorList& factors, double step = 50.0) {
  sampValues store;
  EXPECT_TRUE(generateInto(store, sampler, factors, step)) << sampler.errorText;
  return tableOf(store);
}

// The text of a generation that must fail.
inline std::string refusal(Sampler& sampler, FactorList& factors) {
  sampValues store;
  EXPECT_FALSE(generateInto(store, sampler, factors));
  return sampler.errorText;
}

inline std::string sectionOf(const Sampler& sampler) {
  TextWriter out;
  sampler.writeSection(out);
  return out.text();
}

// Reads a section, with a line behind it that must stay unread. False when the reader failed.
inline bool readSection(Sampler& sampler, const std::string& text) {
  TextReader in = TextReader::fromText(text + "next line\n");
  sampler.readSection(in);
  if (in.fail()) return false;
  std::string next;
  EXPECT_TRUE(in.readLine(next, 80));
  EXPECT_EQ(next, "next line");
  return true;
}

}  // namespace tarvex
