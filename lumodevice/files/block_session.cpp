#include "lumodevice/files/block_session.hpp"

#include <string>

#include "lumodevice/text/text.hpp"

namespace lumodevice::files {

BlockSession::BlockSession(link::Link& link, End end) : link_(link), end_(end) {
  if (!text::contains(link_.form.cmbVISARes.text(), "GPIB")) {
    session_ = link_.session();
  }
}

void BlockSession::setEndMode(int mode) {
  if (end_ == End::Reading) {
    session_->setSerialEndIn(mode);
  } else {
    session_->setSerialEndOut(mode);
  }
}

void BlockSession::begin() {
  if (session_) {
    session_->setTerminationCharacterEnabled(false);
    setEndMode(io::kSerialEndNone);
  }
}

io::Bytes BlockSession::read(std::string_view query) {
  link_.device().WriteString(text::Trim(query) + '\n', true);
  begin();
  return link_.device().ReadIEEEBlock(false, true);
}

void BlockSession::write(std::string_view command, std::span<const std::uint8_t> data) {
  link_.device().WriteIEEEBlock(command, data, true);
}

void BlockSession::restore() {
  if (session_) {
    session_->setTimeout(link_.chosenTimeout());
    setEndMode(io::kSerialEndTerminationCharacter);
  }
}

}  // namespace lumodevice::files
