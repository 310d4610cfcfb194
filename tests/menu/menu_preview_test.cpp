#include "menu/menu_preview.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "fakes/fake_platform.h"
#include "fakes/temporary_folder.h"
#include "menu/menu_row.h"
#include "model/controller.h"
#include "platform/linux/drawing/cairo_canvas.h"

namespace tavelle {
namespace {

using Pixel = std::uint32_t;
constexpr Pixel light = 0xf5f5f5;
constexpr Pixel dark = 0x2b2b2b;
constexpr Pixel accent = 0x196ee1;

/// A PNG file's pixels, as 0xRRGGBB.
struct Image {
  explicit Image(const std::string& png) {
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "a.png", std::ios::binary) << png;
    surface.reset(cairo_image_surface_create_from_png((folder.path() / "a.png").c_str()));
  }
  int width() const { return cairo_image_surface_get_width(surface.get()); }
  int height() const { return cairo_image_surface_get_height(surface.get()); }
  Pixel at(int x, int y) const {
    return reinterpret_cast<const Pixel*>(cairo_image_surface_get_data(surface.get()))[y * width() + x] & 0xffffff;
  }
  /// How many pixels of the area differ from its background.
  int ink(int left, int right, int top, int bottom, Pixel background) const {
    int count = 0;
    for (int y = top; y < bottom; ++y) {
      for (int x = left; x < right; ++x) count += at(x, y) != background;
    }
    return count;
  }

  CairoSurfacePtr surface;
};

struct MenuPreview : testing::Test {
  MenuPreview() { static_cast<void>(platform.files.createFolders("/out")); }
  std::string preview(std::size_t samples, const std::string& folder = "/out") {
    std::ostringstream out;
    previewMenu(controller, platform, bitmaps, folder, samples, out);
    return out.str();
  }
  Image image(const std::string& kind) const {
    return Image(platform.files.content("/out/menu-" + kind + ".png").value_or(""));
  }

