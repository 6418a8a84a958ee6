#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace levele {

// The table of runs in the first lines of a sample file, and the names of its columns as far as the file has them.
class SampleTable {
 public:
  // Replaces the table by a file's. On failure gives 0, says why in errorText() and keeps the table.
  [[nodiscard]] bool read(const std::string& path);
  const std::string& errorText() const { return errorText_; }

  int runs() const { return runs_; }
  int columns() const { return columns_; }
  double value(int run, int column) const;
  // The column of a name, -1 for none.
  int columnOf(std::string_view name) const;

 private:
  bool parse(std::string_view text);
  void parseNames(std::string_view text);

  int runs_ = 0;
  int columns_ = 0;
  bool byFactor_ = false;
  std::vector<double> values_;  // as the file lists them
  std::vector<std::string> names_;
  std::string errorText_;
};

}  // namespace levele
