#include "platform/linux/web/webkit_web_view.h"

#include <cmath>
#include <system_error>
#include <utility>

#include "base/file_uri.h"
#include "base/text.h"
#include "platform/linux/web/page_filters.h"
#include "platform/linux/web/script_values.h"

namespace tavelle {
namespace {

using UserScriptPtr = std::unique_ptr<WebKitUserScript, FreeWith<webkit_user_script_unref>>;

/// A handler for signals whose default would show something to the user: answers "handled" and does nothing.
gboolean refuse() { return TRUE; }

GObjectPtr<WebKitWebView> makeView(WebKitWebContext* context, WebKitSettings* settings,
                                   WebKitUserContentManager* content, WebViews::Kind kind) {
  const auto policies = adopt(webkit_website_policies_new_with_policies("autoplay", WEBKIT_AUTOPLAY_ALLOW, nullptr));
  auto view = sink(WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW,             //
                                                "web-context", context,           //
                                                "settings", settings,             //
                                                "user-content-manager", content,  //
                                                "website-policies", policies.get(), nullptr)));
  // Opaque in any case: on a transparent one the engine draws only what changes after the first time (WebKitGTK 2.54).
  GdkRGBA background{0, 0, 0, 1};
  if (kind == WebViews::Kind::document) {
    gtk_style_context_lookup_color(gtk_widget_get_style_context(GTK_WIDGET(view.get())), "theme_bg_color", &background);
    background.alpha = 1;
  }
  webkit_web_view_set_background_color(view.get(), &background);
  return view;
}

}  // namespace

struct WebKitView::PendingAnswer {
  std::weak_ptr<WebKitView*> view;
  PageWatch::Message kind;
  Answer answer;
};

WebKitView::WebKitView(WebKitWebContext* context, WebKitSettings* engineSettings, PageFilters& filters,
                       const WebViews::Settings& settings, WebViewDelegate& delegate)
    : delegate_(delegate),
      filters_(filters),
      content_(adopt(webkit_user_content_manager_new())),
      view_(makeView(context, engineSettings, content_.get(), settings.kind)),
      watch_([this] { evaluate("0", [](const auto&) {}); },
             [this] { webkit_web_view_terminate_web_process(view_.get()); }) {
  gtk_widget_set_size_request(widget(), static_cast<int>(settings.width), static_cast<int>(settings.height));
  followTextScale();
  connectSignals(settings.messageHandler);
  refuseWhatLeavesThePage();
  if (settings.kind == WebViews::Kind::document) stayOnPage();
  setUserScripts(settings.userScripts);
}

WebKitView::~WebKitView() {
  self_.reset();
  if (preparation_) g_cancellable_cancel(preparation_.get());
  g_signal_handlers_disconnect_by_data(view_.get(), this);
  g_signal_handlers_disconnect_by_data(content_.get(), this);
  // A page process that is still starting would otherwise leave its connection behind.
  webkit_web_view_terminate_web_process(view_.get());
  // Others may hold the widget, its container among them; it has to go all the same, and its page process with it.
  gtk_widget_destroy(widget());
}

/// The engine makes all of a page larger by as much as the desktop makes its text, and takes the rest of the page out
/// of sight with it; what differs by no more than a fiftieth it takes for unscaled (WebKitGTK 2.50, by trial). A page's
/// pixels are the screen's.
void WebKitView::followTextScale() {
  const auto undo = +[](GtkSettings*, GParamSpec*, WebKitWebView* view) {
    constexpr double unscaled = 96;
    const double scale = gdk_screen_get_resolution(gtk_widget_get_screen(GTK_WIDGET(view))) / unscaled;
    webkit_web_view_set_zoom_level(view, scale > 0 && std::abs(scale - 1) > 0.02 ? 1 / scale : 1);
  };
  auto* const toolkit = gtk_widget_get_settings(widget());
  g_signal_connect_object(toolkit, "notify::gtk-xft-dpi", G_CALLBACK(undo), view_.get(), GConnectFlags{});
  undo(toolkit, nullptr, view_.get());
}

