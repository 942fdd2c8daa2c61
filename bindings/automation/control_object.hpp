#pragma once

#include <memory>
#include <new>
#include <unknwn.h>

#include "bindings/automation/automation.hpp"
#include "bindings/automation/class_info.hpp"
#include "bindings/automation/events.hpp"
#include "bindings/automation/failure.hpp"
#include "bindings/automation/in_place.hpp"
#include "bindings/automation/ole_control.hpp"
#include "bindings/automation/ole_in_place.hpp"
#include "bindings/automation/ole_object.hpp"
#include "bindings/automation/persistence.hpp"
#include "bindings/automation/quick_activate.hpp"
#include "bindings/automation/view_object.hpp"
#include "lumodevice/zan_ctrl.hpp"

namespace lumodevice::automation {

/// The control as other programs hold it: one component, and around it its interfaces, each a Part.
/// `faces` in control_object.cpp lists them; a new one is a member here and a row there.
///
/// It can be a part of another object, whose unknown then is the one of the whole; this class
/// itself is the inner unknown, which that object keeps.
class ControlObject final : public IUnknown {
 public:
  /// With one reference, that of `out`.
  static HRESULT create(IUnknown* outer, REFIID iid, void** out) noexcept;
  ControlObject(const ControlObject&) = delete;
  ControlObject& operator=(const ControlObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;

  [[nodiscard]] IUnknown& whole() { return *whole_; }

  /// Every entry from outside that may fail, wait or run code of others goes through here: no
  /// exception leaves it, and the object lives until it is over, whoever lets go of it meanwhile.
  template <typename Act>
  HRESULT entered(Act act) noexcept {
    const Entry entry(*this);
    try {
      return act();
    } catch (const ComFailure& failure) {
      return failure.result;
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    } catch (...) {
      // A callback of the host, or a view, has thrown: nothing that a member itself does.
      return E_UNEXPECTED;
    }
  }

  /// Made when it is first asked for, so that a container can set the properties before. Throws
  /// ComFailure(CO_E_OBJNOTCONNECTED) after end().
  [[nodiscard]] ZANCtrl& component();
  /// Whether it has been made and not ended.
  [[nodiscard]] bool hasComponent() const { return component_ != nullptr; }

  /// Its place on the form of a container.
  [[nodiscard]] InPlace& inPlace() { return inPlace_; }

  /// Ends the component for good, also in the midst of its waits: its panel goes, its links are
  /// closed, and the operation under way comes back to its caller with the empty value.
  void end();

  /// How the component shares its line, once it is made. Throws ComFailure(E_UNEXPECTED) when it is
  /// made already and has them otherwise.
  void setExchanges(Exchanges exchanges);
  [[nodiscard]] Exchanges exchanges() const { return exchanges_; }

 private:
  /// Keeps the object while a call is in it.
  class Entry {
   public:
    explicit Entry(ControlObject& object) : object_(object) { ++object_.entries_; }
    ~Entry();
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;

   private:
    ControlObject& object_;
  };
  struct Face;
  static const Face kFaces[];

  explicit ControlObject(IUnknown* outer);
  ~ControlObject();

  ULONG references_ = 1;
  int entries_ = 0;
  IUnknown* whole_;
  Exchanges exchanges_ = Exchanges::Interleaved;
  bool ended_ = false;
  std::unique_ptr<ZANCtrl> component_;

  Automation automation_{*this};
  ClassInfo classInfo_{*this};
  Events events_{*this};
  Persistence persistence_{*this};
  InPlace inPlace_{*this};
  OleObject oleObject_{*this};
  OleInPlace oleInPlace_{*this};
  OleControl oleControl_{*this};
  ViewObject viewObject_{*this};
  QuickActivation quickActivation_{*this};
};

}  // namespace lumodevice::automation
