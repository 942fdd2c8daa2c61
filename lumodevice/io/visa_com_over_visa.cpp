#include "lumodevice/io/visa_com_over_visa.hpp"

#include <string>

#include "lumodevice/io/formatted_io.hpp"
#include "lumodevice/io/message_session_over_visa.hpp"

namespace lumodevice::io {

namespace {

constexpr auto kInvalidArgument = static_cast<int>(0x80070057U);

class ResourceManagerOverVisa : public ResourceManager {
 public:
  explicit ResourceManagerOverVisa(Visa& visa) : visa_(visa) {}

  std::shared_ptr<MessageSession> Open(std::string_view resourceName, std::int32_t accessMode,
                                       std::int32_t openTimeout,
                                       std::string_view optionString) override {
    if (!optionString.empty()) {
      throw VisaComFault(kInvalidArgument,
                         "option strings are not supported: \"" + std::string(optionString) + "\"");
    }
    return std::make_shared<MessageSessionOverVisa>(visa_, resourceName,
                                                    static_cast<std::uint32_t>(accessMode),
                                                    static_cast<std::uint32_t>(openTimeout));
  }

 private:
  Visa& visa_;
};

}  // namespace

std::shared_ptr<ResourceManager> VisaComOverVisa::createResourceManager() {
  return std::make_shared<ResourceManagerOverVisa>(visa_);
}

std::shared_ptr<FormattedIO488> VisaComOverVisa::createFormattedIO488() {
  return std::make_shared<FormattedIO>(clock_);
}

}  // namespace lumodevice::io
