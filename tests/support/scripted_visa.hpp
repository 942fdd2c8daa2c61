#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "lumodevice/io/visa.hpp"
#include "lumodevice/toolkit/event_loop.hpp"
#include "tests/support/instrument.hpp"
#include "tests/support/script.hpp"

namespace lumodevice::support {

/// What a search finds.
struct VisaResource {
  std::string descriptor;
  std::string interfaceName;
  /// Null for a resource that never answers.
  Instrument* instrument = nullptr;
};

/// A VISA library that answers from a script. Handles count from 1 in the order of their making, as
/// the journal shows them: "viOpen 1 GPIB0::7::INSTR 1 1" opens object 3 when the search was object
/// 2. A call that fails leaves its results as they were.
///
/// An answer is one message: a read brings what fits of it, once it is all there or the session's
/// time-out is over; a write drops what was not read of the one before.
class ScriptedVisa : public io::Visa {
 public:
  ScriptedVisa(Script& script, toolkit::EventLoop& clock) : script_(script), clock_(clock) {}

  /// What every search finds, whatever its expression.
  std::vector<VisaResource> resources;
  /// The number of matches that a search claims, when it is not the true one.
  std::optional<std::uint32_t> claimedCount;

  /// The handles not closed yet, in the order of their making, each after a blank.
  [[nodiscard]] std::string openHandles() const;

  io::ViStatus viOpenDefaultRM(io::ViSession& resourceManager) override;
  io::ViStatus viFindRsrc(io::ViSession resourceManager, const std::string& expression,
                          io::ViFindList& findList, std::uint32_t& count,
                          std::string& descriptor) override;
  io::ViStatus viFindNext(io::ViFindList findList, std::string& descriptor) override;
  io::ViStatus viOpen(io::ViSession resourceManager, const std::string& descriptor,
                      std::uint32_t accessMode, std::uint32_t openTimeout,
                      io::ViSession& instrument) override;
  io::ViStatus viClose(io::ViObject object) override;
  io::ViStatus viGetAttribute(io::ViObject object, io::ViAttr attribute,
                              std::string& value) override;
  io::ViStatus viSetAttribute(io::ViObject object, io::ViAttr attribute,
                              std::uint32_t value) override;
  io::ViStatus viRead(io::ViSession instrument, std::span<char> buffer,
                      std::uint32_t& count) override;
  io::ViStatus viWrite(io::ViSession instrument, std::string_view data,
                       std::uint32_t& count) override;

 private:
  /// A resource manager has no use for the members, a find list for `found`, a session for the
  /// rest.
  struct Object {
    std::size_t found = 0;
    const VisaResource* resource = nullptr;
    Inbox inbox = {};
    std::optional<io::ViStatus> readStatus = {};
    std::uint32_t timeout = 2000;
  };

  io::ViObject make(Object object);
  [[nodiscard]] Object* session(io::ViObject handle);

  Script& script_;
  toolkit::EventLoop& clock_;
  std::map<io::ViObject, Object> objects_;
  io::ViObject lastHandle_ = 0;
};

}  // namespace lumodevice::support
