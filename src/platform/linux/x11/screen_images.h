#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/geometry.h"
#include "platform/linux/x11/x_connection.h"

namespace tavelle {

/// Reads what windows and pixmaps hold, through memory that is shared with the server. Main thread only.
class ScreenImages {
 public:
  /// So many pixels can be read at once.
  static constexpr std::size_t mostPixels = std::size_t{1} << 20;

  /// Room for two images at a time.
  explicit ScreenImages(const XConnection& connection);
  ScreenImages(const ScreenImages&) = delete;
  ScreenImages& operator=(const ScreenImages&) = delete;
  ~ScreenImages();

  /// What an area of a drawable of 32 bits a pixel holds, row by row, in the room of that number, 0 or 1; good until
  /// the next read into it. None when the server refuses: it shares no memory with this process, the area does not lie
  /// within the drawable, or that has gone. Blocks.
  std::optional<std::span<const std::uint32_t>> read(std::size_t room, xcb_drawable_t from, const Rect& area);
  /// The same of an area that may reach beyond the drawable, which is repeated to fill it, as a root window is filled
  /// with a small picture. Blocks.
  std::optional<std::span<const std::uint32_t>> readTiled(std::size_t room, xcb_drawable_t from, const Rect& area);

 private:
  const XConnection& connection_;
  std::uint32_t segment_ = 0;
  std::uint32_t* pixels_ = nullptr;
  std::vector<std::uint32_t> tiled_;
};

}  // namespace tavelle
