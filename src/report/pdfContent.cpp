#include <cairo-pdf.h>

#include <memory>

#include "plots/CairoStream.h"
#include "plots/drawFigure.h"
#include "report/Document.h"
#include "report/PageWriter.h"

namespace tarvex {

std::string pdfContent(const Document& document) {
  constexpr double kPointsPerUnit = 72.0 / 96.0;
  if (!hasFont()) return {};
  std::string content;
  const CairoSurface surface(cairo_pdf_surface_create_for_stream(
      appendToString, &content, PageWriter::kPageWidth * kPointsPerUnit, PageWriter::kPageHeight * kPointsPerUnit));
  // Without a date the same document gives the same file.
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, nullptr);
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE, document.title.c_str());
  bool drawn = false;
  {
    const CairoContext context(cairo_create(surface.get()));
    cairo_scale(context.get(), kPointsPerUnit, kPointsPerUnit);
    PageWriter pages(context.get(), document.title);
    for (const Block& block : document.blocks) std::visit(pages, block);
    pages.finish();
    drawn = cairo_status(context.get()) == CAIRO_STATUS_SUCCESS;
  }
  cairo_surface_finish(surface.get());
  return drawn && cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS ? content : std::string();
}

}  // namespace tarvex
