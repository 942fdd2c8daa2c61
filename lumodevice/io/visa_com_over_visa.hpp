#pragma once

#include <memory>

#include "lumodevice/export.hpp"
#include "lumodevice/io/visa.hpp"
#include "lumodevice/io/visa_com.hpp"

namespace lumodevice::io {

/// The VISA COM objects over the nine operations of a VISA library, so that this link works
/// wherever a VISA library does. The library must outlive every object made here.
///
///     io::VisaComOverVisa com(host.visa);
///     const auto device = com.createFormattedIO488();
class LUMODEVICE_API VisaComOverVisa : public VisaCom {
 public:
  explicit VisaComOverVisa(Visa& visa) : visa_(visa) {}
  [[nodiscard]] std::shared_ptr<ResourceManager> createResourceManager() override;
  [[nodiscard]] std::shared_ptr<FormattedIO488> createFormattedIO488() override;

 private:
  Visa& visa_;
};

}  // namespace lumodevice::io
