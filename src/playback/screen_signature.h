#pragma once

#include <string>
#include <vector>

namespace tavelle {

struct Screen;

/// Two lists of screens give the same text exactly when they are the same in number, order and frames.
std::string screenSignature(const std::vector<Screen>& screens);

}  // namespace tavelle
