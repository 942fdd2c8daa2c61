#include "recordings/replayed_links.hpp"

#include <algorithm>
#include <utility>

namespace lumodevice::recordings {

using namespace io;
using Duration = Clock::Duration;

// ---- bench

ReplayedBench::ReplayedBench(Recording recording, Clock& clock, Complaint complain)
    : recording_(std::move(recording)), clock_(clock), complain_(std::move(complain)) {
  if (recording_.beginningGone) {
    throw RecordingFault(recording_.files.front() +
                         ": the beginning of the recording is gone; there were more files than "
                         "were kept");
  }
  sort();
}

/// What belongs to whom. Links that were open when the recording began have no name, and no part.
void ReplayedBench::sort() {
  std::map<std::uint32_t, ScriptOfAnswers*> links;
  Search* lastSearch = nullptr;
  for (const Entry& entry : recording_.entries) {
    switch (entry.act) {
      case WireAct::Manager:
        managers_.push_back(entry.status);
        break;
      case WireAct::Find:
        lastSearch = &searches_[entry.name].emplace_back(Search{&entry, {}});
        if (entry.status >= VI_SUCCESS) {
          lastSearch->found.push_back(entry.bytes);
        }
        break;
      case WireAct::FindNext:
        if (lastSearch != nullptr && entry.status >= VI_SUCCESS) {
          lastSearch->found.push_back(entry.bytes);
        }
        break;
      case WireAct::Port:
        ports_.insert_or_assign(entry.name, static_cast<int>(entry.value));
        break;
      case WireAct::Open: {
        ScriptOfAnswers& script = scripts_[entry.name];
        script.add(entry);
        if (entry.link != 0) {
          links.insert_or_assign(entry.link, &script);
        }
        break;
      }
      default:
        if (const auto link = links.find(entry.link); link != links.end()) {
          link->second->add(entry);
        }
    }
  }
}

ScriptOfAnswers* ReplayedBench::scriptOf(std::string_view name) {
  const auto found = scripts_.find(name);
  return found == scripts_.end() ? nullptr : &found->second;
}

std::string ReplayedBench::busiest() const {
  const auto most =
      std::ranges::max_element(scripts_, {}, [](const auto& entry) { return entry.second.size(); });
  return most == scripts_.end() ? "" : most->first;
}

void ReplayedBench::complain(const ScriptOfAnswers* script, std::string_view came) {
  ++complaints_;
  const Entry* const next = script == nullptr ? nullptr : script->expected();
  std::string text;
  if (next != nullptr) {
    text = recording_.placeOf(*next) + ": expected " + inQuotes(next->bytes);
  } else if (script != nullptr) {
    text = recording_.files.back() + ": expected nothing more, the recording ends here";
  } else {
    text = recording_.files.back() + ": there is nothing of the kind";
  }
  complain_(text + ", came " + std::string(came));
}

const ReplayedBench::Search* ReplayedBench::search(const std::string& expression) {
  const auto found = searches_.find(expression);
  if (found == searches_.end()) {
    return nullptr;
  }
  std::deque<Search>& searches = found->second;
  if (searches.size() > 1) {
    std::rotate(searches.begin(), searches.begin() + 1, searches.end());
    return &searches.back();
  }
  return &searches.front();
}

std::int32_t ReplayedBench::managerStatus() {
  if (managers_.empty()) {
    return VI_ERROR_SYSTEM_ERROR;
  }
  const std::int32_t status = managers_.front();
  if (managers_.size() > 1) {
    managers_.pop_front();
  }
  return status;
}

int ReplayedBench::portNamed(std::string_view device) const {
  const auto found = ports_.find(device);
  return found == ports_.end() ? 0 : found->second;
}

// ---- what came over a link

const Entry& ReplayedAnswers::open() {
  const ScriptOfAnswers::Opening& opening = script_.open();
  const Duration begin = bench_.clock().now();
  bench_.clock().wait(opening.entry->end - opening.entry->begin);
  schedule(opening.pieces, begin);
  return *opening.entry;
}

const ScriptOfAnswers::Step* ReplayedAnswers::send(std::string_view command) {
  due_.clear();
  const ScriptOfAnswers::Step* const step = script_.take(command);
  if (step == nullptr) {
    bench_.complain(&script_, inQuotes(command));
    return nullptr;
  }
  const Duration begin = bench_.clock().now();
  bench_.clock().wait(step->sent->end - step->sent->begin);
  schedule(step->pieces, begin);
  return step;
}

void ReplayedAnswers::schedule(const std::vector<ScriptOfAnswers::Piece>& pieces, Duration begin) {
  for (const ScriptOfAnswers::Piece& piece : pieces) {
    due_.push_back({begin + piece.after, piece});
  }
}

// ---- VISA

ReplayedVisa::Session* ReplayedVisa::sessionOf(ViObject object) {
  const auto found = sessions_.find(object);
  return found == sessions_.end() ? nullptr : &found->second;
}

ViStatus ReplayedVisa::viOpenDefaultRM(ViSession& resourceManager) {
  const ViStatus status = bench_.managerStatus();
  if (status >= VI_SUCCESS) {
    resourceManager = ++last_;
    managers_.emplace(resourceManager, true);
  }
  return status;
}

ViStatus ReplayedVisa::viFindRsrc(ViSession resourceManager, const std::string& expression,
                                  ViFindList& findList, std::uint32_t& count,
                                  std::string& descriptor) {
  const ReplayedBench::Search* const search = bench_.search(expression);
  if (search == nullptr) {
    bench_.complain(nullptr, "a search for " + inQuotes(expression));
    return VI_ERROR_RSRC_NFOUND;
  }
  bench_.clock().wait(search->entry->end - search->entry->begin);
  if (search->entry->status < VI_SUCCESS || search->found.empty()) {
    return search->entry->status;
  }
  findList = ++last_;
  count = search->entry->value;
  descriptor = search->found.front();
  lists_.emplace(findList,
                 FindList{resourceManager, {search->found.begin() + 1, search->found.end()}});
  return search->entry->status;
}

ViStatus ReplayedVisa::viFindNext(ViFindList findList, std::string& descriptor) {
  const auto list = lists_.find(findList);
  if (list == lists_.end()) {
    return VI_ERROR_INV_OBJECT;
  }
  if (list->second.left.empty()) {
    return VI_ERROR_RSRC_NFOUND;
  }
  descriptor = list->second.left.front();
  list->second.left.pop_front();
  return VI_SUCCESS;
}

ViStatus ReplayedVisa::viOpen(ViSession resourceManager, const std::string& descriptor,
                              std::uint32_t /*accessMode*/, std::uint32_t /*openTimeout*/,
                              ViSession& instrument) {
  ScriptOfAnswers* const script = bench_.scriptOf(descriptor);
  if (script == nullptr || script->serial()) {
    bench_.complain(nullptr, "the opening of " + inQuotes(descriptor));
    return VI_ERROR_RSRC_NFOUND;
  }
  Session session{resourceManager, *script, {bench_, *script}};
  const ViStatus status = session.answers.open().status;
  if (status >= VI_SUCCESS) {
    instrument = ++last_;
    sessions_.emplace(instrument, std::move(session));
  }
  return status;
}

ViStatus ReplayedVisa::viClose(ViObject object) {
  if (object == 0) {
    return VI_WARN_NULL_OBJECT;
  }
  if (managers_.erase(object) > 0) {
    const auto ofManager = [&](const auto& entry) { return entry.second.manager == object; };
    std::erase_if(sessions_, ofManager);
    std::erase_if(lists_, ofManager);
    return VI_SUCCESS;
  }
  const bool known = sessions_.erase(object) + lists_.erase(object) > 0;
  return known ? VI_SUCCESS : VI_ERROR_INV_OBJECT;
}

ViStatus ReplayedVisa::viGetAttribute(ViObject object, ViAttr attribute, std::string& value) {
  const Session* const session = sessionOf(object);
  if (session == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  const Entry* const entry = session->script.attribute(attribute);
  if (entry == nullptr) {
    return VI_ERROR_NSUP_ATTR;
  }
  if (entry->status >= VI_SUCCESS) {
    value = entry->bytes;
  }
  return entry->status;
}

ViStatus ReplayedVisa::viSetAttribute(ViObject object, ViAttr attribute, std::uint32_t value) {
  Session* const session = sessionOf(object);
  if (session == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  if (attribute == VI_ATTR_TMO_VALUE && value != VI_TMO_INFINITE) {
    session->timeOut = std::chrono::milliseconds(value);
  }
  return session->script.settingStatus(attribute);
}

ViStatus ReplayedVisa::viRead(ViSession instrument, std::span<char> buffer, std::uint32_t& count) {
  count = 0;
  Session* const session = sessionOf(instrument);
  if (session == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  Clock& clock = bench_.clock();
  const Duration deadline = clock.now() + session->timeOut;
  while (count < buffer.size()) {
    ReplayedAnswers::Due* const next = session->answers.front();
    if (next == nullptr || next->at > clock.now()) {
      const Duration until = next == nullptr ? deadline : std::min(next->at, deadline);
      if (clock.now() >= deadline) {
        return VI_ERROR_TMO;
      }
      clock.wait(until - clock.now());
      continue;
    }
    std::string& bytes = next->piece.bytes;
    const std::size_t taken = bytes.copy(buffer.data() + count, buffer.size() - count);
    bytes.erase(0, taken);
    count += static_cast<std::uint32_t>(taken);
    if (!bytes.empty()) {
      break;
    }
    const ViStatus status = next->piece.status;
    session->answers.pop();
    if (status != VI_SUCCESS_MAX_CNT && status != VI_ERROR_TMO) {
      return status;
    }
  }
  return VI_SUCCESS_MAX_CNT;
}

ViStatus ReplayedVisa::viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) {
  count = 0;
  Session* const session = sessionOf(instrument);
  if (session == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  const ScriptOfAnswers::Step* const step = session->answers.send(data);
  const ViStatus status = step == nullptr ? VI_SUCCESS : step->sent->status;
  if (status >= VI_SUCCESS) {
    count = static_cast<std::uint32_t>(data.size());
  }
  return status;
}

std::string ReplayedVisa::discardUnread(ViSession instrument) {
  std::string unread;
  if (Session* const session = sessionOf(instrument)) {
    while (session->answers.front() != nullptr &&
           session->answers.front()->at <= bench_.clock().now()) {
      unread += session->answers.front()->piece.bytes;
      session->answers.pop();
    }
  }
  return unread;
}

// ---- serial

namespace {

class ReplayedLine : public SerialLine {
 public:
  ReplayedLine(ReplayedBench& bench, ReplayedAnswers answers)
      : bench_(bench), answers_(std::move(answers)) {}

  void configure(const SerialSettings& /*settings*/) override {}

  void write(std::string_view data) override {
    const ScriptOfAnswers::Step* const step = answers_.send(data);
    if (step != nullptr && step->sent->status != 0) {
      throw SerialFault(step->sent->status, step->sent->fault);
    }
  }

  void receive(std::string& queue) override {
    while (ReplayedAnswers::Due* const next = answers_.front()) {
      if (next->at > bench_.clock().now()) {
        return;
      }
      if (next->piece.status != 0) {
        // It stays: a line that is gone is gone at every look.
        throw SerialFault(next->piece.status, next->piece.fault);
      }
      queue += next->piece.bytes;
      answers_.pop();
    }
  }

 private:
  ReplayedBench& bench_;
  ReplayedAnswers answers_;
};

}  // namespace

std::unique_ptr<SerialLine> ReplayedSerialDevices::open(int port,
                                                        const SerialSettings& /*settings*/) {
  const std::string name = "COM" + std::to_string(port);
  ScriptOfAnswers* const script = bench_.scriptOf(name);
  if (script == nullptr) {
    throw SerialFault(kSerialInvalidPort, name + " is not in the recording");
  }
  ReplayedAnswers answers(bench_, *script);
  const Entry& entry = answers.open();
  if (entry.status != 0) {
    throw SerialFault(entry.status, entry.fault);
  }
  return std::make_unique<ReplayedLine>(bench_, std::move(answers));
}

}  // namespace lumodevice::recordings
