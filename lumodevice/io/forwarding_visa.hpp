#pragma once

#include "lumodevice/export.hpp"
#include "lumodevice/io/visa.hpp"

namespace lumodevice::io {

/// A VISA layer that hands every call on to another one. A class made from it overrides the calls
/// that it wants to see.
///
///     class Counting : public io::ForwardingVisa {
///      public:
///       explicit Counting(io::Visa& below) : below_(below) {}
///       ViStatus viClose(ViObject object) override {
///         ++closed;
///         return ForwardingVisa::viClose(object);
///       }
///       int closed = 0;
///
///      protected:
///       io::Visa& target() override { return below_; }
///
///      private:
///       io::Visa& below_;
///     };
class LUMODEVICE_API ForwardingVisa : public Visa {
 public:
  // For the signatures of classes made from it elsewhere.
  using ViStatus = io::ViStatus;
  using ViObject = io::ViObject;
  using ViSession = io::ViSession;
  using ViFindList = io::ViFindList;
  using ViAttr = io::ViAttr;

  ViStatus viOpenDefaultRM(ViSession& resourceManager) override {
    return target().viOpenDefaultRM(resourceManager);
  }
  ViStatus viFindRsrc(ViSession resourceManager, const std::string& expression,
                      ViFindList& findList, std::uint32_t& count,
                      std::string& descriptor) override {
    return target().viFindRsrc(resourceManager, expression, findList, count, descriptor);
  }
  ViStatus viFindNext(ViFindList findList, std::string& descriptor) override {
    return target().viFindNext(findList, descriptor);
  }
  ViStatus viOpen(ViSession resourceManager, const std::string& descriptor,
                  std::uint32_t accessMode, std::uint32_t openTimeout,
                  ViSession& instrument) override {
    return target().viOpen(resourceManager, descriptor, accessMode, openTimeout, instrument);
  }
  ViStatus viClose(ViObject object) override { return target().viClose(object); }
  ViStatus viGetAttribute(ViObject object, ViAttr attribute, std::string& value) override {
    return target().viGetAttribute(object, attribute, value);
  }
  ViStatus viSetAttribute(ViObject object, ViAttr attribute, std::uint32_t value) override {
    return target().viSetAttribute(object, attribute, value);
  }
  ViStatus viRead(ViSession instrument, std::span<char> buffer, std::uint32_t& count) override {
    return target().viRead(instrument, buffer, count);
  }
  ViStatus viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) override {
    return target().viWrite(instrument, data, count);
  }
  std::string discardUnread(ViSession instrument) override {
    return target().discardUnread(instrument);
  }

 protected:
  /// Where the calls go.
  [[nodiscard]] virtual Visa& target() = 0;
};

}  // namespace lumodevice::io
