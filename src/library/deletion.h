#pragma once

#include <iosfwd>
#include <string>

namespace tavelle {

class Controller;
class TextOrder;

/// Moves the wallpaper of this name to the trash, letter case included, and reports on the stream. Returns the exit
/// status: 1 when there is no such wallpaper, else 0, whether or not it could be moved.
int deleteNamed(Controller& controller, const std::string& name, const TextOrder& order, std::ostream& out);

}  // namespace tavelle
