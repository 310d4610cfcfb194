#include <gtest/gtest.h>

#include "fakes/fake_platform.h"
#include "model/controller.h"

namespace tavelle {
namespace {

using Lines = std::vector<std::string>;
namespace fs = std::filesystem;

struct Import : testing::Test {
  std::string content(const std::string& path) {
    return platform.files.content(controller.library() / path).value_or("nothing");
  }

  FakePlatform platform;
  Controller controller{platform};
};

TEST_F(Import, LaysOutTheNewFolderByTheKindOfFile) {
  struct Case {
    std::string file;
    std::string folder;
    std::string media;
    std::string title;
    std::string element;
    bool still = false;
  };
  const std::string video = "autoplay muted loop playsinline disablepictureinpicture></video>";
  for (const auto& each :
       std::vector<Case>{{"Sunset.MOV", "Sunset 3", "video.mov", "Sunset", "<video src=\"video.mov\" " + video, true},
                         {"Salt & Pepper <3.gif", "Salt & Pepper <3", "image.gif", "Salt &amp; Pepper &lt;3",
                          "<img src=\"image.gif\" alt=\"\">"},
                         {"a.b.webm", "a.b", "video.webm", "a.b", "<video src=\"video.webm\" " + video, true},
                         {"Ski.ÄÖ", "Ski", "image.äö", "Ski", "<img src=\"image.äö\" alt=\"\">"},
                         {"README", "README", "image.", "README", "<img src=\"image.\" alt=\"\">"},
                         {"wait....", "wait....", "image.", "wait....", "<img src=\"image.\" alt=\"\">"},
                         {"\"\n\xE9.Png", "\"\n\\xE9", "image.png", "\"\n\\xE9", "<img src=\"image.png\" alt=\"\">"}}) {
    for (const char* taken : {"Sunset", "Sunset 2"}) platform.addWallpaper(taken);
    platform.files.put("/in/" + each.file, "bytes");
    const auto added = controller.importWallpaper("/in/" + each.file);
    ASSERT_TRUE(added) << each.file;
    EXPECT_EQ(added->folder.path, controller.library() / each.folder);
    EXPECT_EQ(content(each.folder + "/" + each.media), "bytes");
    EXPECT_EQ(content(each.folder + "/index.html"),
              "<!doctype html>\n<meta charset=\"utf-8\">\n<title>" + each.title +
                  "</title>\n<style>html,body{margin:0;height:100%;background:#000;overflow:hidden}"
                  "video,img{width:100%;height:100%;object-fit:cover;display:block}</style>\n" +
                  each.element);
    EXPECT_EQ(content(each.folder + "/still.jpg"),
              each.still ? (added->folder.path / each.media).native() + " at 500 ms" : "nothing");
    EXPECT_EQ(platform.files.list(added->folder.path, Files::Hidden::include)->size(), each.still ? 3U : 2U);
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
  // One that can't be written is no news.
  platform.files.put("/in/lake.mp4");
  platform.files.full = {"/home/Pictures/Wallpapers/lake/still.jpg"};
  EXPECT_TRUE(controller.importWallpaper("/in/lake.mp4"));
  EXPECT_EQ(platform.log(),
            (Lines{"couldn't add sea.mp4: disk full", "no still frame for video.mp4", "added sea 2", "added lake"}));
  // Nothing of an extension may become part of the page, nor name another file than the copy.
  for (const char* name : {"x.png\" onload=\"alert(1)", "x.p&amp;", "x.png#", "x.png?", "x.%41", "x.a\\b", "x.p\nng",
                           "x.png ", "x.\xE9"}) {
    platform.files.put(fs::path("/in") / name);
    EXPECT_FALSE(controller.importWallpaper(fs::path("/in") / name)) << name;
  }
  EXPECT_FALSE(platform.files.exists("/home/Pictures/Wallpapers/x"));
}

}  // namespace
}  // namespace tavelle
