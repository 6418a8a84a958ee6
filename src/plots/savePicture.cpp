#include "plots/savePicture.h"

#include <cairo-pdf.h>
#include <cairo-ps.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <utility>

#include "base/TextWriter.h"
#include "plots/Figure.h"
#include "plots/drawFigure.h"

namespace tarvex {

namespace {

constexpr double kPointsPerUnit = 72.0 / 96.0;
constexpr double kPrintPixelsPerUnit = 300.0 / 96.0;
constexpr double kLargestImage = 32000.0;  // cairo's own limit, rounded down

constexpr std::array<std::pair<const char*, PictureFormat>, 5> kFormats = {{{"svg", PictureFormat::Svg},
                                                                            {"pdf", PictureFormat::Pdf},
                                                                            {"ps", PictureFormat::Ps},
                                                                            {"eps", PictureFormat::Eps},
                                                                            {"png", PictureFormat::Png}}};

struct Destroy {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, Destroy>;
using Context = std::unique_ptr<cairo_t, Destroy>;

cairo_status_t append(void* content, const unsigned char* data, unsigned int size) {
  // Exceptions don't pass through cairo.
  try {
    static_cast<std::string*>(content)->append(reinterpret_cast<const char*>(data), size);
  } catch (const std::bad_alloc&) {
    return CAIRO_STATUS_NO_MEMORY;
  }
  return CAIRO_STATUS_SUCCESS;
}

Surface vectorSurface(PictureFormat format, std::string& content, double width, double height) {
  cairo_surface_t* surface = nullptr;
  switch (format) {
    case PictureFormat::Svg:
      return Surface(cairo_svg_surface_create_for_stream(append, &content, width, height));
    case PictureFormat::Pdf:
      surface = cairo_pdf_surface_create_for_stream(append, &content, width, height);
      cairo_pdf_surface_set_metadata(surface, CAIRO_PDF_METADATA_CREATE_DATE, nullptr);
      return Surface(surface);
    case PictureFormat::Ps:
    case PictureFormat::Eps:
      surface = cairo_ps_surface_create_for_stream(append, &content, width, height);
      cairo_ps_surface_set_eps(surface, format == PictureFormat::Eps ? 1 : 0);
      return Surface(surface);
    case PictureFormat::Png:
      break;
  }
  return nullptr;
}

bool draw(cairo_surface_t* surface, const Figure& figure, double unit, const DrawTarget& target) {
  const Context context(cairo_create(surface));
  cairo_scale(context.get(), unit, unit);
  drawFigure(context.get(), figure, target);
  if (target.vector) cairo_show_page(context.get());
  return cairo_status(context.get()) == CAIRO_STATUS_SUCCESS;
}

bool renderImage(const Figure& figure, double zoom, std::string& content) {
  zoom = std::min(zoom, kLargestImage / std::max(figure.width, figure.height));
  const int width = std::max(1, static_cast<int>(std::lround(figure.width * zoom)));
  const int height = std::max(1, static_cast<int>(std::lround(figure.height * zoom)));
  const Surface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
  return draw(surface.get(), figure, zoom, {figure.width, figure.height, zoom, false}) &&
         cairo_surface_write_to_png_stream(surface.get(), append, &content) == CAIRO_STATUS_SUCCESS;
}

// A line that differs from one second to the next.
void dropCreationDate(std::string& content) {
  const std::size_t start = content.find("%%CreationDate:");
  if (start == std::string::npos) return;
  content.erase(start, content.find('\n', start) + 1 - start);
}

bool renderVector(const Figure& figure, PictureFormat format, std::string& content) {
  const Surface surface = vectorSurface(format, content, figure.width * kPointsPerUnit, figure.height * kPointsPerUnit);
  const bool drawn =
      draw(surface.get(), figure, kPointsPerUnit, {figure.width, figure.height, kPrintPixelsPerUnit, true});
  cairo_surface_finish(surface.get());  // what could not be written is known only now
  return drawn && cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS;
}

}  // namespace

std::optional<PictureFormat> pictureFormat(const std::string& word) {
  std::string lower = word;
  for (char& c : lower) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  for (const auto& [name, format] : kFormats) {
    if (lower == name) return format;
  }
  return std::nullopt;
}

std::optional<PictureFormat> pictureFormatOf(const std::string& path) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string::npos || path.find('/', dot) != std::string::npos) return std::nullopt;
  return pictureFormat(path.substr(dot + 1));
}

std::string renderPicture(const Figure& figure, PictureFormat format, double zoom) {
  const auto isSize = [](double size) { return size > 0.0 && std::isfinite(size); };
  if (!hasFont() || !isSize(figure.width) || !isSize(figure.height) || !isSize(zoom)) return {};
  std::string content;
  const bool rendered =
      format == PictureFormat::Png ? renderImage(figure, zoom, content) : renderVector(figure, format, content);
  if (!rendered) return {};
  if (format == PictureFormat::Ps || format == PictureFormat::Eps) dropCreationDate(content);
  return content;
}

bool savePicture(const std::string& path, const Figure& figure, PictureFormat format, double zoom) {
  const std::string content = renderPicture(figure, format, zoom);
  if (content.empty()) return false;
  TextWriter out(path);
  out << content;
  return out.commit();
}

}  // namespace tarvex
