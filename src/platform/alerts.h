#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tavelle {

/// A question or a message that stops everything else until the user has answered. Texts are UTF-8.
struct Alert {
  enum class Style { message, warning };

  std::string message;
  std::string information;
  Style style = Style::message;
  /// The first answers the Return key. With none there is one that says OK.
  std::vector<std::string> buttons{};
  /// An image file to show in the place of the usual icon, its longer side 64 pixels. One that can't be loaded is
  /// passed over.
  std::optional<std::filesystem::path> icon{};
};

/// Main thread only.
class Alerts {
 public:
  virtual ~Alerts() = default;

  /// Brings the alert to the front and waits for the answer: the button's index. None when it was closed in another
  /// way, or when there is no display to show it on. The main loop runs meanwhile.
  virtual std::optional<std::size_t> run(const Alert& alert) = 0;
};

}  // namespace tavelle
