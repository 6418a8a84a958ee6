#include <fmt/format.h>

#include <algorithm>

#include "batch/Reports.h"
#include "batch/TextTable.h"
#include "model/ModelConfiguration.h"

namespace tarvex {

namespace {

std::string usersText(const std::vector<std::int32_t>& usedBy, const InternalModel& model) {
  std::string text;
  for (const std::int32_t index : usedBy) {
    if (index < 0 || index >= model.numExpressions()) continue;
    text += text.empty() ? "" : ", ";
    text += model.expressions()[static_cast<std::size_t>(index)].name;
  }
  return text;
}

std::string kindText(const ModelConfiguration& model) {
  if (model.spreadsheet == 1) return "workbook " + model.outputFile;
  if (model.kind == kInternalModel) return "internal model";
  if (model.kind == kExternalExecutable) return "executable " + model.executable;
  return "results read from " + model.outputFile;
}

}  // namespace

void reportEquations(std::ostream& out, const InternalModel& model) {
  out << fmt::format("Internal model {}: {}, {}, {}\n\n", model.name(), counted(model.numVariables(), "input"),
                     counted(model.numExpressions(), "equation"), counted(model.numOutputs(), "output"));
  TextTable inputs;
  inputs.addColumn("#");
  inputs.addColumn("input", TextTable::Align::Left);
  inputs.addColumn("used by", TextTable::Align::Left);
  int number = 0;
  for (const ModelVariable& variable : model.variables())
    inputs.addRow({std::to_string(++number), variable.name, usersText(variable.usedBy, model)});
  inputs.print(out);
  out << '\n';
  TextTable equations;
  equations.addColumn("#");
  equations.addColumn("kind", TextTable::Align::Left);
  equations.addColumn("name", TextTable::Align::Left);
  equations.addColumn("equation", TextTable::Align::Left);
  number = 0;
  for (const ModelExpression& expression : model.expressions())
    equations.addRow(
        {std::to_string(++number), expression.type == 1 ? "output" : "internal", expression.name, expression.text});
  equations.print(out);
}

void reportResults(std::ostream& out, const ModelConfiguration& model) {
  out << fmt::format("Model: {}\n{} of {}", kindText(model), counted(model.runCount(), "run"),
                     counted(model.outputCount(), "output"));
  if (model.runCount() > 0 && model.hasTimeAxis()) {
    const std::int32_t times = model.timeCount(0);
    if (model.timeMode == kSharedGrid && times > 0)
      out << fmt::format(", {} times from {} to {}", times, cell(model.time(0, 0)), cell(model.time(0, times - 1)));
    else
      out << ", each run at times of its own";
  }
  out << "\n\n";
  TextTable table;
  table.addColumn("#");
  table.addColumn("output", TextTable::Align::Left);
  for (std::int32_t k = 0; k < model.outputCount(); ++k)
    table.addRow({std::to_string(k + 1), model.outputNames()[static_cast<std::size_t>(k)]});
  table.print(out);
  if (model.internalModel() != nullptr) {
    out << '\n';
    reportEquations(out, *model.internalModel());
  }
}

}  // namespace tarvex
