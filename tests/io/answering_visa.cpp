#include "tests/io/answering_visa.hpp"

#include <algorithm>
#include <cstdio>

namespace lumodevice::io {

ViStatus AnsweringVisa::viOpenDefaultRM(ViSession& resourceManager) {
  calls.emplace_back("openRM");
  resourceManager = 7;
  return VI_SUCCESS;
}

ViStatus AnsweringVisa::viFindRsrc(ViSession, const std::string&, ViFindList&, std::uint32_t&,
                                   std::string&) {
  return VI_ERROR_RSRC_NFOUND;
}

ViStatus AnsweringVisa::viFindNext(ViFindList, std::string&) {
  return VI_ERROR_RSRC_NFOUND;
}

ViStatus AnsweringVisa::viOpen(ViSession resourceManager, const std::string& descriptor,
                               std::uint32_t accessMode, std::uint32_t openTimeout,
                               ViSession& instrument) {
  calls.push_back("open " + std::to_string(resourceManager) + " " + descriptor + " " +
                  std::to_string(accessMode) + " " + std::to_string(openTimeout));
  instrument = openStatus < 0 ? 0 : 9;
  return openStatus;
}

ViStatus AnsweringVisa::viClose(ViObject object) {
  calls.push_back("close " + std::to_string(object));
  return VI_SUCCESS;
}

ViStatus AnsweringVisa::viGetAttribute(ViObject, ViAttr, std::string&) {
  return VI_ERROR_NSUP_ATTR;
}

ViStatus AnsweringVisa::viSetAttribute(ViObject, ViAttr attribute, std::uint32_t value) {
  char text[48];
  (void)std::snprintf(text, sizeof text, "set %08X %u", attribute, value);
  calls.emplace_back(text);
  if (attribute == VI_ATTR_SEND_END_EN) sendsEnd_ = value != 0;
  return attributeStatus;
}

ViStatus AnsweringVisa::viRead(ViSession, std::span<char> buffer, std::uint32_t& count) {
  asked.push_back(buffer.size());
  count = 0;
  if (answers.empty()) return VI_ERROR_TMO;
  Piece& piece = answers.front();
  const std::size_t size = std::min(buffer.size(), piece.bytes.size() - piece.taken);
  std::copy_n(piece.bytes.data() + piece.taken, size, buffer.begin());
  count = claimsTooMuch ? 0x7FFFFFFF : static_cast<std::uint32_t>(size);
  piece.taken += size;
  if (piece.taken < piece.bytes.size()) return VI_SUCCESS_MAX_CNT;
  const ViStatus status = piece.status;
  answers.pop_front();
  return status;
}

ViStatus AnsweringVisa::viWrite(ViSession, std::string_view data, std::uint32_t& count) {
  if (writeStatus < 0) {
    count = 0;
    return writeStatus;
  }
  count = std::min(mostPerWrite, static_cast<std::uint32_t>(data.size()));
  calls.push_back("write " + std::to_string(data.size()));
  written.append(data.substr(0, count));
  if (count == data.size() && sendsEnd_) written.push_back('|');
  if (claimsTooMuch) count = 0x7FFFFFFF;
  return VI_SUCCESS;
}

}  // namespace lumodevice::io
