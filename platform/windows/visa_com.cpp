#include "lumodevice/windows/visa_com.hpp"

#include <map>
#include <new>
#include <utility>

#include "lumodevice/text/text.hpp"
#include "lumodevice/windows/com_values.hpp"
#include "platform/windows/com_devices.hpp"

namespace lumodevice::windows {

namespace {

using visacom::idOf;
using visacom::IFormattedIO488;
using visacom::IMessage;
using visacom::Long;
using visacom::Short;

/// Asked of an object to find out whether it stands for a device of a component.
constexpr GUID kFaceId = {
    0x5B6C1F0E, 0x8E0B, 0x4C53, {0x9A, 0x2D, 0x6F, 0x3A, 0x41, 0x7E, 0xC8, 0x15}};

/// Runs what may throw at an entry of COM.
template <typename Act>
HRESULT entered(Act act) noexcept {
  try {
    act();
    return S_OK;
  } catch (const io::VisaComFault& fault) {
    return fault.number();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (const Fault&) {
    return E_FAIL;
  }
}

/// Which interfaces an object has, and its references.
template <typename Interface>
class Counted : public Interface {
 public:
  ULONG STDMETHODCALLTYPE AddRef() final { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() final {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~Counted() = default;

 private:
  ULONG references_ = 1;
};

/// A session of a component as VISA COM has it. What the contract of sessions does not have is
/// answered with E_NOTIMPL.
class SessionFace final : public Counted<IMessage> {
 public:
  explicit SessionFace(std::shared_ptr<io::MessageSession> session)
      : session_(std::move(session)) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    if (out == nullptr) return E_POINTER;
    const bool known = iid == IID_IUnknown || iid == idOf<visacom::IVisaSession>() ||
                       iid == idOf<visacom::IBaseMessage>() || iid == idOf<IMessage>();
    *out = known            ? static_cast<void*>(static_cast<IMessage*>(this))
           : iid == kFaceId ? &session_
                            : nullptr;
    if (known) AddRef();
    return *out == nullptr ? E_NOINTERFACE : S_OK;
  }

  HRESULT STDMETHODCALLTYPE put_Timeout(Long milliseconds) override {
    return entered([&] { session_->setTimeout(milliseconds); });
  }
  HRESULT STDMETHODCALLTYPE put_TerminationCharacterEnabled(VARIANT_BOOL enabled) override {
    return entered([&] { session_->setTerminationCharacterEnabled(enabled != VARIANT_FALSE); });
  }

  // clang-format off
  HRESULT STDMETHODCALLTYPE get_ComponentVersion(Long*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_SpecVersion(Long*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_HardwareInterfaceName(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_HardwareInterfaceNumber(Short*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_HardwareInterfaceType(Short*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_LockState(Long*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_OptionString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ProgID(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_ResourceName(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_SessionType(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_SoftwareManufacturerID(Short*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_SoftwareManufacturerName(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_Timeout(Long*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_LastStatus(HRESULT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetAttribute(Long, VARIANT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetAttribute(Long, VARIANT) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE LockRsrc(Long, Long, BSTR, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE UnlockRsrc() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Init(BSTR, Long, Long, BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Close() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_IOProtocol(Long*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_IOProtocol(Long) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_SendEndEnabled(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_SendEndEnabled(VARIANT_BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_TerminationCharacter(BYTE*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_TerminationCharacter(BYTE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE get_TerminationCharacterEnabled(VARIANT_BOOL*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE AssertTrigger(Long) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Clear() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ReadSTB(Short*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Read(Long, SAFEARRAY**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ReadString(Long, BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Write(SAFEARRAY**, Long, Long*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE WriteString(BSTR, Long*) override { return E_NOTIMPL; }
  // clang-format on

 private:
  std::shared_ptr<io::MessageSession> session_;
};

/// The session of a component that an object of VISA COM stands for, or one made of it.
std::shared_ptr<io::MessageSession> sessionOf(IMessage* object) {
  if (object == nullptr) return nullptr;
  void* session = nullptr;
  if (SUCCEEDED(object->QueryInterface(kFaceId, &session))) {
    return *static_cast<std::shared_ptr<io::MessageSession>*>(session);
  }
  return std::make_shared<ComSession>(ComPointer<IMessage>::of(object));
}

IMessage* faceOf(std::shared_ptr<io::MessageSession> session) {
  if (session == nullptr) return nullptr;
  if (const auto com = std::dynamic_pointer_cast<ComSession>(session)) {
    return ComPointer<IMessage>::of(com->com()).release();
  }
  return new SessionFace(std::move(session));
}

/// A device of a component as VISA COM has it. Lists of numbers are answered with E_NOTIMPL.
class DeviceFace final : public Counted<IFormattedIO488> {
 public:
  explicit DeviceFace(std::shared_ptr<io::FormattedIO488> device) : device_(std::move(device)) {
    given().emplace(device_.get(), this);
  }

  /// The devices that are given out on this thread, which is the one that uses them.
  static std::map<const io::FormattedIO488*, DeviceFace*>& given() {
    static thread_local std::map<const io::FormattedIO488*, DeviceFace*> faces;
    return faces;
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    if (out == nullptr) return E_POINTER;
    const bool known = iid == IID_IUnknown || iid == idOf<IFormattedIO488>();
    *out = known            ? static_cast<void*>(static_cast<IFormattedIO488*>(this))
           : iid == kFaceId ? &device_
                            : nullptr;
    if (known) AddRef();
    return *out == nullptr ? E_NOINTERFACE : S_OK;
  }

  HRESULT STDMETHODCALLTYPE get_IO(IMessage** session) override {
    if (session == nullptr) return E_POINTER;
    *session = nullptr;
    return entered([&] { *session = faceOf(device_->IO()); });
  }
  HRESULT STDMETHODCALLTYPE putref_IO(IMessage* session) override {
    return entered([&] { device_->setIO(sessionOf(session)); });
  }
  /// Of numbers of several bytes, which nothing here transfers.
  HRESULT STDMETHODCALLTYPE get_InstrumentBigEndian(VARIANT_BOOL* bigEndian) override {
    if (bigEndian == nullptr) return E_POINTER;
    *bigEndian = bigEndian_;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE put_InstrumentBigEndian(VARIANT_BOOL bigEndian) override {
    bigEndian_ = bigEndian;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE WriteString(BSTR data, VARIANT_BOOL flushAndEnd) override {
    return entered([&] { device_->WriteString(bytesOf(data), flushAndEnd != VARIANT_FALSE); });
  }
  HRESULT STDMETHODCALLTYPE WriteNumber(VARIANT data, Long /*type*/,
                                        VARIANT_BOOL flushAndEnd) override {
    Variant text;
    const HRESULT result = ::VariantChangeTypeEx(&text.get(), &data, LOCALE_INVARIANT, 0, VT_BSTR);
    return FAILED(result) ? result : WriteString(text.get().bstrVal, flushAndEnd);
  }
  HRESULT STDMETHODCALLTYPE WriteList(VARIANT* /*data*/, Long /*type*/, BSTR /*separator*/,
                                      VARIANT_BOOL /*flushAndEnd*/) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE WriteIEEEBlock(BSTR command, VARIANT data,
                                           VARIANT_BOOL flushAndEnd) override {
    io::Bytes block;
    if (!readBlock(data, block)) return DISP_E_TYPEMISMATCH;
    return entered(
        [&] { device_->WriteIEEEBlock(bytesOf(command), block, flushAndEnd != VARIANT_FALSE); });
  }
  HRESULT STDMETHODCALLTYPE ReadString(BSTR* text) override {
    if (text == nullptr) return E_POINTER;
    *text = nullptr;
    return entered([&] { *text = Bstr(device_->ReadString()).release(); });
  }
  HRESULT STDMETHODCALLTYPE ReadNumber(Long type, VARIANT_BOOL /*flushToEnd*/,
                                       VARIANT* number) override {
    if (number == nullptr) return E_POINTER;
    ::VariantInit(number);
    Variant read;
    const HRESULT result = entered([&] {
      read.get().dblVal = text::Val(device_->ReadString());
      read.get().vt = VT_R8;
    });
    const auto wanted = static_cast<VARTYPE>(type == VT_VARIANT ? VT_R8 : type);
    return FAILED(result) ? result : ::VariantChangeType(number, &read.get(), 0, wanted);
  }
  HRESULT STDMETHODCALLTYPE ReadList(Long /*type*/, BSTR /*separators*/,
                                     VARIANT* /*list*/) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ReadIEEEBlock(Long type, VARIANT_BOOL seekToBlock,
                                          VARIANT_BOOL flushToEnd, VARIANT* block) override {
    if (block == nullptr) return E_POINTER;
    ::VariantInit(block);
    if (type != VT_UI1) return static_cast<HRESULT>(io::E_VISA_NSUP_FMT);
    return entered([&] {
      const io::Bytes bytes =
          device_->ReadIEEEBlock(seekToBlock != VARIANT_FALSE, flushToEnd != VARIANT_FALSE);
      if (!storeBlock(bytes, *block)) throw std::bad_alloc();
    });
  }
  HRESULT STDMETHODCALLTYPE FlushWrite(VARIANT_BOOL sendEnd) override {
    return entered([&] { device_->FlushWrite(sendEnd != VARIANT_FALSE); });
  }
  HRESULT STDMETHODCALLTYPE FlushRead() override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetBufferSize(Long mask, Long size) override {
    return entered([&] { device_->SetBufferSize(mask, size); });
  }

 private:
  ~DeviceFace() override { given().erase(device_.get()); }

  std::shared_ptr<io::FormattedIO488> device_;
  VARIANT_BOOL bigEndian_ = VARIANT_TRUE;
};

}  // namespace

IFormattedIO488* comOf(const std::shared_ptr<io::FormattedIO488>& device) {
  if (device == nullptr) return nullptr;
  if (const auto com = std::dynamic_pointer_cast<ComFormattedIO>(device)) {
    return ComPointer<IFormattedIO488>::of(com->com()).release();
  }
  if (const auto face = DeviceFace::given().find(device.get()); face != DeviceFace::given().end()) {
    return ComPointer<IFormattedIO488>::of(face->second).release();
  }
  return new DeviceFace(device);
}

std::shared_ptr<io::FormattedIO488> fromCom(IUnknown* object) {
  if (object == nullptr) return nullptr;
  void* device = nullptr;
  if (SUCCEEDED(object->QueryInterface(kFaceId, &device))) {
    return *static_cast<std::shared_ptr<io::FormattedIO488>*>(device);
  }
  ComPointer<IFormattedIO488> foreign;
  if (FAILED(object->QueryInterface(idOf<IFormattedIO488>(), foreign.untypedOut()))) {
    throw io::VisaComFault(static_cast<int>(E_NOINTERFACE), "no formatted-I/O object of VISA COM");
  }
  return std::make_shared<ComFormattedIO>(std::move(foreign));
}

}  // namespace lumodevice::windows
