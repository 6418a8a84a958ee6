#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "model/SpreadsheetApplication.h"
#include "support/TextFiles.h"

namespace tarvex::test {

// A spreadsheet application that notes every call and works on one workbook in memory. Its formulas are the operation
// `compute`; its user is the operation `user`.
class ScriptedApplication : public SpreadsheetApplication {
 public:
  using Cells = std::map<std::pair<std::int32_t, std::int32_t>, SheetCell>;  // by row and column
  struct Sheet {
    std::string name;
    Cells cells = {};
  };

  std::vector<Sheet> sheets;
  std::function<void()> compute = [] {};
  std::function<bool()> user = [] { return true; };
  std::vector<std::size_t> formulas;  // the inputs that hold one
  std::string failing;                // the word of the call that fails
  std::vector<std::string> calls;

  bool start(bool visible) override { return call("start", visible ? "visible" : "hidden"); }
  void quit() override { static_cast<void>(call("quit")); }
  bool open(const std::string& path, bool readOnly) override {
    return call("open", path + (readOnly ? " to read" : ""));
  }
  bool openCopy(const std::string& path) override { return call("open", "copy of " + path); }
  bool close() override { return call("close"); }
  bool countSheets(std::int32_t& count) override {
    count = static_cast<std::int32_t>(sheets.size());
    return succeed("count");
  }
  bool getSheetName(std::int32_t sheet, std::string& name) override {
    name = at(sheet).name;
    return succeed("name");
  }
  bool addSheet(const std::string& name) override {
    sheets.push_back({name});
    return call("add", name);
  }
  bool clearCells(std::int32_t sheet) override {
    at(sheet).cells.clear();
    return call("clear", at(sheet).name);
  }
  bool writeCells(std::int32_t sheet, const CellBlock& block) override {
    for (std::size_t i = 0; i < block.size(); ++i) at(sheet).cells[place(block, i)] = block.cells[i];
    return call("write", std::to_string(block.rows) + " rows from " + std::to_string(block.row));
  }
  bool readCells(std::int32_t sheet, CellBlock& block) override {
    block.cells.clear();
    for (std::size_t i = 0; i < block.size(); ++i) {
      const auto found = at(sheet).cells.find(place(block, i));
      block.cells.push_back(found == at(sheet).cells.end() ? SheetCell() : found->second);
    }
    return succeed("read");
  }
  bool bindCells(const std::vector<CellPlace>& inputs, const std::vector<CellPlace>& outputs,
                 std::vector<std::size_t>& found) override {
    inputs_ = inputs;
    found = formulas;
    outputs_ = outputs;
    return succeed("bind");
  }
  bool driveRows(const std::vector<double>& rows, CellBlock& block) override {
    block = {0, 0, 0, static_cast<std::int32_t>(outputs_.size())};
    bool isWhole = true;
    for (std::size_t first = 0; first < rows.size() && isWhole; first += inputs_.size()) {
      for (std::size_t i = 0; i < inputs_.size(); ++i) cellAt(inputs_[i]) = rows[first + i];
      compute();
      for (const CellPlace& place : outputs_) {
        block.cells.push_back(cellAt(place));
        isWhole = isWhole && std::holds_alternative<double>(block.cells.back());
      }
      ++block.rows;
    }
    return call("drive", std::to_string(block.rows));
  }
  bool getCellText(const CellPlace& place, std::string& text) override {
    const auto* const shown = std::get_if<std::string>(&cellAt(place));
    text = shown == nullptr ? "#DIV/0!" : *shown;
    return succeed("text");
  }
  bool recalculate() override {
    compute();
    return call("recalculate");
  }
  bool setSaved() override { return call("saved"); }
  bool saveCopy(const std::string& path) override {
    writeFile(path, "computed");
    return call("save");
  }
  bool waitForUser() override { return call("wait") && user(); }

 private:
  Sheet& at(std::int32_t sheet) { return sheets.at(static_cast<std::size_t>(sheet)); }
  SheetCell& cellAt(const CellPlace& place) { return at(place.sheet).cells[{place.row, place.column}]; }
  static std::pair<std::int32_t, std::int32_t> place(const CellBlock& block, std::size_t i) {
    const auto cell = static_cast<std::int32_t>(i);
    return {block.row + cell / block.columns, block.column + cell % block.columns};
  }
  bool call(const std::string& word, const std::string& detail = {}) {
    calls.push_back(detail.empty() ? word : word + ' ' + detail);
    return succeed(word);
  }
  bool succeed(const std::string& word) {
    if (word == failing) errorText = word + " failed";
    return word != failing;
  }

  std::vector<CellPlace> inputs_;
  std::vector<CellPlace> outputs_;
};

}  // namespace tarvex::test
