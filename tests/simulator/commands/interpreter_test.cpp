#include <gtest/gtest.h>
#include <random>
#include <string>

#include "simulator/commands/command.hpp"
#include "simulator/links/connection.hpp"
#include "simulator/mainframe.hpp"

using zansim::Configuration;
using zansim::Mainframe;

namespace {

constexpr const char* kIdentity = "Ostbrook Instruments,ZAN63200,SIM00001,1.02.3";

std::string ask(Mainframe& mainframe, std::string_view message) {
  std::string answer;
  zansim::execute(mainframe, message, zansim::Duration::zero(), answer);
  return answer;
}

/// The errors that a message leaves, as "-113 -222".
std::string errorsAfter(std::string_view message, std::string_view expectedAnswer = "") {
  Mainframe mainframe;
  EXPECT_EQ(ask(mainframe, message), expectedAnswer) << message;
  std::string errors;
  while (mainframe.status().count() > 0) {
    errors +=
        (errors.empty() ? "" : " ") + std::to_string(static_cast<int>(mainframe.status().take()));
  }
  return errors;
}

}  // namespace

TEST(Interpreter, longAndShortFormsInAnyCaseWithAndWithoutColon) {
  for (const char* const message : {":CHAN?", ":CHANNEL?", "CHAN?", "channel?", ":ChAn?",
                                    "  :CHAN?  ", "\t:CHAN?", ":CHANnel?"}) {
    Mainframe mainframe;
    EXPECT_EQ(ask(mainframe, message), "1") << message;
  }
  for (const char* const message : {":CHA?", ":CHANN?", ":CHANNELS?", ":CHAN:?", "::CHAN?", ":?",
                                    "?", ":", "*", "*IDN", ":SYST?", ":SYST:ERR:NEXT:NEXT?"}) {
    EXPECT_EQ(errorsAfter(message), "-113") << message;
  }
}

TEST(Interpreter, whatStandsInBracketsMayBeLeftOut) {
  for (const char* const message : {":SYST:ERR?", ":SYSTem:ERRor:NEXT?", "syst:error?"}) {
    Mainframe mainframe;
    EXPECT_EQ(ask(mainframe, message), "0,\"No error\"") << message;
  }
}

TEST(Interpreter, identityAndSlots) {
  Mainframe mainframe;
  EXPECT_EQ(ask(mainframe, "*IDN?"), kIdentity);
  EXPECT_EQ(ask(mainframe, "*idn?"), kIdentity);
  EXPECT_EQ(ask(mainframe, "*RDT?"), "2021L,2021R,0,2040,2040,2041,2050,2030");
}

TEST(Interpreter, theListOfSlotsFitsABufferOfEightyCharacters) {
  Configuration configuration;
  configuration.setSlots("2021L,2021R,2021L,2021R,2021L,2021R,2021L,2021R,2050,0,0,0");
  Mainframe mainframe(configuration);
  EXPECT_LT(ask(mainframe, "*RDT?").size(), 79U);
}

TEST(Interpreter, channelsAreNumberedOverTheOccupiedSlots) {
  Configuration configuration;
  configuration.setSlots("0,2030,0,2050");
  Mainframe mainframe(configuration);
  EXPECT_EQ(ask(mainframe, ":CHAN? LIST"), "1,2");
  EXPECT_EQ(ask(mainframe, ":CHAN? MAX"), "2");
  EXPECT_EQ(ask(mainframe, ":CHAN? MINimum"), "1");
  EXPECT_EQ(ask(mainframe, ":CHAN 2;:CHAN?"), "2");
  EXPECT_EQ(mainframe.module(mainframe.selectedChannel()).text, "2050");
  EXPECT_EQ(ask(mainframe, ":CHAN MIN;:CHAN?"), "1");
  EXPECT_EQ(ask(mainframe, ":CHAN maximum;:CHAN?"), "2");
  EXPECT_EQ(ask(mainframe, "*RST;:CHAN?"), "1");
}

TEST(Interpreter, withoutModulesThereIsNoChannel) {
  Configuration configuration;
  configuration.setSlots("0,0");
  Mainframe mainframe(configuration);
  EXPECT_EQ(ask(mainframe, "*RDT?"), "0,0");
  EXPECT_EQ(ask(mainframe, ":CHAN?"), "");
  EXPECT_EQ(ask(mainframe, ":CHAN 1"), "");
  EXPECT_EQ(ask(mainframe, ":SYST:ERR?;ERR?;ERR?"),
            "-241,\"Hardware missing\";-241,\"Hardware missing\";0,\"No error\"");
}

TEST(Interpreter, severalCommandsInOneMessageShareAPath) {
  Mainframe mainframe;
  EXPECT_EQ(ask(mainframe, ":CHAN 3;CHAN?;*IDN?;CHAN? MAX;:SYST:ERR?;ERR?"),
            "3;" + std::string(kIdentity) + ";7;0,\"No error\";0,\"No error\"");
  EXPECT_EQ(errorsAfter(":SYST:ERR?;CHAN?", "0,\"No error\""), "-113");
  EXPECT_EQ(errorsAfter(";;:CHAN?;", "1"), "");
}

