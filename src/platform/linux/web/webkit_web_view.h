#pragma once

#include <webkit2/webkit2.h>

#include <filesystem>
#include <memory>

#include "platform/linux/handles.h"
#include "platform/linux/toolkit/web_widget.h"
#include "platform/linux/web/page_watch.h"

namespace tavelle {

class PageFilters;

/// One WebKitGTK web view.
class WebKitView final : public WebWidget {
 public:
  WebKitView(WebKitWebContext* context, WebKitSettings* engineSettings, PageFilters& filters,
             const WebViews::Settings& settings, WebViewDelegate& delegate);
  WebKitView(const WebKitView&) = delete;
  WebKitView& operator=(const WebKitView&) = delete;
  ~WebKitView() override;

  void loadFile(const std::filesystem::path& page, const std::filesystem::path& folder) override;
  void reload() override;
  void evaluate(std::string_view script, Answer answer) override;
  void setUserScripts(const std::vector<std::string>& scripts) override;

  GtkWidget* widget() const override { return GTK_WIDGET(view_.get()); }

 private:
  struct PendingAnswer;
  void followTextScale();
  void connectSignals(const std::string& messageHandler);
  void refuseWhatLeavesThePage();
  void stayOnPage();
  void loadIsolated(const Result<WebKitUserContentFilter*>& filter);
  /// The page before would stay, under the name of the one that can't be loaded.
  void fail(const Error& error);
  void loadChanged(WebKitLoadEvent event);
  void loadFailed(const GError* error);
  void processEnded();
  void userMessageReceived(WebKitUserMessage* message);
  void messageReceived(WebKitJavascriptResult* message);

  WebViewDelegate& delegate_;
  PageFilters& filters_;
  GObjectPtr<WebKitUserContentManager> content_;
  GObjectPtr<WebKitWebView> view_;
  std::filesystem::path page_;
  std::filesystem::path folder_;
  /// A load that fails finishes, too; then it has been reported already.
  bool loadFailed_ = false;
  /// Whether nothing is shown in the place of a page that could not be loaded.
  bool isBlank_ = false;
  /// Whether the page that is to be shown has come so far that it is.
  bool hasPage_ = false;
  /// Cancels the preparation of the next load; while there is one, what the page before does is of no interest.
  GObjectPtr<GCancellable> preparation_;
  /// Dies with the view, so that answers that come later know.
  std::shared_ptr<WebKitView*> self_ = std::make_shared<WebKitView*>(this);
  PageWatch watch_;
};

}  // namespace tavelle
