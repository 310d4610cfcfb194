#include "platform/linux/web/webkit_web_views.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "platform/linux/standard_paths.h"
#include "platform/linux/web/webkit_web_view.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;

using FeatureListPtr = std::unique_ptr<WebKitFeatureList, FreeWith<webkit_feature_list_unref>>;

/// Whether the kernel offers a GPU to draw with.
bool hasGpu() {
  std::error_code code;
  return std::any_of(fs::directory_iterator("/dev/dri", code), fs::directory_iterator(),
                     [](const auto& device) { return device.path().filename().native().starts_with("renderD"); });
}

/// What would let a page show up outside its own window.
void switchOffFeatures(WebKitSettings* settings) {
  const FeatureListPtr features(webkit_settings_get_all_features());
  for (gsize i = 0; i < webkit_feature_list_get_length(features.get()); ++i) {
    WebKitFeature* const feature = webkit_feature_list_get(features.get(), i);
    const std::string_view name = webkit_feature_get_identifier(feature);
    if (name == "MediaSession" || name == "ScreenWakeLockAPI") {
      webkit_settings_set_feature_enabled(settings, feature, FALSE);
    }
  }
}

GObjectPtr<WebKitSettings> makeSettings() {
  auto settings = adopt(webkit_settings_new());
  // Without a GPU the accelerated path draws with the CPU all the same, at more than twice the cost.
  const auto acceleration =
      hasGpu() ? WEBKIT_HARDWARE_ACCELERATION_POLICY_ALWAYS : WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER;
  g_object_set(settings.get(),                                //
               "hardware-acceleration-policy", acceleration,  //
               // Within what the content filter lets through, a page may also read its files by script; and an
               // uncaught error carries its own message.
               "allow-file-access-from-file-urls", TRUE,          //
               "media-playback-requires-user-gesture", FALSE,     //
               "enable-fullscreen", FALSE,                        //
               "enable-media-stream", FALSE,                      //
               "enable-page-cache", FALSE,                        //
               "enable-back-forward-navigation-gestures", FALSE,  //
               nullptr);
  switchOffFeatures(settings.get());
  return settings;
}

GObjectPtr<WebKitWebContext> makeContext() {
  const auto folderIn = [](const char* base) { return (fs::path(base) / "tavelle/pages").native(); };
  const auto dataManager =
      adopt(webkit_website_data_manager_new("base-data-directory", folderIn(g_get_user_data_dir()).c_str(),  //
                                            "base-cache-directory", folderIn(g_get_user_cache_dir()).c_str(), nullptr));
  auto context = adopt(webkit_web_context_new_with_website_data_manager(dataManager.get()));
  webkit_web_context_set_web_extensions_directory(context.get(), (privateLibraryFolder() / "web-process").c_str());
  g_signal_connect(context.get(), "download-started",
                   G_CALLBACK(+[](WebKitWebContext*, WebKitDownload* download) { webkit_download_cancel(download); }),
                   nullptr);
  return context;
}

}  // namespace

WebKitWebViews::WebKitWebViews() : context_(makeContext()), settings_(makeSettings()) {}

std::unique_ptr<WebView> WebKitWebViews::make(const Settings& settings, WebViewDelegate& delegate) {
  return std::make_unique<WebKitView>(context_.get(), settings_.get(), filters_, settings, delegate);
}

}  // namespace tavelle
