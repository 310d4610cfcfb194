#include "platform/linux/x11/screen_images.h"

#include <sys/mman.h>
#include <unistd.h>
#include <xcb/shm.h>

#include "platform/linux/file_operations.h"

namespace tavelle {
namespace {

constexpr std::size_t rooms = 2;
constexpr std::size_t sharedBytes = rooms * ScreenImages::mostPixels * sizeof(std::uint32_t);

using ImageRequest = XRequest<xcb_shm_get_image_reply_t, xcb_shm_get_image_cookie_t, xcb_shm_get_image_reply>;

}  // namespace

ScreenImages::ScreenImages(const XConnection& connection) : connection_(connection) {
  xcb_connection_t* const server = connection_.get();
  if (!xcb_get_extension_data(server, &xcb_shm_id)->present) return;
  const FileDescriptor memory(memfd_create("tavelle-screen", MFD_CLOEXEC));
  if (!memory || ftruncate(memory.get(), sharedBytes) != 0) return;
  void* const mapped = mmap(nullptr, sharedBytes, PROT_READ | PROT_WRITE, MAP_SHARED, memory.get(), 0);
  if (mapped == MAP_FAILED) return;
  pixels_ = static_cast<std::uint32_t*>(mapped);
  segment_ = xcb_generate_id(server);
  // The call closes what it is given.
  xcb_shm_attach_fd(server, segment_, dup(memory.get()), 0);
}

ScreenImages::~ScreenImages() {
  if (!pixels_) return;
  xcb_shm_detach(connection_.get(), segment_);
  xcb_flush(connection_.get());
  munmap(pixels_, sharedBytes);
}

std::optional<std::span<const std::uint32_t>> ScreenImages::read(std::size_t room, xcb_drawable_t from,
                                                                 const Rect& area) {
  const auto pixels = static_cast<std::size_t>(area.width * area.height);
  if (!pixels_ || pixels > mostPixels) return std::nullopt;
  constexpr std::uint32_t allPlanes = ~0U;
  const std::size_t start = room * mostPixels;
  const auto reply =
      ImageRequest(connection_,
                   xcb_shm_get_image(connection_.get(), from, static_cast<std::int16_t>(area.x),
                                     static_cast<std::int16_t>(area.y), static_cast<std::uint16_t>(area.width),
                                     static_cast<std::uint16_t>(area.height), allPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP,
                                     segment_, static_cast<std::uint32_t>(start * sizeof(std::uint32_t))))
          .read();
  if (!reply || reply->size < pixels * sizeof(std::uint32_t)) return std::nullopt;
  return std::span<const std::uint32_t>(pixels_ + start, pixels);
}

std::optional<std::span<const std::uint32_t>> ScreenImages::readTiled(std::size_t room, xcb_drawable_t from,
                                                                      const Rect& area) {
  const auto size = GeometryRequest(connection_, xcb_get_geometry(connection_.get(), from)).read();
  if (!size) return std::nullopt;
  if (area.maxX() <= size->width && area.maxY() <= size->height) return read(room, from, area);
  const auto tile = read(room, from, {0, 0, static_cast<double>(size->width), static_cast<double>(size->height)});
  if (!tile) return std::nullopt;
  const auto left = static_cast<std::size_t>(area.x);
  const auto right = static_cast<std::size_t>(area.maxX());
  tiled_.clear();
  for (auto y = static_cast<std::size_t>(area.y); y < static_cast<std::size_t>(area.maxY()); ++y) {
    const auto row = tile->subspan(y % size->height * size->width, size->width);
    for (std::size_t x = left; x < right; ++x) tiled_.push_back(row[x % size->width]);
  }
  return tiled_;
}

}  // namespace tavelle
