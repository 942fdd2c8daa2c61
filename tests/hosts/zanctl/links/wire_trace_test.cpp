#include "hosts/zanctl/links/wire_trace.hpp"

#include <deque>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utility>

#include "tests/hosts/zanctl/output/text_output.hpp"

namespace zanctl {
namespace {

using namespace lumodevice::io;
using namespace std::chrono_literals;
using lumodevice::recordings::WireAct;
using lumodevice::recordings::WireTap;

TEST(QuotedBytes, upToSixtyFourBytesAreShownWhole) {
  EXPECT_EQ(quotedBytes(""), "\"\"");
  EXPECT_EQ(quotedBytes("*IDN?\r"), "\"*IDN?\\r\"");
  const std::string zeros(64, '\0');
  std::string expected = "\"";
  for (int i = 0; i < 64; ++i) {
    expected += "\\x00";
  }
  EXPECT_EQ(quotedBytes(zeros), expected + "\"");
}

TEST(QuotedBytes, aLongLineOfTextIsShownWhole) {
  const std::string line(79, 'A');
  EXPECT_EQ(quotedBytes(line + "\t\r\n"), '"' + line + "\\t\\r\\n\"");
}

TEST(QuotedBytes, aLongBlockIsShownByItsStartAndItsTotal) {
  const std::string block = "#6122880" + std::string(122880, 'U') + "\n";
  EXPECT_EQ(quotedBytes(block), "\"#6122880" + std::string(24, 'U') + "...\" +122889 bytes");
}

TEST(QuotedBytes, longBytesThatAreNoTextAreShownByTheirStart) {
  EXPECT_EQ(quotedBytes(std::string(31, 'a') + '\x80' + std::string(33, 'b')),
            "\"" + std::string(31, 'a') + "\\x80...\" +65 bytes");
}

TEST(QuotedBytes, anEndlessTextIsShownByItsStart) {
  EXPECT_EQ(quotedBytes(std::string(1024, 'a')), '"' + std::string(1024, 'a') + '"');
  EXPECT_EQ(quotedBytes(std::string(1 << 20, 'a')),
            '"' + std::string(256, 'a') + "...\" +1048576 bytes");
}

class Trace : public testing::Test {
 protected:
  TextOutput output;
  lumodevice::toolkit::VirtualLoop loop;
  WireTrace trace{output, loop};

  /// What the trace is told through a tap.
  void follow(lumodevice::recordings::WireTap& tap) {
    following_ = tap.events.observe(
        [this](const lumodevice::recordings::WireEvent& event) { trace.take(event); });
  }
  void told(WireAct act, std::string_view name, std::string_view bytes) {
    trace.take({.act = act, .link = 1, .name = name, .bytes = bytes});
  }

 private:
  lumodevice::toolkit::Subscription following_;
};

TEST_F(Trace, everyEventIsALineWithTheTimeInMilliseconds) {
  told(WireAct::Open, "USB0::0x1::INSTR", "");
  loop.idle(1500us);
  told(WireAct::Sending, "", "*IDN?\r");
  loop.idle(1s);
  told(WireAct::Received, "", "ZAN\n");
  trace.slept(200);
  trace.showedBox("No \"answer\"");
  loop.idle(999ns);
  told(WireAct::Close, "COM3", "");
  EXPECT_EQ(output.text(),
            "0.000 open USB0::0x1::INSTR\n"
            "1.500 send \"*IDN?\\r\"\n"
            "1001.500 recv \"ZAN\\n\"\n"
            "1001.500 sleep 200\n"
            "1001.500 box \"No \"answer\"\"\n"
            "1001.500 close COM3\n");
}

/// A VISA layer that answers from a list and notes the arguments that it was given.
class ListedVisa : public Visa {
 public:
  std::deque<std::string> answers;
  std::string calls;
  ViStatus status = VI_SUCCESS;
  std::string unread;

