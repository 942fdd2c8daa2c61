#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <png.h>

#include "hosts/zanctl/output/picture_files.hpp"
#include "lumodevice/toolkit/picture.hpp"
#include "tests/hosts/zanctl/program_fixture.hpp"

namespace zanctl {
namespace {

using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// Memory files and pictures of the simulated instrument.
class Transfers : public ProgramInFolderTest {
 protected:
  Transfers() { variables["LUMODEVICE_DRIVE_C"] = file("c"); }

  std::string own(const std::string& name) const { return file("c/temp/" + name); }
  static void put(const std::string& path, const std::string& bytes) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
  }
  /// The instrument of the command that stands behind them never answers.
  std::vector<std::string> absent(std::vector<std::string> words) {
    words.insert(words.end(), {"--link", "serial", "--port", "COM5=" + file("none")});
    return words;
  }
};

class TransfersOver : public Transfers, public testing::WithParamInterface<const char*> {};

TEST_P(TransfersOver, savedFilesGoWhereTheyAreAskedFor) {
  const bool serial = std::string(GetParam()) == "serial";
  for (const auto& [kind, bytes, title] :
       {std::tuple("sequence", 640, "sequence"), std::tuple("system", 5580, "system settings"),
        std::tuple("preset", serial ? 898 : 892, "preset")}) {
    const Ended ended = simulate({"--link", GetParam(), "files", "get", kind, file(kind)});
    EXPECT_EQ(ended.status, kDone) << kind;
    EXPECT_EQ(ended.errors, "");
    EXPECT_EQ(ended.output, "Saved the " + std::string(title) + " (" + std::to_string(bytes) +
                                " bytes) in " + file(kind) + "\n");
    EXPECT_EQ(content(file(kind)).size(), static_cast<std::size_t>(bytes));
  }
}

TEST_P(TransfersOver, whatWasSavedCanBeSentAndLeavesTheDriveAsItWas) {
  for (const char* kind : {"system", "preset"}) {
    ASSERT_EQ(simulate({"--link", GetParam(), "files", "get", kind, file(kind)}).status, kDone);
    put(own("zanbank.dev"), "kept");
    const Ended ended = simulate({"--link", GetParam(), "files", "send", kind, file(kind)});
    EXPECT_EQ(ended.status, kDone) << kind;
    EXPECT_EQ(ended.errors, "");
    EXPECT_THAT(ended.output, StartsWith("Sent the "));
    EXPECT_EQ(content(own("zanbank.dev")), "kept");
    EXPECT_FALSE(std::filesystem::exists(own("ZANProgUpload.b")));
    EXPECT_FALSE(std::filesystem::exists(own("test.dev")));
    EXPECT_FALSE(std::filesystem::exists(own("zanbank.dev.before")));
  }
}

TEST_P(TransfersOver, aScreenIsABitmapOrAPngAsItsNameSays) {
  for (const char* name : {"a.bmp", "b.PNG", "plain"}) {
    const Ended ended = simulate({"--link", GetParam(), "capture", file(name)});
    EXPECT_EQ(ended.status, kDone);
    EXPECT_EQ(ended.output, "Saved 320 x 240 points in " + file(name) + "\n");
  }
  EXPECT_THAT(content(file("a.bmp")), StartsWith("BM"));
  EXPECT_EQ(content(file("plain")).size(), content(file("a.bmp")).size());
  EXPECT_THAT(content(file("b.PNG")), StartsWith("\x89PNG\r\n"));
}

INSTANTIATE_TEST_SUITE_P(Links, TransfersOver, testing::Values("visacom", "serial"));

TEST_F(Transfers, withoutAFileItIsToldWhereItLies) {
  EXPECT_EQ(simulate({"files", "get", "system"}).output,
            "Saved the system settings (5580 bytes) in " + own("ZANProg.b") + "\n");
  EXPECT_EQ(simulate({"capture"}).output, "Saved 320 x 240 points in " + own("ZAN.bmp") + "\n");
  std::filesystem::rename(own("ZANProg.b"), own("ZANProgUpload.b"));
  EXPECT_EQ(simulate({"files", "send", "system"}).output,
            "Sent the system settings (5580 bytes) of " + own("ZANProgUpload.b") + "\n");
  EXPECT_TRUE(std::filesystem::exists(own("ZANProgUpload.b")));
}

TEST_F(Transfers, standardOutputGetsTheBytesAlone) {
  const std::string settings = simulate({"files", "get", "system", "-"}).output;
  EXPECT_EQ(settings.size(), 5580U);
  EXPECT_TRUE(settings == content(own("ZANProg.b")));
  const std::string screen = simulate({"capture", "-"}).output;
  EXPECT_EQ(screen.size(), 230454U);
  EXPECT_TRUE(screen == content(own("ZAN.bmp")));
  outputGoesToATerminal = true;
  const Ended refused = simulate({"capture", "-"});
  EXPECT_EQ(refused.status, kUnusable);
  EXPECT_EQ(refused.errors,
            "zanctl: a terminal shows no bytes: redirect the output, or name a file\n");
}

TEST_F(Transfers, standardInputCanBeSent) {
  const Ended ended = simulate({"files", "send", "preset", "-"}, std::string(892, 'x'));
  EXPECT_EQ(ended.status, kDone);
  EXPECT_EQ(ended.output, "Sent the preset (892 bytes) of -\n");
}

TEST_F(Transfers, aFileOfTheWrongSizeIsSentOnlyWhenForced) {
  put(file("raw"), "#3892" + std::string(892, 'x') + "\n");
  const Ended refused = simulate({"files", "send", "preset", file("raw")});
  EXPECT_EQ(refused.status, kUnusable);
  EXPECT_EQ(refused.output, "");
  EXPECT_EQ(refused.errors,
            "zanctl: cannot send " + file("raw") +
                ": 898 bytes are no preset, which has 892 over VISA COM (a file saved over another "
                "kind of link has 898); --force sends it all the same\n");
  put(file("long"), std::string(900, 'x'));
  EXPECT_EQ(simulate({"files", "send", "preset", file("long"), "--force"}).status, kDone);
  EXPECT_EQ(
      simulate({"files", "--force", "send", "--link", "visacom", "preset", file("long")}).status,
      kDone)
      << "options may stand between the words";
  EXPECT_EQ(simulate({"files", "send", "preset", file("raw"), "--force"}).status, kFailed)
      << "the instrument would take the header for data";
  put(file("short"), "x");
  EXPECT_EQ(simulate({"files", "send", "system", file("short")}).errors,
            "zanctl: cannot send " + file("short") +
                ": 1 byte are no system settings, which has 5580; --force sends it all the same\n");
}

TEST_F(Transfers, namesThatDoNotExistAreWrong) {
  for (const auto& [words, wrong] :
       {std::pair(std::vector<std::string>{"files", "fetch"},
                  "files takes list, get or send, not fetch"),
        std::pair(std::vector<std::string>{"files", "get"},
                  "files get takes sequence, system or preset"),
        std::pair(std::vector<std::string>{"files", "send", "screen"},
                  "files send takes sequence, system or preset, not screen"),
        std::pair(std::vector<std::string>{"files", "send", "sequence"},
                  "the sequence can be saved, but not sent"),
        std::pair(std::vector<std::string>{"files", "list", "all"},
                  "files list takes nothing else")}) {
    const Ended ended = simulate(words);
    EXPECT_EQ(ended.status, kWrongCommandLine);
    EXPECT_EQ(ended.errors, "zanctl: " + std::string(wrong) + " (see zanctl --help)\n");
  }
}

TEST_F(Transfers, aFileThatCannotBeWrittenIsSeenBeforeAnythingIsAsked) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"files", "get", "system", file("none/a")},
        {"capture", file("none/a")}}) {
    const Ended ended = simulate(words);
    EXPECT_EQ(ended.status, kUnusable);
    EXPECT_EQ(ended.output, "");
    EXPECT_EQ(ended.errors,
              "zanctl: cannot write " + file("none/a") + ": No such file or directory\n");
  }
  EXPECT_EQ(simulate({"capture", folder.string()}).errors,
            "zanctl: cannot write " + folder.string() + ": Is a directory\n");
}

