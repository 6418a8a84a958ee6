#include <cairo-pdf.h>

#include <memory>

#include "plots/CairoStream.h"
#include "plots/drawFigure.h"
#include "report/Document.h"
#include "report/PageWriter.h"

namespace tarvex {

namespace {

constexpr double kPointsPerUnit = 72.0 / 96.0;
constexpr double kDraftShare = 0.1;  // of the time: figures take most of the rest

CairoSurface newPages(cairo_write_func_t write, std::string* content) {
  return CairoSurface(cairo_pdf_surface_create_for_stream(write, content, PageWriter::kPageWidth * kPointsPerUnit,
                                                          PageWriter::kPageHeight * kPointsPerUnit));
}

// Lays the document out on the surface; without `pages` as a draft, which fills `found`. False after a stop or a
// failure.
bool writePages(cairo_surface_t* surface, const Document& document, const std::vector<int>* pages,
                std::vector<int>& found, const Progress& progress) {
  const CairoContext context(cairo_create(surface));
  cairo_scale(context.get(), kPointsPerUnit, kPointsPerUnit);
  PageWriter writer(context.get(), document, pages);
  for (std::size_t i = 0; i < document.blocks.size(); ++i) {
    if (!progress.report(i, document.blocks.size())) return false;
    writer.write(i);
  }
  writer.finish();
  found = writer.headingPages();
  return cairo_status(context.get()) == CAIRO_STATUS_SUCCESS;
}

// The headings as the viewer's own list beside the pages.
void addOutline(cairo_surface_t* surface, const Document& document, const std::vector<int>& pages) {
  std::size_t number = 0;
  int chapter = CAIRO_PDF_OUTLINE_ROOT;
  for (const Block& block : document.blocks) {
    const auto* const heading = std::get_if<Heading>(&block);
    if (heading == nullptr || number >= pages.size()) continue;
    const bool isChapter = heading->level == 1;
    const std::string place = "page=" + std::to_string(pages[number++]);
    const int entry = cairo_pdf_surface_add_outline(surface, isChapter ? CAIRO_PDF_OUTLINE_ROOT : chapter,
                                                    heading->text.c_str(), place.c_str(), CAIRO_PDF_OUTLINE_FLAG_OPEN);
    if (isChapter) chapter = entry;
  }
}

}  // namespace

std::string pdfContent(const Document& document, const Progress& progress) {
  if (!hasFont()) return {};
  std::vector<int> pages;
  std::vector<int> found;
  {
    const CairoSurface draft = newPages(nullptr, nullptr);
    if (!writePages(draft.get(), document, nullptr, pages, progress.part(0.0, kDraftShare))) return {};
  }
  std::string content;
  const CairoSurface surface = newPages(appendToString, &content);
  // Without a date the same document gives the same file.
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, nullptr);
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, document.title.c_str());
  if (!document.author.empty())
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_AUTHOR, document.author.c_str());
  const bool drawn = writePages(surface.get(), document, &pages, found, progress.part(kDraftShare, 1.0));
  addOutline(surface.get(), document, found);
  cairo_surface_finish(surface.get());
  return drawn && cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS ? content : std::string();
}

}  // namespace tarvex
