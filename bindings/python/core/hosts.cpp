#include "bindings/python/core/hosts.hpp"

#include <chrono>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <pybind11/stl.h>
#include <string>
#include <utility>
#include <vector>

#include "bindings/python/core/collected.hpp"
#include "bindings/python/core/component.hpp"

namespace lumopython {

namespace py = pybind11;

namespace {

using Nanoseconds = lumodevice::toolkit::EventLoop::Duration;

/// Keeps a bench to one thread for the length of a block.
class Hold {
 public:
  explicit Hold(std::shared_ptr<Bench> bench) : bench_(std::move(bench)) {}
  void begin() { use_.emplace(*bench_); }
  void end() { use_.reset(); }

 private:
  std::shared_ptr<Bench> bench_;
  std::optional<Bench::Use> use_;
};

/// What fits into the nanoseconds of a loop with room to spare: some 30 years.
constexpr double kLongestRun = 1e9;

HeldCallable held(const py::object& callable) {
  return callable.is_none() ? nullptr : hold(callable);
}

Bench::Options optionsOf(bool virtualTime, const std::string& trace, const std::string& record,
                         const py::object& box, const py::object& mistaken = py::none()) {
  return {.virtualTime = virtualTime,
          .trace = trace,
          .record = record,
          .informationBox = held(box),
          .mistaken = held(mistaken)};
}

lumodevice::Exchanges exchangesOf(bool interleaved) {
  return interleaved ? lumodevice::Exchanges::Interleaved : lumodevice::Exchanges::InTurn;
}

std::unique_ptr<PyHost> systemHost(const std::string& address, const std::string& driveC,
                                   const std::string& visaLibrary,
                                   const std::map<int, std::string>& ports,
                                   const py::object& informationBox, bool interleaved,
                                   bool observing, const std::string& trace,
                                   const std::string& record) {
  return std::make_unique<PyHost>(optionsOf(false, trace, record, informationBox),
                                  lumodevice::SystemOptions{.driveC = driveC,
                                                            .visaLibrary = visaLibrary,
                                                            .ports = ports,
                                                            .exchanges = exchangesOf(interleaved),
                                                            .observing = observing,
                                                            .address = address});
}

std::unique_ptr<PyHost> simulatedHost(bool virtualTime, const std::string& address,
                                      const std::string& driveC, const std::string& modules,
                                      const std::vector<std::string>& sources,
                                      const std::string& serialNumber,
                                      const std::vector<std::string>& latencies,
                                      bool numberedReadings, const py::object& informationBox,
                                      bool interleaved, bool observing, const std::string& trace,
                                      const std::string& record) {
  return std::make_unique<PyHost>(
      optionsOf(virtualTime, trace, record, informationBox),
      lumodevice::SimulatedOptions{.driveC = driveC,
                                   .modules = modules,
                                   .sources = sources,
                                   .serialNumber = serialNumber,
                                   .latencies = latencies,
                                   .numberedReadings = numberedReadings,
                                   .exchanges = exchangesOf(interleaved),
                                   .observing = observing,
                                   .address = address});
}

std::unique_ptr<PyHost> replayedHost(const std::string& file, bool virtualTime,
                                     const std::string& address, const std::string& driveC,
                                     const py::object& mistaken, const py::object& informationBox,
                                     bool interleaved, bool observing, const std::string& trace) {
  return std::make_unique<PyHost>(optionsOf(virtualTime, trace, "", informationBox, mistaken),
                                  Bench::Replay{.file = file,
                                                .options = {.driveC = driveC,
                                                            .exchanges = exchangesOf(interleaved),
                                                            .observing = observing,
                                                            .address = address}});
}

void runFor(const PyHost& host, double seconds) {
  if (!(seconds >= 0 && seconds <= kLongestRun)) {
    throw py::value_error("a time in seconds is needed");
  }
  const std::shared_ptr<Bench>& bench = host.bench();
  const Bench::Use entered(*bench);
  const py::gil_scoped_release free;
  bench->host().loop.runFor(Nanoseconds(std::llround(seconds * 1e9)));
}

}  // namespace

void bindHosts(py::module_& module) {
  py::class_<Hold>(module, "Hold", "The context that Host.held() gives.")
      .def("__enter__", &Hold::begin)
      .def("__exit__", [](Hold& self, const py::args& /*raised*/) { self.end(); });
  py::class_<PyHost>(
      module, "Host", collected<PyHost>(),
      "What controls find around them: the loop that they wait on, the links, drive C:, the clock\n"
      "and the information boxes. It belongs to the thread that made it, and so do its controls.")
      .def(
          "run_for", &runFor, py::arg("seconds"),
          "run_for($self, seconds, /)\n--\n\nLets timers tick for so many seconds: the auto query, "
          "and the serial receive poll.\nOther threads run meanwhile; Ctrl-C ends it.")
      .def(
          "held", [](const PyHost& host) { return std::make_unique<Hold>(host.bench()); },
          "held($self, /)\n--\n\nA context in which no other thread comes between: a command and "
          "the look at its answer belong\ntogether. It matters where a Load waits in the "
          "background, "
          "and must not be held across an await.\n\nReturns: Hold")
      .def_property_readonly(
          "time",
          [](const PyHost& host) {
            return std::chrono::duration<double>(host.bench()->host().loop.now()).count();
          },
          "Seconds since the host was made, in the time of its loop.\n\n:type: float")
      .def_property_readonly(
          "virtual_time", [](const PyHost& host) { return host.bench()->virtualTime(); },
          "Whether that is a clock which jumps instead of waiting.\n\n:type: bool")
      .def_property_readonly(
          "in_turn",
          [](const PyHost& host) {
            return host.bench()->host().exchanges == lumodevice::Exchanges::InTurn;
          },
          "Whether every exchange keeps its own command and its own answer.\n\n:type: bool")
      .def(
          "_admit", [](const PyHost& host, unsigned long thread) { host.bench()->admit(thread); },
          "_admit($self, thread, /)\n--\n\nFor this package: another thread may use the host.")
      .def(
          "_dismiss",
          [](const PyHost& host, unsigned long thread) { host.bench()->dismiss(thread); },
          "_dismiss($self, thread, /)\n--\n\nFor this package: it may no more.")
      .def(
          "_break_off",
          [](const PyHost& host, bool off) {
            if (off) {
              host.bench()->lookout().breakOff();
            } else {
              host.bench()->lookout().goOn();
            }
          },
          "_break_off($self, off, /)\n--\n\nFor this package: what waits ends with BrokenOff.");
  module.def(
      "system_host", &systemHost, py::arg("address") = "", py::kw_only(), py::arg("drive_c") = "",
      py::arg("visa_library") = "", py::arg("ports") = std::map<int, std::string>(),
      py::arg("information_box") = py::none(), py::arg("interleaved") = false,
      py::arg("observing") = false, py::arg("trace") = "", py::arg("record") = "",
      "system_host(address='', *, drive_c='', visa_library='', ports={}, information_box=None, "
      "interleaved=False, observing=False, trace='', record='')\n--\n\n"
      "The host of a program that operates real instruments. Opens nothing.\n\n"
      "address: what AutoConnect connects to; '' searches\n"
      "drive_c: the folder that is drive C:\n"
      "visa_library: the VISA library to load; '' the usual ones, else the built-in layer\n"
      "ports: COM port numbers (1 to 16) to devices; {} the machine's own\n"
      "information_box: is called with the text of each box; None prints it on standard error\n"
      "interleaved: exchanges as hosts of the old way know them, instead of in turn\n"
      "observing: nothing is sent but queries and the choice of a channel\n"
      "trace: the file that takes down what goes over the links, for people\n"
      "record: the file of a recording, which replayed_host() plays back");
  module.def(
      "simulated_host", &simulatedHost, py::kw_only(), py::arg("virtual_time") = false,
      py::arg("address") = "", py::arg("drive_c") = "", py::arg("modules") = "",
      py::arg("sources") = std::vector<std::string>(), py::arg("serial_number") = "SIM00001",
      py::arg("latencies") = std::vector<std::string>(), py::arg("numbered_readings") = false,
      py::arg("information_box") = py::none(), py::arg("interleaved") = false,
      py::arg("observing") = false, py::arg("trace") = "", py::arg("record") = "",
      "simulated_host(*, virtual_time=False, address='', drive_c='', modules='', sources=[], "
      "serial_number='SIM00001', latencies=[], numbered_readings=False, information_box=None, "
      "interleaved=False, observing=False, trace='', record='')\n--\n\n"
      "A bench with one simulated instrument, behind VISA, VISA COM and COM3.\n\n"
      "virtual_time: the clock jumps instead of waiting\n"
      "modules: what is in the slots, as in '2021L,2021R,0,2040'\n"
      "sources: what hangs on a channel, each 'CHANNEL=VOLTS,OHMS[,AMPEREHOURS]'\n"
      "latencies: how late answers come, each 'MS', 'A-B' or ':FETC:VOLT?=MS'\n"
      "numbered_readings: readings tell what was asked\n"
      "The others are those of system_host.");
  module.def("replayed_host", &replayedHost, py::arg("file"), py::kw_only(),
             py::arg("virtual_time") = false, py::arg("address") = "", py::arg("drive_c") = "",
             py::arg("mistaken") = py::none(), py::arg("information_box") = py::none(),
             py::arg("interleaved") = false, py::arg("observing") = false, py::arg("trace") = "",
             "replayed_host(file, *, virtual_time=False, address='', drive_c='', mistaken=None, "
             "information_box=None, interleaved=False, observing=False, trace='')\n--\n\n"
             "The instruments of a recording in the place of real ones, each as it answered.\n\n"
             "virtual_time: the clock jumps instead of waiting\n"
             "mistaken: is called with what was asked that the recording has not; None prints it\n"
             "The others are those of system_host.");
}

}  // namespace lumopython
