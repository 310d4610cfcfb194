#include "platform/linux/web/page_filters.h"

#include <memory>
#include <string>
#include <system_error>
#include <utility>

#include "base/text.h"
#include "platform/linux/web/page_isolation.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;

using FilterPtr = std::unique_ptr<WebKitUserContentFilter, FreeWith<webkit_user_content_filter_unref>>;

/// One filter under way.
struct Request {
  GObjectPtr<GCancellable> cancellable;
  PageFilters::Done done;
  std::string identifier;
  std::string trouble;

  void finish(const Result<WebKitUserContentFilter*>& result) const {
    if (!g_cancellable_is_cancelled(cancellable.get())) done(result);
  }
};

Error isolationError(std::string_view reason) { return {"couldn't isolate the page: " + escapedUtf8(reason)}; }

gboolean fail(gpointer data) {
  const auto* const request = static_cast<Request*>(data);
  request->finish(isolationError(request->trouble));
  return G_SOURCE_REMOVE;
}

void compiled(GObject* object, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Request> request(static_cast<Request*>(data));
  auto* const store = WEBKIT_USER_CONTENT_FILTER_STORE(object);
  ErrorSlot error;
  const FilterPtr filter(webkit_user_content_filter_store_save_finish(store, result, error.out()));
  // The filter stays valid without its file, whether or not that can be removed.
  const auto removed = [](GObject*, GAsyncResult*, gpointer) {};
  webkit_user_content_filter_store_remove(store, request->identifier.c_str(), nullptr, removed, nullptr);
  request->finish(filter ? Result<WebKitUserContentFilter*>(filter.get()) : isolationError(error.message()));
}

/// Where no folder can be made, each compilation fails and says so.
fs::path temporaryFolder() {
  const GCharPtr made(g_dir_make_tmp("tavelle-XXXXXX", nullptr));
  return made ? made.get() : "/nonexistent";
}

}  // namespace

PageFilters::PageFilters()
    : folder_(temporaryFolder()), store_(adopt(webkit_user_content_filter_store_new(folder_.c_str()))) {}

PageFilters::~PageFilters() {
  store_.reset();
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

void PageFilters::make(const fs::path& folder, GCancellable* cancellable, Done done) {
  auto request = std::make_unique<Request>();
  request->cancellable = retain(cancellable);
  request->done = std::move(done);
  request->identifier = "page-" + std::to_string(++made_);
  const auto links = linksIn(folder);
  if (!links) {
    request->trouble = links.error().description;
    g_idle_add_full(G_PRIORITY_DEFAULT, fail, request.release(),
                    [](gpointer data) { std::unique_ptr<Request>(static_cast<Request*>(data)).reset(); });
    return;
  }
  const std::string rules = isolationRules(folder, *links);
  const GBytesPtr bytes(g_bytes_new(rules.data(), rules.size()));
  const char* const identifier = request->identifier.c_str();
  webkit_user_content_filter_store_save(store_.get(), identifier, bytes.get(), nullptr, compiled, request.release());
}

}  // namespace tavelle
