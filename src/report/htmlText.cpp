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
.remark { font-size: 0.85em; color: #555; margin-top: 0.2em; }
.wide { overflow-x: auto; }
table { border-collapse: collapse; font-size: 0.87em; margin: 0.6em 0; }
th, td { padding: 0.15em 0.7em; text-align: right; white-space: nowrap; }
th { border-bottom: 1px solid #888; }
tr:nth-child(even) td { background: #f4f4f6; }
.left { text-align: left; }
img { max-width: 100%; height: auto; display: block; margin: 1em 0; }
@media print { h2 { break-after: avoid; } img, tr { break-inside: avoid; } }
</style>
)";

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

struct BlockText {
  std::string& out;

  void element(const char* tag, const char* attributes, const std::string& text) const {
    out += std::string("<") + tag + attributes + '>' + escaped(text) + "</" + tag + ">\n";
  }
  void row(const char* tag, const Table& table, const std::vector<std::string>& cells) const {
    out += "<tr>";
    for (std::size_t c = 0; c < cells.size(); ++c)
      out += std::string("<") + tag + (table.align(c) == Table::Align::Left ? " class=\"left\">" : ">") +
             escaped(cells[c]) + "</" + tag + '>';
    out += "</tr>\n";
  }

  void operator()(const Heading& heading) const { element(heading.level == 1 ? "h2" : "h3", "", heading.text); }
  void operator()(const Paragraph& paragraph) const { element("p", "", paragraph.text); }
  void operator()(const Remark& remark) const { element("p", " class=\"remark\"", remark.text); }
  void operator()(const Table& table) const {
    out += "<div class=\"wide\"><table>\n<thead>";
    row("th", table, table.headings());
    out += "</thead>\n<tbody>\n";
    for (const auto& cells : table.rows()) row("td", table, cells);
    out += "</tbody></table></div>\n";
  }
  // As an image of its own: pictures inside the page itself would share the names of their glyphs.
  void operator()(const Figure& figure) const {
    const std::string picture = renderPicture(figure, PictureFormat::Svg);
    if (picture.empty()) return element("p", " class=\"remark\"", "No picture can be drawn: " + figure.title);
    const GlibText encoded(g_base64_encode(reinterpret_cast<const guchar*>(picture.data()), picture.size()), &g_free);
    out += "<img width=\"" + std::to_string(static_cast<int>(figure.width)) + "\" alt=\"" + escaped(figure.title) +
           "\" src=\"data:image/svg+xml;base64," + encoded.get() + "\"/>\n";
  }
};

}  // namespace

std::string htmlText(const Document& document) {
  std::string text = kHead;
  text += "<title>" + escaped(document.title) + "</title>\n</head>\n<body>\n<h1>" + escaped(document.title) + "</h1>\n";
  for (const Block& block : document.blocks) std::visit(BlockText{text}, block);
  return text + "</body>\n</html>\n";
}

}  // namespace tarvex
