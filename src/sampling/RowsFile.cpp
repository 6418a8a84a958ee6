#include "sampling/RowsFile.h"

#include "base/NumberText.h"
#include "base/TextReader.h"
#include "base/TextWriter.h"
#include "factors/FactorList.h"

namespace tarvex {

namespace {

constexpr std::size_t kLineLimit = 1 << 20;

std::string trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<std::string> splitFields(const std::string& line) {
  std::vector<std::string> fields;
  std::size_t start = 0;
  for (;;) {
    const std::size_t comma = line.find(',', start);
    fields.push_back(trimmed(line.substr(start, comma == std::string::npos ? comma : comma - start)));
    if (comma == std::string::npos) return fields;
    start = comma + 1;
  }
}

// For each field of the header the factor that it names. Empty, with the message set, on a fault.
std::vector<std::int32_t> readHeader(const std::vector<std::string>& names, const FactorList& factors,
                                     std::string& message) {
  std::vector<std::int32_t> columns;
  std::vector<bool> seen(static_cast<std::size_t>(factors.factorCount()), false);
  for (const std::string& name : names) {
    const std::int32_t index = factors.indexOf(name);
    if (index < 0)
      message = "'" + name + "' is no factor of the list";
    else if (seen[static_cast<std::size_t>(index)])
      message = "the factor '" + name + "' stands twice";
    if (!message.empty()) return {};
    seen[static_cast<std::size_t>(index)] = true;
    columns.push_back(index);
  }
  for (std::int32_t i = 0; i < factors.factorCount(); ++i)
    if (!seen[static_cast<std::size_t>(i)]) {
      message = "the column of the factor '" + factors.factor(i).name + "' is missing";
      return {};
    }
  return columns;
}

bool readRow(const std::vector<std::string>& fields, const std::vector<std::int32_t>& columns, std::vector<double>& row,
             std::string& message) {
  if (fields.size() != columns.size()) {
    message = std::to_string(fields.size()) + " values for " + std::to_string(columns.size()) + " factors";
    return false;
  }
  row.resize(fields.size());
  for (std::size_t k = 0; k < fields.size(); ++k)
    if (!isNumber(fields[k], row[static_cast<std::size_t>(columns[k])])) {
      message = "'" + fields[k] + "' is not a number";
      return false;
    }
  return true;
}

}  // namespace

bool readRowsFile(const std::string& path, const FactorList& factors, std::vector<std::vector<double>>& rows,
                  std::string& message, const Progress& progress) {
  TextReader in = TextReader::fromFile(path, progress);
  std::string line;
  if (in.fail() || !in.readLine(line, kLineLimit)) {
    message = in.problem();
    return false;
  }
  std::string fault;
  int lineNumber = 1;
  const std::vector<std::int32_t> columns = readHeader(splitFields(line), factors, fault);
  rows.clear();
  while (fault.empty() && !in.atEnd()) {
    ++lineNumber;
    if (!in.readLine(line, kLineLimit))
      fault = "a line must not have more than " + std::to_string(kLineLimit) + " characters";
    else if (!trimmed(line).empty())
      readRow(splitFields(line), columns, rows.emplace_back(), fault);
  }
  if (fault.empty() && in.fail()) fault = "the file cannot be read";
  if (fault.empty()) return true;
  message = path + ':' + std::to_string(lineNumber) + ": " + fault + '.';
  return false;
}

bool saveRowsFile(const std::string& path, const FactorList& factors, const std::vector<std::vector<double>>& rows,
                  std::string& message) {
  constexpr int kDigits = 15;  // as a user wrote them
  TextWriter out(path);
  out.setPrecision(kDigits);
  for (std::int32_t i = 0; i < factors.factorCount(); ++i) out << (i == 0 ? "" : ",") << factors.factor(i).name;
  out << '\n';
  for (const std::vector<double>& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) out << (i == 0 ? "" : ",") << row[i];
    out << '\n';
  }
  if (out.commit()) return true;
  message = out.problem();
  return false;
}

}  // namespace tarvex
