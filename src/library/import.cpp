#include <string>
#include <string_view>

#include "base/text.h"
#include "model/controller.h"
#include "platform/alerts.h"
#include "platform/file_types.h"
#include "platform/files.h"
#include "platform/open_panel.h"
#include "platform/text_order.h"
#include "platform/video_frames.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;

/// Late enough to be past a fade-in's first black frame, early enough for the shortest clip.
constexpr std::chrono::milliseconds stillTime{500};

/// A file that is to become a wallpaper. Texts are UTF-8.
struct Source {
  fs::path file;
  /// The file's name without its extension.
  std::string baseName;
  /// In lower case, without its full stop.
  std::string extension;
  FileType type;
};

Source describe(const fs::path& file, const FileTypes& types, const TextOrder& text) {
  const std::string dotted = file.extension().native();
  // A full stop at the end of a name begins no extension.
  if (dotted.size() < 2) return {file, escapedUtf8(file.filename().native()), "", types.ofExtension("")};
  // Escaped, since the web engine reads no folder whose name is not UTF-8.
  const std::string extension = text.lowercase(escapedUtf8(dotted.substr(1)));
  return {file, escapedUtf8(file.stem().native()), extension, types.ofExtension(extension)};
}

/// Where the first free name is, of "Sea", "Sea 2", "Sea 3" and so on.
fs::path freeFolder(const fs::path& library, const std::string& name, const Files& files) {
  fs::path folder = library / name;
  for (int n = 2; files.exists(folder); ++n) folder = library / (name + " " + std::to_string(n));
  return folder;
}

std::string escapedForPage(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

/// A page that fills the screen with one element.
std::string pageAround(const std::string& element, const std::string& title) {
  return "<!doctype html>\n<meta charset=\"utf-8\">\n<title>" + escapedForPage(title) +
         "</title>\n<style>html,body{margin:0;height:100%;background:#000;overflow:hidden}"
         "video,img{width:100%;height:100%;object-fit:cover;display:block}</style>\n" +
         element;
}

/// The media file's name stands in the element as it is.
struct Media {
  std::string name;
  std::string element;
};

Media mediaOf(const Source& source) {
  if (source.type == FileType::video) {
    const std::string name = "video." + source.extension;
    return {name, R"(<video src=")" + name + R"(" autoplay muted loop playsinline disablepictureinpicture></video>)"};
  }
  const std::string name = "image." + source.extension;
  return {name, R"(<img src=")" + name + R"(" alt="">)"};
}

/// Copies the media file into the folder and writes its page beside it. The page comes last: without it the folder is
/// no wallpaper.
Result<void> addMedia(const Source& source, const Media& media, const fs::path& folder, Files& files) {
  if (auto made = files.createFolders(folder); !made) return made;
  if (auto copied = files.copyFile(source.file, folder / media.name); !copied) return copied;
  return files.write(folder / "index.html", pageAround(media.element, source.baseName), Files::Readers::asUsual);
}

Result<void> addPage(const Source& source, const fs::path& folder, Files& files) {
  if (auto made = files.createFolders(folder); !made) return made;
  return files.copyFile(source.file, folder / "index.html");
}

}  // namespace

void Controller::addWallpaper() {
  const auto chosen = platform_.openPanels.run(
      {.title = "Add Wallpaper",
       .message = "Choose a video, GIF, image, or web page (.html). It will play behind your desktop icons.",
       .prompt = "Add",
       .allowsMultipleSelection = true,
       .allowedTypes = {FileType::video, FileType::image, FileType::webPage}});
  std::optional<Wallpaper> last;
  for (const fs::path& file : chosen) {
    if (auto added = importWallpaper(file)) last = std::move(added);
  }
  if (last) show(*last);
}

std::optional<Wallpaper> Controller::importWallpaper(const fs::path& from) {
  const Source source = describe(from, platform_.fileTypes, platform_.textOrder);
  const Wallpaper wallpaper{{freeFolder(library_, source.baseName, platform_.files)}};
  const Media media = mediaOf(source);
  const auto added = source.type == FileType::webPage ? addPage(source, wallpaper.folder.path, platform_.files)
                                                      : addMedia(source, media, wallpaper.folder.path, platform_.files);
  if (!added) {
    const std::string name = escapedUtf8(from.filename().native());
    log("couldn't add " + name + ": " + added.error().description);
    platform_.alerts.run({.message = "Couldn't add " + name, .information = added.error().description});
    return std::nullopt;
  }
  if (source.type == FileType::video) {
    makeStill(wallpaper.folder.path / media.name, wallpaper.folder.path / "still.jpg");
  }
  log("added " + wallpaper.name());
  return wallpaper;
}

void Controller::makeStill(const std::filesystem::path& from, const std::filesystem::path& to) {
  const auto jpeg = platform_.videoFrames.jpegOfFrame(from, stillTime);
  if (!jpeg) {
    log("no still frame for " + escapedUtf8(from.filename().native()));
    return;
  }
  // A wallpaper without a still works; whoever looks for one later finds that it is not there.
  static_cast<void>(platform_.files.write(to, *jpeg, Files::Readers::asUsual));
}

}  // namespace tavelle
