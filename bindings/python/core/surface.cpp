#include "bindings/python/core/surface.hpp"

#include <array>
#include <charconv>
#include <functional>
#include <optional>
#include <pybind11/stl.h>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "bindings/python/core/collected.hpp"
#include "bindings/python/core/subscription.hpp"
#include "bindings/python/core/text.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/toolkit/properties.hpp"
#include "lumodevice/toolkit/timer.hpp"

namespace lumopython {

namespace py = pybind11;
namespace toolkit = lumodevice::toolkit;
using lumodevice::ZANCtrl;

namespace {

/// A control as Python has it, which keeps the component.
class PyControl {
 public:
  PyControl(py::object zan, toolkit::Control& control)
      : zan_(std::move(zan)),
        component_(zan_.cast<std::shared_ptr<Component>>()),
        control_(&control),
        fullName_(control.fullName()) {}

  /// Throws once the component has been closed: there are no controls any more.
  template <typename Look>
  [[nodiscard]] auto look(Look look) const {
    return component()->look([&](ZANCtrl& /*zan*/) { return look(*control_); });
  }
  template <typename Act>
  auto use(Act act) {
    return component()->use([&](ZANCtrl& /*zan*/) { return act(*control_); });
  }

  [[nodiscard]] const std::string& fullName() const { return fullName_; }
  [[nodiscard]] const toolkit::Control* native() const { return control_; }
  [[nodiscard]] const py::object& zan() const { return zan_; }

  void visited(const auto& visit) const { visit(zan_); }
  void clear() {
    zan_ = py::none();
    component_.reset();
  }

 private:
  [[nodiscard]] std::shared_ptr<Component> component() const {
    if (component_ == nullptr) {
      throw std::runtime_error("this control has been closed");
    }
    return component_;
  }

  py::object zan_;
  std::shared_ptr<Component> component_;
  toolkit::Control* control_;
  std::string fullName_;
};

/// The controls of a component by name, as Python has them.
class PySurface {
 public:
  explicit PySurface(py::object zan) : zan_(std::move(zan)) {}
  [[nodiscard]] const py::object& zan() const { return zan_; }
  [[nodiscard]] Component& component() const { return zan_.cast<Component&>(); }
  void visited(const auto& visit) const { visit(zan_); }
  void clear() { zan_ = py::none(); }

