#include "simulator/commands/command_tables.hpp"
#include "simulator/screen/dump.hpp"

namespace zansim {
namespace {

void dumpPlanes(Call& call) {
  call.replyBlock(planes(drawScreen(call.mainframe, call.now)));
}

void dumpBitmap(Call& call) {
  call.replyBlock(bitmap(drawScreen(call.mainframe, call.now)));
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
