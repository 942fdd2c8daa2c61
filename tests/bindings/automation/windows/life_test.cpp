/// Controls that come and go.
#include <ole2.h>
#include <psapi.h>

#include "tests/bindings/automation/windows/control_bench.hpp"

namespace lumodevice::automation {
namespace {

using Life = ControlBench;

struct Footprint {
  DWORD kernel = 0;
  DWORD gdi = 0;
  DWORD user = 0;
  SIZE_T memory = 0;
};

Footprint footprint() {
  Footprint held;
  GetProcessHandleCount(GetCurrentProcess(), &held.kernel);
  held.gdi = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  held.user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  PROCESS_MEMORY_COUNTERS_EX counters{};
  counters.cb = sizeof counters;
  GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                       sizeof counters);
  held.memory = counters.PrivateUsage;
  return held;
}

void cycles(const ComPointer<IClassFactory>& factory, int count) {
  for (int i = 0; i < count; ++i) {
    ComPointer<IDispatch> load;
    ASSERT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, load.untypedOut()), S_OK);
    std::int32_t channels = -1;
    ASSERT_EQ(getNumber(*load.get(), L"ChCount", channels), S_OK);
    ASSERT_EQ(channels, 0);
  }
}

TEST_F(Life, tenThousandControlsLeaveNothingBehind) {
  const auto maker = factory();
  cycles(maker, 500);
  const Footprint before = footprint();
  cycles(maker, 10'000);
  const Footprint after = footprint();
  EXPECT_LE(after.kernel, before.kernel);
  EXPECT_LE(after.gdi, before.gdi);
  EXPECT_LE(after.user, before.user);
  // A byte for each would be 10 kB; heaps keep some room of their own.
  EXPECT_LE(after.memory, before.memory + 256 * 1024);
}

TEST_F(Life, oneThatWasNeverUsedGoesToo) {
  const auto maker = factory();
  ComPointer<IDispatch> load;
  EXPECT_EQ(maker->CreateInstance(nullptr, IID_IDispatch, load.untypedOut()), S_OK);
}

/// Lets go of the control from a message that a wait of the control delivers.
struct LetGo {
  static inline ComPointer<IDispatch>* load = nullptr;
  static void CALLBACK onTimer(HWND /*window*/, UINT /*message*/, UINT_PTR timer, DWORD /*time*/) {
    KillTimer(nullptr, timer);
    *load = {};
    load = nullptr;
  }
};

TEST_F(Life, aLastReleaseInTheMidstOfAWaitEndsTheOperation) {
  ComPointer<IDispatch> load = control();
  LetGo::load = &load;
  SetTimer(nullptr, 0, 300, &LetGo::onTimer);
  IDispatch* const object = load.get();
  const DWORD begin = GetTickCount();
  Outcome outcome;
  call(*object, 0x6003001f, DISPATCH_METHOD, outcome);  // AutoConnect: seconds of waits
  EXPECT_EQ(load.get(), nullptr) << "the wait delivered no message";
  EXPECT_EQ(outcome.result, S_OK);
  EXPECT_EQ(V_BOOL(&outcome.value.get()), VARIANT_FALSE);
  EXPECT_LT(GetTickCount() - begin, 3000U);
}

/// The readings are asked for in ticks, which come while the host handles its messages, and wait.
TEST_F(Life, aLastReleaseInTheMidstOfATickEndsIt) {
  ComPointer<IDispatch> load = control();
  Outcome outcome;
  call(*load.get(), 0x6003001f, DISPATCH_METHOD, outcome);
  ASSERT_EQ(V_BOOL(&outcome.value.get()), VARIANT_TRUE);
  VARIANT on = boolVariant(true);
  ASSERT_EQ(put(*load.get(), L"AutoQuery", on), S_OK);
  LetGo::load = &load;
  SetTimer(nullptr, 0, 500, &LetGo::onTimer);
  const DWORD begin = GetTickCount();
  while (GetTickCount() - begin < 1500) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      DispatchMessageW(&message);
    }
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
  }
  EXPECT_EQ(load.get(), nullptr);
}

TEST_F(Life, twoControlsShareNothing) {
  const auto one = control();
  const auto other = control();
  const windows::Bstr text("one");
  VARIANT value = textVariant(text);
  ASSERT_EQ(put(*one.get(), L"IDN", value), S_OK);
  std::wstring came = L"-";
  ASSERT_EQ(getText(*other.get(), L"IDN", came), S_OK);
  EXPECT_EQ(came, L"");
}

}  // namespace
}  // namespace lumodevice::automation
