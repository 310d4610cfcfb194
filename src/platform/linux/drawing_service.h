#pragma once

#include <memory>

#include "base/result.h"

namespace tavelle {

class Bitmaps;

/// Loads what draws pictures; an error when it cannot be loaded. It lies in a library of its own, since loading the
/// drawing libraries costs a command-line task that draws nothing more than the task itself.
Result<std::unique_ptr<Bitmaps>> openDrawing();

/// What the library exports, under the name "tavelleOpenDrawing".
using OpenDrawing = std::unique_ptr<Bitmaps>();

}  // namespace tavelle
