#include "factors/namesInText.h"

#include <algorithm>

#include "factors/EvaluatorParser.h"
#include "factors/NumberLiteral.h"

namespace tarvex {
namespace {

bool isAssignmentAt(std::string_view text, std::size_t position) {
  const std::string_view rest = text.substr(position, 2);
  if (rest.empty()) return false;
  if (rest[0] == '=') return rest != "==";
  return rest == "+=" || rest == "-=" || rest == "*=" || rest == "/=";
}

}  // namespace

std::map<std::string_view, bool> namesInText(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  std::map<std::string_view, bool> names;
  std::size_t position = EvaluatorParser::behindSpace(text, 0);
  while (position < text.size()) {
    const std::size_t start = position;
    double ignored = 0.0;
    if (EvaluatorParser::isNameStart(text[position])) {
      while (position < text.size() && EvaluatorParser::isNameCharacter(text[position])) ++position;
      const std::string_view name = text.substr(start, position - start);
      const std::size_t next = std::min(EvaluatorParser::behindSpace(text, position), text.size());
      if (next == text.size() || text[next] != '(') names[name] |= isAssignmentAt(text, next);
    } else if (!readNumberLiteral(text, position, ignored)) {
      position = start + 1;
    }
    position = EvaluatorParser::behindSpace(text, position);
  }
  return names;
}

}  // namespace tarvex
