#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <tuple>

#include "lumodevice/toolkit/pictures.hpp"
#include "lumodevice/toolkit/timer.hpp"
#include "platform/posix/serial_devices.hpp"
#include "platform/visa_library.hpp"
#include "simulator/links/simulated_serial.hpp"
#include "simulator/screen/dump.hpp"
#include "tests/end_to_end/serial_bench.hpp"
#include "tests/end_to_end/simulated_bench.hpp"
#include "tests/simulator/screen/screen_decoder.hpp"

namespace lumodevice::end_to_end {
namespace {

using zansim::tests::paintedFromPlanes;
using zansim::tests::readFromBitmap;

constexpr const char* kDump = "DispOutD.dat";
constexpr const char* kBitmap = "ZAN.bmp";
constexpr std::size_t kDumpSize = 122880;
constexpr std::size_t kBitmapSize = 230454;

/// The converted dump is the picture that the dump shows.
void expectConversion(const RealPanel& panel) {
  const std::string dump = panel.file(kDump).value_or("");
  const std::string bitmap = panel.file(kBitmap).value_or("");
  ASSERT_EQ(dump.size(), kDumpSize);
  ASSERT_EQ(bitmap.size(), kBitmapSize);
  EXPECT_NE(std::ranges::count(dump, dump[0]), std::ssize(dump)) << "an empty screen";
  EXPECT_TRUE(readFromBitmap(bitmap) == paintedFromPlanes(dump));
}

/// Two components at the same simulated load and in the same virtual time: one over VISA COM, one
/// on its USB virtual serial port.
struct SimulatedScreen : testing::Test {
  SimulatedScreen() {
    EXPECT_TRUE(overVisa.zan().AutoConnect());
    ports.plug(1, bench.instrument);
    overSerial.click("optConnRS232");
    overSerial.type("Text1", "1");
    overSerial.select("Combo2", 0);
    overSerial.click("Command2");
    EXPECT_TRUE(overSerial.zan().isConnected());
    for (RealPanel* const panel : {&overVisa, &overSerial}) {
      panel->control<toolkit::Timer>("Timer2").setEnabled(false);
    }
  }

  void send(std::string_view command) { overVisa.zan().SendCmd(command); }
  [[nodiscard]] zansim::Picture screen() {
    return zansim::drawScreen(bench.instrument.mainframe, bench.loop.now());
  }
  void turnPage() { bench.instrument.mainframe.turnPage(); }

  SimulatedBench bench{Variant::VisaCom};
  zansim::SimulatedSerialDevices ports{bench.clock};
  RealPanel& overVisa = bench.panel;
  RealPanel overSerial{bench.loop, bench.visa, ports};
};

constexpr std::array kScenes{"*RST", ":CHAN 4", ":MODE CV", ":LOAD ON", ":CHAN 5", ":LOAD ON"};

TEST_F(SimulatedScreen, ADumpThatIsConvertedIsTheInstrumentsOwnBitmap) {
  for (const char* const scene : kScenes) {
    send(scene);
    for (int page = 0; page < 2; ++page) {
      const auto moment = bench.loop.now();
      ASSERT_TRUE(overVisa.zan().GetBMPFile()) << scene;
      ASSERT_EQ(bench.loop.now(), moment) << "both captures are of one moment";
      ASSERT_TRUE(overSerial.zan().GetBMPFile()) << scene;
      expectConversion(overVisa);
      EXPECT_TRUE(overVisa.file(kBitmap).value_or("") == overSerial.file(kBitmap).value_or(""))
          << scene;
      turnPage();
    }
  }
}

TEST_F(SimulatedScreen, ARawDumpOverAFastSerialPortIsTheDumpWithItsHeader) {
  const std::string planes = zansim::planes(screen());
  overSerial.click("cmdGetCTRLScrn");
  const std::string dump = overSerial.file(kDump).value_or("");
  EXPECT_TRUE(dump.starts_with("#6122880"));
  EXPECT_TRUE(dump.substr(8, kDumpSize) == planes);
}

TEST_F(SimulatedScreen, NoScreenHasMoreValuesThanACaptureTakes) {
  for (const char* const scene : kScenes) {
    send(scene);
    for (int page = 0; page < 2; ++page) {
      overSerial.click("cmdGetCTRLScrn");
      const std::string points = overSerial.file(kDump).value_or("").substr(0, 76800);
      ASSERT_EQ(points.size(), 76800U);
      EXPECT_LE(std::set<char>(points.begin(), points.end()).size(), 51U) << scene;
      turnPage();
    }
  }
}

TEST_F(SimulatedScreen, ThePictureIsShownInThePanel) {
  overVisa.click("cmdGetBMPFile");
  const auto& picture = overVisa.control<toolkit::PictureBox>("Picture1").picture();
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(picture, overVisa.control<toolkit::Image>("Image1").picture());
  const auto file = picture->bitmap();
  EXPECT_TRUE(std::string(file.begin(), file.end()) == zansim::bitmap(screen()));
}

TEST(CapturedScreen, ComesThroughALibraryThatIsLoaded) {
  const platform::VisaLibraryResult loaded = platform::loadVisaLibrary(ZANSIM_VISA_LIBRARY);
  ASSERT_NE(loaded.library, nullptr);
  toolkit::VirtualLoop loop;
  posix::TermiosDevices devices{{{1, "/nowhere"}}};
  RealPanel panel(loop, *loaded.library, devices);
  panel.click("optVisa2");
  ASSERT_TRUE(panel.zan().AutoConnect());
  EXPECT_TRUE(panel.zan().GetBMPFile());
  expectConversion(panel);
}

/// The bitmap that the instrument sent last: its readings change with every moment.
class SentBitmap {
 public:
  explicit SentBitmap(zansim::Instrument& instrument) : instrument_(instrument) {
    instrument_.onMessage = [this](std::string_view message, std::string_view answer) {
      if (message == ":DISP:COL?") {
        block_ = answer;
      }
    };
  }
  ~SentBitmap() { instrument_.onMessage = nullptr; }
  SentBitmap(const SentBitmap&) = delete;
  SentBitmap& operator=(const SentBitmap&) = delete;

