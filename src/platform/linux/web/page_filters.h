#pragma once

#include <webkit2/webkit2.h>

#include <filesystem>
#include <functional>

#include "base/result.h"
#include "platform/linux/handles.h"

namespace tavelle {

/// Makes the content filters that keep pages in their folders. The engine compiles them by way of files, for which this
/// keeps a temporary folder while it lives.
class PageFilters {
 public:
  using Done = std::function<void(const Result<WebKitUserContentFilter*>&)>;

  PageFilters();
  PageFilters(const PageFilters&) = delete;
  PageFilters& operator=(const PageFilters&) = delete;
  ~PageFilters();

  /// Hands on a filter for `folder` as it is now, or why there is none, on the main loop and never inside this call;
  /// never when `cancellable` was cancelled before.
  void make(const std::filesystem::path& folder, GCancellable* cancellable, Done done);

 private:
  std::filesystem::path folder_;
  GObjectPtr<WebKitUserContentFilterStore> store_;
  int made_ = 0;
};

}  // namespace tavelle
