#include "lumodevice/windows/message_loop.hpp"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/surface.hpp"
#include "lumodevice/toolkit/timer.hpp"

namespace lumodevice::windows {
namespace {

using std::chrono::milliseconds;

constexpr UINT kNote = WM_APP + 1;

/// A window of the host that hands its messages to the test.
class HostWindow {
 public:
  using Act = std::function<void(UINT message, WPARAM word)>;

  explicit HostWindow(Act act) : act_(std::move(act)) {
    WNDCLASSW kind{};
    kind.lpfnWndProc = &HostWindow::procedure;
    kind.hInstance = ::GetModuleHandleW(nullptr);
    kind.lpszClassName = L"HostWindow";
    ::RegisterClassW(&kind);
    window_ = ::CreateWindowExW(0, L"HostWindow", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                kind.hInstance, nullptr);
    ::SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  ~HostWindow() { ::DestroyWindow(window_); }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;

  void post(WPARAM word) const { ::PostMessageW(window_, kNote, word, 0); }
  [[nodiscard]] HWND window() const { return window_; }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM word, LPARAM data) {
    auto* const host = reinterpret_cast<HostWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (host != nullptr && (message == kNote || message == WM_TIMER)) {
      host->act_(message, word);
      return 0;
    }
    return ::DefWindowProcW(window, message, word, data);
  }

  Act act_;
  HWND window_ = nullptr;
};

/// The host's own loop, for so long.
void handleMessagesFor(milliseconds span) {
  const ULONGLONG end = ::GetTickCount64() + static_cast<ULONGLONG>(span.count());
  while (::GetTickCount64() < end) {
    MSG message{};
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
      ::DispatchMessageW(&message);
    }
    ::MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
  }
}

struct MessageLoopTest : testing::Test {
  MessageLoopTest() {
    timer.joinLoop(loop);
    subscription = timer.tick.observe([this] {
      ++ticks;
      if (onTick) onTick();
    });
  }

  std::vector<std::string> failures;
  MessageLoop loop{[this](std::exception_ptr failure) {
    try {
      std::rethrow_exception(std::move(failure));
    } catch (const std::exception& error) {
      failures.emplace_back(error.what());
    }
  }};
  toolkit::Surface surface;
  toolkit::Timer& timer = surface.add<toolkit::Timer>("Timer1");
  toolkit::Subscription subscription;
  std::function<void()> onTick;
  int ticks = 0;
};

TEST_F(MessageLoopTest, timersTickInTheHostsOwnLoop) {
  timer.setInterval(20);
  handleMessagesFor(milliseconds(300));
  EXPECT_GE(ticks, 5);
  EXPECT_LE(ticks, 15);
  timer.setInterval(0);
  ticks = 0;
  handleMessagesFor(milliseconds(60));
  EXPECT_EQ(ticks, 0);
}

TEST_F(MessageLoopTest, aTimerThatIsSwitchedOnInATickOfAnotherIsArmed) {
  auto& other = surface.add<toolkit::Timer>("Timer2");
  other.joinLoop(loop);
  int others = 0;
  const auto counting = other.tick.observe([&] { ++others; });
  onTick = [&] {
    timer.setInterval(0);
    other.setInterval(15);
  };
  timer.setInterval(15);
  handleMessagesFor(milliseconds(200));
  EXPECT_EQ(ticks, 1);
  EXPECT_GE(others, 3);
}

TEST_F(MessageLoopTest, aTickTakesNoMessageOffTheQueue) {
  timer.setInterval(10);
  std::vector<WPARAM> seen;
  const HostWindow host([&](UINT, WPARAM word) { seen.push_back(word); });
  onTick = [&] {
    host.post(1);
    loop.tickDue();
    EXPECT_TRUE(seen.empty());
    timer.setInterval(0);
  };
  ::Sleep(15);
  loop.tickDue();
  EXPECT_EQ(ticks, 1);
  EXPECT_TRUE(seen.empty());
  loop.processEvents();
  EXPECT_EQ(seen, std::vector<WPARAM>{1});
}

TEST_F(MessageLoopTest, aWaitDeliversNothingAndAPassWhatCameMeanwhile) {
  std::vector<WPARAM> seen;
  const HostWindow host([&](UINT, WPARAM word) { seen.push_back(word); });
  timer.setInterval(10);
  host.post(1);
  const auto begin = loop.now();
  loop.sleep(60);
  EXPECT_GE(loop.now() - begin, milliseconds(60));
  EXPECT_LT(loop.now() - begin, milliseconds(500));
  EXPECT_TRUE(seen.empty());
  EXPECT_EQ(ticks, 0);
  loop.processEvents();
  EXPECT_EQ(seen, std::vector<WPARAM>{1});
  EXPECT_EQ(ticks, 1);
}

TEST_F(MessageLoopTest, aWindowThatPostsToItselfForEverDoesNotHoldAPass) {
  int seen = 0;
  const HostWindow* self = nullptr;
  const HostWindow host([&](UINT, WPARAM word) {
    ++seen;
    self->post(word + 1);
  });
  self = &host;
  host.post(0);
  const auto begin = loop.now();
  loop.processEvents();
  EXPECT_LT(loop.now() - begin, milliseconds(500));
  EXPECT_GE(seen, 1);
}

TEST_F(MessageLoopTest, theEndOfTheProgramIsPostedAgainAndTheOperationGoesOn) {
  std::vector<WPARAM> seen;
  const HostWindow host([&](UINT, WPARAM word) { seen.push_back(word); });
  ::PostQuitMessage(7);
  host.post(1);
  loop.runFor(milliseconds(30));
  host.post(2);
  loop.processEvents();
  EXPECT_EQ(seen, (std::vector<WPARAM>{1, 2}));
  MSG message{};
  ASSERT_NE(::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE), 0);
  EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(message.wParam, 7U);
}

