#include "hosts/zanpanel/recording/recorder.hpp"

#include "hosts/zanpanel/recording/panel_head.hpp"

namespace zanpanel {

namespace {

std::string_view nameOf(Mark::Kind kind) {
  switch (kind) {
    case Mark::Kind::Note:
      return "mark";
    case Mark::Kind::LoadOn:
      return "load on";
    case Mark::Kind::LoadOff:
      return "load off";
    case Mark::Kind::Trip:
      return "trip";
    case Mark::Kind::LinkLost:
      return "link lost";
    case Mark::Kind::LinkBack:
      return "link back";
    case Mark::Kind::Stop:
      break;
  }
  return "stop";
}

std::string withoutLineEnd(std::string text) {
  while (!text.empty() && (text.back() == '\r' || text.back() == '\n')) {
    text.pop_back();
  }
  return text;
}

}  // namespace

Recorder::Recorder(lumodevice::ZANCtrl& load, Monitor& monitor,
                   const lumodevice::io::WallClock& wallClock)
    : load_(load), monitor_(monitor), wallClock_(wallClock) {
  reading_ = monitor_.readings.observe([this](const lumodevice::Reading& reading) {
    if (!recording()) {
      return;
    }
    const auto now = wallClock_.now();
    // What is complete, or cut short, is of the time and the channel at which it began.
    if (const auto row = row_.take(reading.query, reading.answer)) {
      if (!rowBegun_) {
        rowTime_ = now;
        rowChannel_ = monitor_.channel();
      }
      writeRow(*row);
      rowBegun_ = false;
    }
    if (!rowBegun_ && row_.begun()) {
      rowBegun_ = true;
      rowTime_ = now;
      rowChannel_ = monitor_.channel();
    }
  });
  marking_ = monitor_.marks.observe([this](const Mark& mark) {
    write([&] {
      recording_->event(wallClock_.now(), monitor_.channel(), nameOf(mark.kind), mark.text);
    });
  });
  changing_ = monitor_.channelChanged.observe([this] {
    if (const auto row = row_.cut(); row && recording()) {
      writeRow(*row);
    }
    rowBegun_ = false;
  });
}

void Recorder::start(const std::filesystem::path& file) {
  stop();
  Head head{{"Instrument", withoutLineEnd(load_.IDN())}, {"Channel", monitor_.channel()}};
  for (auto& setting : settingsOf(load_.surface())) {
    head.push_back(std::move(setting));
  }
  recording_ = std::make_unique<CsvRecording>(file, head);
  file_ = file;
  rows_ = 0;
  (void)row_.cut();
  rowBegun_ = false;
  if (load_.isConnected() && !load_.AutoQuery()) {
    load_.AutoQuery(true);
  }
}

void Recorder::stop() {
  if (recording()) {
    if (const auto row = row_.cut()) {
      writeRow(*row);
    }
    rowBegun_ = false;
    rows_ = rows();
    recording_.reset();
  }
}

void Recorder::note(const std::string& text) {
  monitor_.mark(Mark::Kind::Note, text);
}

void Recorder::writeRow(const Row& row) {
  write([&] {
    const Counters& counters = monitor_.records().at(rowChannel_).counters;
    recording_->row(rowTime_, rowChannel_, row, counters.ampereHours(), counters.wattHours());
  });
}

template <typename Write>
void Recorder::write(Write write) {
  if (!recording()) {
    return;
  }
  try {
    write();
  } catch (const RecordingFault& fault) {
    rows_ = recording_->rows();
    recording_.reset();
    failed.tell(fault.what());
  }
}

}  // namespace zanpanel
