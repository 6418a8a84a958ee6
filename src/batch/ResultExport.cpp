#include "batch/ResultExport.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "app/ProjectConfiguration.h"
#include "base/NumberText.h"
#include "base/TextWriter.h"
#include "batch/ResultRows.h"

namespace tarvex {

namespace {

constexpr int kFullPrecision = 17;

std::string quoted(const std::string& text) {
  std::string field = "\"";
  for (const char c : text) field += c == '"' ? std::string("\"\"") : std::string(1, c);
  return field + '"';
}

bool commit(TextWriter& out, const std::string& path, std::string& message) {
  if (out.commit()) return true;
  message = "I cannot save the file\n" + path;
  return false;
}

nlohmann::json jsonNumber(double value) {
  if (std::isfinite(value)) return value;
  return numberText(value);
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

bool exportCsv(const ProjectConfiguration& project, const std::string& path, std::string& message) {
  TextWriter out(path);
  out.setPrecision(kFullPrecision);
  out << "block,variable,item,quantity,value\n";
  forEachResult(project.vels, [&](const ResultRow& row) {
    const std::string& variable = project.vels.selectedVariables()[static_cast<std::size_t>(row.variable)];
    out << row.block << ',' << quoted(variable) << ',' << quoted(row.item) << ',' << row.quantity << ',' << row.value
        << '\n';
  });
  return commit(out, path, message);
}

bool exportJson(const ProjectConfiguration& project, const std::string& path, std::string& message) {
  nlohmann::json document = {{"sample", jsonSample(project.prep)}};
  for (const std::string& text : project.vels.selectedVariables())
    document["variables"].push_back({{"variable", text}});
  forEachResult(project.vels, [&](const ResultRow& row) {
    nlohmann::json& block = document["variables"][static_cast<std::size_t>(row.variable)][std::string(row.block)];
    (row.item.empty() ? block : block[row.item])[row.quantity] = jsonNumber(row.value);
  });
  TextWriter out(path);
  constexpr int kIndent = 1;
  out << document.dump(kIndent, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
  return commit(out, path, message);
}

}  // namespace tarvex
