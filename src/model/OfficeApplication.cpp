#include "model/OfficeApplication.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "base/Paths.h"
#include "base/Temporaries.h"
#include "base/WorkingFile.h"

namespace tarvex {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kStartLimit{60000};
constexpr milliseconds kCallLimit{600000};  // large workbooks take their time
constexpr milliseconds kQuitLimit{10000};
constexpr milliseconds kNoLimit{0};

std::string request(std::string_view word) {
  return std::string(word);
}

template <class... Fields>
std::string request(std::string_view word, const Fields&... fields) {
  std::string line(word);
  (addField(line, fields), ...);
  return line;
}

std::string blockRequest(std::string_view word, std::int32_t sheet, const CellBlock& block) {
  return request(word, sheet, block.row, block.column, block.rows, block.columns);
}

}  // namespace

OfficeApplication::OfficeApplication(std::function<bool()> serve, std::string helper)
    : helper_(std::move(helper)), channel_(std::move(serve)) {}

OfficeApplication::~OfficeApplication() {
  quit();
}

std::string OfficeApplication::helperPath() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::filesystem::path beside = program.parent_path() / "tarvex-sheet";
  if (std::filesystem::exists(beside, error)) return beside.string();
  return (program.parent_path().parent_path() / "libexec" / "tarvex" / "tarvex-sheet").string();
}

bool OfficeApplication::start(bool visible) {
  quit();
  if (!startHelper()) return false;
  if (ask(request("start", std::string_view(visible ? "visible" : "hidden")), kStartLimit, &files_)) {
    for (const std::string& file : files_) Temporaries::add(file);
    return true;
  }
  // A helper whose libraries are gone ends before its first answer.
  if (channel_.state() == LineChannel::State::Closed)
    errorText = "Workbooks need LibreOffice Calc: install the package libreoffice-calc.";
  return false;
}

bool OfficeApplication::startHelper() {
  if (!channel_.open() || !makeDirectory()) {
    errorText = "LibreOffice cannot be started: there is no place for its files in " + WorkingFile::directory() + '.';
    return false;
  }
  const bool started = process_.start({helper_, {absolutePath(directory_)}, "", "", channel_.otherEnd()});
  channel_.closeOtherEnd();
  if (started) return true;
  errorText =
      "Workbooks need LibreOffice Calc: install the packages libreoffice-calc and libreoffice-dev, and build again.";
  return false;
}

bool OfficeApplication::makeDirectory() {
  directory_ = Temporaries::createDirectory(WorkingFile::directory());
  return !directory_.empty();
}

void OfficeApplication::quit() {
  if (directory_.empty()) return;
  std::string rest;
  if (channel_.send("quit\n", kQuitLimit))
    while (channel_.receive(rest, kQuitLimit)) {
    }
  channel_.close();
  process_.stop();
  std::error_code ignored;
  std::filesystem::remove_all(directory_, ignored);
  Temporaries::forget(directory_);
  directory_.clear();
  // One that was killed had no time to do this.
  for (const std::string& file : files_) {
    std::filesystem::remove(file, ignored);
    Temporaries::forget(file);
  }
  files_.clear();
}

bool OfficeApplication::lose() {
  switch (channel_.state()) {
    case LineChannel::State::TimedOut:
      errorText = "LibreOffice does not answer.";
      break;
    case LineChannel::State::Closed:
      errorText = "LibreOffice has ended unexpectedly.";
      break;
    default:
      errorText.clear();
  }
  return false;
}

bool OfficeApplication::ask(const std::string& request, milliseconds limit, std::vector<std::string>* values) {
  std::string answer;
  if (!channel_.send(request + '\n', limit) || !channel_.receive(answer, limit)) return lose();
  const std::vector<std::string> fields = fieldsOf(answer);
  if (fields[0] == "ok") {
    if (values != nullptr) values->assign(fields.begin() + 1, fields.end());
    return true;
  }
  errorText = fields.size() > 1 ? fields[1] : answer;
  return false;
}

bool OfficeApplication::open(const std::string& path, bool readOnly) {
  const std::size_t name = path.rfind('/') + 1;
  const std::string lock = path.substr(0, name) + ".~lock." + path.substr(name) + '#';
  std::error_code error;
  if (!readOnly && !std::filesystem::exists(lock, error)) {
    files_.push_back(lock);
    Temporaries::add(lock);
  }
  return ask(request("open", path, std::string_view(readOnly ? "read" : "write")), kCallLimit);
}

