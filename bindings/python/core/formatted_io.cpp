#include "bindings/python/core/formatted_io.hpp"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "bindings/python/core/text.hpp"

namespace lumopython {

namespace py = pybind11;
using lumodevice::io::FormattedIO488;

void bindFormattedIO(py::module_& module) {
  py::class_<PyFormattedIO>(
      module, "FormattedIO488",
      "The formatted-I/O object of a VISA COM link. Its members raise Fault for what the link does "
      "not do.")
      .def(
          "WriteString",
          [](const PyFormattedIO& self, const py::str& data, bool flushAndEnd) {
            const std::string text = fromPython(data);
            self.use([&](FormattedIO488& device) { device.WriteString(text, flushAndEnd); });
          },
          py::arg("data"), py::arg("flush_and_end") = true,
          "WriteString($self, data, flush_and_end=True)\n--\n\nBuffers the text, and sends what is "
          "buffered; no terminator is added.")
      .def(
          "ReadString",
          [](const PyFormattedIO& self) {
            return toPython(self.use([](FormattedIO488& device) { return device.ReadString(); }));
          },
          "ReadString($self, /)\n--\n\nOne message, its terminator included.\n\nReturns: str")
      .def(
          "ReadIEEEBlock",
          [](const PyFormattedIO& self, bool seekToBlock, bool flushToEnd) {
            const auto block = self.use([&](FormattedIO488& device) {
              return device.ReadIEEEBlock(seekToBlock, flushToEnd);
            });
            return py::bytes(reinterpret_cast<const char*>(block.data()), block.size());
          },
          py::arg("seek_to_block") = false, py::arg("flush_to_end") = true,
          "ReadIEEEBlock($self, seek_to_block=False, flush_to_end=True)\n--\n\nThe data bytes of a "
          "definite-length block.\n\nReturns: bytes")
      .def(
          "WriteIEEEBlock",
          [](const PyFormattedIO& self, const py::str& command, const py::bytes& data,
             bool flushAndEnd) {
            const std::string header = fromPython(command);
            const std::string bytes(data);
            self.use([&](FormattedIO488& device) {
              device.WriteIEEEBlock(
                  header,
                  std::span(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()),
                  flushAndEnd);
            });
          },
          py::arg("command"), py::arg("data"), py::arg("flush_and_end") = true,
          "WriteIEEEBlock($self, command, data, flush_and_end=True)\n--\n\nThe command as it "
          "stands "
          "and the bytes as a definite-length block.")
      .def(
          "FlushWrite",
          [](const PyFormattedIO& self, bool sendEnd) {
            self.use([=](FormattedIO488& device) { device.FlushWrite(sendEnd); });
          },
          py::arg("send_end") = true,
          "FlushWrite($self, send_end=True)\n--\n\nSends what is buffered.");
}

}  // namespace lumopython
