#pragma once

namespace tavelle {

class Application;
class Controller;

/// Lets the controller's operations be asked for from outside the process, for desktop entries and scripts.
/// `controller` must live until the application's event loop has ended.
void offerCommands(Application& application, Controller& controller);

}  // namespace tavelle