TEST_F(Transfers, aDriveThatCannotBeUsedIsNamed) {
  put(file("c/temp"), "no folder");
  const Ended ended = simulate({"capture"});
  EXPECT_EQ(ended.status, kUnusable);
  EXPECT_EQ(ended.errors, "zanctl: cannot use drive C: " + file("c/temp") + ": File exists\n");
}

TEST_F(Transfers, withoutAnInstrumentNothingOnTheDriveChanges) {
  put(own("ZANProg.b"), "kept");
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"files", "get", "system"}, {"capture"}}) {
    const Ended ended = run(absent(words));
    EXPECT_EQ(ended.status, kFailed);
    EXPECT_THAT(ended.errors, StartsWith("zanctl: no ZAN instrument found: COM5"));
  }
  EXPECT_EQ(content(own("ZANProg.b")), "kept");
}

TEST_F(Transfers, listTellsWhatLiesOnTheDrive) {
  put(own("ZANSeq.a"), "12345");
  const Ended ended = simulate({"files", "list"});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_THAT(ended.output, StartsWith("What            Bytes  Changed              File\n"
                                       "sequence        5      20"));
  EXPECT_THAT(ended.output, HasSubstr("\npreset          none                        " +
                                      own("zanbank.dev") + "\n"));
}

TEST_F(Transfers, aDumpBecomesThePictureThatTheComponentPaints) {
  ASSERT_EQ(simulate({"capture"}).status, kDone);
  const std::string dump = own("DispOutD.dat");
  EXPECT_EQ(run({"convert", dump, file("a.bmp")}).output,
            "Saved 320 x 240 points in " + file("a.bmp") + "\n");
  EXPECT_TRUE(content(file("a.bmp")) == content(own("ZAN.bmp")));
  EXPECT_TRUE(run({"convert", "-", "-"}, "#6122880" + content(dump) + "\n").output ==
              content(own("ZAN.bmp")))
      << "a dump that was saved over the serial port has its header";
}

