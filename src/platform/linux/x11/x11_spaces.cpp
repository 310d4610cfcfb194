#include "platform/linux/x11/x11_spaces.h"

#include <algorithm>
#include <array>
#include <memory>

#include "platform/linux/x11/property_watch.h"

namespace tavelle {
namespace {

constexpr std::array<std::string_view, 1> countName{"_NET_NUMBER_OF_DESKTOPS"};

/// More than anybody has; any client could write any number.
constexpr std::uint32_t mostSpaces = 256;

}  // namespace

X11Spaces::X11Spaces(const XConnection& connection)
    : connection_(connection), count_(internAtoms(connection, countName).front()) {}

std::vector<std::string> X11Spaces::list() const {
  const auto count = PropertyRequest(connection_, connection_.root(), count_).readFirst().value_or(0);
  std::vector<std::string> spaces;
  for (std::uint32_t i = 0; i < std::min(count, mostSpaces); ++i) spaces.push_back(std::to_string(i));
  return spaces;
}

Registration X11Spaces::onChange(std::function<void()> changed) {
  return Registration(
      [watch = std::make_shared<PropertyWatch>(connection_, countName, PropertyWatch::Names(), std::move(changed))] {});
}

}  // namespace tavelle
