#include "postproc/ResultExport.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "base/NumberText.h"
#include "base/TextWriter.h"
#include "base/csvText.h"
#include "postproc/ResultRows.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

bool commit(TextWriter& out, std::string& message) {
  if (out.commit()) return true;
  message = withProblem(kCannotSave, out);
  return false;
}

nlohmann::json jsonNumber(const std::optional<double>& value) {
  if (!value || std::isnan(*value)) return nullptr;
  if (std::isfinite(*value)) return *value;
  return numberText(*value);
}

nlohmann::json jsonSample(const PrepConfiguration& prep) {
  nlohmann::json sample = {{"runs", prep.samples.rows()}, {"file", prep.sampleFile}};
  if (prep.sampler) {
    sample["method"] = prep.sampler->methodName;
    sample["seed"] = prep.sampler->seed;
  }
  for (std::int32_t i = 0; i < prep.factors.factorCount(); ++i)
    sample["factors"].push_back({{"name", prep.factors.factor(i).name}, {"type", prep.factors.factor(i).typeName}});
  return sample;
}

}  // namespace

bool exportCsv(const VelsConfiguration& vels, const std::string& path, std::string& message,
               const QuantileTable& quantiles) {
  TextWriter out(path);
  out.setPrecision(kCsvPrecision);
  out << "block,variable,item,quantity,value,remark\n";
  forEachResult(vels, quantiles, [&](const ResultRow& row) {
    const std::string& variable = vels.selectedVariables()[static_cast<std::size_t>(row.variable)];
    out << row.block << ',' << csvQuoted(variable) << ',' << csvQuoted(row.item) << ',' << row.quantity << ',';
    if (row.value) out << *row.value;
    out << ',' << (row.remark.empty() ? "" : csvQuoted(row.remark)) << '\n';
  });
  return commit(out, message);
}

bool exportJson(const PrepConfiguration& prep, const VelsConfiguration& vels, const std::string& path,
                std::string& message, const QuantileTable& quantiles) {
  nlohmann::json document = {{"sample", jsonSample(prep)}};
  for (const std::string& text : vels.selectedVariables()) document["variables"].push_back({{"variable", text}});
  if (!quantiles.variables.empty())
    document["intervals"] = {{"quantiles", kQuantileMethod}, {"exceedance", kExceedanceMethod}};
  forEachResult(vels, quantiles, [&](const ResultRow& row) {
    nlohmann::json& variable = document["variables"][static_cast<std::size_t>(row.variable)];
    nlohmann::json& block = variable[std::string(row.block)];
    (row.item.empty() ? block : block[row.item])[row.quantity] = jsonNumber(row.value);
    if (!row.remark.empty()) variable["not computed"][row.quantity] = row.remark;
  });
  TextWriter out(path);
  constexpr int kIndent = 1;
  out << document.dump(kIndent, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
  return commit(out, message);
}

}  // namespace tarvex
