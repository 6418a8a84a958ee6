// What tarvex-batch calls of the libraries that draw, by its own names: each call goes on to the library's function.
// Linked, the libraries and the thirty others that they need would take 4 of 7 ms at every start; so they are loaded
// with the first of these calls, which most commands never come to. A function that is called anywhere and missing here
// brings its library back into the program; nothing but the start's time changes then.
#include <cairo-pdf.h>
#include <cairo-ps.h>
#include <cairo-svg.h>
#include <cairo.h>
#include <dlfcn.h>
#include <fontconfig/fontconfig.h>
#include <pango/pangocairo.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>

#include "base/Temporaries.h"
#include "batch/Commands.h"

namespace {

// Set at the start, and given to the library when it is there.
struct Writer {
  GLogWriterFunc take;
  gpointer data;
  GDestroyNotify destroy;
};
Writer writer = {};

[[noreturn]] void giveUp() {
  const char* const reason = ::dlerror();
  constexpr std::size_t kLongest = 1024;
  std::array<char, kLongest> line{};
  std::snprintf(line.data(), line.size(), "tarvex-batch: The libraries that draw can't be loaded.\n%s\n",
                reason != nullptr ? reason : "");
  static_cast<void>(::write(STDERR_FILENO, line.data(), std::strlen(line.data())) >= 0);
  tarvex::Temporaries::deleteAllForEnd();
  ::_exit(tarvex::kFailed);
}

// In `handle` and what it needs.
template <class Function>
Function* functionOf(void* handle, const char* name) {
  void* const found = ::dlsym(handle, name);
  if (found == nullptr) giveUp();
  return reinterpret_cast<Function*>(found);
}

// The library that needs all others.
void* loaded() {
  static void* const handle = [] {
    void* const opened = ::dlopen("libpangocairo-1.0.so.0", RTLD_NOW | RTLD_LOCAL);
    if (opened == nullptr) giveUp();
    if (writer.take != nullptr)
      functionOf<decltype(g_log_set_writer_func)>(opened, "g_log_set_writer_func")(writer.take, writer.data,
                                                                                   writer.destroy);
    return opened;
  }();
  return handle;
}

}  // namespace

// NOLINTBEGIN(readability-identifier-naming): the libraries' names.
void(g_log_set_writer_func)(GLogWriterFunc take, gpointer data, GDestroyNotify destroy) {
  writer = {take, data, destroy};
}

