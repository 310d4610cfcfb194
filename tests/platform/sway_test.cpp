#include <glib.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <array>
#include <future>
#include <string>

#include "fakes/temporary_folder.h"
#include "platform/linux/sway/sway_connection.h"
#include "platform/linux/sway/sway_events.h"
#include "platform/linux/sway/sway_tree.h"

namespace tavelle {
namespace {

using namespace std::chrono_literals;

std::string box(const Rect& rect) {
  const auto number = [](double each) { return std::to_string(static_cast<int>(each)); };
  return R"({"x":)" + number(rect.x) + R"(,"y":)" + number(rect.y) + R"(,"width":)" + number(rect.width) +
         R"(,"height":)" + number(rect.height) + "}";
}

/// A node of the tree, with more members as `more` has them.
std::string node(const char* type, const Rect& rect, const std::string& more, const std::string& nodes = "") {
  return std::string(R"({"type":")") + type + R"(","rect":)" + box(rect) + more + R"(,"nodes":[)" + nodes + "]}";
}

/// A window of the process `pid`.
std::string window(int pid, const Rect& rect, const Rect& titleBar, const std::string& visible) {
  return node("con", rect,
              R"(,"layout":"none","pid":)" + std::to_string(pid) + R"(,"deco_rect":)" + box(titleBar) +
                  R"(,"visible":)" + visible);
}

// The numbers are those of sway 1.7's own tree.
TEST(SwayTree, PutsTheTitleBarsOfAStackOverWhatIsAtItsTop) {
  const Rect whole{0, 0, 1280, 720};
  const std::string split =
      node("con", {0, 100, 1280, 620}, R"(,"layout":"splitv","deco_rect":)" + box({0, 25, 1280, 25}),
           window(2, {0, 75, 1280, 310}, {0, 0, 1280, 25}, "true") + "," + window(3, {0, 385, 1280, 335}, {}, "true"));
  const std::string stack = node("con", whole, R"(,"layout":"stacked")",
                                 window(1, {0, 50, 1280, 670}, {0, 0, 1280, 25}, "false") + "," + split);
  const auto found = windowsInSwayTree(node("root", whole, R"(,"layout":"splith")", stack));
  ASSERT_TRUE(found && found->size() == 2);
  EXPECT_EQ(std::pair(found->front().owner, found->front().bounds),
            std::pair(std::optional(2), std::optional(Rect{0, 0, 1280, 385})));
  EXPECT_EQ(found->back().bounds, (Rect{0, 385, 1280, 335}));
}

TEST(SwayTree, IsNotTakenFromSomethingElse) {
  for (const char* text : {"", "{", "[]", "null", R"({"type":7})", R"({"success":false})"}) {
    EXPECT_FALSE(windowsInSwayTree(text) || !shownSwayWorkspaces(text).empty()) << text;
  }
}

TEST(SwayWorkspaces, AreThoseThatAreShown) {
  const Rect shown{1280, 30, 1280, 690};
  EXPECT_EQ(shownSwayWorkspaces(R"([{"visible":false,"rect":)" + box({1280, 99, 1280, 600}) +
                                R"(},{"visible":true,"rect":)" + box(shown) + "}]"),
            std::vector{shown});
}

std::string message(std::uint32_t type, const std::string& payload) {
  const std::array head{static_cast<std::uint32_t>(payload.size()), type};
  return "i3-ipc" + std::string(reinterpret_cast<const char*>(head.data()), sizeof head) + payload;
}

const std::string subscribed = message(2, R"({"success":true})");

/// The socket of a sway that says whatever it is told to.
struct SwaySocket {
  SwaySocket() {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    path.copy(static_cast<char*>(address.sun_path), sizeof address.sun_path - 1);
    EXPECT_EQ(bind(listener.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(listen(listener.get(), 5), 0);
  }

  /// Whether somebody has connected whom nobody has said anything to; who does so soon counts, too.
  bool isCalled(std::chrono::milliseconds soon = 0ms) const {
    pollfd waiting{.fd = listener.get(), .events = POLLIN, .revents = 0};
    return poll(&waiting, 1, static_cast<int>(soon.count())) > 0;
  }

  /// Takes the next connection, which comes soon, and says this.
  FileDescriptor say(const std::string& words) const {
    EXPECT_TRUE(isCalled(20s));
    FileDescriptor other(isCalled() ? accept(listener.get(), nullptr, nullptr) : -1);
    EXPECT_TRUE(other.writeAll(words));
    return other;
  }

  /// The same, while somebody waits for it.
  std::future<FileDescriptor> sayMeanwhile(const std::string& words) const {
    return std::async(std::launch::async, [this, words] { return say(words); });
  }

  const TemporaryFolder folder;
  const std::string path = folder.path() / "socket";
  const FileDescriptor listener{socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)};
};

TEST(SwayConnection, GivesWholeAnswersOnlyAndInTime) {
  const std::string whole = message(4, std::string(60000, 'x'));
  const std::string event = message(0x80000003U, "event");
  const SwaySocket sway;
  for (const auto& [what, words, answered] :
       {std::tuple("an answer", whole, true),
        {"events before it", event + event + whole, true},
        {"half of it", whole.substr(0, 30000), false},
        {"an answer to something else", message(1, "[]") + whole, false},
        {"more than anybody can hold", std::string("i3-ipc\xff\xff\xff\x7f\x04\0\0\0", 14), false}}) {
    auto connection = SwayConnection::open(sway.path);
    ASSERT_TRUE(connection) << what;
    const auto other = sway.say(words);
    const auto begin = std::chrono::steady_clock::now();
    const auto said = connection->ask(SwayRequest::tree, "", answered ? 10s : 50ms);
    EXPECT_EQ(said == std::string(60000, 'x'), answered) << what;
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s) << what;
  }
  EXPECT_FALSE(SwayConnection::open(sway.path + "s")) << "nobody";
  EXPECT_FALSE(SwayConnection::open(std::string(200, 'x'))) << "no such path";
}

TEST(SwayClient, AsksAgainOnANewConnection) {
  const SwaySocket sway;
  SwayClient client(sway.path, {.answer = 10s});
  for (int i = 0; i < 2; ++i) {
    // The connection ends with each answer.
    const auto said = sway.sayMeanwhile(message(4, "{}"));
    EXPECT_EQ(client.ask(SwayRequest::tree), "{}") << i;
  }
}

TEST(SwayClient, LeavesAloneWhoNeverAnswers) {
  for (const bool rests : {true, false}) {
    const SwaySocket sway;
    SwayClient client(sway.path, {.answer = 1ms, .rest = rests ? 1h : 0ms});
    EXPECT_FALSE(client.ask(SwayRequest::tree));
    sway.say("");
    EXPECT_FALSE(client.ask(SwayRequest::tree));
    EXPECT_NE(sway.isCalled(), rests);
  }
}

TEST(SwayEvents, AreHeardAgainAfterTheirEnd) {
  const std::string closed = message(0x80000003U, R"({"change":"close"})");
  const std::string titled = message(0x80000003U, R"({"change":"title"})");
  const SwaySocket sway;
  int calls = 0;
  const auto isCalled = [&](int times) {
    const auto end = std::chrono::steady_clock::now() + 20s;
    while (calls < times && std::chrono::steady_clock::now() < end) g_main_context_iteration(nullptr, FALSE);
    return calls == times;
  };
  auto first = sway.sayMeanwhile(subscribed);
  const SwayEvents events(sway.path, [&] { ++calls; }, {.answer = 20s, .rest = 1ms});
  auto other = first.get();
  EXPECT_TRUE(other.writeAll(titled + closed.substr(0, 9)));
  EXPECT_TRUE(g_main_context_iteration(nullptr, TRUE));
  EXPECT_TRUE(isCalled(0)) << "a title moves nothing, and the rest is not yet there";
  EXPECT_TRUE(other.writeAll(closed.substr(9)));
  EXPECT_TRUE(isCalled(1));
  auto second = sway.sayMeanwhile(subscribed);
  other = FileDescriptor();
  EXPECT_TRUE(isCalled(2)) << "the end itself";
  EXPECT_TRUE(isCalled(3)) << "whatever came in between";
  other = second.get();
  EXPECT_TRUE(other.writeAll(closed));
  EXPECT_TRUE(isCalled(4));
}

}  // namespace
}  // namespace tavelle
