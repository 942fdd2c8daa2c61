#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hosts/zanctl/commands/error_queue.hpp"
#include "lumodevice/simulated_host.hpp"
#include "tests/hosts/zanctl/program_fixture.hpp"

namespace zanctl {
namespace {

class Errors : public ProgramTest {};

TEST_F(Errors, ofAnInstrumentWithoutAnyAreNone) {
  const Ended ended = simulate({"errors"});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_EQ(ended.output, "no errors\n");
  EXPECT_EQ(simulate({"errors", "--json"}).output, "");
}

TEST(TakeErrors, emptiesTheQueueOldestFirst) {
  lumodevice::ZANCtrl load(lumodevice::simulatedHost({.virtualTime = true}));
  ASSERT_TRUE(load.AutoConnect());
  load.SendCmd(":NONSENSE 1");
  load.SendCmd(":CHAN 99");
  const ErrorQueue queue = takeErrors(load);
  ASSERT_EQ(queue.errors.size(), 2U);
  EXPECT_EQ(queue.errors[0], "-113,\"Undefined header\"");
  EXPECT_TRUE(queue.answered);
  EXPECT_THAT(takeErrors(load).errors, testing::IsEmpty());
}

TEST(TakeErrors, tellsThatAnInstrumentDoesNotAnswer) {
  lumodevice::ZANCtrl load(lumodevice::simulatedHost({.virtualTime = true}));
  EXPECT_FALSE(takeErrors(load).answered);
}

TEST(ErrorObject, hasTheCodeAndTheText) {
  EXPECT_EQ(jsonLine(errorObject("-113,\"Undefined header\"")),
            R"({"code":-113,"text":"Undefined header"})");
  EXPECT_EQ(jsonLine(errorObject("-350")), R"({"code":-350,"text":""})");
}

}  // namespace
}  // namespace zanctl
