#include "lumodevice/windows/visa_com.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

#include "lumodevice/system_host.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/windows/com_pointer.hpp"
#include "lumodevice/zan_ctrl.hpp"
#include "platform/machine_visa_com.hpp"
#include "platform/windows/text.hpp"
#include "tests/io/fault_number.hpp"
#include "tests/platform/recorded_calls.hpp"

namespace lumodevice::windows {
namespace {

using visacom::IFormattedIO488;
using visacom::IMessage;

/// A VISA COM server in the registry. (Wine does not look for one in that of the user.)
class Installation {
 public:
  Installation() {
    for (const char* number : {"1C", "1D"}) {
      const std::wstring key = keyOf(number) + L"\\InprocServer32";
      set(key, L"", wide(FAKE_VISA_COM));
      set(key, L"ThreadingModel", L"Both");
    }
    // Loaded here too, so that what it wrote down outlives its users.
    library_ = ::LoadLibraryA(FAKE_VISA_COM);
    (void)calls();
  }
  ~Installation() {
    fail(S_OK);
    ::FreeLibrary(library_);
    for (const char* number : {"1C", "1D"}) {
      ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, keyOf(number).c_str());
    }
  }
  Installation(const Installation&) = delete;
  Installation& operator=(const Installation&) = delete;

  [[nodiscard]] std::string calls() {
    std::string record = function<const char*()>("recordedCalls")();
    function<void()>("forgetCalls")();
    return record;
  }
  void fail(HRESULT result) { function<void(HRESULT)>("failCalls")(result); }

 private:
  static std::wstring keyOf(const char* number) {
    return wide("Software\\Classes\\CLSID\\{DB8CBF" + std::string(number) +
                "-D6D3-11D4-AA51-00A024EE30BD}");
  }
  static void set(const std::wstring& key, const wchar_t* name, const std::wstring& value) {
    ::RegSetKeyValueW(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, value.c_str(),
                      static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
  }
  template <typename Function>
  Function* function(const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(::GetProcAddress(library_, name)));
  }

