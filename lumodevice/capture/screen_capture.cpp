#include "lumodevice/capture/screen_capture.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <memory>

#include "lumodevice/capture/display_dump.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/transfer/block.hpp"
#include "lumodevice/transfer/block_session.hpp"
#include "lumodevice/transfer/serial_answer.hpp"
#include "lumodevice/transfer/serial_block.hpp"

namespace lumodevice::capture {

namespace {

using InputModes = io::SerialPort::InputModes;

constexpr std::string_view kDump = "c:\\temp\\DispOutD.dat";
constexpr std::string_view kConverted = "c:\\temp\\ZAN200K.bmp";
constexpr std::string_view kHostsBitmap = "c:\\temp\\ZAN.bmp";

constexpr std::string_view kDumpQuery = ":DISP:OUTP?";
constexpr std::string_view kBitmapQuery = ":DISP:COL?";

// Milliseconds.
constexpr std::int32_t kDumpTimeout = 2000;
constexpr std::int32_t kBitmapTimeout = 1500;
constexpr double kDumpWait = 1000;
constexpr double kBitmapWait = 1500;
constexpr double kPieceWait = 100;

// Bytes.
constexpr std::size_t kDumpRoom = kDumpHeader.size() + DisplayDump::kSize + 1;
constexpr std::size_t kBitmapRoom =
    toolkit::Picture::kHeaderSize + std::size_t{3} * kScreenWidth * kScreenHeight;

constexpr int kDumpPasses = 20;
constexpr std::size_t kShownPoints = std::size_t{kScreenWidth} * kScreenHeight;
/// What is read at most of a file that is to be shown.
constexpr std::size_t kLargestPicture = std::size_t{16} << 20;
constexpr std::size_t kFilePiece = std::size_t{64} << 10;
constexpr int kFileNotFound = 53;

bool namesBitmap(std::string_view path) {
  std::string name(path);
  std::ranges::transform(name, name.begin(), [](unsigned char character) {
    return static_cast<char>(std::toupper(character));
  });
  return text::contains(name, "BMP");
}

/// The number under which transfers open their files is not taken: pictures have one of their own.
std::unique_ptr<io::BinaryFile> openExisting(io::Drive& drive, std::string_view path) {
  if (!drive.fileExists(path)) {
    throw io::DriveFault(kFileNotFound, "there is no " + std::string(path));
  }
  return drive.open(path);
}

transfer::Bytes wholeFile(io::Drive& drive, std::string_view path) {
  const auto file = openExisting(drive, path);
  transfer::Bytes bytes;
  std::size_t got = kFilePiece;
  while (got == kFilePiece && bytes.size() < kLargestPicture) {
    const std::size_t before = bytes.size();
    bytes.resize(before + kFilePiece);
    got = file->get(std::span(bytes).subspan(before));
    bytes.resize(before + got);
  }
  return bytes;
}

}  // namespace

ScreenCapture::ScreenCapture(const Host& host, form::Controls& form, link::Waits& waits,
                             link::Links& links, link::Turns& turns, transfer::WorkingFiles& files)
    : host_(host),
      form_(form),
      waits_(waits),
      serial_(links.serial),
      port_(links.serial.MSComm1),
      com_(links.visaCom),
      turns_(turns),
      reports_(links.reports),
      files_(files) {
  FillScreenPalette(palette_);
  toolkit::handle(form_.cmdGetBMPFile.click, [this] { GetBitmap(); });
  toolkit::handle(form_.cmdGetCTRLScrn.click, [this] { GetDump(); });
  toolkit::handle(form_.cmdWork.click, [this] { ConvertDump(); });
}

// ---- buttons and members

void ScreenCapture::GetBitmap() {
  reports_.transfer([this] {
    files_.ensureFolder();
    const std::string name = timeStampedName();
    if (serial()) {
      CaptureScreenSerial(name, kColourBitmap);
    } else {
      CaptureScreenVisa(name, kColourBitmap);
    }
    showFile(name);
  });
}

void ScreenCapture::GetDump() {
  reports_.transfer([this] {
    files_.ensureFolder();
    CaptureRawDump(kDump, serial() ? kRawDump : kColourBitmap);
  });
}

void ScreenCapture::ConvertDump() {
  attempt([this] {
    files_.ensureFolder();
    ConvertDumpToBitmap(kConverted);
  });
}

bool ScreenCapture::GetBMPFile() {
  if (!serial() && !form_.optVisa2.value()) {
    reports_.fail(FailureKind::NotConnected, "the VISA library carries no pictures");
    return false;
  }
  bool captured = false;
  reports_.transfer([&] {
    files_.ensureFolder();
    captured = serial() ? CaptureScreenSerial(kHostsBitmap, kColourBitmap)
                        : CaptureScreenVisa(kHostsBitmap, kRawDump);
  });
  return captured;
}

std::string ScreenCapture::timeStampedName() const {
  const io::LocalTime now = host_.wallClock.now();
  std::array<char, 48> name{};
  (void)std::snprintf(name.data(), name.size(), "c:\\temp\\ZAN%02d%02d%02d.bmp", now.hour,
                      now.minute, now.second);
  return name.data();
}

// ---- serial port

bool ScreenCapture::CaptureScreenSerial(std::string_view sFile, int mode) {
  const bool raw = mode == kRawDump;
  return reports_.transfer([&] {
    if (turns_.inTurn()) {
      raw ? captureDumpInTurn(sFile) : captureBitmapInTurn(sFile);
    } else {
      raw ? captureDumpOverSerial(sFile) : captureBitmapOverSerial(sFile);
    }
  });
}

bool ScreenCapture::CaptureRawDump(std::string_view sFile, int mode) {
  return mode == kRawDump ? CaptureScreenSerial(sFile, kRawDump)
                          : CaptureScreenVisa(sFile, kRawDump);
}

/// The file holds the answer as it came, block header included.
void ScreenCapture::captureDumpOverSerial(std::string_view sFile) {
  std::string received;
  {
    auto file = files_.open(sFile);
    port_.setInputMode(InputModes::Binary);
    const transfer::InterleavedReading ours(turns_, serial_);
    port_.Output(transfer::line(kDumpQuery));
    waits_.pause(kDumpWait);
    for (int pass = 0; pass < kDumpPasses; ++pass) {
      const std::string piece = port_.Input();
      if (piece.empty()) {
        break;
      }
      received += piece;
      file.put(transfer::asBytes(piece));
      waits_.pause(kPieceWait);
    }
    offerSeenValues(received);
  }
  port_.setInputMode(InputModes::Text);
}

void ScreenCapture::offerSeenValues(std::string_view dump) {
  seenValues_.clear();
  if (dump.size() < kShownPoints) {
    throw transfer::BlockFault("the dump is shorter than a screen");
  }
  for (const std::uint8_t value : transfer::asBytes(dump).first(kShownPoints)) {
    seenValues_.offer(value);
  }
}

/// The same file, of one complete block.
void ScreenCapture::captureDumpInTurn(std::string_view sFile) {
  files_.expectRoom(sFile, kDumpRoom);
  const auto answer = transfer::askForBlock(turns_, serial_, kDumpQuery, kDumpWait);
  const std::string_view dump = answer->block()->bytes;
  files_.replace(sFile, transfer::asBytes(dump));
  offerSeenValues(dump);
}

void ScreenCapture::captureBitmapInTurn(std::string_view sFile) {
  files_.expectRoom(sFile, kBitmapRoom);
  const auto answer =
      transfer::askForBlock(turns_, serial_, kBitmapQuery, kBitmapWait + transfer::kLongestSilence);
  files_.replace(sFile, transfer::asBytes(answer->block()->data));
}

void ScreenCapture::captureBitmapOverSerial(std::string_view sFile) {
  transfer::BlockAssembler block;
  port_.setInputMode(InputModes::Binary);
  const transfer::InterleavedReading ours(turns_, serial_);
  port_.Output(transfer::line(kBitmapQuery));
  waits_.pause(kBitmapWait);
  const auto takes = [&](std::string_view piece) {
    return block.add(piece) == transfer::BlockAssembler::State::Incomplete;
  };
  if (takes(port_.Input())) {
    transfer::readOn(waits_, port_, takes);
  }
  const auto data = block.data();
  if (!data) {
    throw transfer::BlockFault("no complete bitmap arrived");
  }
  files_.replace(sFile, transfer::asBytes(*data));
  port_.setInputMode(InputModes::Text);
}

// ---- VISA COM

bool ScreenCapture::CaptureScreenVisa(std::string_view sFile, int mode) {
  bool captured = false;
  reports_.transfer([&] { captured = captureOverVisa(sFile, mode); });
  return captured;
}

bool ScreenCapture::captureOverVisa(std::string_view sFile, int mode) {
  const bool raw = mode == kRawDump;
  if (turns_.inTurn()) {
    files_.expectRoom(sFile, (raw ? kDumpRoom : 0) + (namesBitmap(sFile) ? kBitmapRoom : 0));
  }
  transfer::claim(turns_, com_);
  com_.session()->setTimeout(raw ? kDumpTimeout : kBitmapTimeout);
  if (!form_.optVisa2.value()) {
    return false;
  }
  transfer::BlockSession session(com_, turns_, form_.cmbVISARes.text(),
                                 transfer::BlockSession::End::Reading);
  const io::Bytes data = session.read(raw ? kDumpQuery : kBitmapQuery);
  if (data.size() < transfer::kLeastBlock) {
    reports_.fail(FailureKind::BrokenAnswer);
    return false;
  }
  if (!raw) {
    files_.replace(sFile, data);
    session.restore();
    return true;
  }
  if (turns_.inTurn()) {
    files_.replace(kDump, data);
  } else {
    files_.write(kDump, data);
  }
  session.restore();
  return !namesBitmap(sFile) || ConvertDumpToBitmap(sFile);
}

// ---- pictures

bool ScreenCapture::ConvertDumpToBitmap(std::string_view sFile) {
  return attempt([&] { convertDump(sFile); });
}

void ScreenCapture::convertDump(std::string_view sFile) {
  FillScreenPalette(palette_);
  transfer::Bytes saved(kDumpHeader.size() + DisplayDump::kSize);
  {
    const auto file = openExisting(host_.drive, kDump);
    form_.Picture1.setPicture(nullptr);
    saved.resize(file->get(saved));
  }
  const auto dump = dumpIn(saved);
  if (!dump) {
    throw transfer::BlockFault("the dump is shorter than its planes");
  }
  auto picture = std::make_shared<toolkit::Picture>(kScreenWidth, kScreenHeight);
  paintDump(*dump, palette_, *picture);
  form_.Picture1.setPicture(picture);
  form_.Picture1.setVisible(form_.cmdConnect.visible());
  form_.Picture1.bringToFront();
  form_.Image1.setPicture(picture);
  files_.replace(sFile, picture->bitmap());
}

void ScreenCapture::showFile(std::string_view sFile) {
  form_.Picture1.setPicture(std::make_shared<toolkit::Picture>(
      toolkit::Picture::fromBitmap(wholeFile(host_.drive, sFile))));
  form_.Image1.setPicture(form_.Picture1.picture());
  form_.Picture1.setVisible(form_.cmdConnect.visible());
  form_.Image1.setVisible(true);
  form_.Image1.setStretch(true);
  form_.Picture1.bringToFront();
  form_.Image1.bringToFront();
}

}  // namespace lumodevice::capture
