/// The formatted-I/O object of VISA COM, which hosts put and get.
#include "lumodevice/windows/visa_com_interfaces.hpp"
#include "tests/bindings/automation/windows/control_bench.hpp"

namespace lumodevice::automation {
namespace {

using windows::visacom::IMessage;
using windows::visacom::Long;

/// One of another program, that does nothing.
class ForeignDevice final : public windows::visacom::IFormattedIO488 {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    const bool known = iid == IID_IUnknown || iid == windows::visacom::idOf<IFormattedIO488>();
    *out = known ? this : nullptr;
    if (known) {
      AddRef();
    }
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }

  HRESULT STDMETHODCALLTYPE get_IO(IMessage** session) override {
    *session = nullptr;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE putref_IO(IMessage*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_InstrumentBigEndian(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_InstrumentBigEndian(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE WriteString(BSTR, VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE WriteNumber(VARIANT, Long, VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE WriteList(VARIANT*, Long, BSTR, VARIANT_BOOL) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE WriteIEEEBlock(BSTR, VARIANT, VARIANT_BOOL) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ReadString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ReadNumber(Long, VARIANT_BOOL, VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ReadList(Long, BSTR, VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ReadIEEEBlock(Long, VARIANT_BOOL, VARIANT_BOOL, VARIANT*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE FlushWrite(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE FlushRead() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetBufferSize(Long, Long) override { return E_NOTIMPL; }

  ULONG references = 1;
};

constexpr DISPID kDevZan = 0x40030013;

class Device : public ControlBench {
 protected:
  void TearDown() override { EXPECT_EQ(device.references, 1U); }

  ForeignDevice device;
};

/// By reference; and by an assignment of a language that has only one.
TEST_F(Device, theObjectThatWasPutIsTheOneThatIsGot) {
  for (const WORD flag : {WORD{DISPATCH_PROPERTYPUTREF}, WORD{DISPATCH_PROPERTYPUT}}) {
    const auto load = control();
    VARIANT value = ofType(VT_UNKNOWN);
    V_UNKNOWN(&value) = &device;
    Outcome outcome;
    call(*load.get(), kDevZan, flag, &value, 1, outcome);
    ASSERT_EQ(outcome.result, S_OK);
    call(*load.get(), kDevZan, DISPATCH_PROPERTYGET, outcome);
    ASSERT_EQ(outcome.result, S_OK);
    ASSERT_EQ(V_VT(&outcome.value.get()), VT_UNKNOWN);
    EXPECT_EQ(V_UNKNOWN(&outcome.value.get()), &device);
  }
}

TEST_F(Device, nothingCanBePutInItsPlace) {
  const auto load = control();
  VARIANT value = ofType(VT_UNKNOWN);
  V_UNKNOWN(&value) = &device;
  Outcome outcome;
  call(*load.get(), kDevZan, DISPATCH_PROPERTYPUTREF, &value, 1, outcome);
  ASSERT_EQ(outcome.result, S_OK);
  V_UNKNOWN(&value) = nullptr;
  call(*load.get(), kDevZan, DISPATCH_PROPERTYPUTREF, &value, 1, outcome);
  ASSERT_EQ(outcome.result, S_OK);
  call(*load.get(), kDevZan, DISPATCH_PROPERTYGET, outcome);
  EXPECT_EQ(V_VT(&outcome.value.get()), VT_DISPATCH);
  EXPECT_EQ(V_DISPATCH(&outcome.value.get()), nullptr);
}

}  // namespace
}  // namespace lumodevice::automation
