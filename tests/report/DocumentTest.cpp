#include "report/Document.h"

#include <cstdlib>

#include "support/Test.h"

namespace tarvex {
namespace {

Table numbers(int columns, int rows) {
  Table table;
  table.addColumn("name", Table::Align::Left);
  for (int c = 1; c < columns; ++c) table.addColumn("heading" + std::to_string(c));
  for (int r = 0; r < rows; ++r) {
    std::vector<std::string> cells{"row" + std::to_string(r)};
    for (int c = 1; c < columns; ++c) cells.push_back(std::to_string(1000 * c + r) + ".25");
    table.addRow(std::move(cells));
  }
  return table;
}

std::size_t count(const std::string& text, const std::string& word) {
  std::size_t found = 0;
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) ++found;
  return found;
}

Figure titled(const std::string& title, double height) {
  Figure figure;
  figure.title = title;
  figure.height = height;
  return figure;
}

// The text that a reader of the PDF finds, page after page; pages end with a form feed.
std::string textOf(const std::string& pdf) {
  const test::TempDirectory directory;
  test::writeFile(directory.file("a.pdf"), pdf);
  const std::string command =
      "pdftotext -layout '" + directory.file("a.pdf") + "' '" + directory.file("a.txt") + "' 2> /dev/null";
  return std::system(command.c_str()) == 0 ? test::readFile(directory.file("a.txt")) : std::string();
}

TEST(Document, htmlIsWellFormedWhateverTheTextsHold) {
  Document document;
  document.title = "a < b & \"c\"\x01";
  document.add(Heading{"<h>"});
  document.add(Paragraph{"two\nlines & more"});
  Table table = numbers(3, 2);
  table.addRow({"</table>", "\x7f&", "\xff"});
  document.add(std::move(table));
  document.add(Remark{"<!-- -->"});
  document.add(titled("\"x\" > 'y'", 100.0));
  const std::string text = htmlText(document);
  EXPECT_EQ(count(text, "<img "), 1u);
  EXPECT_TRUE(text == htmlText(document));

  if (std::system("command -v xmllint > /dev/null") != 0) GTEST_SKIP() << "xmllint is not installed";
  const test::TempDirectory directory;
  test::writeFile(directory.file("a.html"), text);
  EXPECT_EQ(std::system(("xmllint --noout '" + directory.file("a.html") + "'").c_str()), 0);
}

TEST(Document, pdfPagesHoldTheWholeOfATable) {
  if (std::system("command -v pdftotext > /dev/null") != 0) GTEST_SKIP() << "pdftotext is not installed";
  constexpr int kRows = 150;
  constexpr int kColumns = 30;
  Document document;
  document.title = "Long and wide";
  document.add(Heading{"A table"});
  document.add(numbers(kColumns, kRows));
  document.add(titled("At the end", 5000.0));
  const std::string pdf = pdfContent(document);
  EXPECT_TRUE(pdf == pdfContent(document));
  const std::string text = textOf(pdf);
  for (int r = 0; r < kRows; ++r)
    for (const int c : {1, kColumns - 1})
      EXPECT_EQ(count(text, " " + std::to_string(1000 * c + r) + ".25"), 1u) << r << ' ' << c;
  // Each page on which rows stand begins with the headings.
  std::size_t start = 0;
  for (std::size_t end = text.find('\f'); end != std::string::npos; start = end + 1, end = text.find('\f', start)) {
    const std::string page = text.substr(start, end - start);
    if (page.find("row") != std::string::npos) {
      EXPECT_LT(page.find("heading"), page.find("row"));
    }
  }
  EXPECT_NE(text.find("At the end"), std::string::npos);
}

TEST(Document, emptyTablesAndTexts) {
  Document document;
  document.add(Table());
  document.add(numbers(2, 0));
  document.add(Paragraph{});
  document.add(Paragraph{std::string(5000, 'w')});
  document.add(titled("", 0.0));
  EXPECT_FALSE(pdfContent(document).empty());
  EXPECT_FALSE(htmlText(document).empty());
}

}  // namespace
}  // namespace tarvex
