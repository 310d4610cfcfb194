#include "menu/menu_preview.h"

#include <gtest/gtest.h>

#include <sstream>

#include "fakes/program_test.h"
#include "fakes/temporary_folder.h"
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

struct MenuPreview : ProgramTest {
  MenuPreview() { static_cast<void>(platform.files.createFolders("/out")); }
  std::string preview(std::size_t samples, const std::string& folder = "/out") {
    std::ostringstream out;
    previewMenu(controller, platform, bitmaps, folder, samples, out);
    return out.str();
  }
  Image image(const std::string& kind) const {
    return Image(platform.files.content("/out/menu-" + kind + ".png").value_or(""));
  }

  CairoBitmaps bitmaps;
};

TEST_F(MenuPreview, DrawsEachAppearanceCollapsedAndExpanded) {
  for (const auto& [samples, kind, height, highlit] : {std::tuple(0U, "collapsed", 22, false),
                                                       {3U, "expanded", 66, true},
                                                       {12U, "collapsed", 88, true},
                                                       {12U, "expanded", 209, false}}) {
    const std::string lines = preview(samples);
    EXPECT_EQ(preview(samples, "/missing"), lines) << "what was drawn, whether or not it could be written";
    for (const auto& [name, grey] : {std::pair("light-", light), {"dark-", dark}}) {
      SCOPED_TRACE(std::string(name) + kind + std::to_string(samples));
      const Image drawn = image(std::string(name) + kind);
      ASSERT_EQ(std::pair(drawn.width(), drawn.height()), std::pair(240, height));
      EXPECT_NE(lines.find(std::string(kind) + ".png 240x" + std::to_string(height) + "\n"), std::string::npos);
      EXPECT_EQ(drawn.ink(21, 26, 0, 22, grey), 0) << "titles line up behind the check mark's column";
      EXPECT_EQ(drawn.ink(10, 21, 0, 22, grey) > 20, samples > 0) << "the first one counts as the current one";
      if (height < 44) continue;
      EXPECT_EQ(drawn.ink(10, 21, 44, height, grey), 0) << "nothing else is checked";
      EXPECT_EQ(drawn.ink(216, 226, height - 22, height, grey) > 0, samples > 3) << "the symbol of the last row";
      EXPECT_EQ(drawn.ink(206, 215, height - 22, height, grey), 0) << "the gap before it";
      EXPECT_EQ(drawn.at(5, 33) == accent, highlit);
      for (const auto& [x, y] : {std::pair(4, 33), {120, 21}, {120, 44}, {5, 23}}) {
        EXPECT_NE(drawn.at(x, y), accent) << "outside of the second row's rounded rectangle: " << x << ", " << y;
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

TEST(CairoBitmaps, TellsTheMeasuresOfAFontInPointsWhateverTheScale) {
  const auto plain = CairoBitmaps().make(9, 9, 1);
  const auto scaled = CairoBitmaps().make(9, 9, 1.5);
  EXPECT_EQ(scaled->canvas().metrics({"Inter", 13}).ascender, plain->canvas().metrics({"Inter", 13}).ascender);
}

}  // namespace
}  // namespace tavelle