// A result, a name, and the arguments' types: the headers hold them against their own.
#define LATE(name, ...)                                                      \
  static auto* const function = functionOf<decltype(name)>(loaded(), #name); \
  return function(__VA_ARGS__);
#define LATE_0(Result, name) \
  Result(name)() {           \
    LATE(name)               \
  }
#define LATE_1(Result, name, A) \
  Result(name)(A a) {           \
    LATE(name, a)               \
  }
#define LATE_2(Result, name, A, B) \
  Result(name)(A a, B b) {         \
    LATE(name, a, b)               \
  }
#define LATE_3(Result, name, A, B, C) \
  Result(name)(A a, B b, C c) {       \
    LATE(name, a, b, c)               \
  }
#define LATE_4(Result, name, A, B, C, D) \
  Result(name)(A a, B b, C c, D d) {     \
    LATE(name, a, b, c, d)               \
  }
#define LATE_5(Result, name, A, B, C, D, E) \
  Result(name)(A a, B b, C c, D d, E e) {   \
    LATE(name, a, b, c, d, e)               \
  }
#define LATE_6(Result, name, A, B, C, D, E, F) \
  Result(name)(A a, B b, C c, D d, E e, F f) { \
    LATE(name, a, b, c, d, e, f)               \
  }

LATE_3(FcFontSet*, FcFontList, FcConfig*, FcPattern*, FcObjectSet*)
LATE_1(void, FcFontSetDestroy, FcFontSet*)
LATE_2(FcBool, FcObjectSetAdd, FcObjectSet*, const char*)
LATE_0(FcObjectSet*, FcObjectSetCreate)
LATE_1(void, FcObjectSetDestroy, FcObjectSet*)
LATE_3(FcBool, FcPatternAddString, FcPattern*, const char*, const FcChar8*)
LATE_0(FcPattern*, FcPatternCreate)
LATE_1(void, FcPatternDestroy, FcPattern*)

LATE_2(gchar*, g_base64_encode, const guchar*, gsize)
LATE_1(void, g_checksum_free, GChecksum*)
LATE_1(const gchar*, g_checksum_get_string, GChecksum*)
LATE_1(GChecksum*, g_checksum_new, GChecksumType)
LATE_3(void, g_checksum_update, GChecksum*, const guchar*, gssize)
LATE_1(void, g_free, gpointer)
LATE_4(GLogWriterOutput, g_log_writer_default, GLogLevelFlags, const GLogField*, gsize, gpointer)
LATE_1(void, g_object_unref, gpointer)
LATE_2(gchar*, g_utf8_make_valid, const gchar*, gssize)
LATE_2(gchar*, g_utf8_offset_to_pointer, const gchar*, glong)
LATE_2(glong, g_utf8_strlen, const gchar*, gssize)

LATE_6(void, cairo_arc, cairo_t*, double, double, double, double, double)
LATE_1(void, cairo_clip, cairo_t*)
LATE_1(void, cairo_close_path, cairo_t*)
LATE_1(cairo_t*, cairo_create, cairo_surface_t*)
LATE_1(void, cairo_destroy, cairo_t*)
LATE_1(void, cairo_fill, cairo_t*)
LATE_1(void, cairo_fill_preserve, cairo_t*)
LATE_0(cairo_font_options_t*, cairo_font_options_create)
LATE_1(void, cairo_font_options_destroy, cairo_font_options_t*)
LATE_2(void, cairo_font_options_set_antialias, cairo_font_options_t*, cairo_antialias_t)
LATE_2(void, cairo_font_options_set_hint_metrics, cairo_font_options_t*, cairo_hint_metrics_t)
LATE_2(void, cairo_font_options_set_hint_style, cairo_font_options_t*, cairo_hint_style_t)
LATE_2(int, cairo_format_stride_for_width, cairo_format_t, int)
LATE_2(void, cairo_get_matrix, cairo_t*, cairo_matrix_t*)
LATE_1(cairo_pattern_t*, cairo_get_source, cairo_t*)
LATE_1(cairo_surface_t*, cairo_get_target, cairo_t*)
LATE_3(cairo_surface_t*, cairo_image_surface_create, cairo_format_t, int, int)
LATE_5(cairo_surface_t*, cairo_image_surface_create_for_data, unsigned char*, cairo_format_t, int, int, int)
LATE_3(void, cairo_line_to, cairo_t*, double, double)
LATE_2(void, cairo_mask, cairo_t*, cairo_pattern_t*)
LATE_3(void, cairo_move_to, cairo_t*, double, double)
LATE_1(void, cairo_new_path, cairo_t*)
LATE_1(void, cairo_paint, cairo_t*)
LATE_1(cairo_pattern_t*, cairo_pattern_create_for_surface, cairo_surface_t*)
LATE_1(void, cairo_pattern_destroy, cairo_pattern_t*)
LATE_5(cairo_status_t, cairo_pattern_get_rgba, cairo_pattern_t*, double*, double*, double*, double*)
LATE_2(void, cairo_pattern_set_filter, cairo_pattern_t*, cairo_filter_t)
LATE_5(int, cairo_pdf_surface_add_outline, cairo_surface_t*, int, const char*, const char*, cairo_pdf_outline_flags_t)
LATE_4(cairo_surface_t*, cairo_pdf_surface_create_for_stream, cairo_write_func_t, void*, double, double)
LATE_3(void, cairo_pdf_surface_set_metadata, cairo_surface_t*, cairo_pdf_metadata_t, const char*)
LATE_4(cairo_surface_t*, cairo_ps_surface_create_for_stream, cairo_write_func_t, void*, double, double)
LATE_2(void, cairo_ps_surface_set_eps, cairo_surface_t*, cairo_bool_t)
LATE_5(void, cairo_rectangle, cairo_t*, double, double, double, double)
LATE_1(void, cairo_restore, cairo_t*)
LATE_2(void, cairo_rotate, cairo_t*, double)
LATE_1(void, cairo_save, cairo_t*)
LATE_3(void, cairo_scale, cairo_t*, double, double)
LATE_4(void, cairo_set_dash, cairo_t*, const double*, int, double)
LATE_2(void, cairo_set_line_cap, cairo_t*, cairo_line_cap_t)
LATE_2(void, cairo_set_line_join, cairo_t*, cairo_line_join_t)
LATE_2(void, cairo_set_line_width, cairo_t*, double)
LATE_2(void, cairo_set_source, cairo_t*, cairo_pattern_t*)
LATE_4(void, cairo_set_source_rgb, cairo_t*, double, double, double)
LATE_1(void, cairo_show_page, cairo_t*)
LATE_1(cairo_status_t, cairo_status, cairo_t*)
LATE_1(void, cairo_stroke, cairo_t*)
LATE_1(void, cairo_surface_destroy, cairo_surface_t*)
LATE_1(void, cairo_surface_finish, cairo_surface_t*)
LATE_2(void*, cairo_surface_get_user_data, cairo_surface_t*, const cairo_user_data_key_t*)
LATE_4(cairo_status_t, cairo_surface_set_user_data, cairo_surface_t*, const cairo_user_data_key_t*, void*,
       cairo_destroy_func_t)
LATE_1(void, cairo_surface_show_page, cairo_surface_t*)
LATE_1(cairo_status_t, cairo_surface_status, cairo_surface_t*)
LATE_3(cairo_status_t, cairo_surface_write_to_png_stream, cairo_surface_t*, cairo_write_func_t, void*)
LATE_4(cairo_surface_t*, cairo_svg_surface_create_for_stream, cairo_write_func_t, void*, double, double)
LATE_3(void, cairo_translate, cairo_t*, double, double)
LATE_0(const char*, cairo_version_string)

LATE_2(void, pango_cairo_context_set_font_options, PangoContext*, const cairo_font_options_t*)
LATE_2(void, pango_cairo_context_set_resolution, PangoContext*, double)
LATE_1(PangoLayout*, pango_cairo_create_layout, cairo_t*)
LATE_2(void, pango_cairo_show_layout, cairo_t*, PangoLayout*)
LATE_2(void, pango_context_set_round_glyph_positions, PangoContext*, gboolean)
LATE_1(void, pango_font_description_free, PangoFontDescription*)
LATE_0(PangoFontDescription*, pango_font_description_new)
LATE_2(void, pango_font_description_set_absolute_size, PangoFontDescription*, double)
LATE_2(void, pango_font_description_set_family, PangoFontDescription*, const char*)
LATE_2(void, pango_font_description_set_weight, PangoFontDescription*, PangoWeight)
LATE_1(void, pango_layout_context_changed, PangoLayout*)
LATE_1(int, pango_layout_get_baseline, PangoLayout*)
LATE_1(PangoContext*, pango_layout_get_context, PangoLayout*)
LATE_3(void, pango_layout_get_extents, PangoLayout*, PangoRectangle*, PangoRectangle*)
LATE_1(GSList*, pango_layout_get_lines_readonly, PangoLayout*)
LATE_1(const char*, pango_layout_get_text, PangoLayout*)
LATE_1(gboolean, pango_layout_is_ellipsized, PangoLayout*)
LATE_2(void, pango_layout_set_ellipsize, PangoLayout*, PangoEllipsizeMode)
LATE_2(void, pango_layout_set_font_description, PangoLayout*, const PangoFontDescription*)
LATE_2(void, pango_layout_set_single_paragraph_mode, PangoLayout*, gboolean)
LATE_3(void, pango_layout_set_text, PangoLayout*, const char*, int)
LATE_2(void, pango_layout_set_width, PangoLayout*, int)
LATE_2(void, pango_layout_set_wrap, PangoLayout*, PangoWrapMode)
// NOLINTEND(readability-identifier-naming)
