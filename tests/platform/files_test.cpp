// What every file system must do, over the real one and the one in memory; and what only the real one can show.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>

#include "fakes/fake_files.h"
#include "fakes/temporary_folder.h"
#include "platform/linux/linux_files.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

Names namesIn(const Files& files, const fs::path& folder, Files::Hidden hidden = Files::Hidden::include) {
  Names names;
  if (const auto entries = files.list(folder, hidden)) {
    for (const auto& entry : *entries) names.push_back(entry.path.filename());
  }
  std::sort(names.begin(), names.end());
  return names;
}

void keepContract(Files& files, const fs::path& root) {
  EXPECT_FALSE(files.list(root / "missing", Files::Hidden::skip));
  ASSERT_TRUE(files.createFolders(root / "a/b"));
  EXPECT_TRUE(files.createFolders(root / "a/b")) << "there already";
  EXPECT_FALSE(files.append(root / "none/log", "x")) << "no folder is made";
  EXPECT_TRUE(files.append(root / "a/log", "one\n"));
  EXPECT_TRUE(files.append(root / "a/log", "two\n"));
  EXPECT_TRUE(files.append(root / "a/.hidden", ""));
  EXPECT_FALSE(files.createFolders(root / "a/log")) << "a file is in the way";
  EXPECT_EQ(namesIn(files, root / "a", Files::Hidden::skip), (Names{"b", "log"}));
  EXPECT_EQ(namesIn(files, root / "a"), (Names{".hidden", "b", "log"}));

  EXPECT_TRUE(files.copy(root / "a", root / "c"));
  EXPECT_EQ(namesIn(files, root / "c"), (Names{".hidden", "b", "log"}));
  EXPECT_FALSE(files.copy(root / "a", root / "c")) << "nothing is overwritten";
  EXPECT_EQ(namesIn(files, root), (Names{"a", "c"})) << "no half copies";
  EXPECT_TRUE(files.copyFile(root / "a/log", root / "a/copy"));
  EXPECT_EQ(*files.read(root / "a/copy"), "one\ntwo\n");
  EXPECT_FALSE(files.copyFile(root / "a/log", root / "a/copy")) << "nothing is overwritten";
  EXPECT_FALSE(files.copyFile(root / "a", root / "a/other")) << "no file";
  EXPECT_FALSE(files.exists(root / "a/other")) << "no half copies";
  EXPECT_TRUE(files.created(root / "c"));
}

TEST(Files, KeepTheirContract) {
  FakeFiles fake;
  ASSERT_TRUE(fake.createFolders("/root"));
  keepContract(fake, "/root");
  const TemporaryFolder folder;
  LinuxFiles real;
  keepContract(real, folder.path());
}

TEST(LinuxFiles, ListsCreationTimesAndHiddenFlags) {
  const TemporaryFolder folder;
  LinuxFiles files;
  std::ofstream(folder.path() / ".hidden") << "Secret\n";
  fs::create_directory(folder.path() / "Secret");
  fs::create_directory(folder.path() / "caf\xE9\n%");
  const auto entries = files.list(folder.path(), Files::Hidden::skip);
  ASSERT_TRUE(entries && entries->size() == 1) << "what .hidden names is hidden";
  EXPECT_EQ(entries->front().path, folder.path() / "caf\xE9\n%");
  EXPECT_EQ(entries->front().created, files.created(entries->front().path));
  ASSERT_TRUE(entries->front().created);
  EXPECT_LT(std::chrono::system_clock::now() - *entries->front().created, std::chrono::minutes(5));
}

TEST(LinuxFiles, DoesNotHangOnAFifoOrADevice) {
  const TemporaryFolder folder;
  LinuxFiles files;
  ASSERT_EQ(mkfifo((folder.path() / "log").c_str(), 0600), 0);
  EXPECT_FALSE(files.append(folder.path() / "log", "x"));
  for (const fs::path& source : {folder.path() / "log", fs::path("/dev/zero"), fs::path("/dev/tty")}) {
    EXPECT_FALSE(files.copyFile(source, folder.path() / "copy"));
  }
}