void WebKitView::connectSignals(const std::string& messageHandler) {
  const auto connect = [this](gpointer object, const std::string& signal, GCallback callback) {
    g_signal_connect(object, signal.c_str(), callback, this);
  };
  connect(view_.get(), "load-changed", G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, gpointer self) {
            static_cast<WebKitView*>(self)->loadChanged(event);
          }));
  connect(view_.get(), "load-failed",
          G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent, char*, GError* error, gpointer self) -> gboolean {
            static_cast<WebKitView*>(self)->loadFailed(error);
            // Otherwise the engine shows an error page of its own, black on white.
            return TRUE;
          }));
  connect(view_.get(), "web-process-terminated",
          G_CALLBACK(+[](WebKitWebView*, WebKitWebProcessTerminationReason, gpointer self) {
            static_cast<WebKitView*>(self)->processEnded();
          }));
  connect(view_.get(), "user-message-received",
          G_CALLBACK(+[](WebKitWebView*, WebKitUserMessage* message, gpointer self) -> gboolean {
            static_cast<WebKitView*>(self)->userMessageReceived(message);
            return TRUE;
          }));
  webkit_user_content_manager_register_script_message_handler(content_.get(), messageHandler.c_str());
  connect(content_.get(), "script-message-received::" + messageHandler,
          G_CALLBACK(+[](WebKitUserContentManager*, WebKitJavascriptResult* message, gpointer self) {
            static_cast<WebKitView*>(self)->messageReceived(message);
          }));
}

void WebKitView::refuseWhatLeavesThePage() {
  for (const char* signal : {"authenticate", "context-menu", "print", "run-color-chooser", "run-file-chooser",
                             "show-notification", "show-option-menu"}) {
    g_signal_connect(view_.get(), signal, G_CALLBACK(refuse), nullptr);
  }
  g_signal_connect(view_.get(), "script-dialog",
                   G_CALLBACK(+[](WebKitWebView*, WebKitScriptDialog* dialog) -> gboolean {
                     // A page may not hold up the load of the next one.
                     if (webkit_script_dialog_get_dialog_type(dialog) == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM) {
                       webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
                     }
                     return TRUE;
                   }),
                   nullptr);
  g_signal_connect(view_.get(), "permission-request",
                   G_CALLBACK(+[](WebKitWebView*, WebKitPermissionRequest* request) -> gboolean {
                     webkit_permission_request_deny(request);
                     return TRUE;
                   }),
                   nullptr);
}

void WebKitView::stayOnPage() {
  const auto decide = [](WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                         gpointer self) -> gboolean {
    if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) return FALSE;
    auto* const action =
        webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    const std::string address = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
    if (address.substr(0, address.find('#')) == fileUri(static_cast<WebKitView*>(self)->page_)) return FALSE;
    webkit_policy_decision_ignore(decision);
    const bool isFollowed = webkit_navigation_action_get_navigation_type(action) == WEBKIT_NAVIGATION_TYPE_LINK_CLICKED;
    if (isFollowed && address.starts_with("http")) {
      g_app_info_launch_default_for_uri_async(address.c_str(), nullptr, nullptr, nullptr, nullptr);
    }
    return TRUE;
  };
  g_signal_connect(view_.get(), "decide-policy", G_CALLBACK(+decide), this);
}

void WebKitView::loadFile(const std::filesystem::path& page, const std::filesystem::path& folder) {
  page_ = page;
  folder_ = folder;
  if (preparation_) g_cancellable_cancel(preparation_.get());
  preparation_ = adopt(g_cancellable_new());
  webkit_web_view_stop_loading(view_.get());
  filters_.make(folder, preparation_.get(),
                [this](const Result<WebKitUserContentFilter*>& filter) { loadIsolated(filter); });
}

