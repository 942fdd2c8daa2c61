#include "recordings/script_of_answers.hpp"

#include <algorithm>

namespace lumodevice::recordings {

namespace {

std::string_view withoutLineEnd(std::string_view command) {
  while (!command.empty() && (command.back() == '\n' || command.back() == '\r')) {
    command.remove_suffix(1);
  }
  return command;
}

bool isQuery(std::string_view command) {
  return command.find('?') != std::string_view::npos;
}

}  // namespace

void ScriptOfAnswers::add(const Entry& entry) {
  serial_ = entry.serial;
  switch (entry.act) {
    case WireAct::Open:
      openings_.push_back({.entry = &entry, .pieces = {}});
      inStep_ = false;
      break;
    case WireAct::Sent:
      steps_.push_back({.sent = &entry, .pieces = {}, .used = false});
      inStep_ = true;
      break;
    case WireAct::Received:
    case WireAct::Dropped: {
      if (!inStep_ && openings_.empty()) {
        break;  // of a link that was open before the recording began
      }
      auto& pieces = inStep_ ? steps_.back().pieces : openings_.back().pieces;
      const Entry& since = inStep_ ? *steps_.back().sent : *openings_.back().entry;
      // Of a read that timed out nothing is left but the time that passed.
      if (entry.status != io::VI_ERROR_TMO || !entry.bytes.empty()) {
        pieces.push_back({.after = entry.end - since.begin,
                          .bytes = entry.bytes,
                          .status = entry.status,
                          .fault = entry.fault});
      }
      break;
    }
    case WireAct::Attribute:
      attributes_.insert_or_assign(entry.number, &entry);
      break;
    case WireAct::Setting:
      settings_.insert_or_assign(entry.number, entry.status);
      break;
    default:
      break;
  }
}

const ScriptOfAnswers::Opening& ScriptOfAnswers::open() {
  repeats_ = 0;
  if (nextOpening_ == openings_.size() && openings_.back().entry->status >= 0 &&
      openings_.back().entry->fault.empty()) {
    nextOpening_ = 0;
    next_ = 0;
    for (Step& step : steps_) {
      step.used = false;
    }
  }
  const std::size_t taken = std::min(nextOpening_, openings_.size() - 1);
  nextOpening_ = std::min(taken + 1, openings_.size());
  return openings_[taken];
}

std::optional<std::size_t> ScriptOfAnswers::find(std::string_view command) {
  const std::string_view wanted = withoutLineEnd(command);
  const auto matches = [&](std::size_t step) {
    return withoutLineEnd(steps_[step].sent->bytes) == wanted;
  };
  const std::size_t end = std::min(steps_.size(), next_ + kFarthest);
  for (std::size_t step = next_; step < end; ++step) {
    if (!steps_[step].used && matches(step)) {
      next_ = step + 1;
      repeats_ = 0;
      return step;
    }
  }
  const std::size_t begin = next_ - std::min(next_, kFarthest);
  for (std::size_t step = next_; step-- > begin;) {
    if (!steps_[step].used && matches(step)) {
      repeats_ = 0;
      return step;
    }
  }
  const bool over = next_ >= steps_.size();
  if (over || !isQuery(command) || repeats_ >= kMostRepeats) {
    return std::nullopt;
  }
  for (std::size_t step = next_; step-- > 0;) {
    if (matches(step)) {
      ++repeats_;
      return step;
    }
  }
  return std::nullopt;
}

const ScriptOfAnswers::Step* ScriptOfAnswers::take(std::string_view command) {
  const auto found = find(command);
  if (!found) {
    return nullptr;
  }
  steps_[*found].used = true;
  return &steps_[*found];
}

const Entry* ScriptOfAnswers::expected() const {
  return next_ < steps_.size() ? steps_[next_].sent : nullptr;
}

bool ScriptOfAnswers::mayBegin(std::string_view bytes) const {
  const auto first = steps_.begin() + static_cast<std::ptrdiff_t>(next_);
  return std::any_of(first, steps_.end(), [&](const Step& step) {
    return step.sent->bytes.size() > bytes.size() && step.sent->bytes.starts_with(bytes);
  });
}

const Entry* ScriptOfAnswers::attribute(std::uint32_t number) const {
  const auto found = attributes_.find(number);
  return found == attributes_.end() ? nullptr : found->second;
}

std::int32_t ScriptOfAnswers::settingStatus(std::uint32_t number) const {
  const auto found = settings_.find(number);
  return found == settings_.end() ? 0 : found->second;
}

}  // namespace lumodevice::recordings
