#include "model/TrialRow.h"

#include <algorithm>
#include <limits>

#include "factors/Distribution.h"
#include "factors/Relation.h"
#include "model/InternalModel.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// Of constants their value; of relations what they are at the means of the others.
std::vector<double> meansOf(const FactorList& factors, const std::vector<std::string>& names) {
  std::vector<double> means(names.size(), kNone);
  for (std::size_t i = 0; i < names.size(); ++i) {
    const Factor& factor = factors.factor(static_cast<std::int32_t>(i));
    if (const auto* const distribution = dynamic_cast<const Distribution*>(&factor))
      means[i] = distribution->mean();
    else if (factor.isConstant() && !factor.parameters().empty())
      means[i] = factor.parameters().front().value;
  }
  for (std::size_t i = 0; i < names.size(); ++i) {
    const Factor& factor = factors.factor(static_cast<std::int32_t>(i));
    if (!factor.isRelation()) continue;
    Equation relation(static_cast<const Relation&>(factor).expression(), names);
    double value = kNone;
    if (relation.evaluate(means.data(), value)) means[i] = value;
  }
  return means;
}

// The statistics of a sample have others: sums divided by n - 1.
bool readMeans(const sampValues& samples, std::vector<double>& means) {
  const auto width = static_cast<std::size_t>(samples.columns());
  std::vector<double> row(width);
  means.assign(width, 0.0);
  for (std::int32_t run = 0; run < samples.rows(); ++run) {
    if (!samples.getRow(run, row.data())) return false;
    for (std::size_t i = 0; i < width; ++i) means[i] += (row[i] - means[i]) / (run + 1);
  }
  return true;
}

}  // namespace

bool readTrialRow(const PrepConfiguration& prep, std::int32_t row, TrialRow& trial, std::string& message) {
  TrialRow made;
  for (std::int32_t i = 0; i < prep.factors.factorCount(); ++i) made.names.push_back(prep.factors.factor(i).name);
  const sampValues& samples = prep.samples;
  const bool hasSample = samples.rows() > 0 && samples.columns() == prep.factors.factorCount();
  if (made.names.empty()) {
    message = "There are no factors yet.";
    return false;
  }
  if (row != TrialRow::kMeans && (!hasSample || row < 0 || row >= samples.rows())) {
    message = hasSample ? "The sample has " + std::to_string(samples.rows()) + " rows." : "There is no sample yet.";
    return false;
  }
  bool isRead = true;
  if (row != TrialRow::kMeans) {
    made.title = "row " + std::to_string(row + 1) + " of the sample";
    made.values.resize(made.names.size());
    isRead = samples.getRow(row, made.values.data());
  } else if (hasSample) {
    made.title = "the means of the sample";
    isRead = readMeans(samples, made.values);
  } else {
    made.title = "the means of the factors";
    made.values = meansOf(prep.factors, made.names);
  }
  if (!isRead) {
    message = "The sample cannot be read: " + samples.errorText();
    return false;
  }
  trial = std::move(made);
  return true;
}

std::vector<double> inputsOf(const InternalModel& model, const TrialRow& trial) {
  if (model.variables().size() == trial.values.size()) return trial.values;
  std::vector<double> inputs;
  for (const ModelVariable& variable : model.variables()) {
    const auto found = std::ranges::find(trial.names, variable.name);
    const auto place = static_cast<std::size_t>(found - trial.names.begin());
    inputs.push_back(place < trial.values.size() ? trial.values[place] : kNone);
  }
  return inputs;
}

}  // namespace tarvex
