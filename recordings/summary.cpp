#include "recordings/summary.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>

namespace lumodevice::recordings {

namespace {

bool isError(const Entry& entry) {
  return entry.status < 0 ? entry.status != io::VI_ERROR_TMO : !entry.fault.empty();
}

/// Whether a message ends with what was received.
bool ends(const Entry& entry) {
  return entry.serial ? entry.bytes.find_first_of("\r\n") != std::string::npos
                      : entry.status == io::VI_SUCCESS || entry.status == io::VI_SUCCESS_TERM_CHAR;
}

class Sorter {
 public:
  explicit Sorter(Summary& summary) : summary_(summary) {}

  void take(const Entry& entry) {
    LinkSummary& link = linkOf(entry);
    if (isError(entry)) {
      link.errors.push_back(&entry);
    }
    switch (entry.act) {
      case WireAct::Open:
        link.openings += entry.link != 0 ? 1 : 0;
        whole_[entry.link] = true;
        break;
      case WireAct::Sent:
        link.bytesSent += entry.bytes.size();
        link.exchanges.push_back(
            {.sent = &entry, .query = entry.bytes.find('?') != std::string::npos});
        whole_[entry.link] = false;
        break;
      case WireAct::Received:
        link.bytesReceived += entry.bytes.size();
        answer(link, entry);
        break;
      default:
        break;
    }
  }

 private:
  /// What comes behind a whole answer belongs to nothing.
  void answer(LinkSummary& link, const Entry& entry) {
    bool& whole = whole_[entry.link];
    if (entry.bytes.empty() || link.exchanges.empty() || whole) {
      return;
    }
    Exchange& exchange = link.exchanges.back();
    exchange.answered = entry.end;
    exchange.bytesReceived += entry.bytes.size();
    whole = ends(entry);
  }

  LinkSummary& linkOf(const Entry& entry) {
    std::string name = entry.act == WireAct::Open ? entry.name : names_[entry.link];
    if (entry.act == WireAct::Open && entry.link != 0) {
      names_.insert_or_assign(entry.link, entry.name);
    }
    if (name.empty()) {
      name = entry.link == 0 ? "(the search)" : "(link " + std::to_string(entry.link) + ")";
    }
    const auto known = std::ranges::find(summary_.links, name, &LinkSummary::name);
    if (known != summary_.links.end()) {
      return *known;
    }
    summary_.links.push_back({});
    summary_.links.back().name = name;
    return summary_.links.back();
  }

  Summary& summary_;
  std::map<std::uint32_t, std::string> names_;
  std::map<std::uint32_t, bool> whole_;
};

constexpr int kWidth = 1400;
constexpr int kLeft = 20;
constexpr int kTop = 50;
constexpr int kLane = 70;
constexpr int kBar = 26;
constexpr int kTicks = 10;

std::string xml(std::string_view text) {
  std::string out;
  for (const char c : text) {
    out += c == '&'   ? "&amp;"
           : c == '<' ? "&lt;"
           : c == '>' ? "&gt;"
           : c == '"' ? "&quot;"
                      : std::string{c};
  }
  return out;
}

std::string seconds(WireEvent::Duration time) {
  std::array<char, 40> text{};
  (void)std::snprintf(text.data(), text.size(), "%.3f s",
                      std::chrono::duration<double>(time).count());
  return text.data();
}

/// One stroke of a lane: all that falls on the same columns, drawn as the worst of it.
struct Stroke {
  int begin;
  int end;
  std::size_t exchanges;
  const Exchange* worst;
};

class Drawing {
 public:
  Drawing(const Recording& recording, const Summary& summary)
      : recording_(recording), summary_(summary) {}

  std::string draw() {
    const int height = kTop + kLane * static_cast<int>(summary_.links.size()) + 20;
    out_ = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " +
           std::to_string(kWidth + 2 * kLeft) + ' ' + std::to_string(height) +
           "\" font-family=\"system-ui, sans-serif\" font-size=\"13\">\n"
           "  <rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n"
           "  <text x=\"20\" y=\"20\">" +
           xml(recording_.files.back()) + ", " + xml(recording_.begins) + ", " +
           seconds(summary_.end - summary_.begin) + "</text>\n";
    for (int tick = 0; tick <= kTicks; ++tick) {
      drawTick(tick, height);
    }
    int top = kTop;
    for (const LinkSummary& link : summary_.links) {
      drawLane(link, top);
      top += kLane;
    }
    return out_ + "</svg>\n";
  }

