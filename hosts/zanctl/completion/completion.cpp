#include "hosts/zanctl/completion/completion.hpp"

#include <algorithm>

#include "hosts/zanctl/output/control_names.hpp"
#include "lumodevice/form/panel_surface.hpp"

namespace zanctl {

namespace {

struct Offered {
  std::string_view placeholder;
  Offer offer;
};
constexpr std::array kOffered = {
    Offered{"FILE", Offer::Files},        Offered{"DUMP", Offer::Files},
    Offered{"PATH", Offer::Files},        Offered{"DIR", Offer::Folders},
    Offered{"COMn=DEVICE", Offer::Ports}, Offered{"CONTROL", Offer::Controls},
    Offered{"ADDRESS", Offer::Addresses},
};

}  // namespace

Offer offerFor(const Placeholder& placeholder) {
  if (!placeholder.choices.empty()) {
    return Offer::Choices;
  }
  const auto* const found = std::ranges::find(kOffered, placeholder.name, &Offered::placeholder);
  return found == kOffered.end() ? Offer::Nothing : found->offer;
}

std::vector<std::string> controlNames() {
  return namesOfControls(lumodevice::form::PanelSurface());
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : " ") + word;
  }
  return text;
}

}  // namespace zanctl
