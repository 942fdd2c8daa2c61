#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include "lumodevice/export.hpp"

namespace lumodevice::toolkit {

/// Keeps an observer where it observes: let go, by its end or by end(), it is told no more. May
/// outlive what is observed.
///
///     Subscription watching = button.click.observe([] { std::cout << "clicked\n"; });
///     loop.runFor(std::chrono::minutes(1));
///     watching.end();
class LUMODEVICE_API Subscription {
 public:
  /// Of nothing.
  Subscription() = default;
  explicit Subscription(std::shared_ptr<void> observer) : observer_(std::move(observer)) {}
  void end() { observer_.reset(); }

  Subscription(Subscription&&) noexcept = default;
  Subscription& operator=(Subscription&&) noexcept = default;
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;
  ~Subscription() = default;

 private:
  std::shared_ptr<void> observer_;
};

/// Steps that are all taken, whatever the ones before threw; the first exception goes on at the
/// end.
class LUMODEVICE_API EveryStep {
 public:
  template <typename Step>
  void take(Step&& step) {
    try {
      std::forward<Step>(step)();
    } catch (...) {
      threw(std::current_exception());
    }
  }
  void threw(std::exception_ptr exception) {
    if (!thrown_) {
      thrown_ = std::move(exception);
    }
  }
  void finish() const {
    if (thrown_) {
      std::rethrow_exception(thrown_);
    }
  }

 private:
  std::exception_ptr thrown_;
};

/// Who observes one thing, in the order in which they came. An observer may end its own
/// subscription and those of others while it is told, subscribe new ones (which are told from the
/// next time on), and throw: the others are told all the same, then the exception goes on.
template <typename... Arguments>
class Observers {
 public:
  /// What is handed on can be looked at, not changed.
  template <typename Argument>
  using Observed = std::conditional_t<std::is_lvalue_reference_v<Argument>,
                                      const std::remove_reference_t<Argument>&, Argument>;
  using Observer = std::function<void(Observed<Arguments>...)>;
  /// What a subscription keeps. An observer that is being told is held by itself, so that one which
  /// has ended its subscription meanwhile is not told again from within.
  using Kept = std::shared_ptr<const Observer>;
  using Present = std::vector<std::weak_ptr<const Kept>>;

  [[nodiscard]] Subscription observe(Observer observer) {
    std::erase_if(observers_, [](const auto& other) { return other.expired(); });
    auto kept = std::make_shared<Kept>(std::make_shared<Observer>(std::move(observer)));
    observers_.push_back(kept);
    return Subscription(std::move(kept));
  }

  /// Those who are told of what happens now.
  [[nodiscard]] const Present& present() const { return observers_; }

  void tell(Arguments... arguments) const {
    EveryStep steps;
    const Present present = observers_;
    for (const auto& observer : present) {
      tell(observer, steps, arguments...);
    }
    steps.finish();
  }

  /// One of them, unless it has gone meanwhile.
  static void tell(const std::weak_ptr<const Kept>& observer, EveryStep& steps,
                   Observed<Arguments>... arguments) {
    auto subscribed = observer.lock();
    const Kept told = subscribed ? *subscribed : nullptr;
    subscribed.reset();
    if (told) {
      steps.take([&] { (*told)(arguments...); });
    }
  }

 private:
  Present observers_;
};

}  // namespace lumodevice::toolkit
