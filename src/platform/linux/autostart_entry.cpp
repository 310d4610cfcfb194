#include "platform/linux/autostart_entry.h"

#include <gio/gdesktopappinfo.h>
#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/text.h"
#include "platform/linux/file_operations.h"
#include "platform/linux/handles.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;

using KeyFilePtr = std::unique_ptr<GKeyFile, FreeWith<g_key_file_unref>>;
using StringsPtr = std::unique_ptr<char*, FreeWith<g_strfreev>>;

constexpr auto group = G_KEY_FILE_DESKTOP_GROUP;

/// The keys that desktops' own settings switch an entry off with: "X-GNOME-Autostart-enabled" and its kin.
constexpr std::string_view switchStart = "X-";
constexpr std::string_view switchEnd = "-Autostart-enabled";

std::string value(GKeyFile* entry, const char* key) {
  const GCharPtr text(g_key_file_get_string(entry, group, key, nullptr));
  return text ? text.get() : "";
}

bool isOn(GKeyFile* entry, const char* key) { return g_key_file_get_boolean(entry, group, key, nullptr) != FALSE; }

Result<KeyFilePtr> load(const fs::path& file) {
  const auto bytes = readFile(file);
  if (!bytes) return bytes.error();
  KeyFilePtr entry(g_key_file_new());
  constexpr auto keepAll = static_cast<GKeyFileFlags>(G_KEY_FILE_KEEP_COMMENTS | G_KEY_FILE_KEEP_TRANSLATIONS);
  ErrorSlot error;
  if (!g_key_file_load_from_data(entry.get(), bytes->data(), bytes->size(), keepAll, error.out())) {
    return Error{escapedUtf8(file.native()) + ": " + escapedUtf8(error.message())};
  }
  if (!g_key_file_has_group(entry.get(), group)) return Error{escapedUtf8(file.native()) + ": not a desktop entry"};
  return entry;
}

std::string text(GKeyFile* entry) {
  gsize size = 0;
  const GCharPtr bytes(g_key_file_to_data(entry, &size, nullptr));
  std::string lines(bytes.get(), size);
  // The library adds an empty line above each group whenever it has read one there.
  for (auto at = lines.find("\n\n\n"); at != std::string::npos; at = lines.find("\n\n\n", at)) lines.erase(at, 1);
  return lines;
}

/// The switches that are off.
std::vector<std::string> switchesOff(GKeyFile* entry) {
  std::vector<std::string> found;
  const StringsPtr keys(g_key_file_get_keys(entry, group, nullptr, nullptr));
  for (char** each = keys.get(); *each; ++each) {
    const std::string_view key = *each;
    if (key.starts_with(switchStart) && key.ends_with(switchEnd) && value(entry, *each) == "false") {
      found.emplace_back(key);
    }
  }
  return found;
}

/// Whether the entry is for the running desktop.
bool isForThisDesktop(GKeyFile* entry) {
  // The library judges only entries whose program it finds, in its own way.
  const KeyFilePtr plain(g_key_file_new());
  g_key_file_set_string(plain.get(), group, G_KEY_FILE_DESKTOP_KEY_TYPE, G_KEY_FILE_DESKTOP_TYPE_APPLICATION);
  for (const char* const key : {G_KEY_FILE_DESKTOP_KEY_ONLY_SHOW_IN, G_KEY_FILE_DESKTOP_KEY_NOT_SHOW_IN}) {
    const GCharPtr names(g_key_file_get_value(entry, group, key, nullptr));
    if (names) g_key_file_set_value(plain.get(), group, key, names.get());
  }
  const auto info = adopt(g_desktop_app_info_new_from_keyfile(plain.get()));
  return !info || g_desktop_app_info_get_show_in(info.get(), nullptr);
}

/// The command line's words, with its field codes for a percent sign resolved; none when it cannot be taken apart.
std::vector<std::string> wordsOf(const std::string& commandLine) {
  char** words = nullptr;
  if (!g_shell_parse_argv(commandLine.c_str(), nullptr, &words, nullptr)) return {};
  const StringsPtr owned(words);
  std::vector<std::string> found;
  for (char** each = words; *each; ++each) {
    std::string word = *each;
    for (auto at = word.find("%%"); at != std::string::npos; at = word.find("%%", at + 1)) word.erase(at, 1);
    found.push_back(std::move(word));
  }
  return found;
}

std::optional<fs::path> programNamed(const std::string& name) {
  const GCharPtr found(g_find_program_in_path(name.c_str()));
  return found ? std::optional<fs::path>(found.get()) : std::nullopt;
}

bool hasProgram(GKeyFile* entry) {
  const std::string tried = value(entry, G_KEY_FILE_DESKTOP_KEY_TRY_EXEC);
  const auto words = wordsOf(value(entry, G_KEY_FILE_DESKTOP_KEY_EXEC));
  return (tried.empty() || programNamed(tried)) && !words.empty() && programNamed(words.front());
}

