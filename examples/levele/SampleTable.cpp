#include "levele/SampleTable.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <utility>

namespace levele {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// Takes the next word off the text; empty at its end.
std::string_view takeWord(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
  text.remove_prefix(word.size());
  return word;
}

std::string_view takeLine(std::string_view& text) {
  std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

template <class Number>
bool takeNumber(std::string_view& text, Number& number) {
  const std::string_view word = takeWord(text);
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
  return error == std::errc() && end == word.data() + word.size();
}

}  // namespace

bool SampleTable::read(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  if (file.is_open() && file.peek() != std::ifstream::traits_type::eof()) text << file.rdbuf();
  if (!file.is_open() || file.bad() || !text) {
    errorText_ = "Can't read the sample file " + path;
    return false;
  }
  SampleTable table;
  if (!table.parse(text.view())) {
    errorText_ = "The table of runs in " + path + " is damaged: " + table.errorText_;
    return false;
  }
  *this = std::move(table);
  return true;
}

bool SampleTable::parse(std::string_view text) {
  int external = 0;
  int order = 0;
  if (!takeNumber(text, external) || !takeNumber(text, runs_) || !takeNumber(text, columns_) ||
      !takeNumber(text, order)) {
    errorText_ = "its first four lines must be whole numbers";
    return false;
  }
  const std::int64_t cells = std::int64_t{runs_} * columns_;
  // A cell takes two characters at least: more of them than the file can hold are not worth an allocation.
  if (runs_ < 1 || columns_ < 1 || cells > static_cast<std::int64_t>(text.size() / 2)) {
    errorText_ = std::to_string(runs_) + " runs of " + std::to_string(columns_) + " columns don't fit the file";
    return false;
  }
  byFactor_ = order == 1;
  values_.resize(static_cast<std::size_t>(cells));
  for (std::size_t i = 0; i < values_.size(); ++i)
    if (!takeNumber(text, values_[i])) {
      errorText_ = "number " + std::to_string(i + 1) + " of " + std::to_string(cells) + " is missing or no number";
      return false;
    }
  parseNames(text);
  return true;
}

// The factor records stand behind the statistics. A file that isn't as expected there has no names.
void SampleTable::parseNames(std::string_view text) {
  constexpr std::string_view kHeading = " Distributions:";
  while (!text.empty()) {
    const std::string_view line = takeLine(text);
    if (line.ends_with(kHeading)) break;
  }
  while (static_cast<int>(names_.size()) < columns_ && !text.empty()) {
    takeLine(text);  // type
    names_.emplace_back(takeLine(text));
    takeLine(text);  // note, may be empty
    while (!text.empty() && !takeLine(text).empty()) {
    }
  }
}

double SampleTable::value(int run, int column) const {
  const std::size_t cell = byFactor_ ? static_cast<std::size_t>(column) * static_cast<std::size_t>(runs_) + run
                                     : static_cast<std::size_t>(run) * static_cast<std::size_t>(columns_) + column;
  return values_[cell];
}

int SampleTable::columnOf(std::string_view name) const {
  const auto found = std::find(names_.begin(), names_.end(), name);
  return found == names_.end() ? -1 : static_cast<int>(found - names_.begin());
}

}  // namespace levele
