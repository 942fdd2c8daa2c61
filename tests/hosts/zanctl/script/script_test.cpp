#include "hosts/zanctl/script/script.hpp"

#include "tests/hosts/zanctl/program_fixture.hpp"

namespace zanctl {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

class ScriptTest : public ProgramTest {};

TEST_F(ScriptTest, ofNothingButBlankLinesAndCommentsPrintsNothing) {
  EXPECT_EQ(printed(""), "");
  EXPECT_EQ(printed("\n   \n# print 1\n  # print 2\n\t\n"), "");
}

TEST_F(ScriptTest, printEscapesWhatItPrints) {
  EXPECT_EQ(printed("print word\nprint \"two words\"\nprint \"\"\nprint \"a\\n\\xB5\\\\\\\"\""),
            "word\ntwo words\n\na\\n\\xB5\\\\\"\n");
}

TEST_F(ScriptTest, linesMayEndWithCarriageReturnAndLineFeed) {
  EXPECT_EQ(printed("print 1\r\n\r\nprint \"2\"\r\n"), "1\n2\n");
}

TEST_F(ScriptTest, getReadsMembersOfTheUnconnectedComponent) {
  EXPECT_EQ(printed("get isConnected\nget ChCount\nget ConnStyle\nget ErrMessage\nget ResultStr\n"
                    "get bDevAvaliable\nget IDN\nget devZAN\nget AutoQuery\n"),
            "False\n0\n0\n\n\nFalse\n\nNothing\nFalse\n");
}

TEST_F(ScriptTest, putWritesMembers) {
  EXPECT_EQ(printed("put IDN \"a b\"\nget IDN\nput bDevAvaliable True\nget bDevAvaliable\n"
                    "put bDevAvaliable 0\nget bDevAvaliable\nput bDevAvaliable -1\n"
                    "get bDevAvaliable\nput devZAN Nothing\nget devZAN\n"),
            "a b\nTrue\nFalse\nTrue\nNothing\n");
}

TEST_F(ScriptTest, putDisplayCmdShowsAndHides) {
  EXPECT_EQ(printed("put DisplayCmd True\nget TXT.Visible\nput DisplayCmd False\nget TXT.Visible"),
            "True\nFalse\n");
}

TEST_F(ScriptTest, putAutoQueryTicksItsCheckBox) {
  EXPECT_EQ(printed("put AutoQuery True\nget chkAutoQuery.Value\nget AutoQuery"), "1\nTrue\n");
}

TEST_F(ScriptTest, callPrintsTheResultOfAMethodThatHasOne) {
  EXPECT_EQ(printed("call nextCmd\ncall ShowConnect\nget frmSetting.Visible\ncall ShowControl\n"
                    "get frmSetting.Visible\ncall NotConnect\n"),
            ":CHAN \nTrue\nFalse\n");
}

TEST_F(ScriptTest, callConnectsAndSends) {
  EXPECT_THAT(printed("call AutoConnect\nget isConnected\nget ConnStyle\nget ChCount\n"
                      "call SendCmd *IDN?\nget ResultStr\n"),
              EndsWith("True\nTrue\n2\n7\nOstbrook Instruments,ZAN63200,SIM00001,1.02.3\n"));
}

TEST_F(ScriptTest, aVisaComLinkHasItsObject) {
  EXPECT_THAT(printed("call AutoConnect\nget devZAN\nput devZAN Nothing\nget devZAN\n",
                      {"--link", "visacom"}),
              EndsWith("True\nIFormattedIO488\nNothing\n"));
}

TEST_F(ScriptTest, getReadsControlProperties) {
  EXPECT_EQ(printed("get Text2.Text\nget cmdConnect.Caption\nget optVISA.Value\n"
                    "get chkAutoQuery.Value\nget cmdSendCmd.Enabled\nget TXT.Visible\n"
                    "get cmdSet(3).Tag\nget Combo2.ListIndex\nget Combo2.ListCount\n"
                    "get Combo2.List(1)\nget Timer1.Interval\nget FrameCCStatic.Left\n"
                    "get FrameCCStatic.Top\nget ZANCtrl.MousePointer\n"),
            "*IDN?\nConnect\nTrue\n0\nFalse\nFalse\n14\n-1\n4\n19200\n200\n120\n3000\n0\n");
}

TEST_F(ScriptTest, getShowsTheOhmOfACaptionAsItIs) {
  EXPECT_EQ(printed("set Label14.Caption \"R(\xCE\xA9)\\n\"\nget Label14.Caption\n"
                    "set Text2.Text \"R(\xCE\xA9)\\n\"\nget Text2.Text\n"),
            "R(\xCE\xA9)\\n\nR(\\xCE\\xA9)\\n\n");
}

TEST_F(ScriptTest, setWritesAsProgramCodeDoes) {
  EXPECT_EQ(printed("set txtInput(3).Text 1.5\nget txtInput(3).Text\n"
                    "set chkAutoQuery.Value 2\nget chkAutoQuery.Value\n"
                    "set Combo2.ListIndex 2\nget Combo2.Text\n"
                    "set cmdSendCmd.Enabled True\nget isConnected\n"
                    "set Timer2.Interval 50\nget Timer2.Interval\n"
                    "set FrameCV.Left -15\nget FrameCV.Left\n"
                    "set ZANCtrl.MousePointer 11\nget ZANCtrl.MousePointer\n"
                    "set List1.OLEDropMode 1\nget List1.OLEDropMode\n"
                    "set Text5.Tag \"\"\nget Text5.Tag\n"),
            "1.5\n2\n9600\nTrue\n50\n-15\n11\n1\n\n");
}

TEST_F(ScriptTest, clickRunsWhatTheControlDoes) {
  EXPECT_EQ(printed("click cmdConnectOK\nget frmSetting.Visible\n"
                    "click optConnRS232\nget optConnRS232.Value\nget optVISA.Value\n"
                    "click Combo2\nclick Label14\nclick Picture1\n"),
            "False\nTrue\nFalse\n");
}

TEST_F(ScriptTest, clickWithoutALinkShowsTheBoxAndGoesOn) {
  const Ended ended = simulate({"run"}, "click Command1\nprint on");
  EXPECT_EQ(ended.status, kDone);
  EXPECT_EQ(ended.output, "on\n");
  EXPECT_EQ(ended.errors, "[information] Pleace Connect to Deivce first!\n");
}

TEST_F(ScriptTest, typeSelectAndKeyActOnFields) {
  EXPECT_EQ(printed("type Text2 \"*RDT? now\"\nget Text2.Text\n"
                    "type cmbVISARes USB?*\nget cmbVISARes.Text\n"
                    "select Combo2 1\nget Combo2.Text\nget Combo2.ListIndex\n"
                    "key Text2 Down\nget Text2.Text\nkey Text2 Up\nget Text2.Text\n"
                    "key Text2 Enter\nget txtReturn.Text\n"),
            "*RDT? now\nUSB?*\n19200\n1\n:CHAN \n:CURR:DYN:T2?\n\n");
}

TEST_F(ScriptTest, dragTakesAnItemFromOneListToAnother) {
  EXPECT_THAT(printed("call AutoConnect\nget List1.List(0)\ndrag List1 CH3 List2\n"
                      "get List1.List(0)\nget List2.List(0)\n"),
              EndsWith("CH3\nCH4\nCH3\n"));
}

TEST_F(ScriptTest, everyActOnADisabledControlIsRefused) {
  EXPECT_EQ(remarked("click cmdSendCmd\n"
                     "set Text2.Enabled False\ntype Text2 x\nkey Text2 Enter\n"
                     "set Combo2.Enabled False\nselect Combo2 1\n"
                     "set txtInput(3).Enabled False\ntype txtInput(3) 1\n"
                     "set List2.Enabled False\ndrag List1 CH3 List2\n"
                     "set List1.Enabled False\ndrag List1 CH3 List2\n"),
            "[refused] cmdSendCmd is disabled\n"
            "[refused] Text2 is disabled\n"
            "[refused] Text2 is disabled\n"
            "[refused] Combo2 is disabled\n"
            "[refused] txtInput(3) is disabled\n"
            "[refused] List2 is disabled\n"
            "[refused] List1 is disabled\n");
}

TEST_F(ScriptTest, aRefusedActChangesNothing) {
  const Ended ended = simulate({"run"},
                               "set Text2.Enabled False\ntype Text2 x\nget Text2.Text\n"
                               "set Combo2.Enabled False\nselect Combo2 1\nget Combo2.ListIndex\n");
  EXPECT_EQ(ended.status, kDone);
  EXPECT_EQ(ended.output, "*IDN?\n-1\n");
}

TEST_F(ScriptTest, aControlInADisabledContainerIsRefusedAndAHiddenOneIsNot) {
  const Ended ended = simulate({"run"},
                               "set frmSetting.Enabled False\nclick optVisa2\nget optVisa2.Value\n"
                               "get optVisa2.Enabled\n"
                               "set frmSetting.Enabled True\nset frmSetting.Visible False\n"
                               "click optVisa2\nget optVisa2.Value\n");
  EXPECT_EQ(ended.output, "False\nTrue\nTrue\n");
  EXPECT_EQ(ended.errors, "[refused] optVisa2 is disabled\n");
}

TEST_F(ScriptTest, waitLetsTimersTickForExactlyThatLong) {
  const Ended ended = simulate({"--trace", "-", "run"},
                               "call AutoConnect\nwait 1000.5\nput IDN \"\"\ncall SendCmd :X\n");
  EXPECT_EQ(ended.status, kDone);
  EXPECT_THAT(ended.errors, HasSubstr(".500 send \":X\\n\"\n"));
}

TEST_F(ScriptTest, anUnansweredQueryShowsTheBox) {
  const Ended ended = simulate({"run"}, "call AutoConnect\ncall SendCmd :NOPE?\nget ResultStr\n");
  EXPECT_EQ(ended.output, "True\n\n");
  EXPECT_EQ(ended.errors, "[information] Error:Device has not sent back some data yet! (:NOPE?)\n");
}

TEST_F(ScriptTest, pressActsOnTheKeyAreaUnderThePosition) {
  EXPECT_THAT(printed("call AutoConnect\narea LOAD 10 10 20 30\npress 1 0 10 15\n"
                      "call SendCmd :LOAD?\nget ResultStr\npress 1 0 10.5 15\n"
                      "call SendCmd :LOAD?\nget ResultStr\n"),
              EndsWith("True\n0\n1\n"));
}

TEST_F(ScriptTest, thereIsRoomFor51KeyAreas) {
  std::string areas;
  for (int i = 0; i < 51; ++i) {
    areas += "area F1 0 0 1 1\n";
  }
  EXPECT_EQ(printed(areas), "");
  const Ended ended = simulate({"run"}, areas + "area F1 0 0 1 1\n");
  EXPECT_EQ(ended.status, kFailed);
  EXPECT_EQ(ended.errors, "-:52: the front-panel picture has no room for more than 51 key areas\n");
}

TEST_F(ScriptTest, positionsAndEdgesThatAreNoneAreReported) {
  EXPECT_EQ(mistake("area LOAD 0 0 1.5 9"),
            "an edge is a whole number from -32768 to 32767, not 1.5");
  EXPECT_EQ(mistake("press x 0 1 1"), "BUTTON is a whole number from -32768 to 32767, not x");
  EXPECT_EQ(mistake("press 1 32768 1 1"),
            "SHIFT is a whole number from -32768 to 32767, not 32768");
  EXPECT_EQ(mistake("press 1 0 here 1"), "a position is a number, not here");
}

TEST_F(ScriptTest, aGroupIsMadeByDragging) {
  EXPECT_THAT(printed("call AutoConnect\nclick cmdParalle\ndrag List1 CH3 List2\n"
                      "drag List1 CH4 List2\nclick cmdParaOK\nget cmbChannel.Text\n"
                      "call SendCmd \":CHAN? LIST\"\nget ResultStr\n"),
              EndsWith("CH3-2040-G1\n1,2,3,0,5,6,7\n"));
}

TEST_F(ScriptTest, aMistakeEndsItAndIsReportedWithItsLine) {
  const Ended ended = simulate({"run"}, "print before\n\n# comment\nget Nothing\nprint after\n");
  EXPECT_EQ(ended.status, kFailed);
  EXPECT_EQ(ended.output, "before\n");
  EXPECT_EQ(ended.errors, "-:4: unknown member Nothing\n");
}

TEST_F(ScriptTest, namesThatDoNotExistAreReported) {
  EXPECT_EQ(mistake("frobnicate"), "unknown instruction frobnicate");
  EXPECT_EQ(mistake("GET IDN"), "unknown instruction GET; did you mean get?");
  EXPECT_EQ(mistake("\"\""), "unknown instruction ");
  EXPECT_EQ(mistake("get isconnected"), "unknown member isconnected; did you mean isConnected?");
  EXPECT_EQ(mistake("put Nothing 1"), "unknown member Nothing");
  EXPECT_EQ(mistake("call Nothing"), "unknown member Nothing");
  EXPECT_EQ(mistake("get Text2"), "Text2 is a control; write get Text2.PROPERTY");
  EXPECT_EQ(mistake("call Text2"), "Text2 is a control; write get Text2.PROPERTY");
  EXPECT_EQ(mistake("put txtInput(3).Text 1"),
            "txtInput(3) is a control; write set txtInput(3).PROPERTY VALUE");
  EXPECT_EQ(mistake("get cmdSet"), "cmdSet is a control array; write get cmdSet(i).PROPERTY");
  EXPECT_EQ(mistake("click cmdNothing"), "unknown control cmdNothing");
  EXPECT_EQ(mistake("get cmdNothing.Caption"), "unknown control cmdNothing");
  EXPECT_EQ(mistake("get .Caption"), "unknown control ");
  EXPECT_EQ(mistake("click \"\\n\""), "unknown control \\n");
  EXPECT_EQ(mistake("get Text2.Colour"), "Text2 has no property Colour");
  EXPECT_EQ(mistake("get Text2."), "Text2 has no property ");
  EXPECT_EQ(mistake("get Text2.Caption"), "Text2 has no property Caption");
  EXPECT_EQ(mistake("set Timer1.Text x"), "Timer1 has no property Text");
  EXPECT_EQ(mistake("set Combo2.ListCount 3"), "Combo2.ListCount can only be read");
}

TEST_F(ScriptTest, elementsThatDoNotExistAreReported) {
  EXPECT_EQ(mistake("get cmdSet.Caption"),
            "cmdSet is a control array without the element cmdSet; its first is cmdSet(0)");
  EXPECT_EQ(mistake("click cmdSet(29)"),
            "cmdSet is a control array without the element cmdSet(29); its first is cmdSet(0)");
  EXPECT_EQ(mistake("click Text2(0)"), "Text2 is no control array");
  EXPECT_EQ(mistake("click cmdSet(x)"), "unknown control cmdSet(x)");
  EXPECT_EQ(mistake("click cmdSet("), "unknown control cmdSet(");
  EXPECT_EQ(mistake("click (0)"), "unknown control (0)");
}

TEST_F(ScriptTest, valuesThatAPropertyDoesNotTakeAreReported) {
  EXPECT_EQ(mistake("set Text2.Enabled 1"), "Text2.Enabled does not take the value 1");
  EXPECT_EQ(mistake("set optVISA.Value true"), "optVISA.Value does not take the value true");
  EXPECT_THAT(mistake("set chkOCP.Value 3"), HasSubstr("chkOCP"));
  EXPECT_THAT(mistake("set Timer1.Interval 65536"), HasSubstr("Timer1"));
  EXPECT_THAT(mistake("set Combo2.ListIndex 4"), HasSubstr("Combo2"));
  EXPECT_THAT(mistake("get Combo2.List(4)"), HasSubstr("Combo2"));
  EXPECT_THAT(mistake("select Combo2 4"), HasSubstr("Combo2"));
  EXPECT_EQ(mistake("select Combo2 first"), "select takes the index of an entry, not first");
  EXPECT_EQ(mistake("put bDevAvaliable yes"), "True or False is needed, not yes");
  EXPECT_EQ(mistake("put devZAN x"), "devZAN takes Nothing only, not x");
  EXPECT_EQ(mistake("key Text2 Tab"), "unknown key Tab; there are Enter, Up and Down");
  EXPECT_EQ(mistake("drag Text2 x List1"), "Text2 is no list box");
  EXPECT_EQ(mistake("drag List1 CH9 List2"), "List1 holds no item \"CH9\"");
  for (const char* time : {"-1", "soon", "", "1e13", "nan", "inf", "1s"}) {
    EXPECT_EQ(mistake("wait \"" + std::string(time) + "\""),
              "wait takes milliseconds, not " + std::string(time));
  }
}

TEST_F(ScriptTest, actsThatAControlDoesNotKnowAreReported) {
  EXPECT_EQ(mistake("click Timer1"), "Timer1 cannot be clicked");
  EXPECT_EQ(mistake("type cmdConnect x"), "cmdConnect cannot be typed into");
  EXPECT_EQ(mistake("key List1 Enter"), "List1 cannot be typed into");
  EXPECT_EQ(mistake("select Text2 0"), "Text2 cannot be selected from");
}

TEST_F(ScriptTest, membersUsedInAnotherWayAreReported) {
  EXPECT_EQ(mistake("get SendCmd"), "SendCmd cannot be read; it is for: call TEXT");
  EXPECT_EQ(mistake("put isConnected True"), "isConnected cannot be written; it is for: get");
  EXPECT_EQ(mistake("call IDN"), "IDN cannot be called; it is for: get put");
  EXPECT_EQ(mistake("call SendCmd"), "SendCmd takes an argument");
  EXPECT_EQ(mistake("call NotConnect now"), "NotConnect takes no argument");
  EXPECT_EQ(mistake("set IDN x"),
            "set takes CONTROL.PROPERTY; write put IDN for an automation member");
}

TEST_F(ScriptTest, everyInstructionWantsItsWords) {
  for (const Instruction& instruction : instructions()) {
    std::string line(instruction.name);
    for (std::size_t i = 0; i < instruction.least(); ++i) {
      EXPECT_THAT(mistake(line),
                  testing::StartsWith("too few words; write " + std::string(instruction.name)));
      line += " word";
    }
    for (std::size_t i = instruction.least(); i <= instruction.most(); ++i) {
      line += " word";
    }
    EXPECT_THAT(mistake(line),
                testing::StartsWith("too many words; write " + std::string(instruction.name)));
  }
}

TEST_F(ScriptTest, badWordsAreReportedWithTheirLine) {
  EXPECT_EQ(mistake("print \"open"), "the closing quote is missing");
  EXPECT_EQ(mistake("print \"\\z\""), "unknown escape \\z");
}

}  // namespace
}  // namespace zanctl
