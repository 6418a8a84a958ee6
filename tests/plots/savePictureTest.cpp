#include "plots/savePicture.h"

#include <cairo.h>

#include <cstdlib>

#include "plots/CairoStream.h"
#include "plots/FigureLayout.h"
#include "plots/SampleFigures.h"
#include "plots/drawFigure.h"
#include "support/Test.h"

namespace tarvex::test {
namespace {

const std::vector<std::pair<std::string, PictureFormat>> kFormats = {{".svg", PictureFormat::Svg},
                                                                     {".pdf", PictureFormat::Pdf},
                                                                     {".ps", PictureFormat::Ps},
                                                                     {".eps", PictureFormat::Eps},
                                                                     {".png", PictureFormat::Png}};
const std::string kWide(19, 'W');

// Every sample figure in each of the formats; the names of the files, each in quotes.
std::string savedFiles(const TempDirectory& directory, const std::vector<std::size_t>& formats) {
  std::string names;
  std::string problem;
  for (const auto& [name, figure] : sampleFigures()) {
    for (const std::size_t format : formats) {
      const std::string path = directory.file(name + kFormats[format].first);
      EXPECT_TRUE(savePicture(path, figure, kFormats[format].second, problem)) << problem;
      names += " '" + path + '\'';
    }
  }
  return names;
}

TEST(SavePicture, otherProgramsReadTheFiles) {
  struct Reader {
    std::string program, command;  // gets the names of the files behind it
    std::vector<std::size_t> formats;
  };
  const TempDirectory directory;
  const std::string text = directory.file("text");
  const std::vector<Reader> readers = {
      {"gs", "gs -q -dNOPAUSE -dBATCH -dSAFER -sDEVICE=nullpage", {2, 3}},
      {"xmllint", "xmllint --noout --huge", {0}},
      {"pdftotext", "cd '" + directory.path() + "'; ls *.pdf | xargs -n 1 pdftotext; cat *.txt > text; true", {1}}};
  std::string missing;
  for (const Reader& reader : readers) {
    const std::string files = savedFiles(directory, reader.formats);
    const std::string log = directory.file("log");
    if (std::system(("command -v " + reader.program + " > /dev/null").c_str()) != 0)
      missing += " " + reader.program;
    else
      EXPECT_EQ(std::system((reader.command + files + " > '" + log + "' 2>&1").c_str()), 0) << readFile(log);
    EXPECT_TRUE(missing.ends_with(reader.program) || readFile(log).empty()) << readFile(log);
  }
  const std::string eps = readFile(directory.file("bars.eps"));
  EXPECT_NE(eps.find("EPSF-3.0"), std::string::npos);
  EXPECT_NE(eps.find("%%BoundingBox: 0 0 240 180\n"), std::string::npos) << "the white page is part of the picture";
  EXPECT_EQ(eps.find("CreationDate"), std::string::npos);
  if (!missing.empty()) GTEST_SKIP() << "not installed:" << missing;
  for (const char* word : {"Title", "Sizes of the indices", "x5", "-0.5", "Constant", "not"})
    EXPECT_NE(readFile(text).find(word), std::string::npos) << word;
}

TEST(SavePicture, sameFigureSameBytes) {
  for (const auto& [name, figure] : sampleFigures()) {
    for (const auto& [suffix, format] : kFormats) {
      EXPECT_TRUE(renderPicture(figure, format) == renderPicture(figure, format)) << name << suffix;
    }
  }
}

TEST(SavePicture, formatsByWordAndSuffix) {
  EXPECT_EQ(pictureFormat("PDF"), PictureFormat::Pdf);
  EXPECT_EQ(pictureFormat("jpg"), std::nullopt);
  EXPECT_EQ(pictureFormatOf("/a.b/c.Eps"), PictureFormat::Eps);
  EXPECT_EQ(pictureFormatOf("/a.svg/c"), std::nullopt);
}

// Figures at the edge of what can be drawn.
std::vector<std::pair<std::string, Figure>> extremeFigures() {
  constexpr double kLargest = std::numeric_limits<double>::max();
  XyChart odd = curves();
  odd.x = {"x", -kLargest, kLargest};
  odd.y = {"y", 0.0, 5e-324};
  odd.layers.emplace_back(Points{{0.0, kInf, kLargest}, {std::nan(""), 0.0, 0.0}, {}});
  odd.layers.emplace_back(Line{{-kLargest, kLargest, kInf, 0.0}, {0.0, 1.0, 0.0, -1.0}, {}});
  odd.layers.emplace_back(Area{{0.0, std::nan(""), 1.0}, {kInf, 1.0, 2.0, 3.0}, {}});
  odd.layers.emplace_back(Region{-kInf, kInf, std::nan(""), 1.0, {}});
  CobwebChart constant = cobweb(3, 2);
  constant.axes[0].upper = constant.axes[0].lower;
  constant.axes[1].filter = {kInf, std::nan("")};
  constant.axes[1].positions[0] = std::numeric_limits<float>::quiet_NaN();
  constant.axes[0].positions[1] = 1e30F;
  constant.colours[0] = 200;
  BarChart ragged = bars(4, kWide);
  ragged.series[1].pop_back();
  ragged.values = {"", -kLargest, kLargest};
  ragged.series[0][0].value = kInf;
  PieChart huge = pie(3, std::string(5000, 'W'));
  for (Slice& slice : huge.slices) slice.value = kLargest;
  huge.slices.push_back({"\xff\xfe broken \n text", "", std::nan(""), {}});
  return {{"nothing", figureOf({})},
          {"empty charts", figureOf({XyChart{}, CobwebChart{}, BarChart{}, PieChart{}}, 3)},
          {"one run", figureOf({scattergram(1), cobweb(1, 1), bars(1, ""), pie(1, "")}, 0)},
          {"odd values", figureOf({odd, constant, ragged, huge}, 2)},
          {"wide names", figureOf({labelled(40, kWide), bars(40, kWide), pie(40, kWide)}, 2)},
          {"many axes", figureOf({cobweb(20, 371)})},
          {"many lines and axes", figureOf({cobweb(400, 371)})},
          {"many categories", figureOf({bars(371, kWide), pie(371, kWide), labelled(371, kWide)}, 3)}};
}

TEST(DrawFigure, extremeFiguresAreDrawn) {
  for (const auto& [name, figure] : extremeFigures()) {
    for (const auto& [suffix, format] : kFormats) EXPECT_NE(renderPicture(figure, format), "") << name << suffix;
    for (const auto& [width, height] : {std::pair(200.0, 150.0), std::pair(30.0, 200.0), std::pair(1.0, 1.0)}) {
      const CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, 300, 300));
      const CairoContext context(cairo_create(surface.get()));
      EXPECT_TRUE(drawFigure(context.get(), figure, width, height, {}));
      EXPECT_EQ(cairo_status(context.get()), CAIRO_STATUS_SUCCESS) << name << ' ' << width << " x " << height;
    }
  }
  Figure sizeless = figureOf({pie(3, "")});
  sizeless.width = std::nan("");
  EXPECT_EQ(renderPicture(sizeless, PictureFormat::Png), "");
}

