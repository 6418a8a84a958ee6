#pragma once

#include "report/StudyReport.h"
#include "toolkit/Panel.h"

namespace tarvex {

class ResultDesk;

// What stands above a report, and the file that it is written to.
class PReport : public Panel {
 public:
  PReport(ResultDesk& desk, const ReportWords& words, QWidget* parent);

  // The file that was written; empty while there is none.
  const QString& written() const { return written_; }

 private:
  void save();
  ReportWords words();

  ResultDesk& desk_;
  QString written_;
};

// Asks for the report of the desk's study and writes it; what is to be said of that, or nothing.
QString makeReport(ResultDesk& desk, QWidget* parent);

}  // namespace tarvex
