#pragma once

#include <windows.h>

// Stand on <windows.h>.
#include <cstdint>
#include <oaidl.h>
#include <unknwn.h>

/// The interfaces of VISA COM 3.0 that are used here, as their type library has them. They derive
/// from IUnknown: there is no IDispatch, callers are bound to the order of the functions.
///
///     using namespace lumodevice::windows;
///     visacom::IFormattedIO488* device = nullptr;
///     ::CoCreateInstance(visacom::kFormattedIO488Class, nullptr, CLSCTX_ALL,
///                        visacom::idOf<visacom::IFormattedIO488>(), (void**)&device);
namespace lumodevice::windows::visacom {

/// All identifiers of the library differ in one byte.
constexpr GUID guid(std::uint8_t number) {
  return {0xDB8CBF00UL | number, 0xD6D3, 0x11D4, {0xAA, 0x51, 0x00, 0xA0, 0x24, 0xEE, 0x30, 0xBD}};
}

inline constexpr GUID kResourceManagerClass = guid(0x1C);
inline constexpr GUID kFormattedIO488Class = guid(0x1D);

/// The identifier of an interface.
template <typename Interface>
constexpr GUID idOf() {
  return guid(Interface::kNumber);
}

using Long = std::int32_t;
using Short = std::int16_t;

struct IVisaSession : IUnknown {
  static constexpr std::uint8_t kNumber = 0x03;
  virtual HRESULT STDMETHODCALLTYPE get_ComponentVersion(Long* version) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SpecVersion(Long* version) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_HardwareInterfaceName(BSTR* name) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_HardwareInterfaceNumber(Short* number) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_HardwareInterfaceType(Short* type) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_LockState(Long* state) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_OptionString(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ProgID(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ResourceName(BSTR* name) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SessionType(BSTR* type) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SoftwareManufacturerID(Short* id) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SoftwareManufacturerName(BSTR* name) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Timeout(Long* milliseconds) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Timeout(Long milliseconds) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_LastStatus(HRESULT* status) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetAttribute(Long attribute, VARIANT* value) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetAttribute(Long attribute, VARIANT value) = 0;
  virtual HRESULT STDMETHODCALLTYPE LockRsrc(Long type, Long timeout, BSTR requestedKey,
                                             BSTR* accessKey) = 0;
  virtual HRESULT STDMETHODCALLTYPE UnlockRsrc() = 0;
  virtual HRESULT STDMETHODCALLTYPE Init(BSTR resourceName, Long mode, Long timeout,
                                         BSTR options) = 0;
  virtual HRESULT STDMETHODCALLTYPE Close() = 0;
};

struct IBaseMessage : IVisaSession {
  static constexpr std::uint8_t kNumber = 0x04;
  virtual HRESULT STDMETHODCALLTYPE get_IOProtocol(Long* protocol) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_IOProtocol(Long protocol) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SendEndEnabled(VARIANT_BOOL* enabled) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_SendEndEnabled(VARIANT_BOOL enabled) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_TerminationCharacter(BYTE* character) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_TerminationCharacter(BYTE character) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_TerminationCharacterEnabled(VARIANT_BOOL* enabled) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_TerminationCharacterEnabled(VARIANT_BOOL enabled) = 0;
  virtual HRESULT STDMETHODCALLTYPE AssertTrigger(Long protocol) = 0;
  virtual HRESULT STDMETHODCALLTYPE Clear() = 0;
  virtual HRESULT STDMETHODCALLTYPE ReadSTB(Short* status) = 0;
};

struct IMessage : IBaseMessage {
  static constexpr std::uint8_t kNumber = 0x05;
  virtual HRESULT STDMETHODCALLTYPE Read(Long count, SAFEARRAY** bytes) = 0;
  virtual HRESULT STDMETHODCALLTYPE ReadString(Long count, BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE Write(SAFEARRAY** bytes, Long count, Long* written) = 0;
  virtual HRESULT STDMETHODCALLTYPE WriteString(BSTR text, Long* written) = 0;
};

/// What sessions of serial resources have besides IMessage; the functions up to the end modes.
struct ISerial : IVisaSession {
  static constexpr std::uint8_t kNumber = 0x0C;
  virtual HRESULT STDMETHODCALLTYPE get_BytesAvailable(Long* count) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_BaudRate(Long* rate) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_BaudRate(Long rate) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DataBits(Short* bits) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_DataBits(Short bits) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ClearToSendState(Long* state) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DataCarrierDetectState(Long* state) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DataSetReadyState(Long* state) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_DataTerminalReadyState(Long* state) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_DataTerminalReadyState(Long state) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_EndIn(Long* mode) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_EndIn(Long mode) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_EndOut(Long* mode) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_EndOut(Long mode) = 0;
};

struct IResourceManager : IUnknown {
  static constexpr std::uint8_t kNumber = 0x02;
  virtual HRESULT STDMETHODCALLTYPE get_SoftwareManufacturerName(BSTR* name) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SoftwareManufacturerID(Short* id) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Description(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ComponentVersion(Long* version) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_ProgID(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_SpecVersion(Long* version) = 0;
  virtual HRESULT STDMETHODCALLTYPE FindRsrc(BSTR expression, SAFEARRAY** found) = 0;
  virtual HRESULT STDMETHODCALLTYPE Open(BSTR resourceName, Long mode, Long timeout, BSTR options,
                                         IVisaSession** session) = 0;
  virtual HRESULT STDMETHODCALLTYPE ParseRsrc(BSTR name, Short* type, Short* number,
                                              BSTR* sessionType) = 0;
};

struct IFormattedIO488 : IUnknown {
  static constexpr std::uint8_t kNumber = 0x1A;
  virtual HRESULT STDMETHODCALLTYPE get_IO(IMessage** session) = 0;
  virtual HRESULT STDMETHODCALLTYPE putref_IO(IMessage* session) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_InstrumentBigEndian(VARIANT_BOOL* bigEndian) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_InstrumentBigEndian(VARIANT_BOOL bigEndian) = 0;
  virtual HRESULT STDMETHODCALLTYPE WriteString(BSTR data, VARIANT_BOOL flushAndEnd) = 0;
  virtual HRESULT STDMETHODCALLTYPE WriteNumber(VARIANT data, Long type,
                                                VARIANT_BOOL flushAndEnd) = 0;
  virtual HRESULT STDMETHODCALLTYPE WriteList(VARIANT* data, Long type, BSTR separator,
                                              VARIANT_BOOL flushAndEnd) = 0;
  virtual HRESULT STDMETHODCALLTYPE WriteIEEEBlock(BSTR command, VARIANT data,
                                                   VARIANT_BOOL flushAndEnd) = 0;
  virtual HRESULT STDMETHODCALLTYPE ReadString(BSTR* text) = 0;
  virtual HRESULT STDMETHODCALLTYPE ReadNumber(Long type, VARIANT_BOOL flushToEnd,
                                               VARIANT* number) = 0;
  virtual HRESULT STDMETHODCALLTYPE ReadList(Long type, BSTR separators, VARIANT* list) = 0;
  virtual HRESULT STDMETHODCALLTYPE ReadIEEEBlock(Long type, VARIANT_BOOL seekToBlock,
                                                  VARIANT_BOOL flushToEnd, VARIANT* block) = 0;
  virtual HRESULT STDMETHODCALLTYPE FlushWrite(VARIANT_BOOL sendEnd) = 0;
  virtual HRESULT STDMETHODCALLTYPE FlushRead() = 0;
  virtual HRESULT STDMETHODCALLTYPE SetBufferSize(Long mask, Long size) = 0;
};

}  // namespace lumodevice::windows::visacom
