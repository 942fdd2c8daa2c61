#include "simulator/wire/status.hpp"

#include <gtest/gtest.h>

using zansim::Error;
using zansim::Status;

TEST(Status, errorsComeOutInTheOrderInWhichTheyWentIn) {
  Status status;
  status.report(Error::UndefinedHeader);
  status.report(Error::OutOfRange);
  EXPECT_EQ(status.take(), Error::UndefinedHeader);
  EXPECT_EQ(status.take(), Error::OutOfRange);
  EXPECT_EQ(status.take(), Error::None);
}

TEST(Status, aFullQueueKeepsItsEntriesButTheLast) {
  Status status;
  status.report(Error::OutOfRange);
  for (std::size_t i = 1; i < Status::kDepth + 5; ++i) {
    status.report(Error::UndefinedHeader);
  }
  EXPECT_EQ(status.count(), Status::kDepth);
  EXPECT_EQ(status.take(), Error::OutOfRange);
  for (std::size_t i = 2; i < Status::kDepth; ++i) {
    EXPECT_EQ(status.take(), Error::UndefinedHeader);
  }
  EXPECT_EQ(status.take(), Error::QueueOverflow);
  EXPECT_EQ(status.take(), Error::None);
}

TEST(Status, theQueueGoesRoundAndRound) {
  Status status;
  for (int i = 0; i < 100; ++i) {
    status.report(Error::OutOfRange);
    status.report(Error::DataType);
    ASSERT_EQ(status.take(), Error::OutOfRange);
    ASSERT_EQ(status.take(), Error::DataType);
  }
}

TEST(Status, eachKindOfErrorHasItsEventBit) {
  struct Case {
    Error error;
    unsigned bit;
  };
  for (const Case& c :
       {Case{Error::UndefinedHeader, 0x20U}, Case{Error::InvalidBlock, 0x20U},
        Case{Error::OutOfRange, 0x10U}, Case{Error::InputOverrun, 0x08U},
        Case{Error::QueryInterrupted, 0x04U}, Case{Error::QueryUnterminated, 0x04U}}) {
    Status status;
    EXPECT_EQ(status.takeEvents(), 0x80U);
    status.report(c.error);
    EXPECT_EQ(status.takeEvents(), c.bit) << static_cast<int>(c.error);
    EXPECT_EQ(status.takeEvents(), 0U);
  }
}

TEST(Status, textsAreWrittenAsScpiHasThem) {
  EXPECT_EQ(zansim::errorText(Error::None), "0,\"No error\"");
  EXPECT_EQ(zansim::errorText(Error::UndefinedHeader), "-113,\"Undefined header\"");
  EXPECT_EQ(zansim::errorText(Error::QueueOverflow), "-350,\"Queue overflow\"");
  EXPECT_EQ(zansim::errorText(Error::QueryInterrupted), "-410,\"Query INTERRUPTED\"");
  EXPECT_EQ(zansim::errorText(Error::QueryDeadlocked), "-430,\"Query DEADLOCKED\"");
}
