#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/file_types.h"

namespace tavelle {

/// What the user is asked for when files are to be chosen. Texts are UTF-8.
struct OpenPanel {
  std::string title;
  /// Shown where the panel has room for it.
  std::string message;
  /// The button that confirms the choice.
  std::string prompt;
  bool allowsMultipleSelection = false;
  /// What can be chosen; every file when there is none.
  std::vector<FileType> allowedTypes{};
};

/// The desktop's own dialog to choose files in. Main thread only.
class OpenPanels {
 public:
  virtual ~OpenPanels() = default;

  /// Brings the panel to the front and waits for the user: the chosen files in the panel's order, none when the user
  /// cancels or when there is no display. The main loop runs meanwhile. While one panel is open, asking for another
  /// only brings that one to the front and gives no file.
  virtual std::vector<std::filesystem::path> run(const OpenPanel& panel) = 0;
};

}  // namespace tavelle
