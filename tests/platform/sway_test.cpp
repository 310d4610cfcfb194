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

// The numbers are those of sway 1.7's own tree.
TEST(SwayTree, PutsTheTitleBarsOfAStackOverWhatIsAtItsTop) {
  const auto found =
      windowsInSwayTree(R"({"type":"root","layout":"splith","rect":{"x":0,"y":0,"width":1280,"height":720},"nodes":[
    {"type":"con","layout":"stacked","rect":{"x":0,"y":0,"width":1280,"height":720},"nodes":[
      {"type":"con","layout":"none","pid":1,"visible":false,"rect":{"x":0,"y":50,"width":1280,"height":670},
       "deco_rect":{"x":0,"y":0,"width":1280,"height":25},"nodes":[]},
      {"type":"con","layout":"splitv","rect":{"x":0,"y":100,"width":1280,"height":620},
       "deco_rect":{"x":0,"y":25,"width":1280,"height":25},"nodes":[
        {"type":"con","layout":"none","pid":2,"visible":true,"rect":{"x":0,"y":75,"width":1280,"height":310},
         "deco_rect":{"x":0,"y":0,"width":1280,"height":25},"nodes":[]},
        {"type":"con","layout":"none","pid":3,"visible":true,"rect":{"x":0,"y":385,"width":1280,"height":335},
         "deco_rect":{},"nodes":[]}]}]}]})");
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
  EXPECT_EQ(shownSwayWorkspaces(R"([{"visible":false,"rect":{"x":1280,"y":99,"width":1280,"height":600}},
                                    {"visible":true,"rect":{"x":1280,"y":30,"width":1280,"height":690}}])"),
            (std::vector{Rect{1280, 30, 1280, 690}}));
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
    pollfd waiting{};
    waiting.fd = listener.get();
    waiting.events = POLLIN;
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