TEST_F(MessageLoopTest, whatAHandlerThrowsEndsTheOperationThatDispatchedIt) {
  const HostWindow host(
      [&](UINT, WPARAM) { loop.guarded([] { throw std::runtime_error("of the window"); }); });
  host.post(1);
  host.post(2);
  EXPECT_THROW(loop.processEvents(), std::runtime_error);
  EXPECT_THROW(loop.processEvents(), std::runtime_error);
  EXPECT_NO_THROW(loop.processEvents());
  EXPECT_TRUE(failures.empty());
}

TEST_F(MessageLoopTest, whatATickThrowsInTheHostsLoopGoesToTheHandler) {
  onTick = [&] {
    timer.setInterval(0);
    throw std::runtime_error("of the tick");
  };
  timer.setInterval(10);
  handleMessagesFor(milliseconds(80));
  EXPECT_EQ(failures, std::vector<std::string>{"of the tick"});
}

TEST_F(MessageLoopTest, theFilterSeesMessagesFirst) {
  std::vector<WPARAM> seen;
  const HostWindow host([&](UINT, WPARAM word) { seen.push_back(word); });
  loop.setFilter(
      [&](MSG& message) { return message.hwnd == host.window() && message.wParam == 1; });
  host.post(1);
  host.post(2);
  loop.processEvents();
  EXPECT_EQ(seen, std::vector<WPARAM>{2});
}

TEST_F(MessageLoopTest, timersTickWhileAModalLoopRunsInAHandler) {
  timer.setInterval(20);
  const HostWindow host([&](UINT, WPARAM) { handleMessagesFor(milliseconds(150)); });
  host.post(1);
  loop.processEvents();
  EXPECT_GE(ticks, 3);
}

TEST_F(MessageLoopTest, severalLoopsOfAThreadTickEachTheirOwnTimers) {
  MessageLoop second;
  auto& other = surface.add<toolkit::Timer>("Timer2");
  other.joinLoop(second);
  int others = 0;
  const auto counting = other.tick.observe([&] { ++others; });
  timer.setInterval(20);
  other.setInterval(20);
  handleMessagesFor(milliseconds(150));
  EXPECT_GE(ticks, 2);
  EXPECT_GE(others, 2);
}

}  // namespace
}  // namespace lumodevice::windows
