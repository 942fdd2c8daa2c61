#include "bindings/python/core/members.hpp"

#include <cstdint>
#include <map>
#include <pybind11/stl.h>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "bindings/python/core/collected.hpp"
#include "bindings/python/core/component.hpp"
#include "bindings/python/core/formatted_io.hpp"
#include "bindings/python/core/subscription.hpp"
#include "bindings/python/core/surface.hpp"
#include "bindings/python/core/text.hpp"
#include "lumodevice/members.hpp"

namespace lumopython {

namespace py = pybind11;
namespace automation = lumodevice::automation;
using automation::kMembers;
using automation::MemberKind;
using lumodevice::ZANCtrl;

namespace {

using ComponentClass = py::class_<Component, std::shared_ptr<Component>>;
using Device = std::shared_ptr<lumodevice::io::FormattedIO488>;

template <std::size_t Row>
using Bound = std::tuple_element_t<Row, std::remove_const_t<decltype(kMembers)>>;

/// How a value of the interface is given and taken in Python.
template <typename Value>
struct Passed {
  using Taken = Value;
  static Value give(const Component& /*from*/, Value value) { return value; }
  static Value take(Value value) { return value; }
  static constexpr const char* kName = std::is_same_v<Value, bool> ? "bool" : "int";
};
template <>
struct Passed<lumodevice::LinkKind> {
  static int give(const Component& /*from*/, lumodevice::LinkKind kind) {
    return static_cast<int>(kind);
  }
  static constexpr const char* kName = "int";
};
template <>
struct Passed<std::string> {
  static py::str give(const Component& /*from*/, const std::string& text) { return toPython(text); }
  static constexpr const char* kName = "str";
};
template <>
struct Passed<std::string_view> {
  using Taken = py::str;
  static std::string take(const py::str& text) { return fromPython(text); }
  static constexpr const char* kName = "str";
};
template <>
struct Passed<Device> {
  using Taken = const PyFormattedIO*;
  static py::object give(const Component& from, Device device) {
    return device == nullptr ? py::none()
                             : py::cast(PyFormattedIO(std::move(device), from.bench()));
  }
  static Device take(Taken device) { return device == nullptr ? nullptr : device->device(); }
  static constexpr const char* kName = "FormattedIO488 | None";
};

/// What Python shows as the signature: "SendCmd($self, sVar)".
std::string signatureOf(const automation::Member& row) {
  std::string text(row.name);
  text.append("($self");
  if (!row.argument.name.empty()) {
    text.append(", ").append(row.argument.name);
  }
  return text.append(", /)\n--\n\n");
}

std::string sentence(std::string_view help) {
  std::string text(help);
  text.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
  return text + '.';
}

template <typename Result>
std::string resultName() {
  if constexpr (std::is_void_v<Result>) {
    return "None";
  } else {
    return Passed<Result>::kName;
  }
}

/// Calls the member and gives what it returns, with or without the lock.
template <std::size_t Row, typename... Arguments>
auto run(Component& self, const Arguments&... arguments) {
  using Result = typename Bound<Row>::Result;
  const auto act = [&](ZANCtrl& zan) {
    return (zan.*std::get<Row>(kMembers).function)(arguments...);
  };
  if constexpr (std::is_void_v<Result>) {
    self.use(act);
  } else {
    return Passed<Result>::give(self, self.use(act));
  }
}

template <std::size_t Row>
py::object functionOf(const ComponentClass& type) {
  constexpr automation::Member kRow = automation::kMemberRows[Row];
  using Argument = typename Bound<Row>::Argument;
  const std::string doc = kRow.kind == MemberKind::Method
                              ? signatureOf(kRow) + sentence(kRow.help) +
                                    "\n\nReturns: " + resultName<typename Bound<Row>::Result>()
                              : std::string();
  // The function makes copies of the texts when it has been given them all.
  const std::string called(kRow.name);
  const py::name name(called.c_str());
  if constexpr (std::is_void_v<Argument>) {
    return py::cpp_function([](Component& self) { return run<Row>(self); }, name,
                            py::is_method(type), py::doc(doc.c_str()));
  } else {
    using Taken = typename Passed<Argument>::Taken;
    const std::string taken(kRow.argument.name);
    const py::arg argument(taken.c_str());
    return py::cpp_function(
        [](Component& self, Taken value) { return run<Row>(self, Passed<Argument>::take(value)); },
        name, py::is_method(type), py::doc(doc.c_str()),
        std::is_same_v<Argument, bool> ? py::arg(argument).noconvert() : argument);
  }
}

/// Of a property the halves, in the order of the table.
struct Halves {
  py::object get = py::none();
  py::object put = py::none();
  std::string type;
  std::string help;
};

template <std::size_t Row>
void bindRow(const ComponentClass& type, std::map<std::string, Halves>& properties) {
  constexpr automation::Member kRow = automation::kMemberRows[Row];
  const std::string name(kRow.name);
  if constexpr (kRow.kind == MemberKind::Method) {
    type.attr(name.c_str()) = functionOf<Row>(type);
  } else {
    Halves& halves = properties[name];
    if constexpr (kRow.kind == MemberKind::PropertyGet) {
      halves.get = functionOf<Row>(type);
      halves.type = Passed<typename Bound<Row>::Result>::kName;
      halves.help += sentence(kRow.help);
    } else {
      halves.put = functionOf<Row>(type);
      halves.type = Passed<typename Bound<Row>::Argument>::kName;
      halves.help += (halves.help.empty() ? "" : "\nWritten: ") + sentence(kRow.help);
    }
  }
}

template <std::size_t... Rows>
void bindTable(const ComponentClass& type, std::index_sequence<Rows...> /*rows*/) {
  std::map<std::string, Halves> properties;
  (bindRow<Rows>(type, properties), ...);
  const py::object property = py::module_::import("builtins").attr("property");
  for (const auto& [name, halves] : properties) {
    type.attr(name.c_str()) =
        property(halves.get, halves.put, py::none(), halves.help + "\n\n:type: " + halves.type);
  }
}

/// What the component tells is told to the callable with the words that `say` makes of it.
template <typename Subscribe, typename Say>
PySubscription observe(Component& self, py::object callable, Subscribe subscribe, Say say) {
  HeldCallable held = hold(std::move(callable));
  auto native = self.look([&](ZANCtrl& zan) {
    return subscribe(
        zan, [held, say](const auto&... told) { call(held, [&] { return say(told...); }); });
  });
  return {held, std::move(native)};
}

py::tuple failureOf(const lumodevice::Failure& failure) {
  return py::make_tuple(toPython(lumodevice::rowOf(failure.kind).name), toPython(failure.sentence));
}

void setKeys(Component& self,
             const std::vector<std::tuple<std::string, int, int, int, int>>& keys) {
  const auto edge = [](int value) {
    if (value < INT16_MIN || value > INT16_MAX) {
      throw std::out_of_range("an edge is a whole number from -32768 to 32767");
    }
    return static_cast<std::int16_t>(value);
  };
  std::vector<lumodevice::devButton> areas;
  areas.reserve(keys.size());
  for (const auto& [title, x1, y1, x2, y2] : keys) {
    areas.push_back({title, edge(x1), edge(y1), edge(x2), edge(y2)});
  }
  self.use([&](ZANCtrl& zan) { zan.setKeys(areas); });
}

/// Not among the automation members, by the names that they have in C++.
void bindOthers(ComponentClass& type) {
  type.def(
          "connectTo",
          [](Component& self, const py::str& address, bool readBack) {
            const std::string text = fromPython(address);
            return self.use([&](ZANCtrl& zan) {
              return zan.connectTo(
                  text, readBack ? lumodevice::Panel::ReadBack : lumodevice::Panel::Left);
            });
          },
          py::arg("address"), py::arg("read_back") = true,
          "connectTo($self, address, read_back=True)\n--\n\n"
          "Connects to one instrument: a VISA resource in full, \"COM3\", a serial device, or a "
          "serial number.\n\nWith read_back the panel lists the channels and shows all of the one "
          "that the instrument is at.\nBlocks for the search; on a serial link 3.3 s for each baud "
          "rate.\n\nReturns: bool, whether a ZAN answered; else failure() says why")
      .def(
          "reconnect",
          [](Component& self) { return self.use([](ZANCtrl& zan) { return zan.reconnect(); }); },
          "reconnect($self, /)\n--\n\nConnects again to the instrument of the last link, and to no "
          "other one.\n\nReturns: bool")
      .def(
          "failure",
          [](Component& self) {
            return failureOf(self.look([](ZANCtrl& zan) { return zan.failure(); }));
          },
          "failure($self, /)\n--\n\nWhy the last connect, exchange or transfer failed.\n\nReturns: "
          "(str, str), the kind (\"none\" when it did not fail) and a sentence for people")
      .def_property(
          "waitUnit",
          [](Component& self) { return self.look([](ZANCtrl& zan) { return zan.waitUnit(); }); },
          [](Component& self, std::int32_t milliseconds) {
            self.use([=](ZANCtrl& zan) { zan.waitUnit(milliseconds); });
          },
          "The wait unit in milliseconds, 1 to 65535: an answer is waited for seven of them, and "
          "one passes behind a command.\n\n:type: int")
      .def_property(
          "observing",
          [](Component& self) { return self.look([](ZANCtrl& zan) { return zan.observing(); }); },
          [](Component& self, bool on) { self.use([=](ZANCtrl& zan) { zan.observing(on); }); },
          "Whether the control only watches: nothing leaves it but queries and the choice of a "
          "channel.\n\n:type: bool")
      .def("setKeys", setKeys, py::arg("keys"),
           "setKeys($self, keys, /)\n--\n\nThe key areas (title, x1, y1, x2, y2) of the picture of "
           "the instrument's front panel, in points; at most 51.")
      .def(
          "PressKeyAt",
          [](Component& self, std::int16_t button, std::int16_t shift, float x, float y) {
            self.use([=](ZANCtrl& zan) { zan.PressKeyAt(button, shift, x, y); });
          },
          py::arg("button"), py::arg("shift"), py::arg("x"), py::arg("y"),
          "PressKeyAt($self, button, shift, x, y, /)\n--\n\nPresses the key of the instrument at "
          "that position of the picture, in points.")
      .def(
          "observeReadings",
          [](Component& self, py::object observer) {
            return observe(
                self, std::move(observer),
                [](ZANCtrl& zan, auto told) { return zan.observeReadings(told); },
                [](const lumodevice::Reading& reading) {
                  return py::make_tuple(toPython(reading.query), toPython(reading.answer));
                });
          },
          py::arg("observer"),
          "observeReadings($self, observer, /)\n--\n\nCalls observer(query, answer) for each "
          "answer "
          "of the auto query, while the subscription is kept.\n\nReturns: Subscription")
      .def(
          "observeHeldBack",
          [](Component& self, py::object observer) {
            return observe(
                self, std::move(observer),
                [](ZANCtrl& zan, auto told) { return zan.observeHeldBack(told); },
                [](const std::string& command) { return py::make_tuple(toPython(command)); });
          },
          py::arg("observer"),
          "observeHeldBack($self, observer, /)\n--\n\nCalls observer(command) for each command "
          "that "
          "an observing control held back.\n\nReturns: Subscription")
      .def(
          "observeLinkLost",
          [](Component& self, py::object observer) {
            return observe(
                self, std::move(observer),
                [](ZANCtrl& zan, auto told) { return zan.observeLinkLost(told); },
                [](const lumodevice::Failure& why) { return failureOf(why); });
          },
          py::arg("observer"),
          "observeLinkLost($self, observer, /)\n--\n\nCalls observer(kind, sentence) once when the "
          "instrument of the link has gone.\n\nReturns: Subscription")
      .def(
          "observeLinkRegained",
          [](Component& self, py::object observer) {
            return observe(
                self, std::move(observer),
                [](ZANCtrl& zan, auto told) { return zan.observeLinkRegained(told); },
                [] { return py::tuple(); });
          },
          py::arg("observer"),
          "observeLinkRegained($self, observer, /)\n--\n\nCalls observer() when the same "
          "instrument "
          "answers again.\n\nReturns: Subscription");
}

}  // namespace

void bindZanCtrl(py::module_& module) {
  ComponentClass type(
      module, "ZANCtrl", collected<Component>(),
      "The instrument control: operates one DC electronic load of the ZAN family.\n\n"
      "Its members have the names of the automation interface. They never raise for anything that\n"
      "the instrument, the link or the operator does: a bool is False, a text empty, a number 0, \n"
      "and failure() says why. They block for the waits of the operation; other threads run\n"
      "meanwhile, and Ctrl-C ends the wait. What callbacks raise passes through.\n\n"
      "    zan = lumodevice.ZANCtrl(lumodevice.simulated_host(virtual_time=True))\n"
      "    if zan.AutoConnect():\n"
      "        zan.SendCmd(\":FETC:VOLT?\")\n"
      "        print(zan.ResultStr, \"V\")\n\n"
      "zan[\"txtInput\", 3] is a control of the panel; surface() has them all.");
  type.def(py::init<py::object>(), py::arg("host"),
           "__init__($self, host)\n--\n\nOn a Host; connects to nothing.");
  bindTable(type, std::make_index_sequence<automation::kMemberRows.size()>());
  bindOthers(type);
  bindSurfaceOf(type);
  type.def("close", &Component::close,
           "close($self, /)\n--\n\nEnds the control and closes its link. Allowed at any time, also "
           "from within a callback.")
      .def_property_readonly("closed", &Component::closed,
                             "Whether the control has been closed.\n\n:type: bool")
      .def_property_readonly("host", &Component::host, "What it was made on.\n\n:type: Host")
      .def("__enter__", [](py::object self) { return self; })
      .def("__exit__", [](Component& self, const py::args& /*raised*/) { self.close(); })
      .def("__repr__", [](Component& self) {
        return self.closed() ? std::string("<ZANCtrl, closed>")
                             : std::string("<ZANCtrl, ") +
                                   (self.look([](ZANCtrl& zan) { return zan.isConnected(); })
                                        ? "connected>"
                                        : "not connected>");
      });
}

}  // namespace lumopython
