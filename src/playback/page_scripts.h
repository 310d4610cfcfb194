#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/web_view.h"
#include "playback/frame_settings.h"

namespace tavelle {

/// Sends the page's uncaught errors and its console errors to the message handler "log".
extern const std::string_view errorJS;

/// A function of the page's window, a frame rate and a resolution scale that paces the page's animation frames and
/// makes `window.tavelle`.
extern const std::string_view framesJS;

/// Pause or play every video of the page, and whatever the page moves itself.
extern const std::string_view pauseJS;
extern const std::string_view playJS;

/// Answers a JSON text with the page's title and its size: width, height, device pixel ratio.
extern const std::string_view probeJS;

/// Answers [draws so far, the page's clock in ms, width and height of its first canvas], or 0 when the page's animation
/// frames are not paced.
extern const std::string_view samplingJS;

/// Puts `settings` in force in a loaded page.
std::string applyScript(const FrameSettings& settings);

/// What runs in every page before its own scripts, in this order, with `settings` in force from the start.
std::vector<std::string> pageScripts(const FrameSettings& settings);

/// The value as text for the event log: a text as it stands, numbers as the page writes them, "nil" for none.
std::string scriptText(const ScriptValue& value);

/// The numbers of an array that holds nothing else; none when it is no such array.
std::optional<std::vector<double>> scriptNumbers(const ScriptValue& value);

}  // namespace tavelle
