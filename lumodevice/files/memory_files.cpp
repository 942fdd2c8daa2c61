#include "lumodevice/files/memory_files.hpp"

#include <string>

#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/transfer/block.hpp"
#include "lumodevice/transfer/serial_answer.hpp"
#include "lumodevice/transfer/serial_block.hpp"

namespace lumodevice::files {

namespace {

using InputModes = io::SerialPort::InputModes;

constexpr std::string_view kSystemUpload = "c:\\temp\\ZANProgUpload.b";
/// What an operator is told of where it is held back.
constexpr std::string_view kSystemCommand = ":SYST:SET";
constexpr std::string_view kPresetCommand = ":MEM:FILE:PRES";
constexpr std::string_view kPresetQuery = ":MEM:FILE:PRES?";
constexpr std::string_view kPreset = "c:\\temp\\zanbank.dev";
/// Its presence allows a host to send the preset.
constexpr std::string_view kPresetMarker = "c:\\temp\\test.dev";

constexpr std::size_t kSequenceSize = 9999;
constexpr std::size_t kSystemSize = 5580;
constexpr std::string_view kSystemHeader = ":SYST:SET #45580";
constexpr std::size_t kPresetSize = 892;
constexpr std::string_view kPresetHeader = "#3892";
/// A preset that was saved over the serial port: header, data, line feed.
constexpr std::size_t kRawPresetSize = kPresetHeader.size() + kPresetSize + 1;
/// Room for the system settings and their header in one write.
constexpr std::int32_t kBufferSize = 6000;

constexpr Reading kSequence{":MEM:FILE:SEQ?", "c:\\temp\\ZANSeq.a", 2000, 3000, kSequenceSize};
constexpr Reading kSystem{":SYST:SET?", "c:\\temp\\ZANProg.b", 1500, 3000, kSystemSize};

constexpr double kSystemSendWait = 1000;
constexpr double kPresetReadWait = 1000;
constexpr double kPresetSendWait = 1000;

/// A preset as it comes over the serial port; its line end may be missing.
bool isRawPreset(std::string_view bytes) {
  return bytes.starts_with(kPresetHeader) && bytes.size() >= kPresetHeader.size() + kPresetSize;
}

/// Sending anything else would wipe the instrument's preset.
[[noreturn]] void refusePreset() {
  throw transfer::BlockFault("that is no preset for this link");
}

}  // namespace

MemoryFiles::MemoryFiles(form::Controls& form, link::Waits& waits, link::Links& links,
                         link::Turns& turns, transfer::WorkingFiles& files)
    : form_(form),
      waits_(waits),
      serial_(links.serial),
      port_(links.serial.MSComm1),
      com_(links.visaCom),
      turns_(turns),
      gate_(links.gate),
      reports_(links.reports),
      files_(files) {
  toolkit::handle(form_.cmdGetSeqFile.click, [this] { GetSequence(); });
  toolkit::handle(form_.cmdGetSystemFile.click, [this] { GetSystem(); });
  toolkit::handle(form_.cmdSendSystemFile.click, [this] { SendSystem(); });
  toolkit::handle(form_.cmdGetPresetFile.click, [this] { GetPreset(); });
  toolkit::handle(form_.cmdSetPresetFile.click, [this] { SetPreset(); });
}

// ---- sequence and system settings

void MemoryFiles::GetSequence() {
  reports_.transfer([this] { getFile(kSequence); });
}

void MemoryFiles::GetSystem() {
  reports_.transfer([this] { getFile(kSystem); });
}

void MemoryFiles::getFile(const Reading& reading) {
  files_.ensureFolder();
  if (turns_.inTurn()) {
    files_.expectRoom(reading.target, reading.size);
  }
  files_.removeIfThere(reading.target);
  if (!serial()) {
    getOverVisa(reading.query, reading.target);
  } else if (turns_.inTurn()) {
    getInTurn(reading);
  } else {
    getOverSerial(reading);
  }
}

/// Asks twice: the first answer tells the length, the second is taken as bytes.
void MemoryFiles::getOverSerial(const Reading& reading) {
  const transfer::InterleavedReading ours(turns_, serial_);
  port_.Output(transfer::line(reading.query));
  const std::string first = transfer::answerAfter(waits_, port_, reading.firstWait);
  const transfer::BlockHeader header = transfer::parseBlockHeader(transfer::withoutLineEnds(first));
  port_.setInputMode(InputModes::Binary);
  port_.Output(transfer::line(reading.query));
  const std::string second = transfer::answerAfter(waits_, port_, reading.secondWait);
  files_.write(reading.target,
               transfer::asBytes(transfer::blockData(transfer::withoutLineEnds(second), header)));
  port_.setInputMode(InputModes::Text);
}

void MemoryFiles::getInTurn(const Reading& reading) {
  const auto answer =
      transfer::askForBlock(turns_, serial_, reading.query, reading.firstWait + reading.secondWait);
  const std::string_view block = answer->block()->bytes;
  save(reading.target,
       transfer::asBytes(transfer::blockData(block, transfer::parseBlockHeader(block))));
}

void MemoryFiles::getOverVisa(std::string_view query, std::string_view target) {
  transfer::claim(turns_, com_);
  auto session = blockSession(transfer::BlockSession::End::Reading);
  const io::Bytes data = session.read(query);
  if (query == kPresetQuery && turns_.inTurn() && data.size() != kPresetSize) {
    refusePreset();
  }
  if (data.size() >= transfer::kLeastBlock) {
    save(target, data);
    session.restore();
  }
}

void MemoryFiles::save(std::string_view target, std::span<const std::uint8_t> data) {
  if (turns_.inTurn()) {
    files_.replace(target, data);
  } else {
    files_.write(target, data);
  }
}

void MemoryFiles::SendSystem() {
  reports_.transfer([this] {
    files_.ensureFolder();
    if (!files_.exists(kSystemUpload)) {
      return;
    }
    gate_.passBlock(kSystemCommand);
    if (!serial()) {
      sendSystemOverVisa();
    } else if (turns_.inTurn()) {
      sendSystemInTurn();
    } else {
      sendSystemOverSerial();
    }
  });
}

transfer::Bytes MemoryFiles::systemFile() {
  transfer::Bytes data(kSystemSize);
  files_.read(kSystemUpload, data);
  return data;
}

/// Leaves the port in binary mode, unlike the readings.
void MemoryFiles::sendSystemOverSerial() {
  port_.setInputMode(InputModes::Binary);
  port_.Output(kSystemHeader);
  port_.Output(transfer::asText(systemFile()));
  port_.Output("\n");
  waits_.pause(kSystemSendWait);
}

/// The file is read before anything is sent: a header alone would leave the instrument waiting.
void MemoryFiles::sendSystemInTurn() {
  const transfer::Bytes data = systemFile();
  transfer::claim(turns_, serial_);
  port_.Output(kSystemHeader);
  port_.Output(transfer::asText(data));
  port_.Output("\n");
  turns_.keepDistance(kSystemSendWait);
}

void MemoryFiles::sendSystemOverVisa() {
  transfer::claim(turns_, com_);
  auto session = blockSession(transfer::BlockSession::End::Writing);
  const transfer::Bytes data = systemFile();
  session.begin();
  com_.makeRoom(kBufferSize);
  session.write(":SYST:SET ", data);
  session.restore();
}

transfer::BlockSession MemoryFiles::blockSession(transfer::BlockSession::End end) {
  return {com_, turns_, form_.cmbVISARes.text(), end};
}

// ---- preset

void MemoryFiles::GetPreset() {
  reports_.transfer([this] {
    files_.ensureFolder();
    ReadPresetFromDevice(kPreset);
  });
}

void MemoryFiles::SetPreset() {
  reports_.transfer([this] {
    files_.ensureFolder();
    if (files_.exists(kPreset)) {
      SendPresetToDevice(kPreset);
    } else {
      waits_.showBox("Please Click [Get Memory Preset File] first!");
    }
  });
}

bool MemoryFiles::ReadPresetFromDevice(std::string_view sFile) {
  return reports_.transfer([&] {
    if (turns_.inTurn()) {
      files_.expectRoom(sFile, kRawPresetSize);
    }
    if (!serial()) {
      getOverVisa(kPresetQuery, sFile);
    } else if (turns_.inTurn()) {
      readPresetInTurn(sFile);
    } else {
      readPresetOverSerial(sFile);
    }
  });
}

/// Keeps the block as it came, header and line end included. The first answer is not waited for:
/// whatever has arrived of it counts as its header, and what arrives of it later is left out. An
/// answer of no bytes is not written, for a preset file without a preset would wipe the
/// instrument's when it is sent back.
void MemoryFiles::readPresetOverSerial(std::string_view sFile) {
  const transfer::InterleavedReading ours(turns_, serial_);
  port_.Output(transfer::line(kPresetQuery));
  const std::string early = port_.Input();
  (void)transfer::parseBlockHeader(transfer::withoutLineEnds(early));
  port_.setInputMode(InputModes::Binary);
  port_.Output(transfer::line(kPresetQuery));
  const std::string answers = transfer::answerAfter(waits_, port_, kPresetReadWait, early, 2);
  if (const auto block = transfer::blocksIn(answers).last) {
    files_.write(sFile, transfer::asBytes(block->bytes));
  } else if (!answers.empty()) {
    refusePreset();
  }
  port_.setInputMode(InputModes::Text);
}

void MemoryFiles::readPresetInTurn(std::string_view sFile) {
  const auto answer = transfer::askForBlock(turns_, serial_, kPresetQuery, kPresetReadWait);
  const transfer::WholeBlock block = *answer->block();
  if (!isRawPreset(block.bytes)) {
    refusePreset();
  }
  save(sFile, transfer::asBytes(block.bytes));
}

bool MemoryFiles::SendPresetToDevice(std::string_view sFile) {
  if (!files_.exists(sFile)) {
    return false;
  }
  return reports_.transfer([&] {
    gate_.passBlock(kPresetCommand);
    if (serial()) {
      sendPresetOverSerial(sFile);
    } else {
      sendPresetOverVisa(sFile);
    }
  });
}

/// Takes a file that was saved over the serial port, sends no line feed and, interleaved, waits
/// without processing events.
void MemoryFiles::sendPresetOverSerial(std::string_view sFile) {
  transfer::Bytes raw(kRawPresetSize);
  raw.resize(files_.read(sFile, raw));
  if (!isRawPreset(transfer::asText(raw))) {
    refusePreset();
  }
  transfer::claim(turns_, serial_);
  port_.Output(":MEM:FILE:PRES #3892");
  port_.Output(transfer::asText(std::span(raw).subspan(kPresetHeader.size(), kPresetSize)));
  if (turns_.inTurn()) {
    turns_.keepDistance(kPresetSendWait);
  } else {
    waits_.sleep(kPresetSendWait);
  }
}

/// Takes a file that was saved over VISA. It is the end mode for reading that is switched, and no
/// blank stands between the command and the block.
void MemoryFiles::sendPresetOverVisa(std::string_view sFile) {
  transfer::Bytes raw(kRawPresetSize);
  raw.resize(files_.read(sFile, raw));
  if (raw.size() < kPresetSize || isRawPreset(transfer::asText(raw))) {
    refusePreset();
  }
  transfer::claim(turns_, com_);
  auto session = blockSession(transfer::BlockSession::End::Reading);
  session.begin();
  session.write(":MEM:FILE:PRES", std::span(raw).first(kPresetSize));
  session.restore();
}

// ---- the host's members

bool MemoryFiles::SendSystemForHost() {
  if (!files_.exists(kSystemUpload)) {
    return false;
  }
  SendSystem();
  return reports_.failure().kind != FailureKind::HeldBack;
}

bool MemoryFiles::GetPresetForHost() {
  attempt([this] { files_.ensureFolder(); });
  return ReadPresetFromDevice(kPreset);
}

bool MemoryFiles::SetPresetForHost() {
  bool sent = false;
  reports_.transfer([&] {
    files_.ensureFolder();
    sent = files_.exists(kPresetMarker) && SendPresetToDevice(kPreset);
  });
  return sent;
}

}  // namespace lumodevice::files
