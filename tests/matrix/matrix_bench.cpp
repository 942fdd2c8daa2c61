#include "tests/matrix/matrix_bench.hpp"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace lumodevice::matrix {

struct MatrixBench::Shown {
  const char* control;
  const char* property;
  const char* query;
};

namespace {

constexpr std::chrono::seconds kAWhile{2};

constexpr MatrixBench::Shown kShown[] = {
    {"chkLoad", "Value", ":LOAD?"},
    {"chkVON", "Value", ":CONF:VOLT:LAT?"},
    {"txtInput(10)", "Text", ":CONF:VOLT:ON?"},
    {"txtInput(24)", "Text", ":CONF:PROT:CURR:LEV?"},
    {"txtInput(25)", "Text", ":CONF:PROT:VOLT:LEV?"},
};

/// By the indexes of their options.
constexpr std::string_view kModes[] = {"CCH",  "CCL",  "CV",   "CRH", "CRL",
                                       "CCDH", "CCDL", "CRDH", "CRDL"};

}  // namespace

void MatrixBench::vanishForAWhile() {
  faults().clear();
  faults().add("vanish=1");
  returns_ = true;
}

void MatrixBench::lockElsewhere() {
  serialDevices().port(kPort).state = zansim::SerialSocket::State::InUse;
  otherProgram_.emplace(resources());
  takeLock();
}

void MatrixBench::heal() {
  faults().clear();
  returns_ = false;
  goneSince_.reset();
  serialDevices().port(kPort).state = zansim::SerialSocket::State::Free;
  otherProgram_.reset();
  otherHasIt_ = false;
}

bool MatrixBench::linkIsOpen() {
  if (zan().ConnStyle() == LinkKind::Visa) {
    return openVisaObjects() > 0;
  }
  const auto state =
      std::exchange(serialDevices().port(kPort).state, zansim::SerialSocket::State::Free);
  bool open = false;
  try {
    (void)serialDevices().open(kPort, {});
  } catch (const io::SerialFault& fault) {
    open = fault.number() == io::kSerialAlreadyOpen;
  }
  serialDevices().port(kPort).state = state;
  return open;
}

/// "" for an empty box, and for a greyed one.
std::string MatrixBench::known(const Shown& shown) {
  std::string value = read(shown.control, shown.property);
  const bool greyed = std::string_view(shown.property) == "Value" && value == "2";
  return greyed ? std::string() : value;
}

/// "" where none is.
std::string MatrixBench::chosenMode() {
  for (std::size_t i = 0; i < std::size(kModes); ++i) {
    if (read("optMode(" + std::to_string(i) + ")", "Value") == "True") {
      return std::string(kModes[i]);
    }
  }
  return {};
}

std::string MatrixBench::untruths() {
  const std::string channel = text("cmbChannel");
  if (channel.empty()) {
    return {};
  }
  std::string all;
  const auto expect = [&](std::string_view name, const std::string& shown,
                          const std::string& seen) {
    if (shown != seen && !shown.empty()) {
      all += std::string(name) + " \"" + shown + "\" for \"" + seen + "\" ";
    }
  };
  for (const Shown& shown : kShown) {
    expect(shown.control, known(shown), atLoad(shown.query));
  }
  expect("optMode", chosenMode(), atLoad(":MODE?"));
  expect("cmbChannel", channel.substr(0, channel.find('-')), "CH" + atLoad(":CHAN?"));
  return all;
}

/// Of groups only the first channels are offered. Where that leaves no entry for the channel that
/// the load is at, none is chosen.
bool MatrixBench::isReadBack() {
  if (control<toolkit::ComboBox>("cmbChannel").listCount() < std::stoi(atLoad(":CHAN?"))) {
    return text("cmbChannel").empty();
  }
  return !text("cmbChannel").empty() && !chosenMode().empty() &&
         std::none_of(std::begin(kShown), std::end(kShown),
                      [this](const Shown& shown) { return known(shown).empty(); });
}

void MatrixBench::everyPass() {
  takeLock();
  if (!returns_ || !faults().linksGone()) {
    return;
  }
  if (!goneSince_) {
    goneSince_ = loop.now();
  } else if (loop.now() - *goneSince_ >= kAWhile) {
    heal();
  }
}

void MatrixBench::takeLock() {
  if (!otherProgram_ || otherHasIt_) {
    return;
  }
  io::ViSession manager = 0;
  io::ViSession session = 0;
  otherProgram_->viOpenDefaultRM(manager);
  otherHasIt_ =
      otherProgram_->viOpen(manager, kUsb, io::VI_EXCLUSIVE_LOCK, 0, session) == io::VI_SUCCESS;
  if (!otherHasIt_) {
    otherProgram_->viClose(manager);
  }
}

}  // namespace lumodevice::matrix
