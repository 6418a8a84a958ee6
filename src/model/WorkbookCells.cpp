#include "model/WorkbookCells.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <unordered_map>

#include "model/OutputNames.h"
#include "model/SheetLine.h"

namespace tarvex {

namespace {

constexpr std::string_view kInputWord = "input ";
constexpr std::string_view kOutputWord = "output ";
constexpr std::int32_t kMostSheetRows = 1048576;  // of the largest sheet of any format
constexpr std::int32_t kMostColumns = 16384;
constexpr std::int32_t kLetters = 26;

bool isPlainSheet(const std::string& sheet) {
  return std::ranges::all_of(sheet, [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 128 || std::isalnum(byte) != 0 || c == '_';
  });
}

void passDollar(std::string_view& text) {
  if (text.starts_with('$')) text.remove_prefix(1);
}

// "B3", with its signs; all of the text.
bool parseCellName(std::string_view text, std::int32_t& row, std::int32_t& column) {
  passDollar(text);
  column = 0;
  while (!text.empty() && std::isalpha(static_cast<unsigned char>(text.front())) != 0 && column <= kMostColumns) {
    column = column * kLetters + std::toupper(static_cast<unsigned char>(text.front())) - 'A' + 1;
    text.remove_prefix(1);
  }
  passDollar(text);
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), row);
  if (parsed.ec != std::errc() || parsed.ptr != text.data() + text.size()) return false;
  --row;
  --column;
  return row >= 0 && row < kMostSheetRows && column >= 0 && column < kMostColumns;
}

// Takes the sheet and the sign behind it off the text.
bool takeSheet(std::string_view& text, std::string& sheet) {
  passDollar(text);
  if (!text.starts_with('\'')) {
    std::size_t end = text.rfind('!');
    if (end == std::string_view::npos) end = text.rfind('.');
    if (end == std::string_view::npos) return false;
    sheet = text.substr(0, end);
    text.remove_prefix(end + 1);
    return !sheet.empty();
  }
  text.remove_prefix(1);
  while (!text.empty()) {
    const char c = text.front();
    text.remove_prefix(1);
    const bool isDoubled = c == '\'' && text.starts_with('\'');
    if (isDoubled) text.remove_prefix(1);
    if (c == '\'' && !isDoubled) break;
    sheet += c;
  }
  const bool isParted = text.starts_with('!') || text.starts_with('.');
  if (isParted) text.remove_prefix(1);
  return isParted && !sheet.empty();
}

std::string nameProblem(const std::string& name) {
  OutputNames fit([](const std::string&, const std::string&) {});
  std::string reason;
  if (!fit.add(name, name, reason)) return reason;
  const std::string kept = fit.release().front();
  return kept == name ? "" : "'" + name + "' can't be the name of an output: " + kept + " can";
}

using Names = std::unordered_map<std::string, std::string>;

std::string doubleProblem(const std::vector<NamedCell>& cells, Names& places) {
  Names names;
  for (const NamedCell& cell : cells) {
    const auto name = names.try_emplace(cell.name, cell.place());
    if (!name.second) return cell.name + " has two cells: " + name.first->second + " and " + cell.place();
    const auto place = places.try_emplace(cell.place(), cell.name);
    if (!place.second) return cell.place() + " stands for both " + place.first->second + " and " + cell.name;
  }
  return {};
}

}  // namespace

std::string NamedCell::place() const {
  std::string quoted = sheet;
  if (!isPlainSheet(sheet)) {
    quoted = "'";
    for (const char c : sheet) quoted.append(c == '\'' ? 2 : 1, c);
    quoted += '\'';
  }
  return quoted + '!' + cellName(row, column);
}

std::string WorkbookCells::problem() const {
  if (inputs.empty()) return "No cell takes a factor.";
  if (outputs.empty()) return "No cell gives an output.";
  for (const NamedCell& cell : outputs)
    if (std::string text = nameProblem(cell.name); !text.empty()) return text + '.';
  Names places;
  std::string text = doubleProblem(inputs, places);
  if (text.empty()) text = doubleProblem(outputs, places);
  return text.empty() ? text : text + '.';
}

std::string WorkbookCells::text() const {
  std::string line;
  const auto add = [&line](std::string_view word, const std::vector<NamedCell>& cells) {
    for (const NamedCell& cell : cells) {
      if (!line.empty()) line += '\t';
      line.append(word).append(cell.name + '=' + cell.place());
    }
  };
  add(kInputWord, inputs);
  add(kOutputWord, outputs);
  return line;
}

bool parsePlace(std::string_view text, NamedCell& cell, std::string& message) {
  std::string_view rest = text;
  NamedCell found{cell.name};
  const bool isWhole = takeSheet(rest, found.sheet) && parseCellName(rest, found.row, found.column);
  // Such a sheet could stand in no line.
  const bool isLine =
      std::ranges::none_of(found.sheet, [](char c) { return std::iscntrl(static_cast<unsigned char>(c)); });
  if (isWhole && isLine) {
    cell = std::move(found);
    return true;
  }
  message = "expected a cell such as Model!B3, found '" + std::string(text) + "'";
  return false;
}

bool parseNamedCell(std::string_view text, NamedCell& cell, std::string& message) {
  const std::size_t end = text.find('=');
  if (end == 0 || end == std::string_view::npos) {
    message = "expected a name and its cell such as x1=Model!B3, found '" + std::string(text) + "'";
    return false;
  }
  NamedCell found{std::string(text.substr(0, end))};
  if (!parsePlace(text.substr(end + 1), found, message)) return false;
  cell = std::move(found);
  return true;
}

bool parseWorkbookCells(std::string_view text, WorkbookCells& cells, std::string& message) {
  WorkbookCells found;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\t'), text.size());
    std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    const bool isInput = part.starts_with(kInputWord);
    if (!isInput && !part.starts_with(kOutputWord)) {
      message = "expected a cell of an input or an output, found '" + std::string(part) + "'";
      return false;
    }
    part.remove_prefix((isInput ? kInputWord : kOutputWord).size());
    if (!parseNamedCell(part, (isInput ? found.inputs : found.outputs).emplace_back(), message)) return false;
  }
  cells = std::move(found);
  return true;
}

}  // namespace tarvex
