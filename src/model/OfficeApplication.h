#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "model/ExternalProcess.h"
#include "model/LineChannel.h"
#include "model/SpreadsheetApplication.h"

namespace tarvex {

// LibreOffice Calc, driven by the helper program tarvex-sheet: whatever happens in there costs one run. After quit(),
// or when the object goes, nothing is left of it: no process, no file.
class OfficeApplication : public SpreadsheetApplication {
 public:
  // `serve` is called about twice a second while the application works, and gives false when the user wants to stop.
  explicit OfficeApplication(std::function<bool()> serve, std::string helper = helperPath());
  ~OfficeApplication() override;

  // Where the helper lies: beside the running program, or where an installation has it.
  static std::string helperPath();

  [[nodiscard]] bool start(bool visible) override;
  void quit() override;
  [[nodiscard]] bool open(const std::string& path, bool readOnly) override;
  [[nodiscard]] bool openCopy(const std::string& path) override;
  [[nodiscard]] bool close() override;
  [[nodiscard]] bool countSheets(std::int32_t& count) override;
  [[nodiscard]] bool getSheetName(std::int32_t sheet, std::string& name) override;
  [[nodiscard]] bool addSheet(const std::string& name) override;
  [[nodiscard]] bool clearCells(std::int32_t sheet) override;
  [[nodiscard]] bool writeCells(std::int32_t sheet, const CellBlock& block) override;
  [[nodiscard]] bool readCells(std::int32_t sheet, CellBlock& block) override;
  [[nodiscard]] bool bindCells(const std::vector<CellPlace>& inputs, const std::vector<CellPlace>& outputs,
                               std::vector<std::size_t>& formulas) override;
  [[nodiscard]] bool driveRows(const std::vector<double>& rows, CellBlock& block) override;
  [[nodiscard]] bool getCellText(const CellPlace& place, std::string& text) override;
  [[nodiscard]] bool recalculate() override;
  [[nodiscard]] bool setSaved() override;
  [[nodiscard]] bool saveCopy(const std::string& path) override;
  [[nodiscard]] bool waitForUser() override;

 private:
  [[nodiscard]] bool startHelper();
  [[nodiscard]] bool makeDirectory();
  // Sends a request and gets its answer; what stands behind the "ok" goes into `values`.
  [[nodiscard]] bool ask(const std::string& request, std::chrono::milliseconds limit,
                         std::vector<std::string>* values = nullptr);
  [[nodiscard]] bool receiveRows(CellBlock& block);
  [[nodiscard]] bool lose();

  std::string helper_;
  LineChannel channel_;
  ExternalProcess process_;
  std::size_t boundInputs_ = 1;  // of driveRows()
  std::int32_t boundOutputs_ = 1;
  std::string directory_;           // of this instance: profile and temporary files
  std::vector<std::string> files_;  // that the application leaves elsewhere when it is killed
};

}  // namespace tarvex
