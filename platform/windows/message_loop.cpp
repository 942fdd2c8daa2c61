#include "lumodevice/windows/message_loop.hpp"

#include <algorithm>
#include <system_error>

namespace lumodevice::windows {

namespace {

constexpr const wchar_t* kClassName = L"LumoDevice.MessageLoop";
constexpr UINT_PTR kAlarm = 1;

/// Of the program or DLL that this code is in: the class of the window goes with it.
HINSTANCE thisModule() {
  HMODULE module = nullptr;
  (void)::GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<const wchar_t*>(&thisModule), &module);
  return module;
}

/// Timers of Windows go off by the millisecond; never before the time.
DWORD wholeMilliseconds(toolkit::EventLoop::Duration span) {
  constexpr std::int64_t kMost = 0x7FFFFFFF;
  const auto count = std::chrono::ceil<std::chrono::milliseconds>(span).count();
  return static_cast<DWORD>(std::clamp<std::int64_t>(count, 0, kMost));
}

}  // namespace

/// A window that is nowhere on the screen and has the alarm.
class MessageLoop::Window {
 public:
  explicit Window(MessageLoop& loop) {
    WNDCLASSEXW kind{};
    kind.cbSize = sizeof kind;
    kind.lpfnWndProc = &Window::procedure;
    kind.hInstance = thisModule();
    kind.lpszClassName = kClassName;
    (void)::RegisterClassExW(&kind);  // another loop of this module may have done it
    window_ = ::CreateWindowExW(0, kClassName, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                kind.hInstance, nullptr);
    if (window_ == nullptr) {
      throw std::system_error(static_cast<int>(::GetLastError()), std::system_category(),
                              "cannot make a window for messages");
    }
    ::SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&loop));
  }
  /// The class is refused to go while another loop uses it.
  ~Window() {
    ::DestroyWindow(window_);
    ::UnregisterClassW(kClassName, thisModule());
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  void setAlarm(DWORD milliseconds) {
    ::SetTimer(window_, kAlarm, std::max<DWORD>(milliseconds, USER_TIMER_MINIMUM), nullptr);
  }
  void stopAlarm() { ::KillTimer(window_, kAlarm); }
  [[nodiscard]] bool isAlarm(const MSG& message) const {
    return message.hwnd == window_ && message.message == WM_TIMER;
  }

 private:
  static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM word, LPARAM data) {
    auto* const loop = reinterpret_cast<MessageLoop*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (loop != nullptr && message == WM_TIMER) {
      const std::shared_ptr<void> kept = loop->owner_.lock();
      loop->guarded([&] { loop->ring(); });
      return 0;
    }
    return ::DefWindowProcW(window, message, word, data);
  }

  HWND window_ = nullptr;
};

MessageLoop::MessageLoop(FailureHandler onFailure)
    : onFailure_(std::move(onFailure)), window_(std::make_unique<Window>(*this)) {}

MessageLoop::~MessageLoop() = default;

MessageLoop::Duration MessageLoop::now() const {
  return std::chrono::steady_clock::now() - start_;
}

void MessageLoop::wait(Duration span) {
  const Duration end = now() + span;
  for (Duration left = span; left > Duration(0); left = end - now()) {
    const DWORD woken = ::MsgWaitForMultipleObjectsEx(0, nullptr, wholeMilliseconds(left),
                                                      QS_PAINT | QS_SENDMESSAGE, 0);
    if (woken == WAIT_FAILED) {
      ::Sleep(wholeMilliseconds(left));
    }
    MSG message{};
    while (now() < end &&
           ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | PM_QS_PAINT | PM_QS_SENDMESSAGE)) {
      ++dispatching_;
      ::DispatchMessageW(&message);
      --dispatching_;
    }
  }
  rethrow();
}

/// Handles what is there, and what that brings up at once; what comes later is for the next pass,
/// so that a window that posts messages to itself for ever cannot hold an operation.
void MessageLoop::deliverInput() {
  const DWORD begin = ::GetTickCount();
  std::optional<int> quit;
  MSG message{};
  bool later = false;
  while (!later && ::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
    if (message.message == WM_QUIT) {
      quit = static_cast<int>(message.wParam);
      continue;
    }
    later = static_cast<std::int32_t>(message.time - begin) > 0;
    handle(message);
    if (failure_ != nullptr) {
      break;
    }
  }
  if (quit) {
    ::PostQuitMessage(*quit);
  }
  rethrow();
}

/// The alarm is left alone: the pass ticks what is due when the input has been delivered. (The
/// loop of a dialog that this brings up dispatches the alarm itself.)
void MessageLoop::handle(MSG& message) {
  if (window_->isAlarm(message)) {
    return;
  }
  ++dispatching_;
  guarded([&] {
    if (!filter_ || !filter_(message)) {
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
    }
  });
  --dispatching_;
}

void MessageLoop::rethrow() {
  if (failure_ != nullptr) {
    std::rethrow_exception(std::exchange(failure_, nullptr));
  }
}

void MessageLoop::failed(std::exception_ptr failure) noexcept {
  if (dispatching_ > 0) {
    // The first one tells more than what came of it.
    if (failure_ == nullptr) {
      failure_ = std::move(failure);
    }
  } else if (onFailure_) {
    onFailure_(std::move(failure));
  } else {
    std::rethrow_exception(std::move(failure));
  }
}

void MessageLoop::ring() {
  alarm_.reset();
  tickDue();
}

void MessageLoop::timersChanged() noexcept {
  if (window_ == nullptr) {
    return;  // the loop is being taken apart
  }
  const auto due = nextDue();
  if (!due) {
    window_->stopAlarm();
  } else if (due != alarm_) {
    window_->setAlarm(wholeMilliseconds(*due - now()));
  }
  alarm_ = due;
}

}  // namespace lumodevice::windows
