// Two loads on sockets, watched once a second; one that vanishes is tried again at growing pauses.
//
//   reconnecting TCPIP0::192.168.1.7::5025::SOCKET TCPIP0::192.168.1.8::5025::SOCKET

#include <algorithm>
#include <chrono>
#include <iostream>
#include <string>

#include "lumodevice/system_host.hpp"
#include "lumodevice/zan_ctrl.hpp"

namespace {

using namespace lumodevice;
using namespace std::chrono_literals;

class Bench {
 public:
  Bench(std::string name, std::string address, toolkit::EventLoop& loop)
      : name_(std::move(name)),
        address_(std::move(address)),
        loop_(loop),
        load_(systemHost({.loop = &loop, .observing = true})) {}

  void watch() {
    if (load_.isConnected()) {
      load_.SendCmd(":FETC:VOLT?");
      const Failure failure = load_.failure();
      say(failure.kind == FailureKind::None ? load_.ResultStr() + " V" : failure.sentence);
    } else if (loop_.now() >= nextTry_) {
      const bool there = load_.reconnect() || (!met_ && load_.connectTo(address_));
      met_ = met_ || there;
      pause_ = there ? 1s : std::min(2 * pause_, 60s);
      nextTry_ = loop_.now() + pause_;
      say(there ? "connected" : load_.failure().sentence);
    }
  }

 private:
  void say(const std::string& what) { std::cout << name_ << ": " << what << std::endl; }

  std::string name_;
  std::string address_;
  toolkit::EventLoop& loop_;
  ZANCtrl load_;
  bool met_ = false;
  std::chrono::seconds pause_ = 1s;
  toolkit::EventLoop::Duration nextTry_{0};
  toolkit::Subscription lost_ =
      load_.observeLinkLost([this](const Failure& why) { say("lost, " + why.sentence); });
  toolkit::Subscription regained_ = load_.observeLinkRegained([this] { say("back"); });
};

}  // namespace

int main(int count, char** words) {
  if (count != 3) {
    std::cerr << "usage: reconnecting ADDRESS ADDRESS\n";
    return 2;
  }
  toolkit::RealTimeLoop loop;
  Bench left("left", words[1], loop);
  Bench right("right", words[2], loop);
  for (;; loop.runFor(1s)) {
    left.watch();
    right.watch();
  }
}
