#include "model/SheetLine.h"

#include <algorithm>
#include <charconv>

namespace tarvex {

namespace {

constexpr std::string_view kEscaped = "\t\n\r\\";
constexpr std::string_view kEscapes = "tnr\\";
constexpr std::int32_t kColumnLetters = 26;
constexpr std::size_t kMostDigits = 32;  // characters of the shortest text of a double

void escape(std::string& line, std::string_view text) {
  for (const char c : text) {
    const std::size_t place = kEscaped.find(c);
    if (place == std::string_view::npos)
      line += c;
    else
      line.append({'\\', kEscapes[place]});
  }
}

std::string unescaped(std::string_view field) {
  std::string text;
  text.reserve(field.size());
  for (std::size_t i = 0; i < field.size(); ++i) {
    const std::size_t place =
        field[i] == '\\' && i + 1 < field.size() ? kEscapes.find(field[i + 1]) : std::string_view::npos;
    text += place == std::string_view::npos ? field[i] : kEscaped[place];
    if (place != std::string_view::npos) ++i;
  }
  return text;
}

template <class Number>
bool parseNumber(std::string_view text, Number& number) {
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
  return parsed.ec == std::errc() && parsed.ptr == text.data() + text.size();
}

template <class Number>
void addNumber(std::string& line, Number number) {
  char text[kMostDigits];
  line.append(text, std::to_chars(text, text + kMostDigits, number).ptr);
}

// Calls `use` with each field; stops when it gives false.
template <class Use>
bool forEachField(std::string_view line, Use use) {
  for (;;) {
    const std::size_t end = line.find('\t');
    if (!use(line.substr(0, end))) return false;
    if (end == std::string_view::npos) return true;
    line.remove_prefix(end + 1);
  }
}

}  // namespace

std::string cellName(std::int32_t row, std::int32_t column) {
  std::string letters;
  for (std::int32_t rest = column + 1; rest > 0; rest = (rest - 1) / kColumnLetters)
    letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % kColumnLetters));
  return letters + std::to_string(row + 1);
}

void addField(std::string& line, std::string_view text) {
  if (!line.empty()) line += '\t';
  escape(line, text);
}

void addField(std::string& line, std::int32_t number) {
  if (!line.empty()) line += '\t';
  addNumber(line, number);
}

void addCell(std::string& line, const SheetCell& cell) {
  if (!line.empty()) line += '\t';
  if (const double* number = std::get_if<double>(&cell)) {
    line += '#';
    addNumber(line, *number);
  } else if (const std::string* text = std::get_if<std::string>(&cell)) {
    line += '"';
    escape(line, *text);
  } else {
    line += '-';
  }
}

std::string rowLine(const CellBlock& block, std::size_t firstCell) {
  std::string line;
  for (std::size_t i = 0; i < static_cast<std::size_t>(block.columns); ++i) addCell(line, block.cells[firstCell + i]);
  return line;
}

std::vector<std::string> fieldsOf(std::string_view line) {
  std::vector<std::string> fields;
  forEachField(line, [&](std::string_view field) {
    fields.push_back(unescaped(field));
    return true;
  });
  return fields;
}

bool parseField(std::string_view field, std::int32_t& number) {
  return parseNumber(field, number);
}

bool parseCell(std::string_view field, SheetCell& cell) {
  if (field.empty()) return false;
  const std::string_view rest = field.substr(1);
  if (field.front() == '#') {
    double number = 0.0;
    if (!parseNumber(rest, number)) return false;
    cell = number;
    return true;
  }
  if (field.front() == '"')
    cell = unescaped(rest);
  else
    cell = {};
  return field.front() == '"' || field == "-";
}

bool parseRow(std::string_view line, CellBlock& block) {
  std::int32_t columns = 0;
  return forEachField(line,
                      [&](std::string_view field) {
                        SheetCell cell;
                        if (columns++ == block.columns || !parseCell(field, cell)) return false;
                        block.cells.push_back(std::move(cell));
                        return true;
                      }) &&
         columns == block.columns;
}

}  // namespace tarvex
