#include <glib.h>

#include <memory>

#include "plots/savePicture.h"
#include "report/Document.h"

namespace tarvex {

namespace {

constexpr const char* kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8"/>
<meta name="viewport" content="width=device-width, initial-scale=1"/>
<style>
body { font: 15px/1.5 "DejaVu Sans", Verdana, sans-serif; color: #222; max-width: 62em; margin: 2em auto; padding: 0 1em; }
h1 { font-size: 1.7em; margin-bottom: 0.3em; }
h2 { font-size: 1.3em; margin-top: 2em; border-bottom: 1px solid #bbb; }
h3 { font-size: 1.05em; margin: 1.6em 0 0.4em; }
p { white-space: pre-line; }
.byline { color: #555; margin-top: 0; }
.caption { font-size: 0.9em; font-weight: bold; margin: 0.9em 0 0.3em; }
.contents { columns: 2; list-style: none; padding: 0; }
.contents .inner { padding-left: 1.5em; font-size: 0.92em; }
.contents a { color: inherit; text-decoration: none; }
.remark { font-size: 0.85em; color: #555; margin-top: 0.2em; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; font-size: 0.87em; margin: 0.6em 0; }
th, td { padding: 0.15em 0.7em; text-align: right; white-space: nowrap; }
th { border-bottom: 1px solid #888; }
tr:nth-child(even) td { background: #f4f4f6; }
.left { text-align: left; }
.long { white-space: normal; overflow-wrap: anywhere; min-width: 22em; }
img { max-width: 100%; height: auto; display: block; margin: 1em 0; }
@media print { h2, h3, .caption { break-after: avoid; } img, tr { break-inside: avoid; } }
</style>
)";

constexpr std::size_t kLongCell = 60;  // bytes; a longer text breaks into lines

using GlibText = std::unique_ptr<gchar, decltype(&g_free)>;

std::string escaped(const std::string& text) {
  const GlibText valid(g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())), &g_free);
  std::string result;
  for (const char c : std::string_view(valid.get())) {
    switch (c) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        // Other control characters have no place in a page.
        if (static_cast<unsigned char>(c) >= ' ' || c == '\n' || c == '\t') result += c;
    }
  }
  return result;
}

class PageText {
 public:
  PageText(std::string& out, const Document& document) : out_(out), document_(document) {}

  void operator()(const Heading& heading) {
    const std::string id = " id=\"h" + std::to_string(++headings_) + '"';
    element(heading.level == 1 ? "h2" : "h3", id.c_str(), heading.text);
  }
  void operator()(const Paragraph& paragraph) { element("p", "", paragraph.text); }
  void operator()(const Remark& remark) { element("p", " class=\"remark\"", remark.text); }
  void operator()(const Caption& caption) { element("p", " class=\"caption\"", captionText(caption)); }
  void operator()(const Contents&) {
    out_ += "<ul class=\"contents\">\n";
    int number = 0;
    for (const Block& block : document_.blocks) {
      const auto* const heading = std::get_if<Heading>(&block);
      if (heading == nullptr) continue;
      ++number;
      if (!isInContents(document_, *heading)) continue;
      out_ += std::string("<li") + (heading->level == 1 ? "" : " class=\"inner\"") + "><a href=\"#h" +
              std::to_string(number) + "\">" + escaped(heading->text) + "</a></li>\n";
    }
    out_ += "</ul>\n";
  }
  void operator()(const Table& table) {
    out_ += "<div class=\"wide\"><table>\n<thead>";
    row("th", table, table.headings());
    out_ += "</thead>\n<tbody>\n";
    for (const auto& cells : table.rows()) row("td", table, cells);
    out_ += "</tbody></table></div>\n";
  }
  // As an image of its own: pictures inside the page itself would share the names of their glyphs.
  void operator()(const Figure& figure) {
    const std::string picture = renderPicture(figure, PictureFormat::Svg);
    if (picture.empty()) return element("p", " class=\"remark\"", "No picture can be drawn: " + figure.title);
    const GlibText encoded(g_base64_encode(reinterpret_cast<const guchar*>(picture.data()), picture.size()), &g_free);
    out_ += "<img width=\"" + std::to_string(static_cast<int>(figure.width)) + "\" alt=\"" + escaped(figure.title) +
            "\" src=\"data:image/svg+xml;base64," + encoded.get() + "\"/>\n";
  }
  void element(const char* tag, const char* attributes, const std::string& text) {
    out_ += std::string("<") + tag + attributes + '>' + escaped(text) + "</" + tag + ">\n";
  }

 private:
  void row(const char* tag, const Table& table, const std::vector<std::string>& cells) {
    out_ += "<tr>";
    for (std::size_t c = 0; c < cells.size(); ++c) {
      const char* const left = cells[c].size() > kLongCell ? " class=\"left long\">" : " class=\"left\">";
      out_ += std::string("<") + tag + (table.align(c) == Table::Align::Left ? left : ">") + escaped(cells[c]) + "</" +
              tag + '>';
    }
    out_ += "</tr>\n";
  }

  std::string& out_;
  const Document& document_;
  int headings_ = 0;
};

}  // namespace

std::string htmlText(const Document& document, const Progress& progress) {
  std::string text = kHead;
  text += "<title>" + escaped(document.title) + "</title>\n";
  if (!document.author.empty()) text += "<meta name=\"author\" content=\"" + escaped(document.author) + "\"/>\n";
  text += "</head>\n<body>\n<h1>" + escaped(document.title) + "</h1>\n";
  PageText page(text, document);
  if (const std::string under = byline(document); !under.empty()) page.element("p", " class=\"byline\"", under);
  for (std::size_t i = 0; i < document.blocks.size(); ++i) {
    if (!progress.report(i, document.blocks.size())) return {};
    std::visit(page, document.blocks[i]);
  }
  return text + "</body>\n</html>\n";
}

}  // namespace tarvex