TEST(Interpreter, numbersAreReadAsHostsWriteThem) {
  for (const char* const number : {"2", "+2", "2.0", ".2E1", "2e0", "  2  ", "20E-1"}) {
    Mainframe mainframe;
    EXPECT_EQ(ask(mainframe, ":CHAN " + std::string(number) + ";:CHAN?"), "2") << number;
  }
}

TEST(Interpreter, eachMistakeHasItsError) {
  struct Case {
    const char* message;
    const char* errors;
  };
  for (const Case& c : {Case{":CHAN", "-109"},
                        Case{":CHAN ", "-109"},
                        Case{":CHAN 1,", "-109"},
                        Case{":CHAN 0", "-222"},
                        Case{":CHAN 8", "-222"},
                        Case{":CHAN -1", "-222"},
                        Case{":CHAN 1e999", "-222"},
                        Case{":CHAN ABC", "-224"},
                        Case{":CHAN nan", "-224"},
                        Case{":CHAN inf", "-224"},
                        Case{":CHAN? ABC", "-224"},
                        Case{":CHAN? 1", "-224"},
                        Case{":CHAN 1x", "-131"},
                        Case{":CHAN 1.2.3", "-121"},
                        Case{":CHAN +-1", "-121"},
                        Case{":CHAN &H1", "-121"},
                        Case{":CHAN ?", "-121"},
                        Case{":CHAN \"1\"", "-104"},
                        Case{":CHAN #11a", "-104"},
                        Case{":CHAN 1,2", "-108"},
                        Case{"*RST 1", "-108"},
                        Case{"*IDN? 1", "-108"},
                        Case{":CHAN 1,2,3,4,5,6,7,8,9", "-108"},
                        Case{":NONE:SUCH 1", "-113"},
                        Case{"a:b:c:d:e:f:g:h:i:j:k:l:m?", "-113"},
                        Case{"*RDT", "-113"}}) {
    EXPECT_EQ(errorsAfter(c.message), c.errors) << c.message;
  }
}

TEST(Interpreter, afterACommandErrorTheRestIsNotCarriedOutAfterAnExecutionErrorItIs) {
  EXPECT_EQ(errorsAfter(":CHAN?;:NONE;:CHAN?", "1"), "-113");
  EXPECT_EQ(errorsAfter(":CHAN?;:CHAN 99;:CHAN?", "1;1"), "-222");
}

TEST(Interpreter, separatorsInBlocksAndQuotesDoNotSplit) {
  EXPECT_EQ(errorsAfter(":CHAN #18;,'\";:  ;:CHAN?"), "-104");
  EXPECT_EQ(errorsAfter(":CHAN ';,';:CHAN?"), "-104");
}

TEST(Interpreter, eventRegisterAndCompletion) {
  Mainframe mainframe;
  EXPECT_EQ(ask(mainframe, "*ESR?"), "128");
  ask(mainframe, ":NONE");
  ask(mainframe, "*OPC");
  EXPECT_EQ(ask(mainframe, "*ESR?"), "33");
  EXPECT_EQ(ask(mainframe, "*OPC?"), "1");
  EXPECT_EQ(ask(mainframe, "*ESR?"), "0");
  EXPECT_EQ(ask(mainframe, ":SYST:ERR?"), "-113,\"Undefined header\"");
}

TEST(Interpreter, clearingEmptiesTheErrorQueue) {
  Mainframe mainframe;
  ask(mainframe, ":NONE");
  ask(mainframe, "*CLS");
  EXPECT_EQ(ask(mainframe, ":SYST:ERR?"), "0,\"No error\"");
  EXPECT_EQ(ask(mainframe, "*ESR?"), "0");
}

TEST(Interpreter, survivesAnyBytes) {
  std::mt19937 random(20240611);
  const std::string pieces[] = {"*IDN?", ":CHAN", "CHAN?", " LIST", ":SYST:ERR?", ";",
                                ":",     ",",     "#",     "#15",   "#3012",      "\"",
                                "'",     "1e9",   "\n",    " ",     "\r",         "[:NEXT]"};
  zansim::Instrument instrument;
  zansim::Connection connection(instrument, zansim::Connection::Kind::MessageBased);
  std::uniform_int_distribution<std::size_t> pick(0, std::size(pieces) + 5);
  std::uniform_int_distribution<int> byte(0, 255);
  std::size_t answered = 0;
  for (int line = 0; line < 20000; ++line) {
    std::string bytes;
    for (int i = 0; i < 8; ++i) {
      const std::size_t piece = pick(random);
      bytes += piece < std::size(pieces) ? pieces[piece]
                                         : std::string(1, static_cast<char>(byte(random)));
    }
    connection.feed(bytes, line % 3 == 0, {});
    char answer[200];
    answered += connection.take(answer, {}).count;
    ASSERT_LE(instrument.mainframe.status().count(), zansim::Status::kDepth);
  }
  EXPECT_GT(answered, 1000U);
  connection.feed("\n", true, {});
  connection.feed("*CLS;*IDN?", true, {});
  char answer[200];
  const auto taken = connection.take(answer, {});
  EXPECT_EQ(std::string(answer, taken.count), std::string(kIdentity) + "\n");
}
