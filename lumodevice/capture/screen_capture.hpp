#pragma once

#include <string>
#include <string_view>

#include "lumodevice/capture/screen_palette.hpp"
#include "lumodevice/capture/seen_values.hpp"
#include "lumodevice/link/links.hpp"
#include "lumodevice/link/turns.hpp"
#include "lumodevice/link/waits.hpp"
#include "lumodevice/transfer/working_files.hpp"

namespace lumodevice::capture {

/// Saves the instrument's screen, as the bitmap that it draws itself (":DISP:COL?") or by way of
/// its raw display memory (":DISP:OUTP?"), and shows it in Picture1 and Image1. The operations
/// return false at the first failure; what they have written by then stays. In turn files are
/// replaced whole or not at all, and a drive without room is seen before the instrument is asked.
class ScreenCapture {
 public:
  /// What is asked for. Everything but a raw dump is a colour bitmap.
  enum Mode { kRawDump = 1, kColourBitmap = 2 };

  /// Takes over cmdGetBMPFile, cmdGetCTRLScrn and cmdWork.
  ScreenCapture(const Host& host, form::Controls& form, link::Waits& waits, link::Links& links,
                link::Turns& turns, transfer::WorkingFiles& files);

  // The buttons.
  void GetBitmap();
  void GetDump();
  void ConvertDump();

  /// Into "c:\temp\ZAN.bmp": by the serial port while optConnRS232 is selected, over VISA COM while
  /// optVisa2 is; false for every other link.
  bool GetBMPFile();

  /// Over the serial port. A colour bitmap is waited for 1.5 s, then until it is complete or
  /// nothing has arrived for a second, for ten minutes at most; the file holds exactly the bitmap,
  /// or is not touched. A raw dump is read for at most three seconds. In turn both are read as they
  /// come, and a dump is saved whole or not at all.
  bool CaptureScreenSerial(std::string_view sFile, int mode);

  /// A raw dump over the serial port, or for any mode but kRawDump over VISA COM.
  bool CaptureRawDump(std::string_view sFile, int mode);

  /// Over VISA COM while optVisa2 is selected. A raw dump goes to "c:\temp\DispOutD.dat" and
  /// becomes a picture in `sFile` when that is a bitmap's name.
  bool CaptureScreenVisa(std::string_view sFile, int mode);

  /// Paints "c:\temp\DispOutD.dat", shows the picture and saves it.
  bool ConvertDumpToBitmap(std::string_view sFile);

  [[nodiscard]] const SeenValues& seenValues() const { return seenValues_; }

 private:
  void captureDumpOverSerial(std::string_view sFile);
  void captureBitmapOverSerial(std::string_view sFile);
  void captureDumpInTurn(std::string_view sFile);
  void captureBitmapInTurn(std::string_view sFile);
  void offerSeenValues(std::string_view dump);
  bool captureOverVisa(std::string_view sFile, int mode);
  void convertDump(std::string_view sFile);
  void showFile(std::string_view sFile);
  [[nodiscard]] std::string timeStampedName() const;
  [[nodiscard]] bool serial() const { return form_.optConnRS232.value(); }

  const Host& host_;
  form::Controls& form_;
  link::Waits& waits_;
  link::SerialLink& serial_;
  io::SerialPort& port_;
  link::VisaComLink& com_;
  link::Turns& turns_;
  link::Reports& reports_;
  transfer::WorkingFiles& files_;
  ScreenPalette palette_{};
  SeenValues seenValues_;
};

}  // namespace lumodevice::capture
