#include "tests/matrix/cell.hpp"

#include <array>
#include <chrono>
#include <map>
#include <set>
#include <utility>

#include "tests/slow/read_outs.hpp"

namespace lumodevice::matrix {

namespace {

using slow::kReadOuts;
using support::Over;
using Bytes = support::MemoryDrive::Bytes;
using Files = std::map<std::string, Bytes, std::less<>>;

constexpr Exchanges kExchanges[] = {Exchanges::InTurn, Exchanges::Interleaved};
constexpr std::size_t kQueries = std::size(kFurtherQueries);

/// What an operation does is over by then.
constexpr std::chrono::seconds kAfterwards{1};

/// Deleted before the instrument is asked: that they are there tells a host that they came.
const std::set<std::string, std::less<>> kMayBeGone = {"c:\\temp\\zanseq.a", "c:\\temp\\zanprog.b"};

constexpr std::string_view kDump = "c:\\temp\\dispoutd.dat";

/// What the operation leaves on the drive where nothing goes wrong.
const Files& wholeFiles(std::size_t operation, Over link) {
  static std::map<std::pair<std::size_t, Over>, Files> known;
  const auto [files, isNew] = known.try_emplace({operation, link});
  if (isNew) {
    MatrixBench bench(link, Exchanges::Interleaved);
    slow::operations()[operation].run(bench);
    bench.loop.runFor(kAfterwards);
    files->second = bench.drive.files();
  }
  return files->second;
}

/// A picture differs from one capture to the next, its size does not.
bool isWhole(const Bytes& file, const Bytes& whole) {
  constexpr std::size_t kPicture = 100'000;
  return file == whole || (file.size() == whole.size() && file.size() > kPicture);
}

class Run {
 public:
  explicit Run(const Cell& cell)
      : fault_(faults()[cell.fault]),
        operation_(slow::operations()[cell.operation]),
        whole_(wholeFiles(cell.operation, cell.link)),
        inTurn_(cell.exchanges == Exchanges::InTurn),
        isRawDump_(cell.link == Over::Serial && !inTurn_),
        bench_(cell.link, cell.exchanges),
        former_(bench_.drive.files()),
        objects_(bench_.openVisaObjects()) {
    for (std::size_t i = 0; i < kReadOuts.size(); ++i) {
      shown_.at(i) = slow::shownIn(bench_, kReadOuts.at(i));
    }
  }

  Outcome outcome() {
    fault_.begin(bench_);
    operation_.run(bench_);
    bench_.loop.runFor(kAfterwards);
    expect(!bench_.zan().isConnected() || bench_.linkIsOpen(), "connected without a link");
    expectReadOuts();
    expectFiles();
    if (fault_.stays) {
      expectSilence();
    }
    bench_.heal();
    if (inTurn_ && !fault_.damages && !operation_.pastThePanel && bench_.zan().isConnected()) {
      expectTruth();
    }
    if (!fault_.stays && bench_.zan().isConnected()) {
      outcome_.connected = true;
      outcome_.ownAnswers = ownAnswers();
      expect(!inTurn_ || outcome_.ownAnswers == kQueries, "another query's answer");
    }
    expectReconnect();
    return outcome_;
  }

 private:
  void expect(bool held, const std::string& what) {
    if (!held) {
      outcome_.wrong += (outcome_.wrong.empty() ? "" : "; ") + what;
    }
  }

  std::size_t ownAnswers() {
    std::size_t own = 0;
    for (const char* query : kFurtherQueries) {
      own += bench_.getsItsOwnAnswer(query) ? 1U : 0U;
    }
    return own;
  }

  /// Nothing answers; interleaved, what stands there still does.
  void expectSilence() {
    for (const char* query : kFurtherQueries) {
      const std::string before = inTurn_ ? "" : bench_.zan().ResultStr();
      const std::string answer = bench_.ask(query);
      expect(answer.empty() || answer == before, "an answer without a link");
    }
  }

  /// Each is what it was, marked as not known, or an answer to its own query.
  void expectReadOuts() {
    if (!inTurn_ || fault_.damages) {
      return;
    }
    for (std::size_t i = 0; i < kReadOuts.size(); ++i) {
      const std::string shown = slow::shownIn(bench_, kReadOuts.at(i));
      expect(
          shown.empty() || shown == shown_.at(i) || bench_.belongsTo(shown, kReadOuts.at(i).query),
          std::string(kReadOuts.at(i).box) + " of another query");
    }
  }

  /// Each is the former one or whole, and there is no other.
  void expectFiles() {
    for (const auto& [path, content] : former_) {
      const auto file = bench_.drive.files().find(path);
      const auto whole = whole_.find(path);
      if (path == kDump && isRawDump_) {
        continue;
      }
      expect(file == bench_.drive.files().end()
                 ? kMayBeGone.contains(path)
                 : file->second == content ||
                       (whole != whole_.end() && isWhole(file->second, whole->second)),
             path + " is damaged");
    }
    for (const auto& [path, content] : bench_.drive.files()) {
      const auto whole = whole_.find(path);
      expect(former_.contains(path) || (whole != whole_.end() && isWhole(content, whole->second)),
             path + " is left over");
    }
  }

  void expectTruth() {
    const std::string untruths = bench_.untruths();
    expect(untruths.empty(), "shown: " + untruths);
  }

  /// The link is in order, and so is everything else then.
  void expectReconnect() {
    bench_.chooseLink();
    bench_.connect();
    expect(bench_.zan().isConnected(), "no connect afterwards");
    expectTruth();
    expect(bench_.isReadBack(), "not read back");
    expect(ownAnswers() == kQueries, "another query's answer after the connect");
    expect(bench_.openVisaObjects() <= objects_, "a session is left over");
    bench_.destroy();
    expect(bench_.openVisaObjects() == 0, "a session outlives the component");
  }

  const Fault& fault_;
  const slow::Operation& operation_;
  const Files& whole_;
  bool inTurn_;
  /// Interleaved, a dump over the serial port is saved as it comes, whatever that is.
  bool isRawDump_;
  MatrixBench bench_;
  Files former_;
  std::size_t objects_;
  std::array<std::string, kReadOuts.size()> shown_;
  Outcome outcome_;
};

}  // namespace

std::string Cell::name() const {
  return std::string(slow::operations()[operation].name) + ", " + faults()[fault].name + ", " +
         std::string(support::linkName(link)) + ", " +
         (exchanges == Exchanges::InTurn ? "in turn" : "interleaved");
}

std::vector<Cell> allCells() {
  std::vector<Cell> cells;
  for (std::size_t operation = 0; operation < slow::operations().size(); ++operation) {
    for (std::size_t fault = 0; fault < faults().size(); ++fault) {
      for (const Over link : support::kLinks) {
        for (const Exchanges exchanges : kExchanges) {
          cells.push_back({operation, fault, link, exchanges});
        }
      }
    }
  }
  return cells;
}

std::vector<Cell> shareOfCells() {
  constexpr std::size_t kKinds = std::size(support::kLinks) * std::size(kExchanges);
  const std::vector<Cell> all = allCells();
  std::vector<Cell> share;
  for (std::size_t pair = 0; pair * kKinds < all.size(); ++pair) {
    // A step further with each fault, and with each operation from another beginning.
    const std::size_t kind = (pair % faults().size() + pair / faults().size()) % kKinds;
    share.push_back(all[pair * kKinds + kind]);
  }
  return share;
}

Outcome run(const Cell& cell) {
  return Run(cell).outcome();
}

}  // namespace lumodevice::matrix
