#pragma once

#include <stdexcept>
#include <string>

#include "lumodevice/export.hpp"

namespace lumodevice {

/// A failure that the operations of the component know how to live with: a number that does not
/// fit, a property value that a control refuses, a link or a drive that fails. The subsystems catch
/// exactly this type (or one of its kinds); anything else is a bug and is never swallowed.
///
///     try {
///       host.drive.remove("C:\\temp\\old.b");
///     } catch (const Fault& fault) {
///       std::cerr << fault.number() << ": " << fault.what() << '\n';
///     }
class LUMODEVICE_API Fault : public std::runtime_error {
 public:
  /// `number` identifies the failure within its kind; each kind says whose numbering it uses.
  Fault(int number, const std::string& what) : std::runtime_error(what), number_(number) {}

  [[nodiscard]] int number() const noexcept { return number_; }

 private:
  int number_;
};

/// Runs a step of an operation that goes on whatever becomes of the step; true when it did not
/// fail.
template <typename Step>
bool attempt(Step&& step) {
  try {
    step();
    return true;
  } catch (const Fault&) {
    return false;
  }
}

}  // namespace lumodevice