void WebKitView::loadIsolated(const Result<WebKitUserContentFilter*>& filter) {
  preparation_.reset();
  if (!filter) return fail(filter.error());
  // The engine would show what is in a folder, and wait for what comes through a FIFO.
  std::error_code ignored;
  const auto type = std::filesystem::status(page_, ignored).type();
  using enum std::filesystem::file_type;
  if (type == directory) return fail({escapedUtf8(page_.native()) + ": is a folder"});
  if (type != regular && type != not_found) return fail({escapedUtf8(page_.native()) + ": not a file"});
  webkit_user_content_manager_remove_all_filters(content_.get());
  webkit_user_content_manager_add_filter(content_.get(), *filter);
  isBlank_ = false;
  hasPage_ = false;
  webkit_web_view_load_uri(view_.get(), fileUri(page_).c_str());
}

void WebKitView::fail(const Error& error) {
  isBlank_ = true;
  webkit_web_view_load_uri(view_.get(), "about:blank");
  delegate_.webViewDidFail(*this, error);
}

void WebKitView::reload() {
  if (!page_.empty()) loadFile(page_, folder_);
}

void WebKitView::evaluate(std::string_view script, Answer answer) {
  const auto kind = answer ? PageWatch::Message::question : PageWatch::Message::command;
  watch_.sent(kind);
  const auto finish = [](GObject* view, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<PendingAnswer> pending(static_cast<PendingAnswer*>(data));
    ErrorSlot error;
    const auto reply = adopt(webkit_web_view_send_message_to_page_finish(WEBKIT_WEB_VIEW(view), result, error.out()));
    const auto self = pending->view.lock();
    if (!self) return;
    (*self)->watch_.answered(pending->kind);
    if (!pending->answer) return;
    pending->answer(reply ? evaluationAnswer(webkit_user_message_get_parameters(reply.get()))
                          : Result<ScriptValue>(Error{escapedUtf8(error.message())}));
  };
  WebKitUserMessage* const message =
      webkit_user_message_new("evaluate", g_variant_new_string(std::string(script).c_str()));
  auto pending = std::make_unique<PendingAnswer>(PendingAnswer{self_, kind, std::move(answer)});
  webkit_web_view_send_message_to_page(view_.get(), message, nullptr, finish, pending.release());
}

void WebKitView::setUserScripts(const std::vector<std::string>& scripts) {
  webkit_user_content_manager_remove_all_scripts(content_.get());
  for (const std::string& source : scripts) {
    const UserScriptPtr script(webkit_user_script_new(source.c_str(), WEBKIT_USER_CONTENT_INJECT_TOP_FRAME,
                                                      WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, nullptr, nullptr));
    webkit_user_content_manager_add_script(content_.get(), script.get());
  }
}

void WebKitView::loadChanged(WebKitLoadEvent event) {
  if (event == WEBKIT_LOAD_STARTED) loadFailed_ = false;
  if (event == WEBKIT_LOAD_COMMITTED) hasPage_ = !isBlank_;
  if (event == WEBKIT_LOAD_FINISHED && !loadFailed_ && !preparation_ && !isBlank_) delegate_.webViewDidFinish(*this);
}

void WebKitView::loadFailed(const GError* error) {
  loadFailed_ = true;
  if (preparation_ || isBlank_ || g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED)) return;
  // A page that was kept from leaving stays; later engines tell of it (WebKitGTK 2.54).
  if (hasPage_ && error->domain == WEBKIT_POLICY_ERROR) return;
  fail(Error{escapedUtf8(error->message)});
}

void WebKitView::processEnded() {
  watch_.processEnded();
  delegate_.webViewProcessDidTerminate(*this);
}

void WebKitView::userMessageReceived(WebKitUserMessage* message) {
  GVariant* const process = webkit_user_message_get_parameters(message);
  if (process && g_variant_is_of_type(process, G_VARIANT_TYPE_INT32))
    watch_.processStarted(g_variant_get_int32(process));
}

void WebKitView::messageReceived(WebKitJavascriptResult* message) {
  delegate_.webViewDidReceiveMessage(*this, scriptValue(webkit_javascript_result_get_js_value(message)));
}

}  // namespace tavelle
