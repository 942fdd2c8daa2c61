#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "lumodevice/link/links.hpp"
#include "lumodevice/link/turns.hpp"
#include "lumodevice/link/waits.hpp"
#include "lumodevice/transfer/block_session.hpp"
#include "lumodevice/transfer/working_files.hpp"

namespace lumodevice::files {

/// A file that is read from the instrument; the waits are those of the serial port, in
/// milliseconds.
struct Reading {
  std::string_view query;
  std::string_view target;
  double firstWait;
  double secondWait;
  /// Bytes that it may well have.
  std::size_t size;
};

/// Copies the instrument's memory files between the instrument and "C:\temp": over the serial port
/// while optConnRS232 is selected, else over the VISA COM session. An operation ends silently at
/// its first failure; what it has written or deleted by then stays, and so does the input mode of
/// the serial port. Interleaved, the serial transfers wait fixed times (1 to 5 s in all) and then
/// for what has begun to come. In turn a file is asked for once and read as it comes, the line is
/// free for what follows, and a file of the drive is replaced whole or not at all. A drive that has
/// no room for it is seen before the former file goes and before the instrument is asked.
///
/// A preset is sent only from a file that holds one for the link; in turn only one is saved, too.
class MemoryFiles {
 public:
  /// Takes over cmdGetSeqFile, cmdGetSystemFile, cmdSendSystemFile, cmdGetPresetFile and
  /// cmdSetPresetFile.
  MemoryFiles(form::Controls& form, link::Waits& waits, link::Links& links, link::Turns& turns,
              transfer::WorkingFiles& files);

  // The buttons.
  void GetSequence();
  void GetSystem();
  void SendSystem();
  void GetPreset();
  void SetPreset();

  // The host's way to the same transfers.
  /// Whether there is a file to send; sends it.
  bool SendSystemForHost();
  bool GetPresetForHost();
  bool SetPresetForHost();

 private:
  void getFile(const Reading& reading);
  void getOverSerial(const Reading& reading);
  void getInTurn(const Reading& reading);
  void getOverVisa(std::string_view query, std::string_view target);
  void sendSystemOverSerial();
  void sendSystemInTurn();
  void sendSystemOverVisa();
  [[nodiscard]] transfer::Bytes systemFile();

  bool ReadPresetFromDevice(std::string_view sFile);
  void readPresetOverSerial(std::string_view sFile);
  void readPresetInTurn(std::string_view sFile);
  bool SendPresetToDevice(std::string_view sFile);
  void sendPresetOverSerial(std::string_view sFile);
  void sendPresetOverVisa(std::string_view sFile);

  [[nodiscard]] bool serial() const { return form_.optConnRS232.value(); }

  [[nodiscard]] transfer::BlockSession blockSession(transfer::BlockSession::End end);
  void save(std::string_view target, std::span<const std::uint8_t> data);

  form::Controls& form_;
  link::Waits& waits_;
  link::SerialLink& serial_;
  io::SerialPort& port_;
  link::VisaComLink& com_;
  link::Turns& turns_;
  link::Gate& gate_;
  link::Reports& reports_;
  transfer::WorkingFiles& files_;
};

}  // namespace lumodevice::files
