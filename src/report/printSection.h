#pragma once

#include "report/Document.h"
#include "report/Reports.h"
#include "report/TextTable.h"

namespace tarvex {

// Prints the section that one of the report operations makes: printSection(out, reportFactors, factors).
template <class Report, class... Things>
void printSection(std::ostream& out, Report report, const Things&... things) {
  Document section;
  report(section, things...);
  printText(out, section);
}

}  // namespace tarvex
