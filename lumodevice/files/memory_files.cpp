#include "lumodevice/files/memory_files.hpp"

#include <string>

#include "lumodevice/files/block.hpp"
#include "lumodevice/files/block_session.hpp"
#include "lumodevice/files/serial_answer.hpp"
#include "lumodevice/toolkit/handling.hpp"

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

MemoryFiles::MemoryFiles(link::Link& link, WorkingFiles& files) : link_(link), files_(files) {
  toolkit::handle(link_.form.cmdGetSeqFile.click, [this] { GetSequence(); });
  toolkit::handle(link_.form.cmdGetSystemFile.click, [this] { GetSystem(); });
  toolkit::handle(link_.form.cmdSendSystemFile.click, [this] { SendSystem(); });
  toolkit::handle(link_.form.cmdGetPresetFile.click, [this] { GetPreset(); });
  toolkit::handle(link_.form.cmdSetPresetFile.click, [this] { SetPreset(); });
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
  io::SerialPort& port = link_.MSComm1;
  port.Output(line(reading.query));
  const std::string first = answerAfter(link_, reading.firstWait);
  const BlockHeader header = parseBlockHeader(withoutLineEnds(first));
  port.setInputMode(InputModes::Binary);
  port.Output(line(reading.query));
  const std::string second = answerAfter(link_, reading.secondWait);
  files_.write(reading.target, asBytes(blockData(withoutLineEnds(second), header)));
  port.setInputMode(InputModes::Text);
}

void MemoryFiles::getOverVisa(std::string_view query, std::string_view target) {
  BlockSession session(link_, BlockSession::End::Reading);
  const io::Bytes data = session.read(query);
  if (data.size() >= kLeastBlock) {
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

Bytes MemoryFiles::systemFile() {
  Bytes data(kSystemSize);
  files_.read(kSystemUpload, data);
  return data;
}

/// Leaves the port in binary mode, unlike the readings.
void MemoryFiles::sendSystemOverSerial() {
  io::SerialPort& port = link_.MSComm1;
  port.setInputMode(InputModes::Binary);
  port.Output(":SYST:SET #45580");
  port.Output(asText(systemFile()));
  port.Output("\n");
  link_.pause(kSystemSendWait);
}

void MemoryFiles::sendSystemOverVisa() {
  BlockSession session(link_, BlockSession::End::Writing);
  const Bytes data = systemFile();
  session.begin();
  link_.device().FlushWrite(false);
  link_.device().SetBufferSize(io::kInputBuffer | io::kOutputBuffer, kBufferSize);
  session.write(":SYST:SET ", data);
  session.restore();
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
      link_.showBox("Please Click [Get Memory Preset File] first!");
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
  io::SerialPort& port = link_.MSComm1;
  port.Output(line(kPresetQuery));
  const std::string early = port.Input();
  (void)parseBlockHeader(withoutLineEnds(early));
  port.setInputMode(InputModes::Binary);
  port.Output(line(kPresetQuery));
  const std::string received = answerAfter(link_, kPresetReadWait);
  const std::string_view answer = secondAnswer(early, received);
  if (!answer.empty()) {
    files_.write(sFile, asBytes(answer));
  }
  port.setInputMode(InputModes::Text);
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
  Bytes raw(kRawPresetSize);
  files_.read(sFile, raw);
  link_.MSComm1.Output(":MEM:FILE:PRES #3892");
  link_.MSComm1.Output(asText(std::span(raw).subspan(kPresetHeaderSize, kPresetSize)));
  link_.sleep(kPresetSendWait);
}

/// Takes a file that was saved over VISA. It is the end mode for reading that is switched, and no
/// blank stands between the command and the block.
void MemoryFiles::sendPresetOverVisa(std::string_view sFile) {
  Bytes data(kPresetSize);
  files_.read(sFile, data);
  BlockSession session(link_, BlockSession::End::Reading);
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