TEST(PngFile, holdsThePointsOfThePicture) {
  lumodevice::toolkit::Picture picture(3, 2);
  picture.setPoint(2, 0, {.red = 1, .green = 2, .blue = 3});
  picture.setPoint(0, 1, {.red = 4, .green = 5, .blue = 6});
  const std::string bytes = pngFile(picture);
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  ASSERT_NE(png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()), 0);
  ASSERT_EQ(image.width, 3U);
  ASSERT_EQ(image.height, 2U);
  image.format = PNG_FORMAT_RGB;
  std::vector<int> points;
  std::array<unsigned char, 18> read{};
  ASSERT_NE(png_image_finish_read(&image, nullptr, read.data(), 0, nullptr), 0);
  points.assign(read.begin(), read.end());
  EXPECT_THAT(points, testing::ElementsAre(0, 0, 0, 0, 0, 0, 1, 2, 3, 4, 5, 6, 0, 0, 0, 0, 0, 0));
}

TEST_F(Transfers, aShortDumpIsNotConverted) {
  put(file("short"), std::string(122879, '\0'));
  const Ended ended = run({"convert", file("short"), file("a.png")});
  EXPECT_EQ(ended.status, kUnusable);
  EXPECT_EQ(ended.errors, "zanctl: cannot convert " + file("short") +
                              ": it has 122879 bytes of display memory, not 122880\n");
  EXPECT_FALSE(std::filesystem::exists(file("a.png")));
  EXPECT_THAT(run({"convert", file("none"), file("a.png")}).errors,
              EndsWith("none: No such file or directory\n"));
}

TEST_F(Transfers, aTerminalSeesWhatGoesOnAndNothingOfItStays) {
  errorsGoToATerminal = true;
  const Ended ended = simulate({"--link", "serial", "files", "get", "system"});
  EXPECT_THAT(ended.errors,
              ContainsRegex(
                  "\x1B\\[Kreading the system settings: [0-9]+ of 5580 bytes \\([0-9]+ %\\) ... "));
  EXPECT_THAT(ended.errors, EndsWith(" s\r\x1B[K"));
}

TEST_F(Transfers, whatIsSentOverAPortIsCountedAsItLeaves) {
  ASSERT_EQ(simulate({"files", "get", "system", file("a")}).status, kDone);
  errorsGoToATerminal = true;
  const Ended ended = simulate({"--link", "serial", "files", "send", "system", file("a")});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_THAT(
      ended.errors,
      ContainsRegex(
          "\x1B\\[Ksending the system settings: 10[0-9]+ of 5580 bytes \\(1[89] %\\) ... "));
}

TEST_F(Transfers, aPictureOfAnotherKindIsRefusedBeforeTheInstrumentIsAsked) {
  const Ended ended = simulate({"--trace", "-", "capture", file("x.JPG")});
  EXPECT_EQ(ended.status, kUnusable);
  EXPECT_EQ(ended.errors, "zanctl: cannot write " + file("x.JPG") + ": a picture is a PNG (" +
                              file("x") + ".png) or a Windows bitmap (" + file("x") + ".bmp)\n");
  EXPECT_EQ(simulate({"convert", file("none"), file("a.jpeg")}).status, kUnusable);
  EXPECT_FALSE(std::filesystem::exists(file("x.JPG")));
}

TEST_F(Transfers, aListAsJsonIsAnObjectAFile) {
  const std::string drive = file("c");
  EXPECT_EQ(simulate({"--drive-c", drive, "files", "get", "system"}).status, kDone);
  const Ended ended = simulate({"--drive-c", drive, "files", "list", "--json"});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_THAT(ended.output,
              StartsWith(R"({"what":"sequence","bytes":null,"changed":null,"file":")"));
  EXPECT_THAT(ended.output, HasSubstr(R"({"what":"system","bytes":5580,"changed":"20)"));
}

TEST_F(Transfers, aCapturedScreenIsDrawnAsTheTerminalCan) {
  const Ended plain = simulate({"capture", "--show", file("a.png")});
  EXPECT_EQ(plain.status, kDone);
  EXPECT_EQ(std::ranges::count(plain.output, '\n'), 1 + 24);
  EXPECT_THAT(plain.output, HasSubstr("@"));
  EXPECT_EQ(plain.output.find('\x1B'), std::string::npos);
  outputGoesToATerminal = true;
  variables["COLORTERM"] = "truecolor";
  EXPECT_THAT(simulate({"capture", "--show", file("a.png")}).output, HasSubstr("\x1B[38;2;"));
  variables["NO_COLOR"] = "1";
  EXPECT_EQ(simulate({"capture", "--show", file("a.png")}).output, plain.output);
  EXPECT_EQ(simulate({"capture", "--show", "-"}).status, kWrongCommandLine);
}

}  // namespace
}  // namespace zanctl
