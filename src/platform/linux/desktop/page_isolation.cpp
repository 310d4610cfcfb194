#include "platform/linux/desktop/page_isolation.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

#include "app/text.h"
#include "platform/linux/file_uri.h"
#include "platform/linux/handles.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;

using FilterPtr = std::unique_ptr<WebKitUserContentFilter, FreeWith<webkit_user_content_filter_unref>>;

bool isInside(const fs::path& path, const fs::path& folder) {
  const fs::path relative = path.lexically_relative(folder);
  return !relative.empty() && *relative.begin() != "..";
}

/// A regular expression in a JSON text: a backslash stands there as two.
std::string quotedForExpression(std::string_view literal) {
  std::string expression;
  for (const char c : literal) {
    if (std::string_view(R"(\^$.|?*+()[]{}")").find(c) != std::string_view::npos) expression += R"(\\)";
    expression += c;
  }
  return expression;
}

/// Matches a file name in an address in every spelling: any character may be written as it is or as "%" and two
/// hexadecimal digits. The engine's expressions know no alternatives, so what this matches is a little more: each
/// character, or "%", with or without the digits behind it.
std::string anySpellingOf(std::string_view name) {
  constexpr std::string_view upper = "0123456789ABCDEF";
  constexpr std::string_view lower = "0123456789abcdef";
  std::string expression;
  for (const char c : name) {
    if (c == '/') {
      expression += '/';
      continue;
    }
    const auto byte = static_cast<std::uint8_t>(c);
    const bool isAlphanumeric = g_ascii_isalnum(c);
    // What is no printable ASCII character never stands in an address as it is.
    const std::string itself = !g_ascii_isgraph(c) ? "" : isAlphanumeric ? std::string{c} : std::string{'\\', '\\', c};
    const auto digit = [&](unsigned value) { return std::string{'[', upper[value], lower[value], ']', '?'}; };
    expression += "[" + itself + "%]" + digit(byte >> 4U) + digit(byte & 15U);
  }
  return expression;
}

std::string rule(const std::string& expression, std::string_view action) {
  return R"({"trigger":{"url-filter":")" + expression + R"(","url-filter-is-case-sensitive":true},"action":{"type":")" +
         std::string(action) + R"("}})";
}

/// One compilation under way, with a folder of its own for what the engine writes on the way.
struct Compilation {
  GObjectPtr<GCancellable> cancellable;
  std::function<void(const Result<WebKitUserContentFilter*>&)> done;
  fs::path folder;
  GObjectPtr<WebKitUserContentFilterStore> store;

  ~Compilation() {
    store.reset();
    std::error_code ignored;
    if (!folder.empty()) fs::remove_all(folder, ignored);
  }
};

void compiled(GObject* store, GAsyncResult* result, gpointer data) {
  const std::unique_ptr<Compilation> compilation(static_cast<Compilation*>(data));
  ErrorSlot error;
  const FilterPtr filter(
      webkit_user_content_filter_store_save_finish(WEBKIT_USER_CONTENT_FILTER_STORE(store), result, error.out()));
  if (g_cancellable_is_cancelled(compilation->cancellable.get())) return;
  if (filter) {
    compilation->done(filter.get());
  } else {
    compilation->done(Error{"couldn't isolate the page: " + escapedUtf8(error.message())});
  }
}

}  // namespace

FolderLinks linksIn(const fs::path& folder) {
  FolderLinks links;
  std::error_code code;
  const fs::path real = fs::canonical(folder, code);
  if (code) return links;
  fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, code);
  for (; !code && entry != fs::recursive_directory_iterator(); entry.increment(code)) {
    std::error_code ignored;
    if (!entry->is_symlink(ignored)) continue;
    const fs::path target = fs::canonical(entry->path(), ignored);
    if (ignored || !isInside(target, real)) {
      links.leadingOut.push_back(entry->path());
    } else if (fs::is_directory(target, ignored)) {
      links.toFoldersWithin = true;
    }
  }
  return links;
}

std::string isolationRules(const fs::path& folder, const FolderLinks& links) {
  const std::string prefix = "^" + quotedForExpression(fileUri(folder)) + "/";
  std::string rules = "[" + rule("^file:", "block") + "," + rule(prefix, "ignore-previous-rules");
  // A separator in disguise: the engine takes "..%2F" for a plain name where it compares, and for a way up where it
  // reads.
  rules += "," + rule("^file:.*%2[fF]", "block");
  for (const fs::path& link : links.leadingOut) {
    // With several paths to one place a link is known by its own name only, wherever in the folder that stands.
    const std::string path = links.toFoldersWithin ? "(.*/)?" + anySpellingOf(link.filename().native())
                                                   : anySpellingOf(link.lexically_relative(folder).native());
    rules += "," + rule(prefix + path + "$", "block") + "," + rule(prefix + path + "[/?#]", "block");
  }
  return rules + "]";
}

void isolationFilter(const fs::path& folder, GCancellable* cancellable,
                     std::function<void(const Result<WebKitUserContentFilter*>&)> done) {
  auto compilation = std::make_unique<Compilation>();
  compilation->cancellable = retain(cancellable);
  compilation->done = std::move(done);
  ErrorSlot error;
  const GCharPtr temporary(g_dir_make_tmp("tavelle-XXXXXX", error.out()));
  if (temporary) compilation->folder = temporary.get();
  // Where no folder can be made, saving fails below and says so.
  compilation->store = adopt(webkit_user_content_filter_store_new(temporary ? temporary.get() : "/nonexistent"));
  const std::string rules = isolationRules(folder, linksIn(folder));
  const GBytesPtr bytes(g_bytes_new(rules.data(), rules.size()));
  auto* const store = compilation->store.get();
  webkit_user_content_filter_store_save(store, "page", bytes.get(), nullptr, compiled, compilation.release());
}

}  // namespace tavelle
