#include "sheet/Commands.h"

#include <com/sun/star/lang/DisposedException.hpp>
#include <istream>
#include <ostream>

namespace tarvex::office {

namespace {

const std::string kOk = "ok";

std::string error(const std::string& text) {
  std::string line = "error";
  addField(line, text);
  return line;
}

std::int32_t numberAt(const std::vector<std::string>& words, std::size_t place) {
  std::int32_t number = -1;
  if (place >= words.size() || !parseField(words[place], number) || number < 0)
    throw Failure{"Request " + words[0] + " without its number " + std::to_string(place)};
  return number;
}

const std::string& textAt(const std::vector<std::string>& words, std::size_t place) {
  if (place >= words.size()) throw Failure{"Request " + words[0] + " without its text " + std::to_string(place)};
  return words[place];
}

// Sheet, row, column, rows and columns behind the request's word.
CellBlock blockOf(const std::vector<std::string>& words) {
  return {numberAt(words, 2), numberAt(words, 3), numberAt(words, 4), numberAt(words, 5)};
}

std::string linesOf(const CellBlock& block, std::string text = kOk) {
  for (std::size_t first = 0; first < block.size(); first += static_cast<std::size_t>(block.columns))
    text += '\n' + rowLine(block, first);
  return text;
}

}  // namespace

bool Commands::serve() {
  bool isAsked = false;
  std::string line;
  while (!isAsked && std::getline(in_, line)) {
    const Words words = fieldsOf(line);
    isAsked = words[0] == "quit";
    out_ << answer(words) << '\n' << std::flush;
  }
  // Else a document that was changed could hold up the end, and its lock would stay.
  answer({"close"});
  return isAsked;
}

std::string Commands::answer(const Words& words) {
  try {
    return carryOut(words);
  } catch (const Failure& failure) {
    return error(failure.text);
  } catch (const com::sun::star::lang::DisposedException&) {
    return error("LibreOffice has ended.");
  } catch (const com::sun::star::uno::Exception& exception) {
    const std::string text = utf8(exception.Message);
    return error(office_.running() ? "LibreOffice refuses to " + words[0] + (text.empty() ? "." : ": " + text)
                                   : "LibreOffice has ended.");
  }
}

std::string Commands::carryOut(const Words& words) {
  const std::string& request = words[0];
  if (request == "start") {
    visible_ = textAt(words, 1) == "visible";
    std::string answer = kOk;
    for (const std::string& pipe : office_.pipes()) addField(answer, pipe);
    office_.start(visible_);
    return answer;
  } else if (request == "open") {
    const std::string& use = textAt(words, 2);
    workbook_.open(office_, textAt(words, 1),
                   use == "read"   ? Workbook::Use::Read
                   : use == "copy" ? Workbook::Use::Copy
                                   : Workbook::Use::Write,
                   visible_);
  } else if (request == "wait") {
    office_.waitForEnd();
  } else if (request != "quit") {
    return useWorkbook(words);
  }
  return kOk;
}

std::string Commands::useWorkbook(const Words& words) {
  const std::string& request = words[0];
  CellBlock block;
  if (request == "write") block = readRows(words, blockOf(words));
  if (request == "drive") block = readRows(words, {0, 0, numberAt(words, 1), numberAt(words, 2)});
  if (!workbook_.isOpen()) throw Failure{"No workbook is open."};
  std::string answer = kOk;
  if (request == "sheets") {
    addField(answer, workbook_.sheetCount());
  } else if (request == "name") {
    addField(answer, workbook_.sheetName(numberAt(words, 1)));
  } else if (request == "add") {
    workbook_.addSheet(textAt(words, 1));
  } else if (request == "clear") {
    workbook_.clearSheet(numberAt(words, 1));
  } else if (request == "write") {
    workbook_.write(numberAt(words, 1), block);
  } else if (request == "read") {
    block = blockOf(words);
    workbook_.read(numberAt(words, 1), block);
    answer = linesOf(block);
  } else if (request == "bind") {
    answer = bind(words);
  } else if (request == "drive") {
    answer = drive(block);
  } else if (request == "text") {
    addField(answer, workbook_.cellText({numberAt(words, 1), numberAt(words, 2), numberAt(words, 3)}));
  } else if (request == "recalculate") {
    workbook_.recalculate();
  } else if (request == "saved") {
    workbook_.setSaved();
  } else if (request == "save") {
    workbook_.save(textAt(words, 1));
  } else if (request == "close") {
    workbook_.close();
  } else {
    throw Failure{"Unknown request " + request};
  }
  return answer;
}

// All lines are taken before anything can fail, so that the next request stands at its place.
CellBlock Commands::readRows(const Words& words, CellBlock block) {
  bool good = true;
  std::string line;
  for (std::int32_t row = 0; row < block.rows && std::getline(in_, line); ++row) good = parseRow(line, block) && good;
  if (!good || block.cells.size() != block.size()) throw Failure{"Request " + words[0] + " with cells that are none"};
  return block;
}

std::string Commands::bind(const Words& words) {
  const std::int32_t inputs = numberAt(words, 1);
  outputs_ = numberAt(words, 2);
  std::vector<CellPlace> places;
  for (std::size_t word = 3; word < words.size(); word += 3)
    places.push_back({numberAt(words, word), numberAt(words, word + 1), numberAt(words, word + 2)});
  const auto middle = places.begin() + inputs;
  if (places.size() != static_cast<std::size_t>(inputs) + static_cast<std::size_t>(outputs_))
    throw Failure{"Request bind without its cells"};
  driver_.bind(workbook_, {places.begin(), middle}, {middle, places.end()});
  std::string answer = kOk;
  for (std::int32_t input = 0; input < inputs; ++input)
    if (workbook_.holdsFormula(places[static_cast<std::size_t>(input)])) addField(answer, input);
  return answer;
}

std::string Commands::drive(const CellBlock& given) {
  CellBlock found{0, 0, 0, outputs_};
  driver_.drive(given, found);
  std::string answer = kOk;
  addField(answer, found.rows);
  return linesOf(found, answer);
}

}  // namespace tarvex::office
