#pragma once

#include <utility>

#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/makeFactor.h"
#include "postproc/SensitivityStats.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SamplerFactory.h"
#include "support/AnalyticModels.h"
#include "support/Test.h"

namespace tarvex {

// A design over the inputs of a model and what the model makes of it.
struct DesignStudy {
  PrepConfiguration prep;
  OutputTable outputs;
};

// Factors x1, x2, ... with a constant "k" before the second: designs and measures must pass over it.
inline void addInputs(FactorList& factors, int inputs) {
  const auto add = [&factors](const char* type, const std::string& name) {
    std::unique_ptr<Factor> factor = makeFactor(type);
    factor->name = name;
    factors.addFactor(std::move(factor));
  };
  for (int i = 1; i <= inputs; ++i) {
    if (i == 2) add("Constant", "k");
    add("Uniform", "x" + std::to_string(i));
  }
}

// The columns of the design that belong to inputs, in order.
inline std::vector<double> inputsOf(const FactorList& factors, const std::vector<double>& row) {
  std::vector<double> x;
  for (std::int32_t i = 0; i < factors.factorCount(); ++i)
    if (factors.isConstant(i) == 0) x.push_back(row[static_cast<std::size_t>(i)]);
  return x;
}

// Columns of outputs: each a function of a run's inputs, numbers of the design space.
using Output = std::function<double(const std::vector<double>& u, std::int32_t run)>;

inline DesignStudy makeDesignStudy(int inputs, std::unique_ptr<Sampler> sampler, const std::vector<Output>& columns) {
  DesignStudy study;
  FactorList& factors = study.prep.factors;
  addInputs(factors, inputs);
  if (sampler->methodId == kRepLatin) factors.correlationMode = kImanConover;
  study.prep.sampler = std::move(sampler);
  EXPECT_TRUE(study.prep.prepareGeneration());
  factors.prepareOrder();
  EXPECT_EQ(study.prep.sampler->generate(50.0, study.prep.samples, factors), 50.0) << study.prep.sampler->errorText;
  factors.releaseOrder();

  EXPECT_TRUE(study.outputs.allocate(static_cast<std::int32_t>(columns.size())));
  std::vector<double> row(static_cast<std::size_t>(factors.factorCount()));
  std::vector<double> y(columns.size());
  for (std::int32_t run = 0; run < study.prep.samples.rows(); ++run) {
    EXPECT_TRUE(study.prep.samples.getRow(run, row.data()));
    const std::vector<double> u = inputsOf(factors, row);
    for (std::size_t i = 0; i < columns.size(); ++i) y[i] = columns[i](u, run);
    EXPECT_GT(study.outputs.addRow(y.data()), 0);
  }
  return study;
}

inline Output outputOf(const AnalyticModel& model) {
  return [model](std::vector<double> x, std::int32_t) {
    for (double& value : x) value = model.lower + value * (model.upper - model.lower);
    return model.evaluate(x.data());
  };
}

inline DesignStudy makeDesignStudy(const AnalyticModel& model, std::unique_ptr<Sampler> sampler) {
  return makeDesignStudy(model.inputs, std::move(sampler), {outputOf(model)});
}

// The value of a slot of the record of that name.
inline double valueOf(const SensitivityStats& stats, const std::string& record, std::int32_t slot,
                      std::int32_t variable = 0) {
  std::vector<double> values;
  EXPECT_TRUE(stats.slotValues(variable, slot, values));
  for (std::size_t i = 0; i < values.size(); ++i)
    if (stats.records[i].name == record) return values[i];
  ADD_FAILURE() << "no record " << record;
  return 0.0;
}

// Puts other text into the section of the study's sampler, as a damaged file would.
inline void damage(DesignStudy& study, const std::string& from, const std::string& to) {
  TextWriter out;
  study.prep.sampler->write(out);
  std::string text = out.text();
  const std::size_t at = text.find(from);
  ASSERT_NE(at, std::string::npos) << text.substr(0, 300);
  text.replace(at, from.size(), to);
  TextReader in = TextReader::fromText(text);
  study.prep.sampler = readSampler(in);
  ASSERT_NE(study.prep.sampler, nullptr) << "the damage must get past the reader";
}

}  // namespace tarvex
