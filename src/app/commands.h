#pragma once

namespace tavelle {

class Controller;
struct Platform;

/// Lets the controller's operations be asked for from outside the process, for desktop entries and scripts.
/// `controller` must live until the application's event loop has ended; `platform` is not kept.
void offerCommands(const Platform& platform, Controller& controller);

}  // namespace tavelle
