#include "platform/builtin/socket_session.hpp"

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include "tests/platform/scripted_peer.hpp"

namespace lumodevice::posix {
namespace {

using io::VI_ERROR_CONN_LOST;
using io::VI_ERROR_TMO;
using io::VI_SUCCESS;
using io::VI_SUCCESS_MAX_CNT;
using io::VI_SUCCESS_TERM_CHAR;
using platform::SocketSession;

void pause(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

/// A session against a scripted peer; ends before the peer is waited for.
class Exchange {
 public:
  explicit Exchange(std::function<void(PeerConnection&)> script, std::uint32_t timeout = 3000)
      : peer_(std::move(script)) {
    io::ViStatus status = VI_SUCCESS;
    session_ =
        SocketSession::connect({.board = 0, .host = "127.0.0.1", .port = peer_.port()}, 0, status);
    EXPECT_EQ(status, VI_SUCCESS);
    set(io::VI_ATTR_TMO_VALUE, timeout);
  }

  void set(io::ViAttr attribute, std::uint32_t value) {
    EXPECT_EQ(session_->setAttribute(attribute, value), VI_SUCCESS);
  }
  void endAtCarriageReturn() {
    set(io::VI_ATTR_TERMCHAR, 13);
    set(io::VI_ATTR_TERMCHAR_EN, 0xFFFFFFFF);
  }
  void write(std::string_view text) {
    std::uint32_t count = 0;
    EXPECT_EQ(session_->write(text, count), VI_SUCCESS);
    EXPECT_EQ(count, text.size());
  }
  std::string read(std::size_t most, io::ViStatus expected) {
    std::string buffer(most, '.');
    std::uint32_t count = 0;
    EXPECT_EQ(session_->read(buffer, count), expected);
    return buffer.substr(0, count);
  }
  SocketSession& session() { return *session_; }

 private:
  ScriptedPeer peer_;
  std::unique_ptr<SocketSession> session_;
};

TEST(SocketSession, aQueryIsAnsweredUpToItsLineFeed) {
  Exchange link([](PeerConnection& peer) { peer.send("you said " + peer.line()); });
  link.write("*IDN?\n");
  EXPECT_EQ(link.read(72, VI_SUCCESS), "you said *IDN?\n");
}

TEST(SocketSession, aPeerThatDoesNotListenRefuses) {
  std::uint16_t port = 0;
  {
    port = ScriptedPeer([](PeerConnection&) {}).port();
  }
  io::ViStatus status = VI_SUCCESS;
  EXPECT_EQ(SocketSession::connect({.board = 0, .host = "127.0.0.1", .port = port}, 0, status),
            nullptr);
  EXPECT_EQ(status, io::VI_ERROR_NLISTENERS);
}

TEST(SocketSession, aHostThatNobodyKnowsIsToldApart) {
  io::ViStatus status = VI_SUCCESS;
  EXPECT_EQ(
      SocketSession::connect({.board = 0, .host = "no-such-host.invalid", .port = 5025}, 0, status),
      nullptr);
  EXPECT_EQ(status, io::VI_ERROR_MACHINE_NAVAIL);
}

TEST(SocketSession, oneAnswerCanBeReadInParts) {
  Exchange link([](PeerConnection& peer) { peer.send("12345\n"); });
  EXPECT_EQ(link.read(2, VI_SUCCESS_MAX_CNT), "12");
  EXPECT_EQ(link.read(2, VI_SUCCESS_MAX_CNT), "34");
  EXPECT_EQ(link.read(2, VI_SUCCESS), "5\n") << "the end beats the count";
}

TEST(SocketSession, twoAnswersInOnePacketStayApart) {
  Exchange link([](PeerConnection& peer) { peer.send("one\ntwo\n"); });
  EXPECT_EQ(link.read(80, VI_SUCCESS), "one\n");
  EXPECT_EQ(link.read(80, VI_SUCCESS), "two\n");
}

TEST(SocketSession, anAnswerInPiecesIsOneAnswer) {
  Exchange link([](PeerConnection& peer) {
    for (const char* piece : {"1", ".", "5\n"}) {
      peer.send(piece);
      pause(20);
    }
  });
  EXPECT_EQ(link.read(80, VI_SUCCESS), "1.5\n");
}

TEST(SocketSession, aDrippingAnswerEndsAtTheTotalTimeOut) {
  Exchange link(
      [](PeerConnection& peer) {
        for (int i = 0; i < 40; ++i) {
          peer.send("x");
          pause(20);
        }
      },
      200);
  const std::string dripped = link.read(38, VI_ERROR_TMO);
  EXPECT_FALSE(dripped.empty());
  EXPECT_LT(dripped.size(), 38U);
}

TEST(SocketSession, anAnswerCutShortIsHandedOverWithTheTimeOutAndCompletedByTheNextRead) {
  Exchange link(
      [](PeerConnection& peer) {
        peer.send("1.");
        (void)peer.bytes(1);
        peer.awaitClose();
      },
      100);
  EXPECT_EQ(link.read(80, VI_ERROR_TMO), "1.");
  EXPECT_EQ(link.read(80, VI_ERROR_TMO), "");
}

TEST(SocketSession, withoutATimeOutOnlyWhatIsThereIsRead) {
  Exchange link([](PeerConnection& peer) { peer.awaitClose(); }, 0);
  EXPECT_EQ(link.read(80, VI_ERROR_TMO), "");
}

TEST(SocketSession, anInfiniteTimeOutWaitsForTheAnswer) {
  Exchange link(
      [](PeerConnection& peer) {
        pause(30);
        peer.send("a");
        pause(30);
        peer.send("b\n");
      },
      io::VI_TMO_INFINITE);
  EXPECT_EQ(link.read(80, VI_SUCCESS), "ab\n");
}

TEST(SocketSession, aChangedTimeOutHoldsFromTheNextReadOn) {
  Exchange link(
      [](PeerConnection& peer) {
        peer.send("first\n");
        (void)peer.line();
        pause(600);
        peer.send("late\n");
        peer.awaitClose();
      },
      io::VI_TMO_INFINITE);
  EXPECT_EQ(link.read(80, VI_SUCCESS), "first\n");
  link.write("2?\n");
  link.set(io::VI_ATTR_TMO_VALUE, 50);
  EXPECT_EQ(link.read(80, VI_ERROR_TMO), "");
  link.set(io::VI_ATTR_TMO_VALUE, 3000);
  EXPECT_EQ(link.read(80, VI_SUCCESS), "late\n");
}

TEST(SocketSession, aPeerThatClosesIsLostAndWhatItSaidIsKept) {
  Exchange link([](PeerConnection& peer) { peer.send("half"); });
  EXPECT_EQ(link.read(80, VI_ERROR_CONN_LOST), "half");
  EXPECT_EQ(link.read(80, VI_ERROR_CONN_LOST), "");
}

TEST(SocketSession, writingToAPeerThatIsGoneIsAStatusAndNoSignal) {
  Exchange link([](PeerConnection&) {});
  EXPECT_EQ(link.read(80, VI_ERROR_CONN_LOST), "");
  std::uint32_t count = 0;
  io::ViStatus status = VI_SUCCESS;
  for (int i = 0; i < 100 && status == VI_SUCCESS; ++i) {
    status = link.session().write("x\n", count);
    pause(1);
  }
  EXPECT_EQ(status, VI_ERROR_CONN_LOST);
}

TEST(SocketSession, theTerminationCharacterEndsReadsWhileItIsEnabled) {
  Exchange link([](PeerConnection& peer) { peer.send("a;b;c\n"); });
  link.set(io::VI_ATTR_TERMCHAR, ';');
  link.set(io::VI_ATTR_TERMCHAR_EN, 1);
  EXPECT_EQ(link.read(80, VI_SUCCESS_TERM_CHAR), "a;");
  EXPECT_EQ(link.read(2, VI_SUCCESS_TERM_CHAR), "b;") << "the character beats the count";
  link.set(io::VI_ATTR_TERMCHAR_EN, 0);
  EXPECT_EQ(link.read(80, VI_SUCCESS), "c\n");
}

TEST(SocketSession, whereTheLineFeedIsTheTerminationCharacterTheEndBeatsIt) {
  Exchange link([](PeerConnection& peer) { peer.send("a\n"); });
  link.set(io::VI_ATTR_TERMCHAR_EN, 1);
  EXPECT_EQ(link.read(80, VI_SUCCESS), "a\n");
}

TEST(SocketSession, theLineFeedAfterACarriageReturnBelongsToTheTerminator) {
  Exchange link([](PeerConnection& peer) {
    peer.send("one\r\ntwo\r");
    (void)peer.line();
    peer.send("\nthree\r\n");
    peer.awaitClose();
  });
  link.endAtCarriageReturn();
  EXPECT_EQ(link.read(80, VI_SUCCESS_TERM_CHAR), "one\r");
  EXPECT_EQ(link.read(80, VI_SUCCESS_TERM_CHAR), "two\r");
  link.write("?\n");
  EXPECT_EQ(link.read(80, VI_SUCCESS_TERM_CHAR), "three\r");
}

TEST(SocketSession, lineFeedsInsideABlockEndNothing) {
  const std::string block = std::string("#216\n\n\r\0#1\n", 11) + std::string(9, '\n');
  ASSERT_EQ(block.size(), 20U);
  Exchange link([&](PeerConnection& peer) {
    for (const char c : block) peer.send(std::string(1, c));
    peer.send("\nnext\n");
    peer.awaitClose();
  });
  EXPECT_EQ(link.read(7, VI_SUCCESS_MAX_CNT), block.substr(0, 7));
  EXPECT_EQ(link.read(100, VI_SUCCESS), block.substr(7) + "\n");
  EXPECT_EQ(link.read(100, VI_SUCCESS), "next\n");
}

TEST(SocketSession, aCarriageReturnInsideABlockDoesNotSwallowALineFeedOfTheData) {
  Exchange link([](PeerConnection& peer) {
    peer.send("#14a\r\nb\n");
    peer.awaitClose();
  });
  link.endAtCarriageReturn();
  EXPECT_EQ(link.read(80, VI_SUCCESS_TERM_CHAR), "#14a\r");
  EXPECT_EQ(link.read(80, VI_SUCCESS), "\nb\n");
}

TEST(SocketSession, anUnreadRestIsDiscardedByTheNextWrite) {
  Exchange link([](PeerConnection& peer) {
    peer.send("an answer longer than asked\n");
    (void)peer.line();
    peer.send("second\n");
    peer.awaitClose();
  });
  EXPECT_EQ(link.read(5, VI_SUCCESS_MAX_CNT), "an an");
  link.write("2?\n");
  EXPECT_EQ(link.read(80, VI_SUCCESS), "second\n");
}

TEST(SocketSession, aLateAnswerIsDiscardedByTheNextWrite) {
  Exchange link(
      [](PeerConnection& peer) {
        (void)peer.line();
        pause(150);
        peer.send("late\n");
        (void)peer.line();
        peer.send("second\n");
        peer.awaitClose();
      },
      50);
  link.write("1?\n");
  EXPECT_EQ(link.read(80, VI_ERROR_TMO), "");
  pause(400);
  link.set(io::VI_ATTR_TMO_VALUE, 3000);
  link.write("2?\n");
  EXPECT_EQ(link.read(80, VI_SUCCESS), "second\n");
}

TEST(SocketSession, answersThatHaveFallenOneBehindAreCaughtUpWith) {
  Exchange link(
      [](PeerConnection& peer) {
        (void)peer.line();
        (void)peer.line();
        peer.send("first\n");
        pause(20);
        peer.send("second\n");
        (void)peer.line();
        peer.send("third\n");
        peer.awaitClose();
      },
      50);
  link.write("1?\n");
  EXPECT_EQ(link.read(80, VI_ERROR_TMO), "");
  link.set(io::VI_ATTR_TMO_VALUE, 3000);
  link.write("2?\n");
  EXPECT_EQ(link.read(80, VI_SUCCESS), "first\n")
      << "it came after the write: nothing tells it apart";
  pause(300);
  link.write("3?\n");
  EXPECT_EQ(link.read(80, VI_SUCCESS), "third\n");
}

TEST(SocketSession, whatWasNotReadIsDroppedOnRequestAndTold) {
  Exchange link([](PeerConnection& peer) {
    peer.send("one\ntwo\nthr");
    (void)peer.line();
    peer.send("new\n");
    peer.awaitClose();
  });
  EXPECT_EQ(link.read(2, VI_SUCCESS_MAX_CNT), "on");
  EXPECT_EQ(link.session().discardUnread(), "e\ntwo\nthr");
  link.write("?\n");
  EXPECT_EQ(link.read(80, VI_SUCCESS), "new\n");
}

TEST(SocketSession, whereNothingArrivedNothingIsDroppedWithoutAWait) {
  Exchange link([](PeerConnection& peer) { peer.awaitClose(); }, 3000);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(link.session().discardUnread(), "");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1000));
}

TEST(SocketSession, hugeAnswersComeWhole) {
  const std::string data(3 << 20, '\n');
  const std::string answer = "#7" + std::to_string(data.size()) + data + "\n";
  Exchange link([&](PeerConnection& peer) { peer.send(answer); });
  EXPECT_EQ(link.read(answer.size() + 100, VI_SUCCESS), answer);
}

/// A block whose data hold every byte, read as its length tells.
struct LongBlock {
  explicit LongBlock(std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) data += static_cast<char>(i * 7);
    bytes = "#6" + std::to_string(size) + data;
  }
  std::string data;
  std::string bytes;
};