  ViStatus viOpenDefaultRM(ViSession& resourceManager) override {
    resourceManager = 1;
    return note("rm");
  }
  ViStatus viFindRsrc(ViSession rm, const std::string& expression, ViFindList& findList,
                      std::uint32_t& count, std::string& descriptor) override {
    findList = 2;
    count = 1;
    descriptor = "USB0::INSTR";
    return note("find " + std::to_string(rm) + expression);
  }
  ViStatus viFindNext(ViFindList findList, std::string&) override {
    return note("next " + std::to_string(findList));
  }
  ViStatus viOpen(ViSession rm, const std::string& descriptor, std::uint32_t mode,
                  std::uint32_t timeout, ViSession& instrument) override {
    instrument = 3;
    return note("open " + std::to_string(rm) + descriptor + std::to_string(mode) +
                std::to_string(timeout));
  }
  ViStatus viClose(ViObject object) override { return note("close " + std::to_string(object)); }
  ViStatus viGetAttribute(ViObject, ViAttr, std::string& value) override {
    value = "USB0 (ZAN)";
    return note("get");
  }
  ViStatus viSetAttribute(ViObject, ViAttr, std::uint32_t value) override {
    return note("set " + std::to_string(value));
  }
  ViStatus viRead(ViSession, std::span<char> buffer, std::uint32_t& count) override {
    count = static_cast<std::uint32_t>(answers.front().copy(buffer.data(), buffer.size()));
    answers.pop_front();
    return note("read");
  }
  ViStatus viWrite(ViSession, std::string_view data, std::uint32_t& count) override {
    count = static_cast<std::uint32_t>(data.size());
    return note("write");
  }
  std::string discardUnread(ViSession) override { return std::exchange(unread, ""); }

 private:
  ViStatus note(const std::string& call) {
    calls += call + ";";
    return status;
  }
};

class ListedSerialDevices : public SerialDevices {
 public:
  std::deque<std::string> answers;