TEST(LinuxFiles, CopiesWhatIsInAFile) {
  const TemporaryFolder folder;
  LinuxFiles files;
  // More than is copied in one go by hand; a name as long as names can be; behind a link; not writable.
  const std::string bytes(200'000, '\x17');
  std::ofstream(folder.path() / "original") << bytes;
  fs::permissions(folder.path() / "original", fs::perms(0440));
  fs::create_symlink("original", folder.path() / "link");
  const fs::path copy = folder.path() / std::string(255, 'x');
  ASSERT_TRUE(files.copyFile(folder.path() / "link", copy));
  EXPECT_EQ(*files.read(copy), bytes);
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(copy)));
  EXPECT_EQ(fs::status(copy).permissions(), fs::perms(0640));
  EXPECT_FALSE(files.copyFile(folder.path() / "link", folder.path() / std::string(256, 'x')));
  // What the kernel cannot copy by itself, since it seems to have no length.
  EXPECT_TRUE(files.copyFile("/proc/self/status", folder.path() / "status"));
  EXPECT_TRUE(files.read(folder.path() / "status")->starts_with("Name:"));
}

TEST(LinuxFiles, GivesNewFilesThePermissionsThatTheUserWants) {
  const TemporaryFolder folder;
  LinuxFiles files;
  const mode_t before = umask(0027);
  EXPECT_TRUE(files.write(folder.path() / "shared", "", Files::Readers::asUsual));
  EXPECT_TRUE(files.write(folder.path() / "private", "", Files::Readers::owner));
  fs::permissions(folder.path() / "shared", fs::perms(0444));
  EXPECT_TRUE(files.copyFile(folder.path() / "shared", folder.path() / "copy"));
  umask(before);
  for (const auto& [name, permissions] : {std::pair("shared", 0444), {"private", 0600}, {"copy", 0640}}) {
    EXPECT_EQ(fs::status(folder.path() / name).permissions(), fs::perms(permissions)) << name;
  }
}

TEST(LinuxFiles, SweepsWhatIsLeftOfCopies) {
  const TemporaryFolder folder;
  LinuxFiles files;
  for (const char* name : {".tavelle-copy.a1B2c3", ".tavelle-copy.inUse1", ".tavelle-copy.mine", "Waves"}) {
    fs::create_directories(folder.path() / name / "half");
  }
  const auto inUse = files.lock(folder.path() / ".tavelle-copy.inUse1");
  files.sweep(folder.path());
  EXPECT_EQ(namesIn(files, folder.path()), (Names{".tavelle-copy.inUse1", ".tavelle-copy.mine", "Waves"}));
}

// So called, gtest runs it first, while no other thread can be in the way of its children.
TEST(LinuxFilesDeathTest, LeavesNothingOfAFileThatIsNotWhole) {
  const TemporaryFolder folder;
  const std::string bytes(200'000, 'x');
  std::ofstream(folder.path() / "original") << bytes;
  // In a child, so that the limit is its alone. Half way it is killed, or told of an error when it ignores that.
  const auto tryWithLittleRoom = [&](auto onSignal, const auto& attempt) {
    signal(SIGXFSZ, onSignal);
    const rlimit limit{100'000, 100'000};
    setrlimit(RLIMIT_FSIZE, &limit);
    LinuxFiles files;
    exit(attempt(files) ? 0 : 1);
  };
  const auto copy = [&](Files& files) { return files.copyFile(folder.path() / "original", folder.path() / "copy"); };
  const auto replace = [&](Files& files) {
    return files.write(folder.path() / "original", bytes + "more", Files::Readers::owner);
  };
  EXPECT_EXIT(tryWithLittleRoom(SIG_IGN, copy), testing::ExitedWithCode(1), "");
  EXPECT_EXIT(tryWithLittleRoom(SIG_DFL, copy), testing::KilledBySignal(SIGXFSZ), "");
  EXPECT_EXIT(tryWithLittleRoom(SIG_IGN, replace), testing::ExitedWithCode(1), "");
  EXPECT_EXIT(tryWithLittleRoom(SIG_DFL, replace), testing::KilledBySignal(SIGXFSZ), "");
  EXPECT_EQ(namesIn(LinuxFiles(), folder.path()), Names{"original"});
  EXPECT_EQ(contentOf(folder.path() / "original"), bytes);
}

}  // namespace
}  // namespace tavelle
