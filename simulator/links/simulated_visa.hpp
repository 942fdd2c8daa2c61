#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "lumodevice/io/visa.hpp"
#include "simulator/links/visa_bench.hpp"

namespace zansim {

/// A VISA library over a bench of simulated resources, as one program holds it. An exclusive lock
/// belongs to the session that was opened with it and keeps all others out, those of the same
/// program too: they may be open, but their I/O is refused.
class SimulatedVisa : public lumodevice::io::Visa {
 public:
  using ViStatus = lumodevice::io::ViStatus;
  using ViObject = lumodevice::io::ViObject;
  using ViSession = lumodevice::io::ViSession;
  using ViFindList = lumodevice::io::ViFindList;
  using ViAttr = lumodevice::io::ViAttr;

  /// The bench must outlive this object.
  explicit SimulatedVisa(VisaBench& bench) : bench_(bench) {}
  ~SimulatedVisa() override;
  SimulatedVisa(const SimulatedVisa&) = delete;
  SimulatedVisa& operator=(const SimulatedVisa&) = delete;

  ViStatus viOpenDefaultRM(ViSession& resourceManager) override;
  ViStatus viFindRsrc(ViSession resourceManager, const std::string& expression,
                      ViFindList& findList, std::uint32_t& count, std::string& descriptor) override;
  ViStatus viFindNext(ViFindList findList, std::string& descriptor) override;
  ViStatus viOpen(ViSession resourceManager, const std::string& descriptor,
                  std::uint32_t accessMode, std::uint32_t openTimeout,
                  ViSession& instrument) override;
  ViStatus viClose(ViObject handle) override;
  ViStatus viGetAttribute(ViObject handle, ViAttr attribute, std::string& value) override;
  ViStatus viSetAttribute(ViObject handle, ViAttr attribute, std::uint32_t value) override;
  ViStatus viRead(ViSession instrument, std::span<char> buffer, std::uint32_t& count) override;
  ViStatus viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) override;
  /// What has arrived and was not read, message or not. The session that may not read has nothing.
  std::string discardUnread(ViSession instrument) override;

  /// Device clear: both sides forget what was not read to its end.
  ViStatus viClear(ViSession instrument);
  /// The status byte by a serial poll: an answer waits (16), the error queue has entries (4).
  ViStatus viReadSTB(ViSession instrument, std::uint16_t& status);
  /// An exclusive lock, as viOpen takes one; each needs an unlock of its own.
  ViStatus viLock(ViSession instrument, std::uint32_t milliseconds);
  ViStatus viUnlock(ViSession instrument);
  /// What a name says, whether there is such a resource or not.
  ViStatus viParseRsrc(ViSession resourceManager, std::string_view name, VisaName& parsed) const;
  /// Whether it is the handle of an open session.
  [[nodiscard]] bool isSession(ViObject handle) const;

  /// A numeric attribute and its width in bytes (1, 2 or 4).
  ViStatus numericAttribute(ViObject handle, ViAttr attribute, std::uint32_t& value,
                            int& width) const;

  /// Sessions, find lists and resource managers not closed yet.
  [[nodiscard]] std::size_t openObjects() const { return objects_.size(); }

 private:
  enum class Kind : std::uint8_t { ResourceManager, FindList, Session };
  struct Object {
    Kind kind;
    ViObject parent = 0;
    std::vector<std::string> found{};  ///< by a find list, the last first
    VisaResource* resource = nullptr;
    std::map<ViAttr, std::uint32_t> attributes{};  ///< those that were set
    int locks = 0;                                 ///< that the session has taken
  };

  [[nodiscard]] const Object* object(ViObject handle, Kind kind) const;
  ViObject keep(Object object);
  void release(ViObject handle, const Object& object) const;
  /// Waits for the lock of the resource; false when another session kept it.
  bool awaitLock(const VisaResource& resource, std::uint32_t milliseconds);
  [[nodiscard]] ViStatus refusal(ViSession handle) const;
  [[nodiscard]] static std::uint32_t attribute(const Object& session, ViAttr attribute);
  [[nodiscard]] static bool readText(const Object& session, ViAttr attribute, std::string& value);
  [[nodiscard]] static std::optional<char> stopCharacter(const Object& session);
  ViStatus readUntil(Connection& connection, const Object& session, std::span<char> buffer,
                     std::uint32_t& count);
  void waitInVain(const Object& session);

  VisaBench& bench_;
  std::map<ViObject, Object> objects_;
  ViObject lastHandle_ = 0;
};

}  // namespace zansim
