#include <fmt/format.h>

#include <algorithm>

#include "model/ModelConfiguration.h"
#include "postproc/VelsConfiguration.h"
#include "report/Document.h"
#include "report/Reports.h"

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

std::string cellsText(bool areUsed, const WorkbookCells& cells) {
  std::string text;
  if (!areUsed) return text;
  for (const NamedCell& cell : cells.inputs) text += (text.empty() ? "; " : ", ") + cell.name + " in " + cell.place();
  for (const NamedCell& cell : cells.outputs) text += ", " + cell.name + " from " + cell.place();
  return text;
}

std::string kindText(const ModelConfiguration& model) {
  if (model.choice.spreadsheet == 1)
    return "workbook " + model.choice.outputFile + cellsText(model.choice.drivesCells(), model.choice.cells);
  if (model.choice.kind == kInternalModel) return "internal model";
  if (model.choice.kind == kExternalExecutable) return "executable " + model.choice.executable;
  return "results read from " + model.choice.outputFile;
}

}  // namespace

void reportEquations(Document& out, const InternalModel& model) {
  out.add(Paragraph{fmt::format("Internal model {}: {}, {}, {}", model.name(), counted(model.numVariables(), "input"),
                                counted(model.numExpressions(), "equation"), counted(model.numOutputs(), "output"))});
  Table inputs;
  inputs.addColumn("#");
  inputs.addColumn("input", Table::Align::Left);
  inputs.addColumn("used by", Table::Align::Left);
  int number = 0;
  for (const ModelVariable& variable : model.variables())
    inputs.addRow({std::to_string(++number), variable.name, usersText(variable.usedBy, model)});
  out.add(Caption{Caption::Of::Table, "Inputs of the model"});
  out.add(std::move(inputs));
  Table equations;
  equations.addColumn("#");
  equations.addColumn("kind", Table::Align::Left);
  equations.addColumn("name", Table::Align::Left);
  equations.addColumn("equation", Table::Align::Left);
  number = 0;
  for (const ModelExpression& expression : model.expressions())
    equations.addRow(
        {std::to_string(++number), expression.type == 1 ? "output" : "internal", expression.name, expression.text});
  out.add(Caption{Caption::Of::Table, "Equations of the model"});
  out.add(std::move(equations));
}

void reportResults(Document& out, const ModelConfiguration& model, const VelsConfiguration& vels) {
  std::string text = fmt::format("Model: {}\n{} of {}", kindText(model), counted(model.results.runCount(), "run"),
                                 counted(model.results.outputCount(), "output"));
  if (model.results.runCount() > 0 && model.results.hasTimeAxis()) {
    const std::int32_t times = model.results.timeCount(0);
    if (model.results.timeMode() == kSharedGrid && times > 0)
      text += fmt::format(", {} times from {} to {}", times, cell(model.results.time(0, 0)),
                          cell(model.results.time(0, times - 1)));
    else
      text += ", each run at times of its own";
  }
  out.add(Paragraph{std::move(text)});
  Table table;
  table.addColumn("#");
  table.addColumn("output", Table::Align::Left);
  int number = 0;
  for (const std::string& name : vels.outputNames(model)) table.addRow({std::to_string(++number), name});
  out.add(Caption{Caption::Of::Table, "Outputs of the model"});
  out.add(std::move(table));
  if (model.choice.internalModel() != nullptr) reportEquations(out, *model.choice.internalModel());
}

}  // namespace tarvex
