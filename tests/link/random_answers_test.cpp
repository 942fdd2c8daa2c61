#include <gtest/gtest.h>
#include <random>

#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using support::Bench;
using support::Reply;

/// A link on which anything may happen. The seed makes a failure repeatable.
class RandomLink {
 public:
  explicit RandomLink(std::uint32_t seed) : random_(seed) {
    bench.instrument = {};
    bench.instrument.otherwise = [this](std::string_view) { return reply(); };
    bench.visa.resources = {{"GPIB0::7::INSTR", "GPIB0", &bench.instrument},
                            {"USB0::1::INSTR", "ZAN", &bench.instrument}};
    for (const auto& resource : bench.visa.resources) {
      bench.visaCom.instruments[resource.descriptor] = &bench.instrument;
    }
    bench.serial.ports[3] = {.instrument = &bench.instrument};
    bench.serial.ports[7] = {.instrument = &bench.instrument, .baud = 9600};
  }

  Bench bench;

  int upTo(int limit) { return std::uniform_int_distribution(0, limit - 1)(random_); }

  template <typename Item, std::size_t Count>
  Item oneOf(const Item (&items)[Count]) {
    return items[static_cast<std::size_t>(upTo(static_cast<int>(Count)))];
  }

  void breakSomething() {
    constexpr const char* kCalls[] = {"viOpen",   "viFind",      "viWrite",    "viRead",
                                      "viGet",    "viClose",     "COM3 write", "COM3 read",
                                      "COM open", "WriteString", "ReadString", "Open",
                                      "IO",       "create",      "Timeout",    "COM7"};
    const std::string call = oneOf(kCalls);
    if (call.starts_with("vi")) {
      bench.script.fail(call,
                        oneOf({io::VI_ERROR_TMO, io::VI_ERROR_SYSTEM_ERROR, io::VI_SUCCESS_MAX_CNT,
                               io::VI_WARN_NULL_OBJECT}),
                        upTo(4));
    } else if (call.starts_with("COM")) {
      bench.script.fail(call,
                        oneOf({io::kSerialUnavailable, io::kSerialReadError, io::kSerialAlreadyOpen,
                               io::kSerialInvalidValue}),
                        upTo(4));
    } else {
      bench.script.fail(call, static_cast<int>(oneOf({io::E_VISA_TMO, io::E_VISA_SYSTEM_ERROR})),
                        upTo(4));
    }
  }

 private:
  std::string bytes() {
    std::string text;
    const int length = oneOf({0, 1, 2, 5, 71, 72, 73, 79, 80, 81, 300});
    for (int i = 0; i < length; ++i) {
      text += upTo(2) == 0 ? oneOf({',', '.', '0', '1', '9', '-', ' ', '\r', '\n'})
                           : static_cast<char>(upTo(256));
    }
    return text;
  }

  Reply reply() {
    if (upTo(3) == 0) {
      return support::answer(oneOf({"ZAN,1,2,3.4\r\n", "1\n", "2040,0,B,2041\n", "a,ZAN,c,1.2.3\r",
                                    "CV\n", "CRDL\n", "40000\n", "1E999\n", "0\n"}));
    }
    Reply reply;
    for (int pieces = upTo(4); pieces > 0; --pieces) {
      reply.pieces.push_back({std::chrono::milliseconds(upTo(300)), bytes()});
    }
    if (upTo(4) == 0) {
      reply.readStatus = oneOf({io::VI_ERROR_TMO, io::VI_ERROR_IO, io::VI_SUCCESS_MAX_CNT});
    }
    return reply;
  }

  std::mt19937 random_;
};

/// Nothing in here may crash, throw or wait longer than the longest operation does: a search over
/// two ports at four rates, then a channel read back with no answer to any of its queries.
TEST(RandomAnswers, leaveEveryLinkUsable) {
  constexpr std::chrono::seconds kLongest{4 * 2 * 4 + 120};
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    RandomLink link(seed);
    Bench& bench = link.bench;
    for (int act = 0; act < 12; ++act) {
      const auto before = bench.loop.now();
      ASSERT_NO_THROW({
        link.breakSomething();
        bench.click(link.oneOf({"optVISA", "optConnRS232", "optVisa1", "optVisa2"}));
        switch (link.upTo(4)) {
          case 0:
            bench.zan().AutoConnect();
            break;
          case 1:
            toolkit::hand::click(bench.control<toolkit::CommandButton>("cmdConnVISA"));
            toolkit::hand::click(bench.control<toolkit::CommandButton>("Command2"));
            break;
          case 2:
            bench.zan().SendCmd(link.oneOf({":Q?", "*RDT?", ":CHAN? LIST", ":LOAD 1", "?"}));
            break;
          default:
            (void)bench.zan().ErrMessage();
            bench.press("Text2", toolkit::Key::Enter);
            break;
        }
        bench.run(std::chrono::milliseconds(500));
      });
      ASSERT_LT(bench.loop.now() - before, kLongest);
    }
    bench.journal();
  }
}

}  // namespace
}  // namespace lumodevice
