/// The members as C++ and other compiled languages call them: by their place in the interface, as
/// the compiler of the type library has it.
#include "LumoDevice.h"
#include "tests/bindings/automation/windows/control_bench.hpp"

namespace lumodevice::automation {
namespace {

class EarlyBound : public ControlBench {
 protected:
  ComPointer<::_ZANCtrl> load = made();

 private:
  [[nodiscard]] ComPointer<::_ZANCtrl> made() const {
    ComPointer<::_ZANCtrl> object;
    EXPECT_EQ(factory()->CreateInstance(nullptr, guidOf(kInterfaceId), object.untypedOut()), S_OK);
    return object;
  }
};

TEST_F(EarlyBound, dataMembersAreKept) {
  VARIANT_BOOL found = VARIANT_FALSE;
  EXPECT_EQ(load->put_bDevAvaliable(VARIANT_TRUE), S_OK);
  EXPECT_EQ(load->get_bDevAvaliable(&found), S_OK);
  EXPECT_EQ(found, VARIANT_TRUE);

  const windows::Bstr identity("A, maker");
  windows::Bstr came;
  EXPECT_EQ(load->put_IDN(identity.get()), S_OK);
  EXPECT_EQ(load->get_IDN(came.out()), S_OK);
  EXPECT_EQ(view(came), L"A, maker");
  EXPECT_EQ(load->put_IDN(nullptr), S_OK);
  EXPECT_EQ(load->get_IDN(came.out()), S_OK);
  EXPECT_EQ(view(came), L"");

  ::IFormattedIO488* device = nullptr;
  EXPECT_EQ(load->get_devZAN(&device), S_OK);
  EXPECT_EQ(device, nullptr);
  EXPECT_EQ(load->putref_devZAN(nullptr), S_OK);
}

/// One after the other, so that a place too many or too few in between would be seen.
TEST_F(EarlyBound, everyMemberIsAtItsPlace) {
  VARIANT_BOOL flag = VARIANT_FALSE;
  EXPECT_EQ(load->put_AutoQuery(&flag), S_OK);
  flag = VARIANT_TRUE;
  EXPECT_EQ(load->get_AutoQuery(&flag), S_OK);
  EXPECT_EQ(flag, VARIANT_FALSE);
  EXPECT_EQ(load->get_isConnected(&flag), S_OK);
  EXPECT_EQ(flag, VARIANT_FALSE);
  SHORT number = 7;
  EXPECT_EQ(load->get_ChCount(&number), S_OK);
  EXPECT_EQ(number, 0);
  number = 7;
  EXPECT_EQ(load->get_ConnStyle(&number), S_OK);
  EXPECT_EQ(number, 0);
  windows::Bstr text("before");
  EXPECT_EQ(load->get_ErrMessage(text.out()), S_OK);
  EXPECT_EQ(view(text), L"");
  const windows::Bstr command(" ");
  BSTR passed = command.get();
  EXPECT_EQ(load->SendCmd(&passed), S_OK);
  EXPECT_EQ(passed, command.get());
  EXPECT_EQ(load->get_ResultStr(text.out()), S_OK);
  EXPECT_EQ(view(text), L"");
  flag = VARIANT_TRUE;
  EXPECT_EQ(load->put_DisplayCmd(&flag), S_OK);
  EXPECT_EQ(load->nextCmd(text.out()), S_OK);
  EXPECT_NE(view(text), L"");
  EXPECT_EQ(load->ShowControl(), S_OK);
  EXPECT_EQ(load->ShowConnect(), S_OK);
  EXPECT_EQ(load->NotConnect(), S_OK);
  flag = VARIANT_TRUE;
  EXPECT_EQ(load->SendSysFile(&flag), S_OK);
  EXPECT_EQ(flag, VARIANT_FALSE);
  flag = VARIANT_TRUE;
  EXPECT_EQ(load->GetBMPFile(&flag), S_OK);
  EXPECT_EQ(flag, VARIANT_FALSE);
  const windows::Bstr file("C:\\elsewhere.dev");
  passed = file.get();
  EXPECT_EQ(load->GetPresetFile(&passed, &flag), S_OK);
  EXPECT_EQ(flag, VARIANT_FALSE);
  EXPECT_EQ(passed, file.get());
  flag = VARIANT_TRUE;
  EXPECT_EQ(load->SetPresetFile(&flag), S_OK);
  EXPECT_EQ(flag, VARIANT_FALSE);
  EXPECT_EQ(load->GetSeqFile(&flag), S_OK);
  EXPECT_EQ(flag, VARIANT_TRUE);
  flag = VARIANT_FALSE;
  EXPECT_EQ(load->GetSysFile(&flag), S_OK);
  EXPECT_EQ(flag, VARIANT_TRUE);
}

TEST_F(EarlyBound, aPlaceThatIsMissingIsRefused) {
  EXPECT_EQ(load->get_IDN(nullptr), E_POINTER);
  EXPECT_EQ(load->SendCmd(nullptr), E_POINTER);
  EXPECT_EQ(load->put_AutoQuery(nullptr), E_POINTER);
  EXPECT_EQ(load->GetPresetFile(nullptr, nullptr), E_POINTER);
}

/// A control is one object, whichever way it is called.
TEST_F(EarlyBound, lateBoundCallsMeetTheSameComponent) {
  const windows::Bstr identity("the same");
  EXPECT_EQ(load->put_IDN(identity.get()), S_OK);
  const auto late = as<IDispatch>(load);
  std::wstring text;
  EXPECT_EQ(getText(*late.get(), L"IDN", text), S_OK);
  EXPECT_EQ(text, L"the same");
}

}  // namespace
}  // namespace lumodevice::automation