TEST(DrawFigure, withoutAFontNothingCrashes) {
  // Fonts are looked for once in a process: the child is a new one.
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(
      {
        setenv("FONTCONFIG_FILE", TARVEX_TEST_DATA "/pictures/no-fonts.conf", 1);
        const bool fails = !hasFont() && renderPicture(figureOf({pie(3, "")}), PictureFormat::Svg).empty();
        std::exit(fails ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

// Pixels of 4 bytes.
class Image {
 public:
  Image(cairo_surface_t* surface, double zoom) : surface_(surface), context_(cairo_create(surface)) {
    cairo_scale(context_.get(), zoom, zoom);
  }
  explicit Image(const std::string& path) : Image(cairo_image_surface_create_from_png(path.c_str()), 1.0) {}

  cairo_t* context() { return context_.get(); }
  void add(const Image& other) {
    cairo_identity_matrix(context());
    cairo_set_source_surface(context(), other.surface_.get(), 0.0, 0.0);
    cairo_paint(context());
  }
  // Pixels of which a colour differs by more than this.
  int differences(const Image& other, int tolerance) const {
    const auto size = [](const Image& image) {
      return std::pair(cairo_image_surface_get_stride(image.surface_.get()),
                       cairo_image_surface_get_height(image.surface_.get()));
    };
    if (size(*this).second == 0 || size(*this) != size(other)) return std::numeric_limits<int>::max();
    int count = 0;
    for (int pixel = 0; pixel < size(*this).first / 4 * size(*this).second; ++pixel) {
      bool differs = false;
      for (int byte = 4 * pixel; byte < 4 * pixel + 3; ++byte)
        differs = differs || std::abs(cairo_image_surface_get_data(surface_.get())[byte] -
                                      cairo_image_surface_get_data(other.surface_.get())[byte]) > tolerance;
      if (differs) ++count;
    }
    return count;
  }

 private:
  CairoSurface surface_;
  CairoContext context_;
};

TEST(DrawFigure, layersLaidOverEachOtherAreThePicture) {
  for (const double zoom : {1.0, 2.0}) {
    const auto empty = [&] {
      const int width = static_cast<int>(320 * zoom);
      return Image(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, static_cast<int>(240 * zoom)), zoom);
    };
    for (const auto& [name, figure] : sampleFigures()) {
      const FigureLayout layout = layOut(figure);
      const DrawOptions options{Surface::Screen, zoom, kDarkInks, {1, 3}};
      Image whole = empty();
      Image composed = empty();
      ASSERT_TRUE(drawFigure(whole.context(), figure, 320.0, 240.0, options));
      for (const FigureLayer layer : kFigureLayers) {
        Image single = empty();
        ASSERT_TRUE(drawLayer(single.context(), figure, layout, layer, options));
        composed.add(single);
      }
      EXPECT_EQ(whole.differences(composed, 4), 0) << name << ": more than roundings";
      if (name != "dense" && name != "manyLines") continue;
      const Progress stop([](double) { return false; });
      EXPECT_FALSE(drawLayer(whole.context(), figure, layout, FigureLayer::Kept, options, stop));
      EXPECT_EQ(renderPicture(figure, PictureFormat::Pdf, 1.0, stop), "");
    }
  }
}

// The approved pictures lie in tests/data/pictures. After a wanted change look at the new ones and approve them:
// TARVEX_APPROVE=1 plots_tests --gtest_filter='*approvedPictures' writes them there.
TEST(DrawFigure, approvedPictures) {
  constexpr int kMostDifferent = 40;  // of 76,800 pixels; a tick text has as many
  constexpr int kTolerance = 48;      // what another version of the font's renderer explains
  const TempDirectory directory;
  std::string problem;
  for (const auto& [name, figure] : sampleFigures()) {
    const std::string approved = std::string(TARVEX_TEST_DATA) + "/pictures/" + name + ".png";
    const bool approve = std::getenv("TARVEX_APPROVE") != nullptr;
    const std::string drawn = approve ? approved : directory.file(name + ".png");
    ASSERT_TRUE(savePicture(drawn, figure, PictureFormat::Png, problem)) << problem;
    EXPECT_LE(Image(approved).differences(Image(drawn), kTolerance), kMostDifferent) << name;
  }
}

}  // namespace
}  // namespace tarvex::test
