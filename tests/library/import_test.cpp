#include <gtest/gtest.h>

#include "fakes/program_test.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;

struct Import : ProgramTest {
  std::string content(const std::string& path) {
    return platform.files.content(controller.library() / path).value_or("nothing");
  }
};

TEST_F(Import, LaysOutTheNewFolderByTheKindOfFile) {
  // The file; of the wallpaper the folder, the media file, the title, the element, and whether it has a still.
  using Case = std::tuple<std::string, std::string, std::string, std::string, std::string, bool>;
  const std::string video = "autoplay muted loop playsinline disablepictureinpicture></video>";
  for (const auto& [file, folder, media, title, element, still] : std::vector<Case>{
           {"Sunset.MOV", "Sunset 3", "video.mov", "Sunset", "<video src=\"video.mov\" " + video, true},
           {"Salt & Pepper <3.gif", "Salt & Pepper <3", "image.gif", "Salt &amp; Pepper &lt;3",
            "<img src=\"image.gif\" alt=\"\">", false},
           {"a.b.webm", "a.b", "video.webm", "a.b", "<video src=\"video.webm\" " + video, true},
           {"README", "README", "image.", "README", "<img src=\"image.\" alt=\"\">", false},
           {"any.P\" &#%?\\ ", "any", "image.p\" &#%?\\ ", "any", "<img src=\"image.p\" &#%?\\ \" alt=\"\">", false},
           {"\"\n\xE9.Png", "\"\n\\xE9", "image.png", "\"\n\\xE9", "<img src=\"image.png\" alt=\"\">", false}}) {
    for (const char* taken : {"Sunset", "Sunset 2"}) platform.addWallpaper(taken);
    platform.files.put("/in/" + file, "bytes");
    const auto added = controller.importWallpaper("/in/" + file);
    ASSERT_TRUE(added) << file;
    EXPECT_EQ(added->folder.path, controller.library() / folder);
    EXPECT_EQ(content(folder + "/" + media), "bytes");
    const std::string page = content(folder + "/index.html");
    EXPECT_NE(page.find("<title>" + title + "</title>"), std::string::npos) << page;
    EXPECT_TRUE(page.ends_with(element)) << page;
    EXPECT_EQ(content(folder + "/still.jpg"), still ? (added->folder.path / media).native() + " at 500 ms" : "nothing");
    EXPECT_EQ(platform.files.list(added->folder.path, Files::Hidden::include)->size(), still ? 3U : 2U);
  }
  platform.files.put("/in/page.HTML", "<p>");
  EXPECT_TRUE(controller.importWallpaper("/in/page.HTML"));
  EXPECT_EQ(content("page/index.html"), "<p>") << "a page is taken as it is";
  EXPECT_EQ(platform.files.list(controller.library() / "page", Files::Hidden::include)->size(), 1U);
}

TEST_F(Import, ShowsTheLastOfThoseThatCouldBeAdded) {
  for (const char* name : {"one.png", "two.png"}) platform.files.put(fs::path("/in") / name);
  platform.openPanels.chosen = {"/in/one.png", "/in/two.png", "/in/gone.png"};
  controller.addWallpaper();
  EXPECT_EQ(controller.current()->name(), "two");
  EXPECT_EQ(platform.log(), (Lines{"added one", "added two", "couldn't add gone.png: no such file", "showing two"}));
  ASSERT_EQ(platform.alerts.shown.size(), 1U);
  EXPECT_EQ(platform.alerts.shown[0].message, "Couldn't add gone.png");
  EXPECT_EQ(platform.alerts.shown[0].information, "no such file");
  EXPECT_EQ(controller.wallpapers().size(), 2U) << "what is left of the third is no wallpaper";
}

TEST_F(Import, LeavesNoWallpaperWhenItFails) {
  platform.files.put("/in/sea.mp4");
  platform.videoFrames.undecodable = "/home/Pictures/Wallpapers/sea/video.mp4";
  platform.files.full = {"/home/Pictures/Wallpapers/sea/index.html"};
  EXPECT_FALSE(controller.importWallpaper("/in/sea.mp4"));
  EXPECT_TRUE(platform.files.exists("/home/Pictures/Wallpapers/sea/video.mp4"));
  EXPECT_TRUE(controller.wallpapers().empty());
  platform.videoFrames.undecodable = "/home/Pictures/Wallpapers/sea 2/video.mp4";
  EXPECT_TRUE(controller.importWallpaper("/in/sea.mp4")) << "without a still it is one all the same";
  EXPECT_EQ(platform.log(), (Lines{"couldn't add sea.mp4: disk full", "no still frame for video.mp4", "added sea 2"}));
}

}  // namespace
}  // namespace tavelle
