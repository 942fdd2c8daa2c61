#include "lumodevice/link/command_table.hpp"

namespace lumodevice::link {

namespace {

const std::string kNone;

}  // namespace

void CommandTable::clear() {
  cmdTable_.fill("");
  cmdLast_ = -1;
  cmdCursor_ = -1;
}

void CommandTable::AddCmd(std::string_view text) {
  if (text.empty() || cmdLast_ == kCapacity - 1) {
    return;
  }
  ++cmdLast_;
  cmdTable_[static_cast<std::size_t>(cmdLast_)] = text;
  cmdCursor_ = cmdLast_;
}

const std::string& CommandTable::nextCmd() {
  if (cmdLast_ < 0) {
    return kNone;
  }
  cmdCursor_ = cmdCursor_ >= cmdLast_ ? std::int16_t{0} : static_cast<std::int16_t>(cmdCursor_ + 1);
  return entry(cmdCursor_);
}

const std::string& CommandTable::prevCmd() {
  if (cmdLast_ < 0) {
    return kNone;
  }
  cmdCursor_ = cmdCursor_ <= 0 ? cmdLast_ : static_cast<std::int16_t>(cmdCursor_ - 1);
  return entry(cmdCursor_);
}

const std::string& CommandTable::entry(std::int32_t position) const {
  return cmdTable_.at(static_cast<std::size_t>(position));
}

}  // namespace lumodevice::link
