/// What the control costs a host on Windows: its size, an object that comes and goes, a member by
/// the dispatch interface against the same by its place. Usage: automation_bench LumoDevice.ocx
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <ole2.h>
#include <vector>

#include "LumoDevice.h"
#include "bench/table.hpp"
#include "bindings/automation/guid.hpp"
#include "bindings/automation/identity.hpp"
#include "lumodevice/windows/com_pointer.hpp"
#include "lumodevice/windows/com_values.hpp"

namespace {

using lumodevice::windows::ComPointer;

constexpr DISPID kResultStr = 0x68030001;

/// Microseconds of one act: the median of 21 turns.
double microseconds(int acts, const std::function<void()>& act) {
  std::vector<double> turns;
  for (int turn = 0; turn < 21; ++turn) {
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < acts; ++i) {
      act();
    }
    const std::chrono::duration<double, std::micro> span = std::chrono::steady_clock::now() - begin;
    turns.push_back(span.count() / acts);
  }
  return bench::median(turns);
}

void demand(bool good, const char* what) {
  if (!good) {
    static_cast<void>(std::fprintf(stderr, "automation_bench: %s\n", what));
    std::exit(1);
  }
}

ComPointer<IClassFactory> factoryIn(const char* file) {
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const HMODULE module = LoadLibraryA(file);
  demand(module != nullptr, "cannot load the control");
  const auto get = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
  ComPointer<IClassFactory> factory;
  demand(get != nullptr && get(lumodevice::automation::guidOf(lumodevice::automation::kClassId),
                               IID_IClassFactory, factory.untypedOut()) == S_OK,
         "the file has no control");
  return factory;
}

ComPointer<_ZANCtrl> controlOf(const ComPointer<IClassFactory>& factory) {
  ComPointer<_ZANCtrl> load;
  demand(factory->CreateInstance(nullptr, __uuidof(_ZANCtrl), load.untypedOut()) == S_OK,
         "no control is made");
  return load;
}

void early(_ZANCtrl& load) {
  lumodevice::windows::Bstr text;
  demand(load.get_ResultStr(text.out()) == S_OK, "ResultStr fails");
}

void late(IDispatch& load) {
  DISPPARAMS none{};
  lumodevice::windows::Variant text;
  demand(load.Invoke(kResultStr, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none,
                     &text.get(), nullptr, nullptr) == S_OK,
         "ResultStr fails");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    static_cast<void>(std::fprintf(stderr, "usage: automation_bench LumoDevice.ocx\n"));
    return 2;
  }
  OleInitialize(nullptr);
  bench::printHead("kB");
  constexpr double kSizeAim = sizeof(void*) == 8 ? 1600 : 1800;
  bench::printRatio("size of the control",
                    static_cast<double>(std::filesystem::file_size(argv[1])) / 1000, kSizeAim, 1);

  const auto factory = factoryIn(argv[1]);
  const auto load = controlOf(factory);
  bench::printHead("ms");
  bench::printRatio("a control made, used for the first time and released",
                    microseconds(50, [&] { early(*controlOf(factory).get()); }) / 1000, 5, 1);
  early(*load.get());
  bench::printHead("us");
  bench::printRatio("ResultStr through IDispatch, limit: early bound",
                    microseconds(20000, [&] { late(*load.get()); }),
                    microseconds(20000, [&] { early(*load.get()); }), 3);
  return 0;
}