  [[nodiscard]] bool is(const std::optional<std::string>& file) const {
    return file && file->size() == kBitmapSize && block_.starts_with("#6230454" + *file);
  }

 private:
  zansim::Instrument& instrument_;
  std::string block_;
};

TEST(CapturedScreen, ComesThroughAPseudoTerminalAlsoInPieces) {
  SerialBench bench{3};
  bench.connectByHand(3);
  zansim::Instrument& instrument = bench.load(3).instrument;
  const SentBitmap sent(instrument);
  for (const char* const fault : {"pieces=65536", "pieces=3001 gap=5"}) {
    instrument.faults.clear();
    instrument.faults.add(fault);
    ASSERT_TRUE(bench.panel().zan().GetBMPFile()) << fault;
    EXPECT_TRUE(sent.is(bench.panel().file(kBitmap))) << fault;
  }
}

TEST_F(SimulatedScreen, ComesOverASlowLine) {
  const SentBitmap sent(bench.instrument);
  for (const auto& [port, baud, rate] : {std::tuple{2, 38400, 0}, {3, 9600, 2}}) {
    ports.plug(port, bench.instrument, baud);
    overSerial.type("Text1", std::to_string(port));
    overSerial.select("Combo2", rate);
    overSerial.click("Command2");
    ASSERT_TRUE(overSerial.zan().isConnected());
    const auto start = bench.loop.now();
    ASSERT_TRUE(overSerial.zan().GetBMPFile()) << baud;
    EXPECT_GT(bench.loop.now() - start, std::chrono::seconds(kBitmapSize * 10 / baud)) << baud;
    EXPECT_TRUE(sent.is(overSerial.file(kBitmap))) << baud;
  }
}

TEST(CapturedScreen, ComesThroughASocket) {
  LoadOnSocket load;
  support::ScaledLoop loop;
  platform::BuiltinVisa visa;
  posix::TermiosDevices devices{{{1, "/nowhere"}}};
  RealPanel panel(loop, visa, devices);
  panel.click("optVisa2");
  panel.type("cmbVISARes", load.resource());
  panel.click("cmdConnVISA");
  ASSERT_TRUE(panel.zan().isConnected());
  EXPECT_TRUE(panel.zan().GetBMPFile());
  expectConversion(panel);
  EXPECT_EQ(panel.ask(":CHAN?"), "1") << "nothing of the block is left";
}

}  // namespace
}  // namespace lumodevice::end_to_end
