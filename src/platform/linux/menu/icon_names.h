#pragma once

namespace tavelle {

/// The program's icon in full colour, and the one for panels, which give it a colour of theirs; as names in an icon
/// theme.
constexpr auto iconName = "org.tavelle.Tavelle";
constexpr auto symbolicIconName = "org.tavelle.Tavelle-symbolic";

}  // namespace tavelle
