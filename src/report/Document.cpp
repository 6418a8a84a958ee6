#include "report/Document.h"

#include <algorithm>

namespace tarvex {

void Document::add(Block block) {
  if (auto* const caption = std::get_if<Caption>(&block))
    caption->number = ++(caption->of == Caption::Of::Table ? tables_ : figures_);
  blocks.push_back(std::move(block));
}

std::string captionText(const Caption& caption) {
  return (caption.of == Caption::Of::Table ? "Table " : "Figure ") + std::to_string(caption.number) + ". " +
         caption.text;
}

std::string byline(const Document& document) {
  return document.author + (document.author.empty() || document.date.empty() ? "" : ", ") + document.date;
}

bool isInContents(const Document& document, const Heading& heading) {
  constexpr std::ptrdiff_t kMostEntries = 60;  // about a page
  const auto headings =
      std::ranges::count_if(document.blocks, [](const Block& block) { return std::holds_alternative<Heading>(block); });
  return heading.level == 1 || headings <= kMostEntries;
}

}  // namespace tarvex