bool OfficeApplication::openCopy(const std::string& path) {
  return ask(request("open", path, std::string_view("copy")), kCallLimit);
}

bool OfficeApplication::close() {
  return ask(request("close"), kCallLimit);
}

bool OfficeApplication::countSheets(std::int32_t& count) {
  std::vector<std::string> values;
  return ask(request("sheets"), kCallLimit, &values) && !values.empty() && parseField(values[0], count);
}

bool OfficeApplication::getSheetName(std::int32_t sheet, std::string& name) {
  std::vector<std::string> values;
  if (!ask(request("name", sheet), kCallLimit, &values) || values.empty()) return false;
  name = values[0];
  return true;
}

bool OfficeApplication::addSheet(const std::string& name) {
  return ask(request("add", name), kCallLimit);
}

bool OfficeApplication::clearCells(std::int32_t sheet) {
  return ask(request("clear", sheet), kCallLimit);
}

bool OfficeApplication::writeCells(std::int32_t sheet, const CellBlock& block) {
  std::string text = blockRequest("write", sheet, block);
  for (std::size_t first = 0; first < block.size(); first += static_cast<std::size_t>(block.columns))
    text += '\n' + rowLine(block, first);
  return ask(text, kCallLimit);
}

bool OfficeApplication::readCells(std::int32_t sheet, CellBlock& block) {
  block.cells.clear();
  return ask(blockRequest("read", sheet, block), kCallLimit) && receiveRows(block);
}

bool OfficeApplication::receiveRows(CellBlock& block) {
  block.cells.reserve(block.size());
  std::string line;
  for (std::int32_t row = 0; row < block.rows; ++row) {
    if (!channel_.receive(line, kCallLimit)) return lose();
    if (parseRow(line, block)) continue;
    errorText = "LibreOffice gives no cells.";
    return false;
  }
  return true;
}

bool OfficeApplication::bindCells(const std::vector<CellPlace>& inputs, const std::vector<CellPlace>& outputs,
                                  std::vector<std::size_t>& formulas) {
  boundInputs_ = std::max<std::size_t>(inputs.size(), 1);
  boundOutputs_ = static_cast<std::int32_t>(outputs.size());
  std::string text = request("bind", static_cast<std::int32_t>(inputs.size()), boundOutputs_);
  for (const std::vector<CellPlace>* const places : {&inputs, &outputs})
    for (const CellPlace& place : *places) {
      addField(text, place.sheet);
      addField(text, place.row);
      addField(text, place.column);
    }
  formulas.clear();
  std::vector<std::string> values;
  if (!ask(text, kCallLimit, &values)) return false;
  for (const std::string& value : values) {
    std::int32_t input = 0;
    if (parseField(value, input) && input >= 0 && static_cast<std::size_t>(input) < inputs.size())
      formulas.push_back(static_cast<std::size_t>(input));
  }
  return true;
}

bool OfficeApplication::driveRows(const std::vector<double>& rows, CellBlock& block) {
  const CellBlock given{0,
                        0,
                        static_cast<std::int32_t>(rows.size() / boundInputs_),
                        static_cast<std::int32_t>(boundInputs_),
                        {rows.begin(), rows.end()}};
  std::string text = request("drive", given.rows, given.columns);
  for (std::size_t first = 0; first < given.size(); first += boundInputs_) text += '\n' + rowLine(given, first);
  std::vector<std::string> values;
  block = {0, 0, 0, boundOutputs_};
  if (!ask(text, kNoLimit, &values)) return false;
  if (!values.empty() && parseField(values[0], block.rows) && block.rows > 0 && block.rows <= given.rows)
    return receiveRows(block);
  errorText = "LibreOffice gives no cells.";
  return false;
}

bool OfficeApplication::getCellText(const CellPlace& place, std::string& text) {
  std::vector<std::string> values;
  if (!ask(request("text", place.sheet, place.row, place.column), kCallLimit, &values) || values.empty()) return false;
  text = values[0];
  return true;
}

bool OfficeApplication::recalculate() {
  return ask(request("recalculate"), kNoLimit);
}

bool OfficeApplication::setSaved() {
  return ask(request("saved"), kCallLimit);
}

bool OfficeApplication::saveCopy(const std::string& path) {
  return ask(request("save", path), kCallLimit);
}

bool OfficeApplication::waitForUser() {
  return ask(request("wait"), kNoLimit);
}

}  // namespace tarvex
