#pragma once

#include "platform/guide_window.h"

namespace tavelle {

/// Guide windows of GTK, which draw their own frame.
class GtkGuideWindows final : public GuideWindows {
 public:
  std::unique_ptr<GuideWindow> make(const Settings& settings, WebView& content, GuideWindowDelegate& delegate) override;
};

}  // namespace tavelle
