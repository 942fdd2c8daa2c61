#include <gtest/gtest.h>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "lumodevice/transfer/block.hpp"
#include "tests/files/file_parts.hpp"
#include "tests/io/answering_visa.hpp"
#include "tests/support/measured_memory.hpp"

namespace lumodevice::files {
namespace {

using support::takeLargestRequest;

constexpr std::size_t kReserve = std::size_t{1} << 20;
/// And beside it the few bytes that have arrived.
constexpr std::size_t kFirstPiece = (std::size_t{128} << 10) + 64;

/// Headers that claim far more than follows.
const char* const kClaims[] = {"#9999999999",      "#9999999998", "#9999999999hello\n",
                               "#9999999998#\r\n", "#816777216",  "#532767x"};

class ClaimedLength : public testing::TestWithParam<const char*>, protected FileParts {};

INSTANTIATE_TEST_SUITE_P(Claims, ClaimedLength, testing::ValuesIn(kClaims));

TEST(ClaimedLengths, areMeasured) {
  (void)takeLargestRequest();
  const transfer::Bytes bytes(2 * kReserve);
  EXPECT_EQ(takeLargestRequest(), bytes.size());
}

TEST_P(ClaimedLength, setsNoMemoryAsideOverVisa) {
  for (const io::ViStatus end : {io::VI_SUCCESS, io::VI_SUCCESS_TERM_CHAR, io::VI_ERROR_TMO}) {
    io::AnsweringVisa library;
    io::VisaComOverVisa com(library);
    form.cmbVISARes.setText(kUsb);
    links.visaCom.setDevZAN(com.createFormattedIO488());
    links.visaCom.devZAN()->setIO(com.createResourceManager()->Open(kUsb, 0, 2000, ""));
    library.answers = {{GetParam(), end}};
    (void)takeLargestRequest();
    memory.GetSequence();
    EXPECT_LE(takeLargestRequest(), kFirstPiece);
    library.answers = {{GetParam(), end}};
    EXPECT_FALSE(memory.GetPresetForHost());
    EXPECT_LE(takeLargestRequest(), kFirstPiece);
    EXPECT_FALSE(exists(kSequenceFile));
    EXPECT_FALSE(exists(kPresetFile));
    links.visaCom.setDevZAN(nullptr);
  }
}

TEST_P(ClaimedLength, setsNoMemoryAsideOverSerial) {
  useSerial();
  for (const char* query : {":MEM:FILE:SEQ?", ":SYST:SET?", ":MEM:FILE:PRES?"}) {
    bench.instrument.on(query, GetParam());
  }
  (void)takeLargestRequest();
  memory.GetSequence();
  memory.GetSystem();
  memory.GetPreset();
  EXPECT_LE(takeLargestRequest(), kReserve);
  EXPECT_FALSE(exists(kSequenceFile));
}

TEST_P(ClaimedLength, setsNoMemoryAsideInAnAssembler) {
  (void)takeLargestRequest();
  transfer::BlockAssembler block;
  EXPECT_NE(block.add(GetParam()), transfer::BlockAssembler::State::Complete);
  EXPECT_LE(takeLargestRequest(), kReserve);
}

}  // namespace
}  // namespace lumodevice::files
