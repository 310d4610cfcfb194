#include <gtest/gtest.h>

#include <map>

#include "platform/linux/mime_file_types.h"

namespace tavelle {
namespace {

TEST(MimeFileTypes, KnowTheCommonExtensions) {
  const std::map<FileType, std::vector<const char*>> expected{
      {FileType::webPage, {"html", "htm", "xhtml", "HTM"}},
      {FileType::video,
       {"mp4", "m4v", "mov", "webm", "mkv", "avi", "mpg", "ogv", "wmv", "flv", "3gp", "mxf", "asf", "ts", "m2ts",
        "MP4"}},
      {FileType::image, {"gif", "png", "jpg", "jpeg", "webp", "avif", "svg", "heic", "bmp", "tiff", "JPG"}},
      {FileType::other, {"", "txt", "pdf", "mp3", "nonsense", "mp4 ", "\xFF"}}};
  for (const auto& [type, extensions] : expected) {
    for (const char* const extension : extensions) EXPECT_EQ(MimeFileTypes().ofExtension(extension), type) << extension;
  }
}

}  // namespace
}  // namespace tavelle