 private:
  [[nodiscard]] int column(WireEvent::Duration time) const {
    const auto whole = std::max<double>(
        1, std::chrono::duration<double>(summary_.end - summary_.begin).count() * 1e9);
    const double part = static_cast<double>((time - summary_.begin).count()) / whole;
    return kLeft + static_cast<int>(std::clamp(part, 0.0, 1.0) * kWidth);
  }

  void rectangle(int x, int y, int width, int height, std::string_view colour,
                 const std::string& title) {
    out_ += "  <rect x=\"" + std::to_string(x) + "\" y=\"" + std::to_string(y) + "\" width=\"" +
            std::to_string(std::max(width, 1)) + "\" height=\"" + std::to_string(height) +
            "\" fill=\"" + std::string(colour) + "\"><title>" + xml(title) + "</title></rect>\n";
  }

  void drawTick(int tick, int height) {
    const auto time = summary_.begin + (summary_.end - summary_.begin) / kTicks * tick;
    const int x = kLeft + kWidth / kTicks * tick;
    out_ += "  <line x1=\"" + std::to_string(x) + "\" y1=\"40\" x2=\"" + std::to_string(x) +
            "\" y2=\"" + std::to_string(height) + "\" stroke=\"#d8dde3\"/>\n  <text x=\"" +
            std::to_string(x) + "\" y=\"37\" font-size=\"11\" fill=\"#51606f\">" + seconds(time) +
            "</text>\n";
  }

  void drawLane(const LinkSummary& link, int top) {
    out_ +=
        "  <text x=\"20\" y=\"" + std::to_string(top + 18) + "\">" + xml(link.name) + "</text>\n";
    std::vector<Stroke> strokes;
    for (const Exchange& exchange : link.exchanges) {
      const int begin = column(exchange.sent->begin);
      const int end = std::max(begin + 1, column(exchange.sent->begin + exchange.took()));
      if (strokes.empty() || begin >= strokes.back().end) {
        strokes.push_back({begin, end, 1, &exchange});
        continue;
      }
      Stroke& last = strokes.back();
      last.end = std::max(last.end, end);
      ++last.exchanges;
      const bool worse = exchange.unanswered() != last.worst->unanswered()
                             ? exchange.unanswered()
                             : exchange.took() > last.worst->took();
      last.worst = worse ? &exchange : last.worst;
    }
    for (const Stroke& stroke : strokes) {
      const Exchange& worst = *stroke.worst;
      const bool silent = worst.unanswered();
      rectangle(stroke.begin, top + 26, stroke.end - stroke.begin, kBar,
                silent        ? "#c0392b"
                : worst.query ? "#5b7db1"
                              : "#5a9367",
                recording_.placeOf(*worst.sent) + ' ' + inQuotes(worst.sent->bytes.substr(0, 60)) +
                    (silent ? ": no answer" : ": " + seconds(worst.took())) +
                    (stroke.exchanges > 1
                         ? ", the worst of " + std::to_string(stroke.exchanges) + " exchanges"
                         : ""));
    }
    int lastColumn = -1;
    for (const Entry* error : link.errors) {
      if (const int at = column(error->begin); at != lastColumn) {
        rectangle(at, top + 22, 2, kBar + 8, "#c0392b",
                  recording_.placeOf(*error) + ' ' + faultText(*error));
        lastColumn = at;
      }
    }
  }

  const Recording& recording_;
  const Summary& summary_;
  std::string out_;
};

}  // namespace

std::string faultText(const Entry& entry) {
  if (entry.serial) {
    return std::to_string(entry.status) + ": " + entry.fault;
  }
  std::array<char, 32> text{};
  (void)std::snprintf(text.data(), text.size(), "VISA status 0x%08X",
                      static_cast<unsigned>(entry.status));
  return text.data();
}

Summary summaryOf(const Recording& recording) {
  Summary summary;
  Sorter sorter(summary);
  for (const Entry& entry : recording.entries) {
    // That a search finds nothing further is its usual end.
    if (entry.act != WireAct::FindNext && entry.act != WireAct::Port) {
      sorter.take(entry);
    }
    summary.end = std::max(summary.end, entry.end);
  }
  std::erase_if(summary.links, [](const LinkSummary& link) {
    return link.openings == 0 && link.exchanges.empty() && link.errors.empty();
  });
  if (!recording.entries.empty()) {
    summary.begin = recording.entries.front().begin;
  }
  return summary;
}

std::string timeLine(const Recording& recording, const Summary& summary) {
  return Drawing(recording, summary).draw();
}

}  // namespace lumodevice::recordings
