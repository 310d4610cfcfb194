#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "base/geometry.h"
#include "platform/window_list.h"

namespace tavelle {

/// The windows in sight in sway's tree (sway-ipc(7), GET_TREE, JSON), full-screen ones first, then floating, then tiled
/// ones, each with its title bar and borders and with the tabs above it. Those of workspaces that are not shown, behind
/// others' tabs and on the scratchpad are left out, and so are those behind a full-screen one. Rectangles are in
/// logical pixels of the layout of outputs, y down. None when the text is no such tree.
std::optional<std::vector<WindowDescription>> windowsInSwayTree(std::string_view tree);

/// The rectangles of the workspaces that are shown (GET_WORKSPACES, JSON), in the same space: what panels leave of each
/// output, less the gaps round the workspace. Empty when the text is no such list.
std::vector<Rect> shownSwayWorkspaces(std::string_view workspaces);

/// What panels leave of `output`, with these workspaces in the same space: the whole output when none of them is on it.
/// Gaps are not told apart from panels, but they show the desktop and are the same on all four sides, while panels
/// hardly ever are on all: so what is missing on all sides counts as a gap.
Rect areaWithoutPanels(const Rect& output, const std::vector<Rect>& workspaces);

/// Whether this event of sway's (JSON) may change which windows are in sight: most are about titles.
bool mayMoveWindows(std::string_view event);

}  // namespace tavelle
