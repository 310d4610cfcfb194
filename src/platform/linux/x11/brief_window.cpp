#include "platform/linux/x11/brief_window.h"

#include <array>

namespace tavelle {
namespace {

/// Long enough for a compositor that paints a few times a second.
constexpr std::chrono::milliseconds moment{500};

enum AtomIndex : std::size_t { windowType, typeSplash, wmState, stateBelow, skipTaskbar, skipPager };
constexpr std::array<std::string_view, 6> atomNames{
    "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_SPLASH", "_NET_WM_STATE",
    "_NET_WM_STATE_BELOW", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"};

/// WM_HINTS of a window that never takes the focus (ICCCM 2.0, section 4.1.2.4): the flag that says that the next field
/// counts, that field, and seven more.
constexpr std::array<std::uint32_t, 9> withoutInput{1};

}  // namespace

BriefWindow::BriefWindow(const XConnection& connection) : connection_(connection) {}

BriefWindow::~BriefWindow() { close(); }

void BriefWindow::show() {
  if (window_ != XCB_WINDOW_NONE) return;
  xcb_connection_t* const x = connection_.get();
  const auto atoms = internAtoms(connection_, atomNames);
  const std::array<xcb_atom_t, 3> states{atoms[stateBelow], atoms[skipTaskbar], atoms[skipPager]};
  window_ = xcb_generate_id(x);
  xcb_create_window(x, XCB_COPY_FROM_PARENT, window_, connection_.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                    XCB_COPY_FROM_PARENT, 0, nullptr);
  xcb_change_property(x, XCB_PROP_MODE_REPLACE, window_, atoms[windowType], XCB_ATOM_ATOM, 32, 1, &atoms[typeSplash]);
  xcb_change_property(x, XCB_PROP_MODE_REPLACE, window_, atoms[wmState], XCB_ATOM_ATOM, 32, states.size(),
                      states.data());
  xcb_change_property(x, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32, withoutInput.size(),
                      withoutInput.data());
  xcb_map_window(x, window_);
  xcb_flush(x);
  closing_ = loop_.after(moment, [this] { close(); });
}

void BriefWindow::close() {
  if (window_ == XCB_WINDOW_NONE) return;
  xcb_destroy_window(connection_.get(), window_);
  xcb_flush(connection_.get());
  window_ = XCB_WINDOW_NONE;
}

}  // namespace tavelle
