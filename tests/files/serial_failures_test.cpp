#include <gtest/gtest.h>

#include "tests/files/file_parts.hpp"

namespace lumodevice::files {
namespace {

constexpr int kDeviceGone = 8020;
constexpr int kDiskFull = 61;

/// A call that fails, and what is left.
struct Failure {
  const char* name;
  bool (*run)(MemoryFiles&);
  const char* call;  ///< the beginning of its line
  const char* file;
  const char* left;  ///< of the file, which held "old"; null when it is gone
  int passes;        ///< event passes before the call
  bool result;
  bool binary;
};

bool getSequence(MemoryFiles& files) {
  files.GetSequence();
  return true;
}
bool sendSystem(MemoryFiles& files) {
  return files.SendSystemForHost();
}
bool getPreset(MemoryFiles& files) {
  return files.GetPresetForHost();
}
bool setPreset(MemoryFiles& files) {
  return files.SetPresetForHost();
}

/// A file that can be sent; its content is what matters to no failure.
const std::string kPresetContent = "#3892" + std::string(892, '.');
const char* const kPreset = kPresetContent.c_str();

const Failure kFailures[] = {
    {"SequenceRemove", getSequence, "remove", kSequenceFile, "old", 0, true, false},
    {"SequenceFirstQuery", getSequence, "COM3 write", kSequenceFile, nullptr, 0, true, false},
    {"SequenceFirstAnswer", getSequence, "COM3 read", kSequenceFile, nullptr, 1, true, false},
    {"SequenceSecondQuery", getSequence, "COM3 write", kSequenceFile, nullptr, 1, true, true},
    {"SequenceSecondAnswer", getSequence, "COM3 read", kSequenceFile, nullptr, 2, true, true},
    {"SequenceOpen", getSequence, "open", kSequenceFile, nullptr, 2, true, true},
    {"SequencePut", getSequence, "put", kSequenceFile, "", 2, true, true},
    {"SystemCommand", sendSystem, "COM3 write :SYST", kUploadFile, "old", 0, true, true},
    {"SystemOpen", sendSystem, "open", kUploadFile, "old", 0, true, true},
    {"SystemData", sendSystem, "COM3 write old", kUploadFile, "old", 0, true, true},
    {"SystemLineFeed", sendSystem, "COM3 write \\n", kUploadFile, "old", 0, true, true},
    {"PresetFirstQuery", getPreset, "COM3 write", kPresetFile, "old", 0, false, false},
    {"PresetFirstAnswer", getPreset, "COM3 read", kPresetFile, "old", 0, false, false},
    {"PresetSecondAnswer", getPreset, "COM3 read", kPresetFile, "old", 1, false, true},
    {"PresetOpen", getPreset, "open", kPresetFile, "old", 0, false, true},
    {"PresetPut", getPreset, "put", kPresetFile, "old", 0, false, true},
    {"SetPresetOpen", setPreset, "open", kPresetFile, kPreset, 0, false, false},
    {"SetPresetCommand", setPreset, "COM3 write :MEM", kPresetFile, kPreset, 0, false, false},
    {"SetPresetData", setPreset, "COM3 write ...", kPresetFile, kPreset, 0, false, false},
};

class SerialFailure : public testing::TestWithParam<Failure>, protected FileParts {};
class SerialFailures : public testing::Test, protected FileParts {};

INSTANTIATE_TEST_SUITE_P(Of, SerialFailure, testing::ValuesIn(kFailures),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_P(SerialFailure, leavesWhatWasDoneByThen) {
  const Failure& failure = GetParam();
  useSerial();
  bench.instrument.on(":MEM:FILE:SEQ?", "#15hello\n");
  bench.instrument.on(":MEM:FILE:PRES?", "#15hello\n");
  put(kMarkerFile, "");
  for (const char* path : {kSequenceFile, kUploadFile, kPresetFile}) {
    put(path, failure.left == kPreset ? kPreset : "old");
  }
  const bool ofLine = std::string_view(failure.call).starts_with("COM3");
  int passes = 0;
  const auto arm = [&] {
    if (passes == failure.passes) {
      bench.script.fail(failure.call, ofLine ? kDeviceGone : kDiskFull, 1);
    }
  };
  auto watching = bench.loop.observePasses([&] {
    ++passes;
    arm();
  });
  arm();
  EXPECT_EQ(failure.run(memory), failure.result);
  EXPECT_NE(bench.journal({failure.call}), "") << "it was called";
  EXPECT_EQ(binary(), failure.binary);
  EXPECT_EQ(exists(failure.file), failure.left != nullptr);
  if (failure.left != nullptr) {
    EXPECT_EQ(content(failure.file), failure.left);
  }
  EXPECT_EQ(bench.journal({"box"}), "");

  watching.end();
  memory.GetSequence();
  EXPECT_EQ(content(kSequenceFile), "hello");
}

TEST_F(SerialFailures, ofTheSecondPresetQueryLeavesBinaryMode) {
  useSerial();
  put(kPresetFile, "old");
  bench.instrument.otherwise = [this](std::string_view) {
    bench.script.fail("COM3 write", kDeviceGone, 1);
    return support::silence();
  };
  EXPECT_FALSE(memory.GetPresetForHost());
  EXPECT_TRUE(binary());
  EXPECT_EQ(content(kPresetFile), "old");
}

}  // namespace
}  // namespace lumodevice::files