/// The path as the one word of a command line that it is.
std::string commandLine(const fs::path& executable) {
  std::string line = "\"";
  for (const char each : executable.native()) {
    if (std::string_view("\"`$\\").find(each) != std::string_view::npos) line += '\\';
    if (each == '%') line += '%';
    line += each;
  }
  return line + '"';
}

}  // namespace

AutostartEntry::AutostartEntry(const std::vector<fs::path>& folders, fs::path executable)
    : executable_(std::move(executable)) {
  for (const auto& folder : folders) files_.push_back(folder / "tavelle.desktop");
}

LoginItemStatus AutostartEntry::status() const {
  const auto file = inForce();
  if (!file) return LoginItemStatus::notRegistered;
  const auto entry = load(*file);
  if (!entry) return LoginItemStatus::notFound;
  if (isOn(entry->get(), G_KEY_FILE_DESKTOP_KEY_HIDDEN)) return LoginItemStatus::notRegistered;
  if (!hasProgram(entry->get())) return LoginItemStatus::notFound;
  const bool held = !switchesOff(entry->get()).empty() || !isForThisDesktop(entry->get());
  return held ? LoginItemStatus::requiresApproval : LoginItemStatus::enabled;
}

Result<void> AutostartEntry::registerApplication() {
  const auto newEntry = fresh();
  if (!newEntry) return newEntry.error();
  const auto file = inForce();
  if (!file) return write(*newEntry);
  const auto entry = load(*file);
  if (!entry) return entry.error();
  GKeyFile* const keys = entry->get();
  g_key_file_remove_key(keys, group, G_KEY_FILE_DESKTOP_KEY_HIDDEN, nullptr);
  for (const auto& key : switchesOff(keys)) g_key_file_set_boolean(keys, group, key.c_str(), TRUE);
  // A command line that starts this program in a way of the user's own is left alone.
  if (!hasProgram(keys) || !startsUs(value(keys, G_KEY_FILE_DESKTOP_KEY_EXEC))) {
    g_key_file_set_string(keys, group, G_KEY_FILE_DESKTOP_KEY_EXEC, commandLine(executable_).c_str());
    g_key_file_set_string(keys, group, G_KEY_FILE_DESKTOP_KEY_TRY_EXEC, executable_.c_str());
  }
  return write(text(keys));
}

Result<void> AutostartEntry::unregister() {
  const auto file = inForce();
  if (!file) return {};
  const auto entry = load(*file);
  if (!entry) return entry.error();
  const auto newEntry = fresh();
  std::error_code code;
  const bool isOnlyOurs =
      file == files_.front() && newEntry && text(entry->get()) == *newEntry &&
      std::none_of(files_.begin() + 1, files_.end(), [&](const fs::path& each) { return fs::exists(each, code); });
  if (isOnlyOurs) return unlink(file->c_str()) == 0 ? Result<void>() : systemError(file->native(), errno);
  g_key_file_set_boolean(entry->get(), group, G_KEY_FILE_DESKTOP_KEY_HIDDEN, TRUE);
  return write(text(entry->get()));
}

std::optional<fs::path> AutostartEntry::inForce() const {
  for (const auto& file : files_) {
    std::error_code code;
    // One that cannot be looked at may well be there.
    if (fs::exists(file, code) || code) return file;
  }
  return std::nullopt;
}

bool AutostartEntry::startsUs(const std::string& commandLine) const {
  const auto words = wordsOf(commandLine);
  return std::any_of(words.begin(), words.end(), [&](const std::string& word) {
    const auto program = programNamed(word);
    std::error_code code;
    return program && fs::equivalent(*program, executable_, code);
  });
}

/// The entry as it is where nobody else has written one.
Result<std::string> AutostartEntry::fresh() const {
  // Desktop entries are UTF-8.
  if (!isUtf8(executable_.native())) {
    return Error{"a desktop entry can't hold the path " + escapedUtf8(executable_.native())};
  }
  const KeyFilePtr entry(g_key_file_new());
  const std::array<std::pair<const char*, std::string>, 7> keys{
      {{G_KEY_FILE_DESKTOP_KEY_TYPE, G_KEY_FILE_DESKTOP_TYPE_APPLICATION},
       {G_KEY_FILE_DESKTOP_KEY_NAME, "Tavelle"},
       {G_KEY_FILE_DESKTOP_KEY_COMMENT, "Plays a wallpaper behind the desktop's icons"},
       {G_KEY_FILE_DESKTOP_KEY_ICON, "org.tavelle.Tavelle"},
       {G_KEY_FILE_DESKTOP_KEY_EXEC, commandLine(executable_)},
       {G_KEY_FILE_DESKTOP_KEY_TRY_EXEC, executable_.native()},
       {G_KEY_FILE_DESKTOP_KEY_TERMINAL, "false"}}};
  for (const auto& [key, content] : keys) g_key_file_set_string(entry.get(), group, key, content.c_str());
  return text(entry.get());
}

Result<void> AutostartEntry::write(const std::string& entry) const {
  const fs::path file = behindLinks(files_.front());
  std::error_code code;
  fs::create_directories(file.parent_path(), code);
  if (code) return systemError(file.parent_path().native(), code.value());
  return writeAtomically(file, entry, 0666);
}

}  // namespace tavelle