TEST(SocketSession, theDataOfABlockComeInReadsOfAnySize) {
  const LongBlock block(300'000);
  for (const std::size_t size : {1'000U, 60'000U, 299'999U, 300'000U}) {
    Exchange link([&](PeerConnection& peer) {
      peer.send(block.bytes + "\nnext\n");
      peer.awaitClose();
    });
    EXPECT_EQ(link.read(8, VI_SUCCESS_MAX_CNT), "#6300000");
    std::string data;
    while (data.size() < block.data.size()) {
      data += link.read(std::min(size, block.data.size() - data.size()), VI_SUCCESS_MAX_CNT);
    }
    EXPECT_TRUE(data == block.data) << size;
    EXPECT_EQ(link.read(80, VI_SUCCESS), "\n");
    EXPECT_EQ(link.read(80, VI_SUCCESS), "next\n") << size;
  }
}

TEST(SocketSession, theTerminationCharacterEndsReadsOfABlocksDataToo) {
  const LongBlock block(100'000);
  Exchange link([&](PeerConnection& peer) {
    peer.send(block.bytes + "\n");
    peer.awaitClose();
  });
  link.set(io::VI_ATTR_TERMCHAR, 14);
  link.set(io::VI_ATTR_TERMCHAR_EN, 1);
  EXPECT_EQ(link.read(8, VI_SUCCESS_MAX_CNT), "#6100000");
  std::string data = link.read(block.data.size(), VI_SUCCESS_TERM_CHAR);
  EXPECT_EQ(data, block.data.substr(0, 3));
  while (data.size() + 256 < block.data.size()) {
    data += link.read(block.data.size() - data.size(), VI_SUCCESS_TERM_CHAR);
  }
  EXPECT_TRUE(block.data.starts_with(data));
}

TEST(SocketSession, theDataOfABlockThatStallsAreHandedOverAndCompletedByTheNextRead) {
  const LongBlock block(200'000);
  Exchange link(
      [&](PeerConnection& peer) {
        peer.send(block.bytes.substr(0, 150'000));
        (void)peer.line();
        peer.awaitClose();
      },
      200);
  EXPECT_EQ(link.read(8, VI_SUCCESS_MAX_CNT), "#6200000");
  EXPECT_TRUE(link.read(200'000, VI_ERROR_TMO) == block.data.substr(0, 149'992));
  EXPECT_EQ(link.read(50'008, VI_ERROR_TMO), "");
}

TEST(SocketSession, hugeWritesGoOutWhole) {
  const std::string data(3 << 20, 'w');
  std::string heard;
  {
    Exchange link([&](PeerConnection& peer) {
      pause(50);
      heard = peer.bytes(data.size());
    });
    link.write(data);
  }
  EXPECT_EQ(heard.size(), data.size());
}

TEST(SocketSession, aWriteThatThePeerDoesNotTakeTimesOutAndTellsWhatWentOut) {
  Exchange link([](PeerConnection&) { pause(2000); }, 100);
  const std::string data(64 << 20, 'w');
  std::uint32_t count = 0;
  EXPECT_EQ(link.session().write(data, count), VI_ERROR_TMO);
  EXPECT_GT(count, 0U);
  EXPECT_LT(count, data.size());
}

TEST(SocketSession, anEmptyReadReturnsAtOnce) {
  Exchange link([](PeerConnection& peer) { peer.awaitClose(); });
  EXPECT_EQ(link.read(0, VI_SUCCESS_MAX_CNT), "");
}

TEST(SocketSession, attributesKeepToTheirWidths) {
  Exchange link([](PeerConnection& peer) {
    peer.send("a\rb\rc\n");
    peer.awaitClose();
  });
  link.set(io::VI_ATTR_TERMCHAR, 0xABCD0D);
  link.set(io::VI_ATTR_TERMCHAR_EN, 0xFFFFFFFF);
  EXPECT_EQ(link.read(80, VI_SUCCESS_TERM_CHAR), "a\r");
  link.set(io::VI_ATTR_TERMCHAR_EN, 0x10000);
  EXPECT_EQ(link.read(80, VI_SUCCESS), "b\rc\n") << "16 bits of it are zero: false";
  link.set(io::VI_ATTR_SEND_END_EN, 0);
  EXPECT_EQ(link.session().setAttribute(io::VI_ATTR_INTF_INST_NAME, 0), io::VI_ERROR_ATTR_READONLY);
}

TEST(SocketSession, serialEndModesAreTakenAndLeaveTheEndOfMessagesAlone) {
  Exchange link([](PeerConnection& peer) {
    peer.send("#13a\nb\nc\n");
    peer.awaitClose();
  });
  for (const std::uint32_t mode : {0U, 2U}) {
    link.set(io::VI_ATTR_ASRL_END_IN, mode);
    link.set(io::VI_ATTR_ASRL_END_OUT, mode);
  }
  EXPECT_EQ(link.read(80, VI_SUCCESS), "#13a\nb\n");
  EXPECT_EQ(link.read(80, VI_SUCCESS), "c\n");
}

}  // namespace
}  // namespace lumodevice::posix
