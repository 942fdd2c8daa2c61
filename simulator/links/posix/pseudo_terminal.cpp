#include "simulator/links/pseudo_terminal.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <termios.h>
#include <utility>

namespace zansim {
namespace {

constexpr std::pair<std::int32_t, speed_t> kSpeeds[] = {
    {1200, B1200},   {2400, B2400},   {4800, B4800},     {9600, B9600},    {19200, B19200},
    {38400, B38400}, {57600, B57600}, {115200, B115200}, {230400, B230400}};

const std::pair<std::int32_t, speed_t>* speedOf(std::int32_t baud) {
  const auto* const found = std::find_if(std::begin(kSpeeds), std::end(kSpeeds),
                                         [&](const auto& entry) { return entry.first == baud; });
  return found == std::end(kSpeeds) ? nullptr : found;
}

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

void makeLink(const std::string& device, const std::string& link) {
  struct stat found {};
  if (::lstat(link.c_str(), &found) == 0) {
    if (!S_ISLNK(found.st_mode)) {
      throw std::invalid_argument(link + " exists and is no symbolic link; name another link");
    }
    ::unlink(link.c_str());
  }
  if (::symlink(device.c_str(), link.c_str()) != 0) {
    fail("cannot make the link " + link);
  }
}

}  // namespace

bool isTerminalSpeed(std::int32_t baud) {
  return speedOf(baud) != nullptr;
}

PseudoTerminal::PseudoTerminal(std::string link)
    : link_(std::move(link)), master_(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
  if (!master_.isOpen() || ::grantpt(master_.get()) != 0 || ::unlockpt(master_.get()) != 0) {
    fail("cannot open a pseudo-terminal");
  }
  device_ = ::ptsname(master_.get());
  slave_ = Descriptor(::open(device_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  termios settings{};
  if (!slave_.isOpen() || ::tcgetattr(slave_.get(), &settings) != 0) {
    fail("cannot open " + device_);
  }
  ::cfmakeraw(&settings);
  ::cfsetspeed(&settings, B9600);
  if (::tcsetattr(slave_.get(), TCSANOW, &settings) != 0) {
    fail("cannot set up " + device_);
  }
  makeLink(device_, link_);
}

PseudoTerminal::~PseudoTerminal() {
  ::unlink(link_.c_str());
}

bool PseudoTerminal::isAtSpeed(std::int32_t baud) const {
  const auto* const speed = speedOf(baud);
  termios settings{};
  return speed != nullptr && ::tcgetattr(master_.get(), &settings) == 0 &&
         ::cfgetospeed(&settings) == speed->second;
}

}  // namespace zansim
