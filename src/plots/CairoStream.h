#pragma once

#include <cairo.h>

#include <memory>
#include <new>
#include <string>

namespace tarvex {

struct CairoDestroy {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using CairoSurface = std::unique_ptr<cairo_surface_t, CairoDestroy>;
using CairoContext = std::unique_ptr<cairo_t, CairoDestroy>;

// A stream of cairo's that collects in the std::string that `content` is. Exceptions don't pass through cairo.
inline cairo_status_t appendToString(void* content, const unsigned char* data, unsigned int size) {
  try {
    static_cast<std::string*>(content)->append(reinterpret_cast<const char*>(data), size);
  } catch (const std::bad_alloc&) {
    return CAIRO_STATUS_NO_MEMORY;
  }
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace tarvex
