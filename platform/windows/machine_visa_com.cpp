#include "platform/machine_visa_com.hpp"

#include <windows.h>

// Stands on <windows.h>.
#include <objbase.h>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "platform/windows/com_devices.hpp"
#include "platform/windows/text.hpp"

namespace lumodevice::platform {

namespace {

using windows::ComPointer;
namespace visacom = windows::visacom;

/// COM is in use on this thread as long as one of these lives; a thread that is set up otherwise
/// already stays as it is.
class Apartment {
 public:
  Apartment() : result_(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
  ~Apartment() {
    if (SUCCEEDED(result_)) ::CoUninitialize();
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

 private:
  HRESULT result_;
};

template <typename Interface>
ComPointer<Interface> create(const GUID& kind) {
  ComPointer<Interface> object;
  const HRESULT result = ::CoCreateInstance(kind, nullptr, CLSCTX_INPROC_SERVER,
                                            visacom::idOf<Interface>(), object.untypedOut());
  if (FAILED(result)) {
    throw io::VisaComFault(static_cast<int>(result),
                           "VISA COM: " + windows::errorText(static_cast<std::uint32_t>(result)));
  }
  return object;
}

bool isRegistered(const GUID& kind) {
  ComPointer<IUnknown> factory;
  return ::CoGetClassObject(kind, CLSCTX_INPROC_SERVER, nullptr, IID_IUnknown,
                            factory.untypedOut()) != REGDB_E_CLASSNOTREG;
}

/// Asked for at each connection: an installation that comes while the program runs is seen. Both
/// objects come from the same place, for neither takes what is the other's.
class MachineVisaCom : public io::VisaCom {
 public:
  explicit MachineVisaCom(io::Visa& visa) : over_(visa) {}

  [[nodiscard]] std::shared_ptr<io::ResourceManager> createResourceManager() override {
    if (!isInstalled()) return over_.createResourceManager();
    return std::make_shared<windows::ComResourceManager>(
        create<visacom::IResourceManager>(visacom::kResourceManagerClass));
  }

  [[nodiscard]] std::shared_ptr<io::FormattedIO488> createFormattedIO488() override {
    if (!isInstalled()) return over_.createFormattedIO488();
    return std::make_shared<windows::ComFormattedIO>(
        create<visacom::IFormattedIO488>(visacom::kFormattedIO488Class));
  }

 private:
  [[nodiscard]] bool isInstalled() {
    if (apartment_ == nullptr) apartment_ = std::make_unique<Apartment>();
    return isRegistered(visacom::kResourceManagerClass) &&
           isRegistered(visacom::kFormattedIO488Class);
  }

  std::unique_ptr<Apartment> apartment_;
  io::VisaComOverVisa over_;
};

}  // namespace

std::unique_ptr<io::VisaCom> machineVisaCom(io::Visa& visa) {
  return std::make_unique<MachineVisaCom>(visa);
}

}  // namespace lumodevice::platform
