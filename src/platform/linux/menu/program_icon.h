#pragma once

#include <glib.h>

namespace tavelle {

/// The program's icon in full colour, and the one for panels, which give it a colour of theirs; as names in an icon
/// theme.
constexpr auto iconName = "org.tavelle.Tavelle";
constexpr auto symbolicIconName = "org.tavelle.Tavelle-symbolic";

/// The program's icon as pixels for panels that cannot find it by its name: in full colour, since nobody knows on what
/// it will lie. A list of sizes from 16 to 48 pixels, each width, height and rows of pixels from the top, four bytes
/// each: alpha, red, green, blue, not premultiplied; `a(iiay)`, floating. Empty where the icon cannot be drawn. Main
/// thread only.
GVariant* iconPixmaps();

}  // namespace tavelle
