#pragma once

#include <deque>
#include <string>
#include <vector>

#include "lumodevice/io/visa.hpp"

namespace lumodevice::io {

/// A VISA library with one instrument. Answers are given as messages, each of pieces that a read
/// gets one by one; a read takes no more than it asked for and leaves the rest of its piece.
class AnsweringVisa : public Visa {
 public:
  struct Piece {
    Piece(std::string data, ViStatus end) : bytes(std::move(data)), status(end) {}
    std::string bytes;
    ViStatus status;  ///< of the read that takes the piece's last byte
    std::size_t taken = 0;
  };

  std::deque<Piece> answers;  ///< when there is none left, reads time out
  std::vector<std::string> calls;
  std::string written;             ///< all bytes; "|" after each that went out with END
  std::vector<std::size_t> asked;  ///< the counts of all reads
  std::uint32_t mostPerWrite = 0xFFFFFFFF;
  ViStatus writeStatus = VI_SUCCESS;
  ViStatus openStatus = VI_SUCCESS;
  ViStatus attributeStatus = VI_SUCCESS;
  bool claimsTooMuch = false;  ///< counts that no read or write can have

  /// One message with END.
  void answer(const std::string& bytes) { answers.emplace_back(bytes, VI_SUCCESS); }

  ViStatus viOpenDefaultRM(ViSession& resourceManager) override;
  ViStatus viFindRsrc(ViSession resourceManager, const std::string& expression,
                      ViFindList& findList, std::uint32_t& count, std::string& descriptor) override;
  ViStatus viFindNext(ViFindList findList, std::string& descriptor) override;
  ViStatus viOpen(ViSession resourceManager, const std::string& descriptor,
                  std::uint32_t accessMode, std::uint32_t openTimeout,
                  ViSession& instrument) override;
  ViStatus viClose(ViObject object) override;
  ViStatus viGetAttribute(ViObject object, ViAttr attribute, std::string& value) override;
  ViStatus viSetAttribute(ViObject object, ViAttr attribute, std::uint32_t value) override;
  ViStatus viRead(ViSession instrument, std::span<char> buffer, std::uint32_t& count) override;
  ViStatus viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) override;

 private:
  bool sendsEnd_ = true;
};

}  // namespace lumodevice::io
