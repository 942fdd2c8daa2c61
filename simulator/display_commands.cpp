#include "simulator/command_tables.hpp"
#include "simulator/screen_dump.hpp"

namespace zansim {
namespace {

/// A definite-length block: "#", the number of digits of its length, its length, its bytes.
void replyBlock(Call& call, std::string_view bytes) {
  const std::string length = std::to_string(bytes.size());
  call.reply("#");
  call.reply(std::to_string(length.size()));
  call.reply(length);
  call.reply(bytes);
}

void dumpPlanes(Call& call) {
  replyBlock(call, planes(drawScreen(call.mainframe, call.now)));
}

void dumpBitmap(Call& call) {
  replyBlock(call, bitmap(drawScreen(call.mainframe, call.now)));
}

constexpr Row kRows[] = {
    {.header = ":DISPlay:OUTPut", .query = dumpPlanes},
    {.header = ":DISPlay:COLor", .query = dumpBitmap},
};

}  // namespace

std::span<const Row> displayCommands() {
  return kRows;
}

}  // namespace zansim
