#pragma once

#include <string>

namespace tarvex {

// An empty file beside a workbook, which takes its place once it has been filled; until then, and after any failure,
// the workbook is untouched.
class WorkbookCopy {
 public:
  WorkbookCopy() = default;
  ~WorkbookCopy();  // drops the file unless it was put in place
  WorkbookCopy(const WorkbookCopy&) = delete;
  WorkbookCopy& operator=(const WorkbookCopy&) = delete;

  // Makes the file. On false the errno that tells why is in error().
  [[nodiscard]] bool make(const std::string& workbook);
  const std::string& path() const { return path_; }
  // Puts the file in the workbook's place, with the workbook's permissions, after it is safe on disk.
  [[nodiscard]] bool replaceWorkbook();
  int error() const { return error_; }

 private:
  bool fail();

  std::string workbook_;
  std::string path_;
  int error_ = 0;
};

// What is said of a workbook that is used as its file has it, while a spreadsheet application says that it has it open;
// else empty.
std::string openElsewhere(const std::string& workbook);

}  // namespace tarvex
