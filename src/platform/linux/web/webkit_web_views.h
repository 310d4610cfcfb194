#pragma once

#include <webkit2/webkit2.h>

#include "platform/linux/handles.h"
#include "platform/linux/web/page_filters.h"
#include "platform/web_view.h"

namespace tavelle {

/// WebKitGTK's web views. Each has a page process of its own, so that a page that crashes takes no other one along.
class WebKitWebViews final : public WebViews {
 public:
  WebKitWebViews();

  std::unique_ptr<WebView> make(const Settings& settings, WebViewDelegate& delegate) override;

 private:
  PageFilters filters_;
  GObjectPtr<WebKitWebContext> context_;
  GObjectPtr<WebKitSettings> settings_;
};

}  // namespace tavelle
