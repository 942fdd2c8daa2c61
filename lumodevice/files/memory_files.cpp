#include "lumodevice/files/memory_files.hpp"

#include <string>

#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/transfer/block.hpp"
#include "lumodevice/transfer/serial_answer.hpp"

namespace lumodevice::files {

namespace {

using InputModes = io::SerialPort::InputModes;

constexpr Reading kSequence{":MEM:FILE:SEQ?", "c:\\temp\\ZANSeq.a", 2000, 3000};
constexpr Reading kSystem{":SYST:SET?", "c:\\temp\\ZANProg.b", 1500, 3000};
constexpr std::string_view kSystemUpload = "c:\\temp\\ZANProgUpload.b";
constexpr std::string_view kPresetQuery = ":MEM:FILE:PRES?";
constexpr std::string_view kPreset = "c:\\temp\\zanbank.dev";
/// Its presence allows a host to send the preset.
constexpr std::string_view kPresetMarker = "c:\\temp\\test.dev";

constexpr std::size_t kSystemSize = 5580;
constexpr std::size_t kPresetSize = 892;
constexpr std::size_t kPresetHeaderSize = 5;
/// A preset that was saved over the serial port: header, data, line feed.
constexpr std::size_t kRawPresetSize = kPresetHeaderSize + kPresetSize + 1;
/// Room for the system settings and their header in one write.
constexpr std::int32_t kBufferSize = 6000;

constexpr double kSystemSendWait = 1000;
constexpr double kPresetReadWait = 1000;
constexpr double kPresetSendWait = 1000;

std::string line(std::string_view command) {
  return std::string(command) + '\n';
}

}  // namespace

MemoryFiles::MemoryFiles(form::Controls& form, link::Waits& waits, link::Links& links,
                         transfer::WorkingFiles& files)
    : form_(form), waits_(waits), port_(links.serial.MSComm1), com_(links.visaCom), files_(files) {
  toolkit::handle(form_.cmdGetSeqFile.click, [this] { GetSequence(); });
  toolkit::handle(form_.cmdGetSystemFile.click, [this] { GetSystem(); });
  toolkit::handle(form_.cmdSendSystemFile.click, [this] { SendSystem(); });
  toolkit::handle(form_.cmdGetPresetFile.click, [this] { GetPreset(); });
  toolkit::handle(form_.cmdSetPresetFile.click, [this] { SetPreset(); });
}

// ---- sequence and system settings

void MemoryFiles::GetSequence() {
  attempt([this] { getFile(kSequence); });
}

void MemoryFiles::GetSystem() {
  attempt([this] { getFile(kSystem); });
}

void MemoryFiles::getFile(const Reading& reading) {
  files_.ensureFolder();
  files_.removeIfThere(reading.target);
  if (serial()) {
    getOverSerial(reading);
  } else {
    getOverVisa(reading.query, reading.target);
  }
}

/// Asks twice: the first answer tells the length, the second is taken as bytes.
void MemoryFiles::getOverSerial(const Reading& reading) {
  port_.Output(line(reading.query));
  const std::string first = transfer::answerAfter(waits_, port_, reading.firstWait);
  const transfer::BlockHeader header = transfer::parseBlockHeader(transfer::withoutLineEnds(first));
  port_.setInputMode(InputModes::Binary);
  port_.Output(line(reading.query));
  const std::string second = transfer::answerAfter(waits_, port_, reading.secondWait);
  files_.write(reading.target,
               transfer::asBytes(transfer::blockData(transfer::withoutLineEnds(second), header)));
  port_.setInputMode(InputModes::Text);
}

void MemoryFiles::getOverVisa(std::string_view query, std::string_view target) {
  auto session = blockSession(transfer::BlockSession::End::Reading);
  const io::Bytes data = session.read(query);
  if (data.size() >= transfer::kLeastBlock) {
    files_.write(target, data);
    session.restore();
  }
}

void MemoryFiles::SendSystem() {
  attempt([this] {
    files_.ensureFolder();
    if (!files_.exists(kSystemUpload)) {
      return;
    }
    if (serial()) {
      sendSystemOverSerial();
    } else {
      sendSystemOverVisa();
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
  port_.Output(":SYST:SET #45580");
  port_.Output(transfer::asText(systemFile()));
  port_.Output("\n");
  waits_.pause(kSystemSendWait);
}

void MemoryFiles::sendSystemOverVisa() {
  auto session = blockSession(transfer::BlockSession::End::Writing);
  const transfer::Bytes data = systemFile();
  session.begin();
  com_.device().FlushWrite(false);
  com_.device().SetBufferSize(io::kInputBuffer | io::kOutputBuffer, kBufferSize);
  session.write(":SYST:SET ", data);
  session.restore();
}

transfer::BlockSession MemoryFiles::blockSession(transfer::BlockSession::End end) {
  return {com_, form_.cmbVISARes.text(), end};
}

// ---- preset

void MemoryFiles::GetPreset() {
  attempt([this] {
    files_.ensureFolder();
    ReadPresetFromDevice(kPreset);
  });
}

void MemoryFiles::SetPreset() {
  attempt([this] {
    files_.ensureFolder();
    if (files_.exists(kPreset)) {
      SendPresetToDevice(kPreset);
    } else {
      waits_.showBox("Please Click [Get Memory Preset File] first!");
    }
  });
}

bool MemoryFiles::ReadPresetFromDevice(std::string_view sFile) {
  return attempt([&] {
    if (serial()) {
      readPresetOverSerial(sFile);
    } else {
      getOverVisa(kPresetQuery, sFile);
    }
  });
}

/// Keeps the answer as it came, header and terminator included. The first answer is not waited for:
/// whatever has arrived of it counts as its header, and what arrives of it later is left out. An
/// answer of no bytes is not written, for a preset file without a preset would wipe the
/// instrument's when it is sent back.
void MemoryFiles::readPresetOverSerial(std::string_view sFile) {
  port_.Output(line(kPresetQuery));
  const std::string early = port_.Input();
  (void)transfer::parseBlockHeader(transfer::withoutLineEnds(early));
  port_.setInputMode(InputModes::Binary);
  port_.Output(line(kPresetQuery));
  const std::string received = transfer::answerAfter(waits_, port_, kPresetReadWait);
  const std::string_view answer = transfer::secondAnswer(early, received);
  if (!answer.empty()) {
    files_.write(sFile, transfer::asBytes(answer));
  }
  port_.setInputMode(InputModes::Text);
}

bool MemoryFiles::SendPresetToDevice(std::string_view sFile) {
  if (!files_.exists(sFile)) {
    return false;
  }
  return attempt([&] {
    if (serial()) {
      sendPresetOverSerial(sFile);
    } else {
      sendPresetOverVisa(sFile);
    }
  });
}

/// Takes a file that was saved over the serial port, sends no line feed and waits without
/// processing events.
void MemoryFiles::sendPresetOverSerial(std::string_view sFile) {
  transfer::Bytes raw(kRawPresetSize);
  files_.read(sFile, raw);
  port_.Output(":MEM:FILE:PRES #3892");
  port_.Output(transfer::asText(std::span(raw).subspan(kPresetHeaderSize, kPresetSize)));
  waits_.sleep(kPresetSendWait);
}

/// Takes a file that was saved over VISA. It is the end mode for reading that is switched, and no
/// blank stands between the command and the block.
void MemoryFiles::sendPresetOverVisa(std::string_view sFile) {
  transfer::Bytes data(kPresetSize);
  files_.read(sFile, data);
  auto session = blockSession(transfer::BlockSession::End::Reading);
  session.begin();
  session.write(":MEM:FILE:PRES", data);
  session.restore();
}

// ---- the host's members

bool MemoryFiles::SendSystemForHost() {
  if (!files_.exists(kSystemUpload)) {
    return false;
  }
  SendSystem();
  return true;
}

bool MemoryFiles::GetPresetForHost() {
  attempt([this] { files_.ensureFolder(); });
  return ReadPresetFromDevice(kPreset);
}

bool MemoryFiles::SetPresetForHost() {
  bool sent = false;
  attempt([&] {
    files_.ensureFolder();
    sent = files_.exists(kPresetMarker) && SendPresetToDevice(kPreset);
  });
  return sent;
}

}  // namespace lumodevice::files
