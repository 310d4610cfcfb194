// What the running desktop's picture is, as the program's own backend sees it. With a screen and an image it sets that
// first. Prints for each screen its name and its picture's, separated by a tab, with "-" for none.

#include <iostream>
#include <string>

#include "platform/desktop_picture.h"
#include "platform/linux/modules.h"
#include "platform/screens.h"

int main(int count, char** arguments) {
  const auto desktop = tavelle::openDesktop();
  if (!desktop) {
    std::cerr << "failed: " << desktop.error().description << '\n';
    return 1;
  }
  auto& picture = desktop.value()->desktopPicture();
  const auto screens = desktop.value()->screens().list();
  for (const auto& screen : screens) {
    if (count != 3 || screen.name != arguments[1]) continue;
    if (const auto done = picture.set(arguments[2], screen); !done) {
      std::cerr << "failed: " << done.error().description << '\n';
      return 1;
    }
  }
  for (const auto& screen : screens) std::cout << screen.name << '\t' << picture.current(screen).value_or("-") << '\0';
  return 0;
}