  [[nodiscard]] std::unique_ptr<SerialLine> open(int port, const SerialSettings&) override {
    class Line : public SerialLine {
     public:
      explicit Line(std::deque<std::string>& answers) : answers_(answers) {}
      void configure(const SerialSettings&) override {}
      void write(std::string_view) override {}
      void receive(std::string& queue) override {
        queue += answers_.front();
        answers_.pop_front();
      }

     private:
      std::deque<std::string>& answers_;
    };
    if (port != 3) {
      throw SerialFault(kSerialInvalidPort, "no such port");
    }
    return std::make_unique<Line>(answers);
  }
};

class TracedVisa : public Trace {
 protected:
  ListedVisa inner;
  ListedSerialDevices noDevices;
  WireTap tap{inner, noDevices, loop};
  Visa& visa = tap.visa();
  TracedVisa() { follow(tap); }
  ViSession session = 0;
};

TEST_F(TracedVisa, handsEveryCallAndResultOn) {
  ViSession rm = 0;
  ViFindList list = 0;
  std::uint32_t count = 0;
  std::string descriptor;
  std::string name;
  EXPECT_EQ(visa.viOpenDefaultRM(rm), VI_SUCCESS);
  EXPECT_EQ(visa.viFindRsrc(rm, "?*", list, count, descriptor), VI_SUCCESS);
  EXPECT_EQ(count, 1U);
  inner.status = VI_ERROR_RSRC_NFOUND;
  EXPECT_EQ(visa.viFindNext(list, descriptor), VI_ERROR_RSRC_NFOUND);
  inner.status = VI_SUCCESS;
  EXPECT_EQ(visa.viOpen(rm, descriptor, 1, 7, session), VI_SUCCESS);
  EXPECT_EQ(session, 3U);
  EXPECT_EQ(visa.viGetAttribute(session, VI_ATTR_INTF_INST_NAME, name), VI_SUCCESS);
  EXPECT_EQ(name, "USB0 (ZAN)");
  EXPECT_EQ(visa.viSetAttribute(session, VI_ATTR_TERMCHAR, 13), VI_SUCCESS);
  EXPECT_EQ(inner.calls, "rm;find 1?*;next 2;open 1USB0::INSTR17;get;set 13;");
  EXPECT_EQ(output.text(), "0.000 open USB0::INSTR\n");
}

TEST_F(TracedVisa, writesAndReadsAreLinesAndSoIsAReadThatBroughtNothing) {
  inner.answers = {"ZAN\n", ""};
  std::array<char, 80> buffer{};
  std::uint32_t count = 0;
  EXPECT_EQ(visa.viWrite(3, "*IDN?\r", count), VI_SUCCESS);
  EXPECT_EQ(count, 6U);
  EXPECT_EQ(visa.viRead(3, buffer, count), VI_SUCCESS);
  EXPECT_EQ(count, 4U);
  EXPECT_EQ(visa.viRead(3, buffer, count), VI_SUCCESS);
  EXPECT_EQ(output.text(), "0.000 send \"*IDN?\\r\"\n0.000 recv \"ZAN\\n\"\n0.000 recv \"\"\n");
}

TEST_F(TracedVisa, aSessionIsClosedByItselfOrTogetherWithItsResourceManager) {
  (void)visa.viOpen(1, "A", 0, 0, session);
  (void)visa.viClose(2);
  (void)visa.viClose(session);
  (void)visa.viOpen(1, "B", 0, 0, session);
  (void)visa.viClose(1);
  (void)visa.viClose(session);
  EXPECT_EQ(output.text(), "0.000 open A\n0.000 close A\n0.000 open B\n0.000 close B\n");
}

TEST_F(TracedVisa, whatFailedToOpenOrCloseIsNoEvent) {
  (void)visa.viOpen(1, "A", 0, 0, session);
  inner.status = VI_ERROR_RSRC_BUSY;
  EXPECT_EQ(visa.viOpen(1, "B", 0, 0, session), VI_ERROR_RSRC_BUSY);
  EXPECT_EQ(visa.viClose(session), VI_ERROR_RSRC_BUSY);
  EXPECT_EQ(output.text(), "0.000 open A\n");
}

TEST_F(TracedVisa, whatIsDroppedIsALineAndNothingDroppedIsNone) {
  inner.unread = "late\n";
  EXPECT_EQ(visa.discardUnread(3), "late\n");
  EXPECT_EQ(visa.discardUnread(3), "");
  EXPECT_EQ(output.text(), "0.000 drop \"late\\n\"\n");
}

TEST_F(Trace, ofASerialLineHasNoLineForAPollThatBroughtNothing) {
  ListedSerialDevices inner;
  inner.answers = {"", "1.", "5\n", ""};
  ListedVisa noVisa;
  WireTap tap(noVisa, inner, loop);
  SerialDevices& devices = tap.serialDevices();
  follow(tap);
  {
    const auto line = devices.open(3, {});
    line->write("VOLT?\n");
    std::string queue = "kept";
    for (int poll = 0; poll < 4; ++poll) {
      loop.idle(35ms);
      line->receive(queue);
    }
    EXPECT_EQ(queue, "kept1.5\n");
  }
  EXPECT_EQ(output.text(),
            "0.000 open COM3\n"
            "0.000 send \"VOLT?\\n\"\n"
            "70.000 recv \"1.\"\n"
            "105.000 recv \"5\\n\"\n"
            "140.000 close COM3\n");
}

TEST_F(Trace, ofAPortThatCannotBeOpenedHasNoLine) {
  ListedSerialDevices inner;
  ListedVisa noVisa;
  WireTap tap(noVisa, inner, loop);
  SerialDevices& devices = tap.serialDevices();
  follow(tap);
  EXPECT_THROW((void)devices.open(4, {}), SerialFault);
  EXPECT_EQ(output.text(), "");
}

}  // namespace
}  // namespace zanctl
