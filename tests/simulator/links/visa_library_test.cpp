#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

namespace {

using Status = std::int32_t;
using Handle = std::uint32_t;

/// The library as a VISA program holds it: nothing but names and C types.
class VisaLibrary : public testing::Test {
 protected:
  VisaLibrary() : library_(::dlopen(ZANSIM_VISA_LIBRARY, RTLD_NOW | RTLD_LOCAL)) {
    if (library_ == nullptr) {
      throw std::runtime_error(::dlerror());
    }
  }
  ~VisaLibrary() override { ::dlclose(library_); }

  template <typename Function>
  Function* function(const char* name) {
    void* const address = ::dlsym(library_, name);
    EXPECT_NE(address, nullptr) << name;
    return reinterpret_cast<Function*>(address);
  }

  void* library_;
};

}  // namespace

TEST_F(VisaLibrary, aProgramFindsOpensAsksAndCloses) {
  const auto openManager = function<Status(Handle*)>("viOpenDefaultRM");
  const auto find =
      function<Status(Handle, const char*, Handle*, std::uint32_t*, char*)>("viFindRsrc");
  const auto findNext = function<Status(Handle, char*)>("viFindNext");
  const auto open =
      function<Status(Handle, const char*, std::uint32_t, std::uint32_t, Handle*)>("viOpen");
  const auto close = function<Status(Handle)>("viClose");
  const auto getAttribute = function<Status(Handle, std::uint32_t, void*)>("viGetAttribute");
  const auto setAttribute =
      function<Status(Handle, std::uint32_t, std::uintptr_t)>("viSetAttribute");
  const auto read =
      function<Status(Handle, unsigned char*, std::uint32_t, std::uint32_t*)>("viRead");
  const auto write =
      function<Status(Handle, const unsigned char*, std::uint32_t, std::uint32_t*)>("viWrite");

  Handle manager = 0;
  ASSERT_EQ(openManager(&manager), 0);
  Handle list = 0;
  std::uint32_t count = 0;
  char name[256];
  ASSERT_EQ(find(manager, "?*INSTR", &list, &count, name), 0);
  EXPECT_EQ(count, 2U);
  EXPECT_STREQ(name, "ASRL1::INSTR");
  ASSERT_EQ(findNext(list, name), 0);
  EXPECT_STREQ(name, "USB0::0x5A41::0x0200::SIM00001::INSTR");
  EXPECT_EQ(static_cast<std::uint32_t>(findNext(list, name)), 0xBFFF0011);
  EXPECT_EQ(find(manager, "USB?*", nullptr, nullptr, name), 0);

  Handle instrument = 0;
  ASSERT_EQ(open(manager, name, 1, 1, &instrument), 0);
  ASSERT_EQ(getAttribute(instrument, 0xBFFF00E9, name), 0);
  EXPECT_STREQ(name, "USB0 (ZAN DC Electronic Load)");
  EXPECT_EQ(setAttribute(instrument, 0x3FFF0038, static_cast<std::uintptr_t>(-1)), 0);
  EXPECT_EQ(setAttribute(instrument, 0x3FFF0018, 13), 0);
  EXPECT_EQ(setAttribute(instrument, 0x3FFF001A, 150), 0);
  std::uint8_t widths[8];
  const struct {
    std::uint32_t attribute;
    std::uint8_t bytes[5];  // 0xEE where nothing is written
  } expected[] = {{0x3FFF0018, {13, 0xEE, 0xEE, 0xEE, 0xEE}},
                  {0x3FFF0038, {1, 0, 0xEE, 0xEE, 0xEE}},
                  {0x3FFF001A, {150, 0, 0, 0, 0xEE}}};
  for (const auto& c : expected) {
    std::memset(widths, 0xEE, sizeof widths);
    EXPECT_EQ(getAttribute(instrument, c.attribute, widths), 0);
    EXPECT_EQ(std::memcmp(widths, c.bytes, sizeof c.bytes), 0) << c.attribute;
  }
  EXPECT_EQ(static_cast<std::uint32_t>(getAttribute(instrument, 0x3FFF9999, widths)), 0xBFFF001D);

  unsigned char buffer[80];
  ASSERT_EQ(write(instrument, reinterpret_cast<const unsigned char*>("*IDN?\r"), 6, &count), 0);
  EXPECT_EQ(count, 6U);
  ASSERT_EQ(read(instrument, buffer, sizeof buffer, &count), 0);
  EXPECT_EQ(std::string(buffer, buffer + count), "Ostbrook Instruments,ZAN63200,SIM00001,1.02.3\n");
  EXPECT_EQ(setAttribute(instrument, 0x3FFF0038, 0), 0);
  std::vector<unsigned char> picture(300'000);
  const auto* const query = reinterpret_cast<const unsigned char*>(":DISP:COL?\n");
  ASSERT_EQ(write(instrument, query, 11, &count), 0);
  ASSERT_EQ(read(instrument, picture.data(), 300'000, &count), 0);
  EXPECT_EQ(count, 8U + 230454 + 1);
  EXPECT_EQ(std::string(picture.begin(), picture.begin() + 10), "#6230454BM");
  EXPECT_EQ(write(instrument, reinterpret_cast<const unsigned char*>("*RST\n"), 5, nullptr), 0);
  EXPECT_EQ(close(instrument), 0);
  EXPECT_EQ(close(manager), 0);
  EXPECT_EQ(static_cast<std::uint32_t>(close(list)), 0xBFFF000E);
}

TEST_F(VisaLibrary, keepsATranscriptOfWhatWentOverTheWire) {
  const std::string name = testing::TempDir() + "/visa_library_test.transcript";
  std::remove(name.c_str());
  ::setenv("ZANSIM_TRANSCRIPT", name.c_str(), 1);
  Handle manager = 0;
  ASSERT_EQ(function<Status(Handle*)>("viOpenDefaultRM")(&manager), 0);
  const auto open =
      function<Status(Handle, const char*, std::uint32_t, std::uint32_t, Handle*)>("viOpen");
  Handle instrument = 0;
  ASSERT_EQ(open(manager, "USB0::0x5A41::0x0200::SIM00001::INSTR", 1, 1, &instrument), 0);
  const auto write =
      function<Status(Handle, const unsigned char*, std::uint32_t, std::uint32_t*)>("viWrite");
  const auto read =
      function<Status(Handle, unsigned char*, std::uint32_t, std::uint32_t*)>("viRead");
  unsigned char answer[80];
  EXPECT_EQ(write(instrument, reinterpret_cast<const unsigned char*>(":CHAN?\n"), 7, nullptr), 0);
  EXPECT_EQ(read(instrument, answer, sizeof answer, nullptr), 0);
  EXPECT_EQ(write(instrument, reinterpret_cast<const unsigned char*>("\\\xFF\n"), 3, nullptr), 0);
  ::unsetenv("ZANSIM_TRANSCRIPT");
  EXPECT_EQ(function<Status(Handle)>("viClose")(manager), 0);
  std::ifstream file(name);
  const std::string lines(std::istreambuf_iterator<char>(file), {});
  EXPECT_EQ(lines, "> :CHAN?\\x0A\n< 1\\x0A\n> \\x5C\\xFF\\x0A\n");
}
