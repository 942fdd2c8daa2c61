#pragma once

#include <memory>

#include "lumodevice/export.hpp"
#include "lumodevice/io/clock.hpp"
#include "lumodevice/io/visa.hpp"
#include "lumodevice/io/visa_com.hpp"

namespace lumodevice::io {

/// The VISA COM objects over the nine operations of a VISA library, so that this link works
/// wherever a VISA library does. Library and clock must outlive every object made here. A
/// text is read for ten seconds at most and a block for ten minutes, unless the first read of the
/// library alone takes longer.
///
///     io::VisaComOverVisa com(host.visa);
///     const auto device = com.createFormattedIO488();
class LUMODEVICE_API VisaComOverVisa : public VisaCom {
 public:
  /// Null: the time is the system's.
  explicit VisaComOverVisa(Visa& visa, const Clock* clock = nullptr) : visa_(visa), clock_(clock) {}
  [[nodiscard]] std::shared_ptr<ResourceManager> createResourceManager() override;
  [[nodiscard]] std::shared_ptr<FormattedIO488> createFormattedIO488() override;

 private:
  Visa& visa_;
  const Clock* clock_;
};

}  // namespace lumodevice::io
