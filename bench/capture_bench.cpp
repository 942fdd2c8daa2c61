// What a screen capture costs: the conversion of a dump against a loop over the same planes that
// was written for nothing else, the transfer of a block against a plain loop of receives into one
// buffer, and the memory that a capture takes above an idle component.

#include <bit>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

#include "bench/component.hpp"
#include "bench/one_core.hpp"
#include "bench/raw_socket.hpp"
#include "bench/responder.hpp"
#include "bench/table.hpp"
#include "lumodevice/capture/display_dump.hpp"
#include "simulator/mainframe.hpp"
#include "simulator/screen/dump.hpp"
#include "tests/support/point_painter.hpp"

namespace {

using Clock = std::chrono::steady_clock;
using namespace lumodevice;
using Bytes = std::vector<std::uint8_t>;

constexpr int kRounds = 100;
constexpr double kAim = 1.2;
constexpr double kMegabyte = 1024 * 1024;

/// Microseconds for one act, over a round of them.
double timeRound(int acts, const std::function<void()>& act) {
  const auto begin = Clock::now();
  for (int i = 0; i < acts; ++i) {
    act();
  }
  return std::chrono::duration<double, std::micro>(Clock::now() - begin).count() / acts;
}

/// In turns, so that a slow moment of the machine hits both; then the medians.
void compare(const std::string& what, int actsPerRound, const std::function<void()>& component,
             const std::function<void()>& plain) {
  std::vector<double> componentTimes;
  std::vector<double> plainTimes;
  for (int round = 0; round < kRounds; ++round) {
    componentTimes.push_back(timeRound(actsPerRound, component));
    plainTimes.push_back(timeRound(actsPerRound, plain));
  }
  bench::printRatio(what, bench::median(componentTimes), bench::median(plainTimes), kAim);
}

void require(bool holds, const char* what) {
  if (!holds) {
    std::fprintf(stderr, "capture_bench: %s\n", what);
    std::exit(1);
  }
}

// ---- conversion

/// Paints four columns of four rows at a time, and stores the four points of a row as twelve bytes
/// in two words: for little-endian machines alone.
class PlainPainter {
 public:
  explicit PlainPainter(const capture::ScreenPalette& palette) {
    for (std::size_t i = 0; i < points_.size(); ++i) {
      points_[i] = palette[i].rgbBlue | std::uint32_t{palette[i].rgbGreen} << 8 |
                   std::uint32_t{palette[i].rgbRed} << 16;
    }
    fill(overlay1_, {0, 15, 11, 19});
    fill(overlay2_, {0, 8, 7, 6});
  }

  void paint(const std::uint8_t* dump, std::uint8_t* bitmap) const {
    constexpr std::size_t kStride = 960;
    const std::uint8_t* const plane1 = dump + 81920;
    const std::uint8_t* const plane2 = plane1 + 20480;
    for (std::size_t top = 0; top < 240; top += 4) {
      const std::size_t group = (59 - top / 4) * 320;
      std::uint8_t* out = bitmap + 54 + (239 - top) * kStride;
      for (std::size_t x = 320; x > 0; x -= 4, out += 12) {
        std::uint32_t columns[4];
        for (std::size_t i = 0; i < 4; ++i) {
          columns[i] = word(dump + (x - 1 - i) * 256 + top);
        }
        if ((word(plane1 + group + x - 4) | word(plane2 + group + x - 4)) != 0) {
          for (std::size_t i = 0; i < 4; ++i) {
            overlay2_.cover(columns[i], plane2[group + x - 1 - i]);
            overlay1_.cover(columns[i], plane1[group + x - 1 - i]);
          }
        }
        for (std::size_t row = 0; row < 4; ++row) {
          const auto point = [&](std::size_t i) -> std::uint64_t {
            return points_[columns[i] >> (8 * row) & 0xFF];
          };
          const std::uint64_t first = point(0) | point(1) << 24 | point(2) << 48;
          const auto last = static_cast<std::uint32_t>(point(2) >> 16 | point(3) << 8);
          std::memcpy(out - row * kStride, &first, sizeof first);
          std::memcpy(out - row * kStride + sizeof first, &last, sizeof last);
        }
      }
    }
  }

 private:
  struct Overlay {
    std::array<std::uint32_t, 256> indexes{};
    std::array<std::uint32_t, 256> keep{};
    void cover(std::uint32_t& rows, std::uint8_t byte) const {
      rows = (rows & keep[byte]) | indexes[byte];
    }
  };

  static std::uint32_t word(const std::uint8_t* bytes) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes, sizeof value);
    return value;
  }

  static void fill(Overlay& overlay, const std::array<std::uint32_t, 4>& entries) {
    for (unsigned byte = 0; byte < 256; ++byte) {
      for (unsigned row = 0; row < 4; ++row) {
        const unsigned value = byte >> (2 * row) & 3U;
        overlay.indexes[byte] |= entries[value] << (8 * (3 - row));
        overlay.keep[byte] |= (value == 0 ? 0xFFU : 0U) << (8 * (3 - row));
      }
    }
  }

  std::array<std::uint32_t, 256> points_{};
  Overlay overlay1_;
  Overlay overlay2_;
};

void compareConversion(const std::string& what, const Bytes& dump) {
  static_assert(std::endian::native == std::endian::little);
  capture::ScreenPalette palette{};
  capture::FillScreenPalette(palette);
  const capture::DisplayDump planes(
      std::span<const std::uint8_t>(dump).first<capture::DisplayDump::kSize>());
  toolkit::Picture picture(capture::kScreenWidth, capture::kScreenHeight);
  const PlainPainter plain(palette);
  const auto header = picture.bitmap();
  Bytes bitmap(header.begin(), header.end());
  compare(
      what, 20, [&] { capture::paintDump(planes, palette, picture); },
      [&] { plain.paint(dump.data(), bitmap.data()); });
  const toolkit::Picture expected = support::paintPointByPoint(dump, palette);
  require(picture == expected, "the picture is not the one that painting point by point gives");
  require(std::ranges::equal(bitmap, expected.bitmap()), "the plain loop paints another picture");
}

