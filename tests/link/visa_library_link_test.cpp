#include "lumodevice/link/visa_library_link.hpp"

#include <algorithm>
#include <gtest/gtest.h>
#include <stdexcept>

#include "lumodevice/form/controls.hpp"
#include "lumodevice/io/forwarding_visa.hpp"
#include "lumodevice/link/gate.hpp"
#include "lumodevice/link/reports.hpp"
#include "lumodevice/toolkit/event_loop.hpp"

namespace lumodevice::link {
namespace {

/// A library whose reads bring so many bytes and say that there are more, without an end.
class EndlessVisa : public io::ForwardingVisa {
 public:
  explicit EndlessVisa(std::size_t bytes) : bytes_(bytes) {}
  io::ViStatus viRead(io::ViSession, std::span<char> buffer, std::uint32_t& count) override {
    ++reads;
    count = static_cast<std::uint32_t>(std::min(bytes_, buffer.size()));
    std::fill_n(buffer.begin(), count, 'x');
    return io::VI_SUCCESS_MAX_CNT;
  }
  int reads = 0;

 protected:
  [[nodiscard]] Visa& target() override { throw std::logic_error("nothing else is called"); }

 private:
  std::size_t bytes_;
};

/// A link over a library, and what it stands on.
struct LinkOver {
  explicit LinkOver(io::Visa& visa) : link(visa, gate) {}
  toolkit::VirtualLoop loop;
  form::Controls form{loop};
  Reports reports{form.panel};
  Gate gate{form.panel, reports, false};
  VisaLibraryLink link;
};

TEST(VisaLibraryLink, aDripIsLookedAtInTurnsAndNotReadToItsEnd) {
  for (const std::size_t bytes : {1U, 79U, 80U}) {
    EndlessVisa visa(bytes);
    LinkOver over(visa);
    std::string received;
    EXPECT_EQ(over.link.readOn(received), Reading::Waiting);
    EXPECT_LE(visa.reads, 16);
    EXPECT_EQ(received.size(), static_cast<std::size_t>(visa.reads) * bytes);
  }
}

TEST(VisaLibraryLink, anAnswerWithoutAnEndIsGivenUp) {
  EndlessVisa visa(80);
  LinkOver over(visa);
  std::string received;
  Reading reading = Reading::Waiting;
  for (int looks = 0; looks < 100 && reading == Reading::Waiting; ++looks) {
    reading = over.link.readOn(received);
  }
  EXPECT_EQ(reading, Reading::Failed);
  EXPECT_LE(received.size(), kLongestAnswer + 80);
}

TEST(VisaLibraryLink, aReadThatBringsNothingIsAFailure) {
  EndlessVisa visa(0);
  LinkOver over(visa);
  std::string received;
  EXPECT_EQ(over.link.readOn(received), Reading::Failed);
  EXPECT_EQ(visa.reads, 1);
}

}  // namespace
}  // namespace lumodevice::link