  HMODULE library_ = nullptr;
};

struct NoVisa : io::Visa {
  io::ViStatus viOpenDefaultRM(io::ViSession&) override { return io::VI_ERROR_SYSTEM_ERROR; }
  io::ViStatus viFindRsrc(io::ViSession, const std::string&, io::ViFindList&, std::uint32_t&,
                          std::string&) override {
    return io::VI_ERROR_SYSTEM_ERROR;
  }
  io::ViStatus viFindNext(io::ViFindList, std::string&) override {
    return io::VI_ERROR_SYSTEM_ERROR;
  }
  io::ViStatus viOpen(io::ViSession, const std::string&, std::uint32_t, std::uint32_t,
                      io::ViSession&) override {
    return io::VI_ERROR_SYSTEM_ERROR;
  }
  io::ViStatus viClose(io::ViObject) override { return io::VI_SUCCESS; }
  io::ViStatus viGetAttribute(io::ViObject, io::ViAttr, std::string&) override {
    return io::VI_ERROR_SYSTEM_ERROR;
  }
  io::ViStatus viSetAttribute(io::ViObject, io::ViAttr, std::uint32_t) override {
    return io::VI_ERROR_SYSTEM_ERROR;
  }
  io::ViStatus viRead(io::ViSession, std::span<char>, std::uint32_t&) override {
    return io::VI_ERROR_SYSTEM_ERROR;
  }
  io::ViStatus viWrite(io::ViSession, std::string_view, std::uint32_t&) override {
    return io::VI_ERROR_SYSTEM_ERROR;
  }
};

struct VisaComOfWindows : testing::Test {
  NoVisa none;
  std::unique_ptr<io::VisaCom> com = platform::machineVisaCom(none);
};

TEST_F(VisaComOfWindows, everyCallReachesTheServerInItsPlace) {
  Installation server;
  const auto device = com->createFormattedIO488();
  const auto session = com->createResourceManager()->Open("GPIB0::7::INSTR", 0, 2000, "");
  session->setTimeout(150);
  session->setTerminationCharacterEnabled(true);
  session->setSerialEndIn(io::kSerialEndNone);
  session->setSerialEndOut(io::kSerialEndTerminationCharacter);
  device->setIO(session);
  device->WriteString("*IDN?\r", true);
  EXPECT_EQ(device->ReadString(), "MAKER,ZAN63200,SIM1,1.2\xB5\n");
  EXPECT_EQ(device->ReadIEEEBlock(true, true), (io::Bytes{1, 0, 255}));
  const io::Bytes block{'a', 'b'};
  device->WriteIEEEBlock(":SYST:SET ", block, true);
  device->FlushWrite(false);
  device->SetBufferSize(io::kInputBuffer, 4096);
  device->setIO(nullptr);
  EXPECT_EQ(server.calls(),
            "Open GPIB0::7::INSTR 0 2000 ''\n"
            "Timeout 150\n"
            "TerminationCharacterEnabled -1\n"
            "EndIn 0\n"
            "EndOut 2\n"
            "IO session\n"
            "WriteString *IDN?\r -1\n"
            "ReadString\n"
            "ReadIEEEBlock 17 -1 -1\n"
            "WriteIEEEBlock :SYST:SET ab 8209 -1\n"
            "FlushWrite 0\n"
            "SetBufferSize 16 4096\n"
            "IO nothing\n");
}

TEST_F(VisaComOfWindows, aFailedCallIsAFaultWithItsNumber) {
  Installation server;
  const auto device = com->createFormattedIO488();
  server.fail(static_cast<HRESULT>(io::E_VISA_TMO));
  EXPECT_EQ(faultNumber<io::VisaComFault>([&] { device->WriteString("x", true); }),
            static_cast<int>(io::E_VISA_TMO));
  EXPECT_EQ(faultNumber<io::VisaComFault>([&] { (void)device->ReadString(); }),
            static_cast<int>(io::E_VISA_TMO));
  EXPECT_EQ(faultNumber<io::VisaComFault>(
                [&] { (void)com->createResourceManager()->Open("x", 0, 0, ""); }),
            static_cast<int>(io::E_VISA_TMO));
}

TEST_F(VisaComOfWindows, whereItIsNotInstalledTheVisaLibraryStandsIn) {
  EXPECT_EQ(faultNumber<io::VisaComFault>(
                [&] { (void)com->createResourceManager()->Open("x", 0, 0, ""); }),
            static_cast<int>(io::E_VISA_SYSTEM_ERROR));
  EXPECT_NE(com->createFormattedIO488(), nullptr);
}

TEST_F(VisaComOfWindows, anInstallationThatComesLaterIsSeen) {
  (void)com->createFormattedIO488();
  Installation server;
  com->createFormattedIO488()->FlushWrite(true);
  EXPECT_EQ(server.calls(), "FlushWrite -1\n");
}

TEST_F(VisaComOfWindows, itsObjectIsGivenOutAsItself) {
  Installation server;
  const auto device = com->createFormattedIO488();
  const ComPointer<IFormattedIO488> first(comOf(device));
  const ComPointer<IFormattedIO488> again(comOf(device));
  EXPECT_EQ(first.get(), again.get());
  const ComPointer<IFormattedIO488> back(comOf(fromCom(first.get())));
  EXPECT_EQ(back.get(), first.get());
}

/// What a program of another language does with the object that it is given.
TEST_F(VisaComOfWindows, aDeviceOfTheVisaLibraryIsAnObjectToo) {
  const auto device = com->createFormattedIO488();
  const ComPointer<IFormattedIO488> given(comOf(device));
  const ComPointer<IFormattedIO488> again(comOf(device));
  EXPECT_EQ(given.get(), again.get());
  EXPECT_EQ(fromCom(given.get()), device);
  ComPointer<IMessage> session;
  EXPECT_EQ(given->get_IO(session.out()), S_OK);
  EXPECT_EQ(session.get(), nullptr);
  BSTR text = nullptr;
  EXPECT_TRUE(FAILED(given->ReadString(&text))) << "there is no session";
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(given->ReadString(nullptr), E_POINTER);
  VARIANT value{};
  EXPECT_EQ(given->WriteIEEEBlock(nullptr, value, VARIANT_TRUE), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(given->SetBufferSize(io::kInputBuffer, 100), S_OK);
}

TEST_F(VisaComOfWindows, anObjectThatNobodyHoldsAnyMoreIsMadeAgain) {
  const auto device = com->createFormattedIO488();
  IFormattedIO488* given = comOf(device);
  EXPECT_EQ(given->Release(), 0U);
  given = comOf(device);
  EXPECT_EQ(fromCom(given), device);
  EXPECT_EQ(given->Release(), 0U);
}

TEST_F(VisaComOfWindows, nothingIsNothingAndAnotherObjectIsRefused) {
  EXPECT_EQ(comOf(nullptr), nullptr);
  EXPECT_EQ(fromCom(nullptr), nullptr);
  ComPointer<IStream> stream;
  ASSERT_EQ(::CreateStreamOnHGlobal(nullptr, TRUE, stream.out()), S_OK);
  EXPECT_EQ(faultNumber<io::VisaComFault>([&] { (void)fromCom(stream.get()); }),
            static_cast<int>(E_NOINTERFACE));
}

/// The whole component: it finds the instrument through the VISA library and opens it through VISA
/// COM.
TEST_F(VisaComOfWindows, aComponentConnectsThroughIt) {
  Installation server;
  ZANCtrl load(
      systemHost({.visaLibrary = RECORDING_VISA, .informationBox = [](std::string_view) {}}));
  posix::RecordedCalls library(RECORDING_VISA);
  toolkit::hand::click(load.surface().get<toolkit::OptionButton>("optVisa2"));
  (void)server.calls();
  EXPECT_TRUE(load.AutoConnect());
  EXPECT_THAT(load.IDN(), testing::HasSubstr("ZAN63200"));
  EXPECT_THAT(server.calls(), testing::StartsWith("Open GPIB0::5::INSTR 0 2000 ''\n"));
  const ComPointer<IFormattedIO488> given(comOf(load.devZAN()));
  const ComPointer<IFormattedIO488> again(comOf(load.devZAN()));
  ASSERT_NE(given.get(), nullptr);
  EXPECT_EQ(given.get(), again.get());
  EXPECT_THAT(library.take(), testing::HasSubstr("viFindRsrc F0000001 ?*INSTR"));
}

}  // namespace
}  // namespace lumodevice::windows
