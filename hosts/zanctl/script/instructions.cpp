#include <array>
#include <cmath>
#include <exception>

#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/script/members.hpp"
#include "hosts/zanctl/script/numbers.hpp"
#include "hosts/zanctl/script/script.hpp"
#include "hosts/zanctl/script/values.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/properties.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace zanctl {

namespace {

namespace toolkit = lumodevice::toolkit;

/// A control or a property refused what the script asked of it.
template <typename Act>
auto asked(Act act) {
  try {
    return act();
  } catch (const toolkit::PropertyFault& fault) {
    std::throw_with_nested(ScriptMistake(escaped(fault.what())));
  }
}

struct ControlProperty {
  toolkit::Control& control;
  std::string property;
};

/// None for a word without a dot, which names an automation member.
std::optional<ControlProperty> controlProperty(Script& script, const std::string& word) {
  const std::size_t dot = word.find('.');
  if (dot == std::string::npos) {
    return std::nullopt;
  }
  return ControlProperty{script.control(word.substr(0, dot)), word.substr(dot + 1)};
}

[[noreturn]] void misused(const Member& member, std::string_view how) {
  throw ScriptMistake(std::string(member.name) + " cannot be " + std::string(how) +
                      "; it is for: " + member.use());
}

/// The member of that word. A control in its place is a mistake, which shows what to write instead:
/// `written` with the name of the control behind the blank, as in "get .PROPERTY".
const Member& memberNamed(Script& script, const std::string& word, std::string_view written) {
  const std::string name = word.substr(0, word.find('.'));
  for (const auto& control : script.component().surface().controls()) {
    if (control->fullName() == name || control->name() == name) {
      const bool element = control->index() && control->name() == name;
      const std::size_t place = written.find(' ') + 1;
      std::string wrong = name + (element ? " is a control array" : " is a control");
      wrong.append("; write ").append(written.substr(0, place)).append(name);
      wrong.append(element ? "(i)" : "").append(written.substr(place));
      throw ScriptMistake(wrong);
    }
  }
  return findMember(word);
}

void get(Script& script, Script::Words words) {
  if (const auto target = controlProperty(script, words[0])) {
    const std::string value =
        asked([&] { return toolkit::readProperty(target->control, target->property); });
    script.output().line(target->property == "Caption" ? escapedCaption(value) : escaped(value));
    return;
  }
  const Member& member = memberNamed(script, words[0], "get .PROPERTY");
  if (member.get == nullptr) {
    misused(member, "read");
  }
  script.output().line(escaped(member.get(script.component())));
}

void put(Script& script, Script::Words words) {
  const Member& member = memberNamed(script, words[0], "set .PROPERTY VALUE");
  if (member.put == nullptr) {
    misused(member, "written");
  }
  member.put(script.component(), words[1]);
}

void call(Script& script, Script::Words words) {
  const Member& member = memberNamed(script, words[0], "get .PROPERTY");
  if (member.call == nullptr) {
    misused(member, "called");
  }
  if (member.takesArgument != (words.size() == 2)) {
    throw ScriptMistake(std::string(member.name) +
                        (member.takesArgument ? " takes an argument" : " takes no argument"));
  }
  const auto result = member.call(script.component(), words.size() == 2 ? words[1] : "");
  if (result) {
    script.output().line(escaped(*result));
  }
}

void set(Script& script, Script::Words words) {
  const auto target = controlProperty(script, words[0]);
  if (!target) {
    throw ScriptMistake("set takes CONTROL.PROPERTY; write put " + escaped(words[0]) +
                        " for an automation member");
  }
  asked([&] { toolkit::writeProperty(target->control, target->property, words[1]); });
}

/// Tells that an operator's act was refused.
void report(Script& script, bool taken, const toolkit::Control& control) {
  if (!taken) {
    script.remarks().line("[refused] " + control.fullName() + " is disabled");
  }
}

void click(Script& script, Script::Words words) {
  toolkit::Control& control = script.control(words[0]);
  report(script, asked([&] { return script.hand().click(control); }), control);
}

void type(Script& script, Script::Words words) {
  toolkit::Control& control = script.control(words[0]);
  report(script, asked([&] { return script.hand().type(control, words[1]); }), control);
}

void select(Script& script, Script::Words words) {
  toolkit::Control& control = script.control(words[0]);
  const auto index = parseWhole(words[1]);
  if (!index) {
    throw ScriptMistake("select takes the index of an entry, not " + escaped(words[1]));
  }
  report(script, asked([&] { return script.hand().select(control, *index); }), control);
}

void key(Script& script, Script::Words words) {
  struct Named {
    std::string_view name;
    toolkit::Key key;
  };
  constexpr std::array kKeys = {Named{"Enter", toolkit::Key::Enter}, Named{"Up", toolkit::Key::Up},
                                Named{"Down", toolkit::Key::Down}};
  toolkit::Control& control = script.control(words[0]);
  for (const Named& candidate : kKeys) {
    if (candidate.name == words[1]) {
      report(script, asked([&] { return script.hand().press(control, candidate.key); }), control);
      return;
    }
  }
  throw ScriptMistake("unknown key " + escaped(words[1]) + "; there are Enter, Up and Down");
}

toolkit::ListBox& listBox(Script& script, const std::string& name) {
  auto* const list = dynamic_cast<toolkit::ListBox*>(&script.control(name));
  if (list == nullptr) {
    throw ScriptMistake(escaped(name) + " is no list box");
  }
  return *list;
}

void drag(Script& script, Script::Words words) {
  toolkit::ListBox& from = listBox(script, words[0]);
  toolkit::ListBox& onto = listBox(script, words[2]);
  report(script, asked([&] { return script.hand().drag(from, words[1], onto); }),
         from.usable() ? onto : from);
}

float position(const std::string& word) {
  const auto value = parseNumber<float>(word);
  if (!value) {
    throw ScriptMistake("a position is a number, not " + escaped(word));
  }
  return *value;
}

void press(Script& script, Script::Words words) {
  script.component().PressKeyAt(whole16In(words[0], "BUTTON"), whole16In(words[1], "SHIFT"),
                                position(words[2]), position(words[3]));
}

void area(Script& script, Script::Words words) {
  script.addKey({.btnTitle = words[0],
                 .x1 = whole16In(words[1], "an edge"),
                 .y1 = whole16In(words[2], "an edge"),
                 .x2 = whole16In(words[3], "an edge"),
                 .y2 = whole16In(words[4], "an edge")});
}

void wait(Script& script, Script::Words words) {
  // What fits into the nanoseconds of a loop with room to spare: some 30 years.
  constexpr double kLongest = 1e12;
  const auto milliseconds = parseNumber<double>(words[0]);
  if (!milliseconds || !(*milliseconds >= 0 && *milliseconds <= kLongest)) {
    throw ScriptMistake("wait takes milliseconds, not " + escaped(words[0]));
  }
  script.loop().runFor(std::chrono::nanoseconds(std::llround(*milliseconds * 1e6)));
}

/// The last answer, without the blanks around it.
void expect(Script& script, Script::Words words) {
  const std::string answer = lumodevice::text::Trim(script.component().ResultStr());
  if (answer != words[0]) {
    throw ScriptMistake("expected " + escaped(words[0]) + ", the answer is " +
                        (answer.empty() ? "none" : escaped(answer)));
  }
}

void print(Script& script, Script::Words words) {
  script.output().line(escaped(words[0]));
}

constexpr std::array kInstructions = {
    Instruction{"get", "MEMBER|CONTROL.PROPERTY",
                "prints an automation property, or a property of a control", get},
    Instruction{"put", "MEMBER VALUE", "writes an automation property", put},
    Instruction{"call", "MEMBER [ARGUMENT]", "runs an automation method and prints its result",
                call},
    Instruction{"set", "CONTROL.PROPERTY VALUE", "sets a property as program code does", set},
    Instruction{"click", "CONTROL", "the operator clicks a control", click},
    Instruction{"type", "CONTROL TEXT", "the operator replaces the text of a text or combo box",
                type},
    Instruction{"select", "CONTROL INDEX", "the operator picks an entry of a combo or list box",
                select},
    Instruction{"key", "CONTROL Enter|Up|Down", "the operator presses a key in a field", key},
    Instruction{"drag", "LIST TEXT LIST", "the operator drags an item of one list onto another",
                drag},
    Instruction{"area", "NAME X1 Y1 X2 Y2", "adds a key area to the front-panel picture", area},
    Instruction{"press", "BUTTON SHIFT X Y", "presses the mouse on the front-panel picture", press},
    Instruction{"wait", "MS", "lets the timers tick for so many milliseconds", wait},
    Instruction{"expect", "TEXT",
                "ends the script, in status 1, unless the last answer is the text", expect},
    Instruction{"print", "TEXT", "prints the text", print},
};

}  // namespace

std::span<const Instruction> instructions() {
  return kInstructions;
}

}  // namespace zanctl