Bytes screen() {
  zansim::Mainframe mainframe;
  const std::string bytes = zansim::planes(zansim::drawScreen(mainframe, {}));
  return {bytes.begin(), bytes.end()};
}

Bytes randomBytes() {
  std::mt19937 random(1);
  Bytes bytes(capture::DisplayDump::kSize);
  for (std::uint8_t& byte : bytes) {
    byte = static_cast<std::uint8_t>(random());
  }
  return bytes;
}

// ---- transfer

struct Block {
  const char* query;
  std::size_t size;
};
constexpr Block kSettings{":SYST:SET?\n", bench::kSettingsSize};
constexpr Block kDump{":DISP:OUTP?\n", bench::kDumpSize};

/// What goes over the wire for a block.
std::size_t wireSize(const Block& block) {
  return 2 + std::to_string(block.size).size() + block.size + 1;
}

void compareBlocks(const Block& block, std::uint16_t port) {
  platform::BuiltinVisa visa;
  io::VisaComOverVisa com(visa);
  const auto formatted = com.createFormattedIO488();
  formatted->setIO(com.createResourceManager()->Open(
      "TCPIP0::127.0.0.1::" + std::to_string(port) + "::SOCKET", 0, 2000, ""));
  const bench::RawSocket plain(port);
  std::vector<char> answer(wireSize(block));
  compare(
      "block of " + std::to_string(block.size) + " bytes, ReadIEEEBlock, loopback socket", 100,
      [&] {
        formatted->WriteString(block.query, true);
        require(formatted->ReadIEEEBlock(false, true).size() == block.size, "a block is missing");
      },
      [&] { plain.fetch(block.query, answer); });
}

/// A drive that takes files and keeps none, for the cost of files is the file system's.
class ForgetfulDrive : public io::Drive {
 public:
  [[nodiscard]] bool fileExists(std::string_view) const override { return false; }
  [[nodiscard]] bool folderExists(std::string_view) const override { return true; }
  void createFolder(std::string_view) override {}
  void remove(std::string_view) override {}
  void rename(std::string_view, std::string_view) override {}
  [[nodiscard]] std::unique_ptr<io::BinaryFile> open(std::string_view) override {
    struct File : io::BinaryFile {
      std::size_t get(std::span<std::uint8_t>) override { return 0; }
      void put(std::span<const std::uint8_t>) override {}
    };
    return std::make_unique<File>();
  }
  void replace(std::string_view, std::span<const std::uint8_t>) override {}
};

void compareTransfer(const std::string& what, const Block& block, const bench::RawSocket& plain,
                     const std::function<void()>& transfer) {
  std::vector<char> answer(wireSize(block));
  compare(what, 100, transfer, [&] { plain.fetch(block.query, answer); });
}

/// A component that is connected over VISA COM to the responder on `port` and waits for nothing.
void connect(bench::Component& component, std::uint16_t port) {
  component.control<toolkit::TextBox>("Text5").setText("0");
  component.control<toolkit::OptionButton>("optVisa2").setValue(true);
  require(component.connectTo(port), "the component did not connect");
}

void compareTransfers(std::uint16_t port) {
  toolkit::RealTimeLoop loop;
  ForgetfulDrive drive;
  bench::Component component(loop, drive);
  connect(component, port);
  auto& dumpButton = component.control<toolkit::CommandButton>("cmdGetCTRLScrn");
  const bench::RawSocket plain(port);
  compareTransfer("system settings through the whole component", kSettings, plain,
                  [&] { component.zan.GetSysFile(); });
  compareTransfer("raw dump through the whole component", kDump, plain,
                  [&] { dumpButton.click.raise(); });
}

// ---- memory

double peakMegabytes() {
  rusage usage{};
  (void)getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) * 1024 / kMegabyte;
}

double residentMegabytes() {
  std::FILE* const file = std::fopen("/proc/self/statm", "r");
  long total = 0;
  long resident = 0;
  require(file != nullptr && std::fscanf(file, "%ld %ld", &total, &resident) == 2,
          "no /proc/self/statm");
  std::fclose(file);
  return static_cast<double>(resident * sysconf(_SC_PAGESIZE)) / kMegabyte;
}

/// A folder that is gone at the end.
struct TemporaryFolder {
  TemporaryFolder() {
    char name[] = "/tmp/capture_bench.XXXXXX";
    require(mkdtemp(name) != nullptr, "no folder for the files");
    path = name;
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  std::filesystem::path path;
};

void measureMemory(std::uint16_t port) {
  const TemporaryFolder folder;
  toolkit::RealTimeLoop loop;
  platform::FolderDrive drive(folder.path);
  bench::Component component(loop, drive);
  connect(component, port);
  const double idle = residentMegabytes();
  require(component.zan.GetBMPFile(), "no screen was captured");
  bench::printHead("MB");
  bench::printRatio("capture of a screen over VISA COM, peak above idle", peakMegabytes() - idle, 2,
                    1);
}

}  // namespace

int main() {
  bench::pinToOneCore();
  const auto responder = bench::Responder::onSocket();
  measureMemory(responder.port());  // while the process has used none for anything else
  bench::printHead("us");
  compareConversion("dump of a screen into a picture", screen());
  compareConversion("dump of random bytes into a picture", randomBytes());
  compareBlocks(kSettings, responder.port());
  compareBlocks(kDump, responder.port());
  compareTransfers(responder.port());
}