  FakePlatform platform;
  Controller controller{platform};
  CairoBitmaps bitmaps;
};

TEST_F(MenuPreview, DrawsEachAppearanceCollapsedAndExpanded) {
  using Point = std::pair<int, int>;
  for (const auto& [samples, kind, height, highlit] : {std::tuple(0U, "collapsed", 22, false),
                                                       {3U, "expanded", 66, true},
                                                       {12U, "collapsed", 88, true},
                                                       {12U, "expanded", 209, false}}) {
    const std::string lines = preview(samples);
    for (const auto& [name, grey] : {std::pair("light-", light), {"dark-", dark}}) {
      SCOPED_TRACE(std::string(name) + kind + std::to_string(samples));
      const Image drawn = image(std::string(name) + kind);
      ASSERT_EQ(std::pair(drawn.width(), drawn.height()), std::pair(240, height));
      EXPECT_NE(lines.find(std::string(kind) + ".png 240x" + std::to_string(height) + "\n"), std::string::npos);
      EXPECT_EQ(drawn.ink(0, 5, 0, height, grey), 0);
      EXPECT_EQ(drawn.ink(21, 26, 0, 22, grey), 0) << "titles line up behind the check mark's column";
      EXPECT_EQ(drawn.ink(10, 21, 0, 22, grey) > 20, samples > 0) << "the first one counts as the current one";
      if (height < 44) continue;
      EXPECT_EQ(drawn.ink(10, 21, 44, height, grey), 0) << "nothing else is checked";
      // The second row's highlight is a rounded rectangle.
      for (const auto& [x, y] : {Point(5, 33), {234, 33}, {7, 23}}) EXPECT_EQ(drawn.at(x, y) == accent, highlit);
      for (const auto& [x, y] : {Point(4, 33), {235, 33}, {120, 21}, {120, 44}, {5, 23}}) {
        EXPECT_NE(drawn.at(x, y), accent) << x << ", " << y;
      }
    }
  }
  EXPECT_EQ(image("light-expanded").ink(100, 200, 187, 209, light), 0) << "the box cuts its ninth row off";
}

TEST_F(MenuPreview, BeginsTitlesAtTheLeftAndEndsLongOnesInAnEllipsisWhicheverWayTheyAreRead) {
  platform.addWallpaper("الأمواج");
  preview(0);
  EXPECT_GT(image("light-collapsed").ink(26, 60, 0, 22, light), 50);
  for (const auto& [name, readFromRight] : {std::pair("A name that is much longer than any menu is wide", false),
                                            {"مشهد طويل جدا من الأمواج التي لا تنتهي أبدا في المساء", true}}) {
    platform.files.remove(controller.library());
    platform.addWallpaper(name);
    preview(0);
    const Image drawn = image("light-collapsed");
    EXPECT_EQ(drawn.ink(226, 240, 0, 22, light), 0) << "the right margin";
    // Dots have ink at the baseline only.
    const int end = readFromRight ? 26 : 218;
    EXPECT_EQ(drawn.ink(end, end + 8, 0, 12, light), 0);
    EXPECT_GT(drawn.ink(end, end + 8, 12, 22, light), 3);
    EXPECT_GT(drawn.ink(readFromRight ? 150 : 26, readFromRight ? 226 : 100, 0, 12, light), 30) << "it begins here";
  }
}

TEST_F(MenuPreview, ScrollsToTheStoredWallpaperAmongAll) {
  platform.defaults.set("wallpaper", "Sample Wallpaper 11");
  for (const char* name : {"Sample Wallpaper 2b", "Zebra"}) platform.addWallpaper(name);
  preview(12);
  // Sample Wallpaper 1, 2, 2b, 3 and so on: it is the twelfth of fourteen, the box begins 121 points down.
  const Image drawn = image("light-expanded");
  EXPECT_GT(drawn.ink(10, 21, 242 - 121, 264 - 121, light), 20);
  EXPECT_EQ(drawn.ink(10, 21, 0, 242 - 121, light), 0);
  EXPECT_EQ(drawn.ink(10, 21, 264 - 121, 209, light), 0);
}

TEST_F(MenuPreview, TellsWhatItDrewWhetherOrNotItCouldBeWritten) {
  EXPECT_EQ(preview(1, "/missing"), preview(1));
  struct : Bitmaps {
    std::unique_ptr<Bitmap> make(double, double, double) override { return nullptr; }
  } outOfMemory;
  std::ostringstream out;
  previewMenu(controller, platform, outOfMemory, "/out", 1, out);
  EXPECT_EQ(out.str(), "");
}

TEST(MenuPreviewArguments, ReadsTheSampleCount) {
  for (const auto& [text, count] : std::map<std::string, std::size_t>{
           {"+12", 12}, {"007", 7}, {"", 0}, {"-3", 0}, {"3x", 0}, {" 3", 0}, {"99999999999999999999", 0}}) {
    EXPECT_EQ(sampleCount(text), count) << text;
  }
}

TEST(MenuRowDrawing, TakesTheColoursOfItsState) {
  const MenuTheme theme{{"Inter", 13}, {0, 0, 1}, {1, 1, 1}, {0, 1, 0}, {1, 0, 0}};
  const auto draw = [&](double width, bool secondary, bool hovered, const char* symbol) {
    MenuRow row(width,
                {.title = "████████████████████████", .symbol = symbol, .secondary = secondary, .action = [] {}});
    row.setHovered(hovered);
    const auto bitmap = CairoBitmaps().make(200, 22, 2);
    row.render(bitmap->canvas(), theme, row.bounds());
    return Image(*bitmap->png());
  };
  for (const auto& [secondary, hovered, symbol, wanted] : {std::tuple(false, false, "chevron.up", 0x00ff00U),
                                                           {true, false, "chevron.down", 0xff0000U},
                                                           {true, true, "chevron.up", 0xffffffU},
                                                           {true, false, "unknown", 0xff0000U}}) {
    const Image drawn = draw(200, secondary, hovered, symbol);
    const bool known = symbol != std::string("unknown");
    const Pixel behind = hovered ? 0x0000ff : 0;
    ASSERT_EQ(drawn.width(), 400);
    EXPECT_EQ(drawn.at(60, 22), wanted);
    EXPECT_TRUE(!known || drawn.ink(352, 372, 0, 44, behind) > 0) << "the symbol";
    EXPECT_EQ(drawn.ink(340, 350, 0, 44, behind) == 0, known) << "the gap before a symbol";
  }
  EXPECT_EQ(draw(36, false, false, "chevron.up").ink(44, 60, 12, 32, 0), 0) << "no room for a title";
}

}  // namespace
}  // namespace tavelle
