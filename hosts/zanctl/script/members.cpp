#include "hosts/zanctl/script/members.hpp"

#include <algorithm>
#include <array>

#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/mistake.hpp"

namespace zanctl {

namespace {

using lumodevice::ZANCtrl;

std::string booleanText(bool value) {
  return value ? "True" : "False";
}

std::string deviceText(ZANCtrl& component) {
  return component.devZAN() == nullptr ? "Nothing" : "IFormattedIO488";
}

void putDevice(ZANCtrl& component, const std::string& value) {
  if (value != "Nothing") {
    throw ScriptMistake("devZAN takes Nothing only, not " + escaped(value));
  }
  component.devZAN(nullptr);
}

constexpr auto kNoResult = std::nullopt;

constexpr std::array kMembers = {
    Member{.name = "bDevAvaliable",
           .use = "get put",
           .help = "whether a connect found a ZAN instrument",
           .get = [](ZANCtrl& zan) { return booleanText(zan.bDevAvaliable()); },
           .put = [](ZANCtrl& zan,
                     const std::string& value) { zan.bDevAvaliable(parseBoolean(value)); }},
    Member{.name = "devZAN",
           .use = "get put",
           .help = "the VISA COM object of the link: IFormattedIO488 or Nothing",
           .get = deviceText,
           .put = putDevice},
    Member{.name = "IDN",
           .use = "get put",
           .help = "the identity answer of the connected instrument",
           .get = [](ZANCtrl& zan) { return zan.IDN(); },
           .put = [](ZANCtrl& zan, const std::string& value) { zan.IDN(value); }},
    Member{
        .name = "AutoQuery",
        .use = "get put",
        .help = "whether readings are polled",
        .get = [](ZANCtrl& zan) { return booleanText(zan.AutoQuery()); },
        .put = [](ZANCtrl& zan, const std::string& value) { zan.AutoQuery(parseBoolean(value)); }},
    Member{.name = "isConnected",
           .use = "get",
           .help = "whether a link is open",
           .get = [](ZANCtrl& zan) { return booleanText(zan.isConnected()); }},
    Member{.name = "ChCount",
           .use = "get",
           .help = "the number of channels",
           .get = [](ZANCtrl& zan) { return std::to_string(zan.ChCount()); }},
    Member{.name = "ConnStyle",
           .use = "get",
           .help = "0 not connected, 1 serial, 2 VISA",
           .get =
               [](ZANCtrl& zan) {
                 return std::to_string(static_cast<std::int16_t>(zan.ConnStyle()));
               }},
    Member{.name = "ErrMessage",
           .use = "get",
           .help = "asks the instrument for its oldest error",
           .get = [](ZANCtrl& zan) { return zan.ErrMessage(); }},
    Member{.name = "SendCmd",
           .use = "call TEXT",
           .help = "sends a command and waits for the answer of a query",
           .call = [](ZANCtrl& zan, const std::string& text) -> std::optional<std::string> {
             zan.SendCmd(text);
             return kNoResult;
           }},
    Member{.name = "ResultStr",
           .use = "get",
           .help = "the last answer",
           .get = [](ZANCtrl& zan) { return zan.ResultStr(); }},
    Member{
        .name = "DisplayCmd",
        .use = "put",
        .help = "shows or hides the command box and the file buttons",
        .put = [](ZANCtrl& zan, const std::string& value) { zan.DisplayCmd(parseBoolean(value)); }},
    Member{.name = "nextCmd",
           .use = "call",
           .help = "the next entry of the command history",
           .call = [](ZANCtrl& zan, const std::string&) { return std::optional(zan.nextCmd()); }},
    Member{.name = "ShowControl",
           .use = "call",
           .help = "hides the connection frame",
           .call = [](ZANCtrl& zan, const std::string&) -> std::optional<std::string> {
             zan.ShowControl();
             return kNoResult;
           }},
    Member{.name = "ShowConnect",
           .use = "call",
           .help = "shows the connection frame",
           .call = [](ZANCtrl& zan, const std::string&) -> std::optional<std::string> {
             zan.ShowConnect();
             return kNoResult;
           }},
    Member{
        .name = "AutoConnect",
        .use = "call",
        .help = "searches for an instrument; whether one was found",
        .call = [](ZANCtrl& zan,
                   const std::string&) { return std::optional(booleanText(zan.AutoConnect())); }},
    Member{.name = "NotConnect",
           .use = "call",
           .help = "puts the panel into its unconnected look",
           .call = [](ZANCtrl& zan, const std::string&) -> std::optional<std::string> {
             zan.NotConnect();
             return kNoResult;
           }},
    Member{.name = "GetSeqFile",
           .use = "call",
           .help = "saves the sequence file",
           .call = [](ZANCtrl& zan,
                      const std::string&) { return std::optional(booleanText(zan.GetSeqFile())); }},
    Member{.name = "GetSysFile",
           .use = "call",
           .help = "saves the system file",
           .call = [](ZANCtrl& zan,
                      const std::string&) { return std::optional(booleanText(zan.GetSysFile())); }},
    Member{
        .name = "SendSysFile",
        .use = "call",
        .help = "restores the system file",
        .call = [](ZANCtrl& zan,
                   const std::string&) { return std::optional(booleanText(zan.SendSysFile())); }},
    Member{.name = "GetBMPFile",
           .use = "call",
           .help = "captures the instrument's screen",
           .call = [](ZANCtrl& zan,
                      const std::string&) { return std::optional(booleanText(zan.GetBMPFile())); }},
    Member{.name = "GetPresetFile",
           .use = "call TEXT",
           .help = "saves the preset file",
           .call =
               [](ZANCtrl& zan, const std::string& text) {
                 return std::optional(booleanText(zan.GetPresetFile(text)));
               }},
    Member{
        .name = "SetPresetFile",
        .use = "call",
        .help = "restores the preset file",
        .call = [](ZANCtrl& zan,
                   const std::string&) { return std::optional(booleanText(zan.SetPresetFile())); }},
};

}  // namespace

std::span<const Member> members() {
  return kMembers;
}

const Member& findMember(std::string_view name) {
  const auto* const found = std::ranges::find(kMembers, name, &Member::name);
  if (found == kMembers.end()) {
    throw ScriptMistake("unknown member " + escaped(name));
  }
  return *found;
}

bool parseBoolean(const std::string& value) {
  if (value != "True" && value != "False" && value != "-1" && value != "0") {
    throw ScriptMistake("True or False is needed, not " + escaped(value));
  }
  return value == "True" || value == "-1";
}

}  // namespace zanctl
