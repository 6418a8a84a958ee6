#include "support/Damage.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include "support/TextFiles.h"

namespace tarvex::test {

namespace {

constexpr std::size_t kCells = 12;         // of a line that are damaged
constexpr std::size_t kRows = 2;           // of a table
constexpr std::size_t kSingleNumbers = 8;  // one below the other, which may be settings as well as a table

bool isDigit(char c) {
  return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

struct Field {
  std::size_t start;
  std::size_t size;
  bool isNumber;
};

std::vector<Field> fieldsOf(const std::string& line) {
  constexpr const char* kBetween = " \t\r,";
  std::vector<Field> fields;
  for (std::size_t at = line.find_first_not_of(kBetween); at != std::string::npos;) {
    const std::size_t end = std::min(line.find_first_of(kBetween, at), line.size());
    const std::string text = line.substr(at, end - at);
    const bool number = isDigit(text[text[0] == '-' && text.size() > 1 ? 1 : 0]);
    fields.push_back({at, end - at, number});
    at = line.find_first_not_of(kBetween, end);
  }
  return fields;
}

// A line of a table, with as many like it above it as are damaged.
class Tables {
 public:
  bool passesOver(const std::vector<Field>& fields) {
    const bool numbers = std::all_of(fields.begin(), fields.end(), [](const Field& field) { return field.isNumber; });
    alike_ = numbers && fields.size() == width_ ? alike_ + 1 : 1;
    width_ = numbers ? fields.size() : 0;
    return alike_ > (width_ > 1 ? kRows : kSingleNumbers);
  }

 private:
  std::size_t width_ = 0;
  std::size_t alike_ = 0;
};

}  // namespace

void forEachDamage(const std::string& text, const std::function<void(const std::string&, const std::string&)>& use) {
  const std::vector<std::string> lines = splitLines(text);
  Tables tables;
  std::size_t offset = 0;
  for (std::size_t i = 0; i < lines.size(); offset += lines[i++].size() + 1) {
    const std::vector<Field> fields = fieldsOf(lines[i]);
    if (tables.passesOver(fields)) continue;
    const std::string at = " at line " + std::to_string(i + 1);
    const std::string before = text.substr(0, offset);
    const std::string behind = text.substr(std::min(text.size(), offset + lines[i].size()));
    for (std::size_t f = 0; f < std::min(fields.size(), kCells); ++f) {
      const auto replace = [&](const char* what, const std::string& other) {
        use(what + at, before + std::string(lines[i]).replace(fields[f].start, fields[f].size, other) + behind);
      };
      std::string field = lines[i].substr(fields[f].start, fields[f].size);
      use("cut" + at, before + lines[i].substr(0, fields[f].start));
      replace("half", field.substr(0, field.size() / 2));
      for (const char* other : {"0", "1e9", "2147483648", "1e400"})
        if (fields[f].isNumber) replace(other, other);
      if (fields[f].isNumber) replace("negative", field[0] == '-' ? field.substr(1) : "-" + field);
      const auto digit = std::find_if(field.begin(), field.end(), isDigit);
      *(digit == field.end() ? field.begin() : digit) = 'x';
      replace("letter", field);
    }
    for (const char filling : {'x', '1', '\t'}) use("long" + at, before + std::string(5000, filling) + behind);
    use("without" + at, before + (behind.empty() ? "" : behind.substr(1)));
  }
  std::string rubbish(4096, '\0');
  for (std::size_t k = 0; k < rubbish.size(); ++k) rubbish[k] = static_cast<char>(k * 131 + k / 7);
  use("rubbish", rubbish);
  use("nothing", "");
}

}  // namespace tarvex::test