 private:
  py::object zan_;
};

constexpr std::string_view kNone;
struct PropertyName {
  toolkit::Property property;
  std::string_view name;
};
/// As an observer is told them: the names of the properties; of a list's items what happened.
constexpr auto kPropertyNames = std::to_array<PropertyName>({
    {toolkit::Property::Text, "Text"},
    {toolkit::Property::Caption, "Caption"},
    {toolkit::Property::Value, "Value"},
    {toolkit::Property::Enabled, "Enabled"},
    {toolkit::Property::Visible, "Visible"},
    {toolkit::Property::Tag, "Tag"},
    {toolkit::Property::ListIndex, "ListIndex"},
    {toolkit::Property::ItemInserted, "ItemInserted"},
    {toolkit::Property::ItemRemoved, "ItemRemoved"},
    {toolkit::Property::ItemsCleared, "ItemsCleared"},
    {toolkit::Property::Interval, "Interval"},
    {toolkit::Property::Place, "Place"},
    {toolkit::Property::Look, "Look"},
    {toolkit::Property::MousePointer, "MousePointer"},
    {toolkit::Property::OLEDropMode, "OLEDropMode"},
    {toolkit::Property::Picture, "Picture"},
    {toolkit::Property::Stretch, "Stretch"},
    {toolkit::Property::ZOrder, "ZOrder"},
});

std::string_view nameOf(toolkit::Property property) {
  for (const PropertyName& row : kPropertyNames) {
    if (row.property == property) {
      return row.name;
    }
  }
  return kNone;
}

struct KeyName {
  std::string_view name;
  toolkit::Key key;
};
constexpr auto kKeys = std::to_array<KeyName>(
    {{"Enter", toolkit::Key::Enter}, {"Up", toolkit::Key::Up}, {"Down", toolkit::Key::Down}});

/// "True" and "False" are bool, a whole number is int where the property is one, all else str.
py::object valueOf(const std::string& text, bool number) {
  if (text == "True" || text == "False") {
    return py::bool_(text == "True");
  }
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (number && error == std::errc() && end == text.data() + text.size()) {
    return py::int_(value);
  }
  return toPython(text);
}

std::string textOf(const py::handle& value) {
  if (py::isinstance<py::bool_>(value)) {
    return value.cast<bool>() ? "True" : "False";
  }
  return fromPython(py::str(value));
}

py::object read(const PyControl& control, const std::string& property, bool number) {
  return valueOf(
      control.look([&](toolkit::Control& native) { return readProperty(native, property); }),
      number);
}

void write(PyControl& control, const std::string& property, const py::object& value) {
  const std::string text = textOf(value);
  control.use([&](toolkit::Control& native) { writeProperty(native, property, text); });
}

py::object controlOf(const py::object& zan, toolkit::Control& control) {
  return py::cast(PyControl(zan, control));
}

/// "cmdSet(3)", or a name with an index.
py::object find(const py::object& zan, const std::string& name, std::optional<int> index) {
  toolkit::Control* const found = zan.cast<Component&>().look([&](ZANCtrl& native) {
    const toolkit::Surface& surface = native.surface();
    toolkit::Control* control = surface.find(name, index);
    if (control == nullptr && !index) {
      for (const auto& candidate : surface.controls()) {
        control = candidate->fullName() == name ? candidate.get() : control;
      }
    }
    return control;
  });
  if (found == nullptr) {
    throw py::key_error(index ? name + "(" + std::to_string(*index) + ")" : name);
  }
  return controlOf(zan, *found);
}

py::object item(const py::object& zan, const py::object& key) {
  if (py::isinstance<py::str>(key)) {
    return find(zan, fromPython(key), std::nullopt);
  }
  if (py::isinstance<py::tuple>(key) && py::len(key) == 2) {
    const auto pair = key.cast<py::tuple>();
    return find(zan, fromPython(pair[0]), pair[1].cast<int>());
  }
  throw py::type_error("a control is named \"Text5\", \"cmdSet(3)\" or (\"cmdSet\", 3)");
}

std::vector<std::string> namesOf(const PySurface& surface) {
  return surface.component().look([](ZANCtrl& zan) {
    std::vector<std::string> names;
    for (const auto& control : zan.surface().controls()) {
      names.push_back(control->fullName());
    }
    return names;
  });
}

py::list listOf(const PyControl& control) {
  py::list items;
  const auto* const list = control.look(
      [](toolkit::Control& native) { return dynamic_cast<toolkit::ListControl*>(&native); });
  if (list == nullptr) {
    throw toolkit::PropertyFault(toolkit::kNoSuchProperty, control.fullName() + " has no list");
  }
  for (int i = 0; i < list->listCount(); ++i) {
    items.append(toPython(list->list(i)));
  }
  return items;
}

/// One observer of all changes: told the control and the name of the property.
PySubscription observeChanges(const py::object& zan, py::object observer,
                              const toolkit::Control* only) {
  HeldCallable held = hold(std::move(observer));
  // The surface must not keep the component; who observes has it.
  const py::weakref weak(zan);
  const HeldCallable owner = hold(weak);
  auto native = zan.cast<Component&>().look([&](ZANCtrl& observed) {
    return observed.surface().observe(
        [held, owner, only](const toolkit::Control& control, toolkit::Property property, int) {
          if (only != nullptr && only != &control) {
            return;
          }
          const py::gil_scoped_acquire locked;
          const py::object component = (*owner)();
          if (!component.is_none()) {
            // An observer may look at the control and not change it; Python has no such type.
            auto& named = const_cast<toolkit::Control&>(control);
            call(held, [&] {
              return py::make_tuple(controlOf(component, named), toPython(nameOf(property)));
            });
          }
        });
  });
  return {held, std::move(native)};
}

template <typename ControlType, typename Observe>
void tryEvent(std::optional<toolkit::Subscription>& made, toolkit::Control& control,
              Observe observe) {
  auto* const typed = dynamic_cast<ControlType*>(&control);
  if (!made && typed != nullptr) {
    made = observe(*typed);
  }
}

template <typename... ControlTypes, typename Observe>
std::optional<toolkit::Subscription> observeEvent(toolkit::Control& control, Observe observe) {
  std::optional<toolkit::Subscription> made;
  (tryEvent<ControlTypes>(made, control, observe), ...);
  return made;
}

std::string_view keyName(toolkit::Key key) {
  for (const KeyName& row : kKeys) {
    if (row.key == key) {
      return row.name;
    }
  }
  return kNone;
}

PySubscription observeNamedEvent(const PyControl& self, const std::string& event,
                                 py::object observer) {
  HeldCallable held = hold(std::move(observer));
  const auto plain = [held] { call(held, [] { return py::tuple(); }); };
  const auto withKey = [held](toolkit::Key key) {
    call(held, [&] { return py::make_tuple(toPython(keyName(key))); });
  };
  auto native = self.look([&](toolkit::Control& control) -> std::optional<toolkit::Subscription> {
    if (event == "click") {
      return observeEvent<toolkit::Label, toolkit::CommandButton, toolkit::CheckBox,
                          toolkit::OptionButton, toolkit::ListControl, toolkit::Pictured>(
          control, [&](auto& typed) { return typed.click.observe(plain); });
    }
    if (event == "change") {
      return observeEvent<toolkit::TextBox>(
          control, [&](auto& typed) { return typed.change.observe(plain); });
    }
    if (event == "key") {
      return observeEvent<toolkit::TextBox, toolkit::ComboBox>(
          control, [&](auto& typed) { return typed.keyDown.observe(withKey); });
    }
    if (event == "tick") {
      return observeEvent<toolkit::Timer>(control,
                                          [&](auto& typed) { return typed.tick.observe(plain); });
    }
    if (event == "show") {
      return observeEvent<toolkit::Form>(control,
                                         [&](auto& typed) { return typed.show.observe(plain); });
    }
    return std::nullopt;
  });
  if (!native) {
    throw py::value_error(self.fullName() + " has no event " + event +
                          " (there are click, change, key, tick and show)");
  }
  return {held, std::move(*native)};
}

bool press(PyControl& self, const std::string& name) {
  for (const KeyName& row : kKeys) {
    if (row.name == name) {
      return self.use(
          [&](toolkit::Control& control) { return toolkit::hand::press(control, row.key); });
    }
  }
  throw py::value_error("there is no key " + name + "; there are Enter, Up and Down");
}

bool drag(PyControl& self, const py::str& item, const PyControl& onto) {
  const std::string text = fromPython(item);
  toolkit::ListBox* const to = onto.look(
      [](toolkit::Control& control) { return dynamic_cast<toolkit::ListBox*>(&control); });
  return self.use([&](toolkit::Control& control) {
    auto* const from = dynamic_cast<toolkit::ListBox*>(&control);
    if (from == nullptr || to == nullptr) {
      throw py::type_error("a drag goes from one list box to another");
    }
    return toolkit::hand::drag(*from, text, *to);
  });
}

/// A property with a name of its own in Python.
struct NamedProperty {
  const char* python;
  const char* property;
  bool number;
  bool written;
  const char* doc;
};
constexpr auto kNamed = std::to_array<NamedProperty>({
    {"text", "Text", false, true, "The text of a text, combo or list box.\n\n:type: str"},
    {"caption", "Caption", false, true, "The caption.\n\n:type: str"},
    {"value", "Value", true, true,
     "Of a check box 0 clear, 1 ticked, 2 greyed; of an option button whether it is chosen.\n\n"
     ":type: int | bool"},
    {"enabled", "Enabled", false, true, "Whether it is enabled by itself.\n\n:type: bool"},
    {"visible", "Visible", false, true, "Whether it is shown.\n\n:type: bool"},
    {"tag", "Tag", false, true, "Its tag.\n\n:type: str"},
    {"list_index", "ListIndex", true, true,
     "The selected entry of a list, -1 for none.\n\n:type: int"},
    {"list_count", "ListCount", true, false, "The number of entries of a list.\n\n:type: int"},
    {"interval", "Interval", true, true, "Of a timer, in milliseconds; 0 stops it.\n\n:type: int"},
    {"tool_tip", "ToolTipText", false, false, "What it is for.\n\n:type: str"},
});

void bindControl(py::module_& module) {
  py::class_<PyControl> type(
      module, "Control", collected<PyControl>(),
      "A control of the panel. Its properties are set as program code does; click(), type() and\n"
      "the like are the acts of an operator, which a disabled control refuses (False).");
  const py::object property = py::module_::import("builtins").attr("property");
  for (const NamedProperty& row : kNamed) {
    const std::string name = row.property;
    const bool number = row.number;
    const py::object get =
        py::cpp_function([name, number](const PyControl& self) { return read(self, name, number); },
                         py::is_method(type));
    const py::object set =
        row.written
            ? py::object(py::cpp_function(
                  [name](PyControl& self, const py::object& value) { write(self, name, value); },
                  py::is_method(type)))
            : py::none();
    type.attr(row.python) = property(get, set, py::none(), row.doc);
  }
  type.def_property_readonly(
          "name",
          [](const PyControl& self) {
            return toPython(self.look([](toolkit::Control& c) { return c.name(); }));
          },
          "The name; the elements of a control array share it.\n\n:type: str")
      .def_property_readonly(
          "index",
          [](const PyControl& self) {
            return self.look([](toolkit::Control& c) { return c.index(); });
          },
          "The position in its control array.\n\n:type: int | None")
      .def_property_readonly("full_name", &PyControl::fullName,
                             "\"cmdSet(3)\", or the name alone.\n\n:type: str")
      .def_property_readonly(
          "kind",
          [](const PyControl& self) {
            return toPython(
                self.look([](toolkit::Control& c) { return toolkit::kindName(c.kind()); }));
          },
          "\"TextBox\", \"CheckBox\", ...\n\n:type: str")
      .def_property_readonly(
          "usable",
          [](const PyControl& self) {
            return self.look([](toolkit::Control& c) { return c.usable(); });
          },
          "Enabled together with all its containers.\n\n:type: bool")
      .def_property_readonly(
          "container",
          [](const PyControl& self) -> py::object {
            toolkit::Control* const container =
                self.look([](toolkit::Control& c) -> toolkit::Control* { return c.container(); });
            return container == nullptr ? py::none() : controlOf(self.zan(), *container);
          },
          "The form or frame that it sits in.\n\n:type: Control | None")
      .def_property_readonly("items", &listOf, "The entries of a list.\n\n:type: list[str]")
      .def(
          "__getitem__",
          [](const PyControl& self, const std::string& name) {
            return toPython(
                self.look([&](toolkit::Control& control) { return readProperty(control, name); }));
          },
          py::arg("name"), "__getitem__($self, name, /)\n--\n\nAny property by its name, as text.")
      .def("__setitem__", &write, py::arg("name"), py::arg("value"),
           "__setitem__($self, name, value, /)\n--\n\nSets any property by its name.")
      .def(
          "click",
          [](PyControl& self) {
            return self.use(
                [](toolkit::Control& control) { return toolkit::hand::click(control); });
          },
          "click($self, /)\n--\n\nThe operator clicks it.\n\nReturns: bool, whether it was taken")
      .def(
          "type",
          [](PyControl& self, const py::str& typed) {
            const std::string text = fromPython(typed);
            return self.use(
                [&](toolkit::Control& control) { return toolkit::hand::type(control, text); });
          },
          py::arg("text"),
          "type($self, text, /)\n--\n\nThe operator replaces the text.\n\nReturns: bool, whether "
          "it "
          "was taken")
      .def(
          "select",
          [](PyControl& self, int index) {
            return self.use(
                [=](toolkit::Control& control) { return toolkit::hand::select(control, index); });
          },
          py::arg("index"),
          "select($self, index, /)\n--\n\nThe operator picks the entry of a list.\n\nReturns: "
          "bool, "
          "whether it was taken")
      .def("press", &press, py::arg("key"),
           "press($self, key, /)\n--\n\nThe operator presses \"Enter\", \"Up\" or \"Down\" in a "
           "field.\n\nReturns: bool, whether it was taken")
      .def("drag", &drag, py::arg("item"), py::arg("onto"),
           "drag($self, item, onto, /)\n--\n\nThe operator drags an item of this list onto "
           "another.\n\nReturns: bool, whether it was taken")
      .def(
          "observe",
          [](const PyControl& self, py::object observer) {
            return observeChanges(self.zan(), std::move(observer), self.native());
          },
          py::arg("observer"),
          "observe($self, observer, /)\n--\n\nCalls observer(control, property) for each change of "
          "this control, while the subscription is kept.\n\nReturns: Subscription")
      .def("on", &observeNamedEvent, py::arg("event"), py::arg("observer"),
           "on($self, event, observer, /)\n--\n\nCalls the observer after the event: \"click\", "
           "\"change\", \"tick\", \"show\", or \"key\" (told the key).\n\nReturns: Subscription")
      .def("__eq__",
           [](const PyControl& self, const py::object& other) {
             return py::isinstance<PyControl>(other) &&
                    other.cast<const PyControl&>().native() == self.native();
           })
      .def("__hash__",
           [](const PyControl& self) {
             return std::hash<const void*>()(static_cast<const void*>(self.native()));
           })
      .def("__repr__", [](const PyControl& self) { return "<Control " + self.fullName() + ">"; });
}

}  // namespace

void bindSurface(py::module_& module) {
  py::class_<PySubscription>(
      module, "Subscription", collected<PySubscription>(),
      "Keeps an observer where it observes: let go, ended, or left as a context, it is told no "
      "more.")
      .def("end", &PySubscription::end, "end($self, /)\n--\n\nThe observer is told no more.")
      .def("__enter__", [](py::object self) { return self; })
      .def("__exit__", [](PySubscription& self, const py::args& /*raised*/) { self.end(); });
  bindControl(module);
  py::class_<PySurface>(module, "Surface", collected<PySurface>(),
                        "All controls of the panel by name, a mapping: surface[\"Text5\"], "
                        "surface[\"cmdSet\", 3] or surface[\"cmdSet(3)\"].")
      .def(
          "__getitem__",
          [](const PySurface& self, const py::object& key) { return item(self.zan(), key); },
          py::arg("key"))
      .def("__len__", [](const PySurface& self) { return namesOf(self).size(); })
      .def("__iter__", [](const PySurface& self) { return py::iter(py::cast(namesOf(self))); })
      .def("keys", &namesOf,
           "keys($self, /)\n--\n\nThe names, those of control arrays with their index.\n\nReturns: "
           "list[str]")
      .def("__contains__",
           [](const PySurface& self, const py::object& key) {
             try {
               (void)item(self.zan(), key);
               return true;
             } catch (const py::key_error&) {
               return false;
             }
           })
      .def(
          "observe",
          [](const PySurface& self, py::object observer) {
            return observeChanges(self.zan(), std::move(observer), nullptr);
          },
          py::arg("observer"),
          "observe($self, observer, /)\n--\n\nCalls observer(control, property) for each change of "
          "any control, while the subscription is kept. The observer must change none.\n\nReturns: "
          "Subscription");
}

void bindSurfaceOf(py::class_<Component, std::shared_ptr<Component>>& type) {
  type.def(
          "surface", [](py::object self) { return PySurface(std::move(self)); },
          "surface($self, /)\n--\n\nAll controls of the panel.\n\nReturns: Surface")
      .def(
          "__getitem__", &item, py::arg("key"),
          "__getitem__($self, key, /)\n--\n\nThe control of that name: \"Text5\", \"cmdSet(3)\" or "
          "(\"cmdSet\", 3).\n\nReturns: Control");
}

}  // namespace lumopython
