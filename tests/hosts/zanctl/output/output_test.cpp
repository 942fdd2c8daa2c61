#include "hosts/zanctl/output/output.hpp"

#include <array>
#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <thread>
#include <unistd.h>

#include "hosts/zanctl/output/table.hpp"
#include "tests/hosts/zanctl/output/text_output.hpp"

namespace zanctl {
namespace {

/// What a device, a wire or the name of a file may say to a terminal.
constexpr std::string_view kHostile = "a\x1B[2J\r\nzanctl: all is well\x07\x9B\xC2\x9B";
constexpr std::string_view kShown = "a\\x1B[2J\\r\\nzanctl: all is well\\x07\\x9B\\xC2\\x9B";

TEST(Printer, aLineMovesNoCursorAndIsOne) {
  TextOutput output;
  output.line(kHostile);
  EXPECT_EQ(output.text(), std::string(kShown) + "\n");
}

TEST(Printer, whatWasEscapedAndOrdinaryTextStayAsTheyAre) {
  TextOutput output;
  output.line("\\x1B C:\\temp Ω\t");
  EXPECT_EQ(output.text(), "\\x1B C:\\temp Ω\\t\n");
}

TEST(Printer, aTableIsOfPrintedText) {
  EXPECT_EQ(alignedTable({{std::string(kHostile), "b"}}), std::string(kShown) + "  b\n");
}

/// The other end of a pipe may have made it so.
TEST(FileOutputs, oneThatDoesNotBlockIsWaitedFor) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
  const std::string text(1 << 20, 'x');
  std::size_t arrived = 0;
  std::thread reader([&] {
    std::array<char, 65536> bytes{};
    while (arrived < text.size()) {
      const ssize_t count = ::read(ends[0], bytes.data(), bytes.size());
      arrived += count > 0 ? static_cast<std::size_t>(count) : 0;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  });
  FileOutput output(ends[1]);
  output.write(text);
  EXPECT_FALSE(output.closed());
  if (output.closed()) {
    arrived = text.size();
  }
  reader.join();
  ::close(ends[0]);
  ::close(ends[1]);
}

}  // namespace
}  // namespace zanctl
