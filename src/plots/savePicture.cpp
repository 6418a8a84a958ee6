#include "plots/savePicture.h"

#include <cairo-pdf.h>
#include <cairo-ps.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <future>
#include <system_error>
#include <utility>
#include <vector>

#include "base/TextWriter.h"
#include "plots/CairoStream.h"
#include "plots/Figure.h"
#include "plots/SvgTexts.h"
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

CairoSurface vectorSurface(PictureFormat format, std::string& content, double width, double height) {
  cairo_surface_t* surface = nullptr;
  switch (format) {
    case PictureFormat::Svg:
      return CairoSurface(cairo_svg_surface_create_for_stream(appendToString, &content, width, height));
    case PictureFormat::Pdf:
      surface = cairo_pdf_surface_create_for_stream(appendToString, &content, width, height);
      cairo_pdf_surface_set_metadata(surface, CAIRO_PDF_METADATA_CREATE_DATE, nullptr);
      return CairoSurface(surface);
    case PictureFormat::Ps:
    case PictureFormat::Eps:
      surface = cairo_ps_surface_create_for_stream(appendToString, &content, width, height);
      cairo_ps_surface_set_eps(surface, format == PictureFormat::Eps ? 1 : 0);
      return CairoSurface(surface);
    case PictureFormat::Png:
      break;
  }
  return nullptr;
}

constexpr double kDrawnShare = 0.7;  // of the time until the file's content is there, roughly

// Cairo compresses a whole page in one call, which can't be told to stop: the call gets a thread of its own, while this
// one goes on serving who watches. False after a stop, which waits for the call to end.
template <class Call>
bool callWatched(const Progress& progress, Call call) {
  constexpr std::chrono::milliseconds kLook(10);
  std::future<void> done;
  try {
    done = std::async(std::launch::async, call);
  } catch (const std::system_error&) {
    call();  // the system has no thread left
    return progress.report(1.0);
  }
  bool going = true;
  while (done.wait_for(kLook) != std::future_status::ready) going = progress.report(0.0) && going;
  done.get();  // throws what the call threw
  return going && progress.report(1.0);
}

bool draw(cairo_surface_t* surface, const Figure& figure, double unit, const DrawOptions& options,
          const Progress& progress) {
  const CairoContext context(cairo_create(surface));
  cairo_scale(context.get(), unit, unit);
  return drawFigure(context.get(), figure, figure.width, figure.height, options, progress.part(0.0, kDrawnShare)) &&
         cairo_status(context.get()) == CAIRO_STATUS_SUCCESS;
}

bool renderImage(const Figure& figure, double zoom, const Progress& progress, std::string& content) {
  zoom = std::min(zoom, kLargestImage / std::max(figure.width, figure.height));
  const int width = std::max(1, static_cast<int>(std::lround(figure.width * zoom)));
  const int height = std::max(1, static_cast<int>(std::lround(figure.height * zoom)));
  const CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
  if (!draw(surface.get(), figure, zoom, {Surface::ImageFile, zoom}, progress)) return false;
  cairo_status_t status = CAIRO_STATUS_SUCCESS;
  const auto write = [&] { status = cairo_surface_write_to_png_stream(surface.get(), appendToString, &content); };
  return callWatched(progress.part(kDrawnShare, 1.0), write) && status == CAIRO_STATUS_SUCCESS;
}

// A line that differs from one second to the next.
void dropCreationDate(std::string& content) {
  const std::size_t start = content.find("%%CreationDate:");
  if (start == std::string::npos) return;
  const std::size_t end = content.find('\n', start);
  if (end != std::string::npos) content.erase(start, end + 1 - start);
}

// Cairo numbers surfaces and images through the life of the process: here they count from 1 in each file. The names
// stand in quotes, or behind the # of a reference.
void renumber(std::string& svg, const std::string& name) {
  std::vector<std::string> numbers;
  std::string result;
  std::size_t copied = 0;
  for (std::size_t at = svg.find(name); at != std::string::npos; at = svg.find(name, at + 1)) {
    const std::size_t start = at + name.size();
    const std::size_t end = std::min(svg.find_first_not_of("0123456789", start), svg.size());
    if (at == 0 || end == start || (svg[at - 1] != '"' && svg[at - 1] != '#')) continue;
    const std::string number = svg.substr(start, end - start);
    auto known = std::find(numbers.begin(), numbers.end(), number);
    if (known == numbers.end()) known = numbers.insert(known, number);
    result.append(svg, copied, start - copied).append(std::to_string(known - numbers.begin() + 1));
    copied = end;
  }
  svg = result.append(svg, copied);
}

bool renderVector(const Figure& figure, PictureFormat format, const Progress& progress, std::string& content) {
  SvgTexts texts;
  CairoSurface surface = vectorSurface(format, content, figure.width * kPointsPerUnit, figure.height * kPointsPerUnit);
  if (format == PictureFormat::Svg) texts.listen(surface.get());
  const bool drawn = draw(surface.get(), figure, kPointsPerUnit, {Surface::VectorFile, kPrintPixelsPerUnit}, progress);
  cairo_status_t status = CAIRO_STATUS_SUCCESS;
  const auto write = [&] {
    cairo_surface_show_page(surface.get());
    cairo_surface_finish(surface.get());  // what could not be written is known only now
    status = cairo_surface_status(surface.get());
    surface.reset();  // takes its time, too, where the page holds large images
    // So does each look through a file of many megabytes.
    if (format == PictureFormat::Ps || format == PictureFormat::Eps) dropCreationDate(content);
    if (format == PictureFormat::Svg) {
      texts.writeInto(content);
      renumber(content, "image");
      renumber(content, "surface");
    }
  };
  return drawn && callWatched(progress.part(kDrawnShare, 1.0), write) && status == CAIRO_STATUS_SUCCESS;
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

std::string renderPicture(const Figure& figure, PictureFormat format, double zoom, const Progress& progress) {
  const auto isSize = [](double size) { return size > 0.0 && std::isfinite(size); };
  if (!hasFont() || !isSize(figure.width) || !isSize(figure.height) || !isSize(zoom)) return {};
  std::string content;
  const bool rendered = format == PictureFormat::Png ? renderImage(figure, zoom, progress, content)
                                                     : renderVector(figure, format, progress, content);
  if (!rendered) return {};
  return content;
}

bool savePicture(const std::string& path, const Figure& figure, PictureFormat format, std::string& message, double zoom,
                 const Progress& progress) {
  const std::string content = renderPicture(figure, format, zoom, progress);
  TextWriter out(path);
  if (content.empty()) out.refuse("the picture can't be drawn");
  out << content;
  if (out.commit()) return true;
  message = out.problem();
  return false;
}

}  // namespace tarvex
