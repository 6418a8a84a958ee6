// Makes what the compiled help is built from: make-help-project PAGES DIRECTORY
// Copies the pages into DIRECTORY, where the pictures lie, and writes tarvex.qhp there: contents, index and list of
// pages; pictures are read where they are. Each page says of itself where it belongs; share/Tarvex/help/README.md tells
// how.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

// In the order of the contents.
const QStringList kSections = {"First steps",        "Panels",   "Sampling methods", "Measures",
                               "Factors and models", "Reference"};

struct Part {
  QString title;
  QString id;
};

struct Page {
  QString file;
  QString title;
  QString section;
  int order = 0;  // within the section; pages of one order stand by their titles
  QStringList keywords;
  std::vector<Part> parts;
};

bool fail(const QString& text) {
  std::fprintf(stderr, "%s\n", qPrintable(text));
  return false;
}

QStringList items(const QString& list) {
  QStringList all;
  for (const QString& item : list.split(';', Qt::SkipEmptyParts)) all << item.trimmed();
  return all;
}

void readMeta(const QXmlStreamAttributes& attributes, Page& page) {
  const auto name = attributes.value("name");
  const QString content = attributes.value("content").toString();
  if (name == QLatin1String("section")) page.section = content;
  if (name == QLatin1String("order")) page.order = content.toInt();
  if (name == QLatin1String("keywords")) page.keywords = items(content);
}

bool readPage(const QString& path, Page& page) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return fail(path + ": " + file.errorString());
  QXmlStreamReader reader(&file);
  while (!reader.atEnd()) {
    if (reader.readNext() != QXmlStreamReader::StartElement) continue;
    const QString id = reader.attributes().value("id").toString();
    if (reader.name() == QLatin1String("title"))
      page.title = reader.readElementText();
    else if (reader.name() == QLatin1String("meta"))
      readMeta(reader.attributes(), page);
    else if (reader.name() == QLatin1String("h2") && !id.isEmpty())
      page.parts.push_back({reader.readElementText(QXmlStreamReader::IncludeChildElements), id});
  }
  if (reader.hasError()) return fail(QString("%1:%2: %3").arg(path).arg(reader.lineNumber()).arg(reader.errorString()));
  if (page.title.isEmpty()) return fail(path + ": has no title");
  if (!kSections.contains(page.section)) return fail(path + ": has no section of the contents: " + page.section);
  return true;
}

void writeSection(QXmlStreamWriter& out, const QString& title, const QString& ref) {
  out.writeStartElement("section");
  out.writeAttribute("title", title);
  out.writeAttribute("ref", ref);
}

void writeContents(QXmlStreamWriter& out, const std::vector<Page>& pages) {
  out.writeStartElement("toc");
  for (const QString& section : kSections) {
    const auto of = [&](const Page& page) { return page.section == section; };
    const auto first = std::find_if(pages.begin(), pages.end(), of);
    if (first == pages.end()) continue;
    writeSection(out, section, first->file);
    for (const Page& page : pages) {
      if (!of(page)) continue;
      writeSection(out, page.title, page.file);
      for (const Part& part : page.parts) {
        writeSection(out, part.title, page.file + '#' + part.id);
        out.writeEndElement();
      }
      out.writeEndElement();
    }
    out.writeEndElement();
  }
  out.writeEndElement();
}

void writeIndex(QXmlStreamWriter& out, const std::vector<Page>& pages) {
  out.writeStartElement("keywords");
  for (const Page& page : pages)
    for (const QString& keyword : page.keywords) {
      const QString part = keyword.section('#', 1);
      out.writeEmptyElement("keyword");
      out.writeAttribute("name", keyword.section('#', 0, 0).trimmed());
      out.writeAttribute("ref", part.isEmpty() ? page.file : page.file + '#' + part);
    }
  out.writeEndElement();
}

bool writeProject(const QDir& directory, const std::vector<Page>& pages) {
  QFile file(directory.filePath("tarvex.qhp"));
  if (!file.open(QIODevice::WriteOnly)) return fail(file.fileName() + ": " + file.errorString());
  QXmlStreamWriter out(&file);
  out.setAutoFormatting(true);
  out.writeStartDocument();
  out.writeStartElement("QtHelpProject");
  out.writeAttribute("version", "1.0");
  out.writeTextElement("namespace", "tarvex.help");
  out.writeTextElement("virtualFolder", "doc");
  out.writeStartElement("filterSection");
  writeContents(out, pages);
  writeIndex(out, pages);
  out.writeStartElement("files");
  for (const QString& name : directory.entryList({"*.html", "*.css"}, QDir::Files, QDir::Name))
    out.writeTextElement("file", name);
  out.writeEndDocument();
  return !out.hasError();
}

bool copyPages(const QDir& from, const QDir& to) {
  for (const QString& old : to.entryList({"*.html", "*.css"}, QDir::Files))
    if (!QFile::remove(to.filePath(old))) return fail(to.filePath(old) + " can't be replaced");
  for (const QString& name : from.entryList({"*.html", "*.css"}, QDir::Files))
    if (!QFile::copy(from.filePath(name), to.filePath(name))) return fail(to.filePath(name) + " can't be written");
  return true;
}

bool make(const QDir& from, const QDir& to) {
  std::vector<Page> pages;
  bool good = true;
  for (const QString& name : from.entryList({"*.html"}, QDir::Files, QDir::Name)) {
    Page page;
    page.file = name;
    good = readPage(from.filePath(name), page) && good;
    pages.push_back(page);
  }
  std::stable_sort(pages.begin(), pages.end(), [](const Page& a, const Page& b) {
    return a.order != b.order ? a.order < b.order : a.title.compare(b.title, Qt::CaseInsensitive) < 0;
  });
  return good && copyPages(from, to) && writeProject(to, pages);
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  if (argc != 3) return 2;
  return make(QDir(argv[1]), QDir(argv[2])) ? 0 : 1;
}
