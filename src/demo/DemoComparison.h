#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace tarvex {

class ProjectConfiguration;

// One kind of result of a demonstration case, beside what is known of it in closed form.
struct Comparison {
  struct Row {
    std::string name;
    double computed;
    double exact;
    double tolerance;  // how far the two may lie apart
  };
  std::string title;
  std::vector<Row> rows;
  std::string basis;  // where the tolerance comes from
};

// Moments and measures of the output of an analysed case. Empty for a case without a closed form.
std::vector<Comparison> compareWithExact(const std::string& caseName, const ProjectConfiguration& project);

void reportComparison(std::ostream& out, const Comparison& comparison);

}  // namespace tarvex
