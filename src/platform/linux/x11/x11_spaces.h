#pragma once

#include "platform/linux/x11/x_connection.h"
#include "platform/spaces.h"

namespace tavelle {

/// The window manager's desktops (EWMH 1.5, _NET_NUMBER_OF_DESKTOPS); their identifiers are their numbers, from 0.
class X11Spaces final : public Spaces {
 public:
  explicit X11Spaces(const XConnection& connection);

  std::vector<std::string> list() const override;
  Registration onChange(std::function<void()> changed) override;

 private:
  const XConnection& connection_;
  const xcb_atom_t count_;
};

}  // namespace tavelle
