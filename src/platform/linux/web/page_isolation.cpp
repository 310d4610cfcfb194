#include "platform/linux/web/page_isolation.h"

#include <glib.h>
#include <unistd.h>

#include <cstdint>
#include <string_view>
#include <system_error>

#include "base/file_uri.h"
#include "platform/linux/file_operations.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;

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

}  // namespace

Result<FolderLinks> linksIn(const fs::path& folder) {
  FolderLinks links;
  std::error_code code;
  const fs::path real = fs::canonical(folder, code);
  if (code) return systemError(folder.native(), code.value());
  fs::recursive_directory_iterator entry(folder, code);
  for (; !code && entry != fs::recursive_directory_iterator(); entry.increment(code)) {
    std::error_code ignored;
    if (entry->is_symlink(ignored)) {
      const fs::path target = fs::canonical(entry->path(), ignored);
      if (ignored || !isInside(target, real)) {
        links.leadingOut.push_back(entry->path());
      } else if (fs::is_directory(target, ignored)) {
        links.toFoldersWithin = true;
      }
    } else if (entry->is_directory(ignored) && access(entry->path().c_str(), R_OK | X_OK) != 0) {
      // A page that knows a name in there could follow a link that nobody has seen.
      links.leadingOut.push_back(entry->path());
      entry.disable_recursion_pending();
    }
  }
  if (code) return systemError(folder.native(), code.value());
  return links;
}

std::string isolationRules(const fs::path& folder, const FolderLinks& links) {
  const std::string prefix = "^" + quotedForExpression(fileUri(folder)) + "/";
  std::string rules = "[" + rule("^file:", "block") + "," + rule(prefix, "ignore-previous-rules");
  // A separator or an end in disguise: where the engine compares it takes "..%2F" and "link%00" for plain names, and
  // where it reads for the way up and for "link".
  rules += "," + rule("^file:.*%2[fF]", "block") + "," + rule("^file:.*%00", "block");
  // Likewise a separator too many before a link's name.
  if (!links.leadingOut.empty()) rules += "," + rule("^file:///[^?#]*//", "block");
  for (const fs::path& link : links.leadingOut) {
    // With several paths to one place a link is known by its own name only, wherever in the folder that stands.
    const std::string path = links.toFoldersWithin ? "(.*/)?" + anySpellingOf(link.filename().native())
                                                   : anySpellingOf(link.lexically_relative(folder).native());
    rules += "," + rule(prefix + path + "$", "block") + "," + rule(prefix + path + "[/?#]", "block");
  }
  return rules + "]";
}

}  // namespace tavelle
