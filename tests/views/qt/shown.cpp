#include "tests/views/qt/shown.hpp"

#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <algorithm>

#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/reach.hpp"

namespace lumodevice::support {

namespace {

class Comparison {
 public:
  explicit Comparison(const toolkit::Control& control) : control_(control) {}

  void same(const char* what, const std::string& shown, std::string_view meant) {
    if (shown != meant) {
      lines_ += control_.fullName() + " " + what + ": shows \"" + shown + "\", is \"" +
                std::string(meant) + "\"\n";
    }
  }
  void same(const char* what, int shown, int meant) {
    same(what, std::to_string(shown), std::to_string(meant));
  }
  [[nodiscard]] std::string lines() const { return lines_; }

 private:
  const toolkit::Control& control_;
  std::string lines_;
};

/// A caption without the marks of Qt.
std::string caption(QString text) {
  const QChar mark(u'&');
  QString plain;
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text[i] == mark && i + 1 < text.size()) {
      ++i;
    }
    plain += text[i];
  }
  return plain.toStdString();
}

/// A caption that is too long for its place is cut.
std::string cutLike(const std::string& shown, const std::string& whole) {
  const std::string dots = "…";
  const bool cut =
      shown.ends_with(dots) && whole.starts_with(shown.substr(0, shown.size() - dots.size()));
  return cut ? shown : whole;
}

void compareItems(Comparison& result, const toolkit::ListControl& list, int count, auto item) {
  result.same("entries", count, list.listCount());
  for (int i = 0; i < std::min(count, list.listCount()); ++i) {
    result.same("entry", item(i).toStdString(), list.list(i));
  }
}

bool isPictureShown(const toolkit::Surface& surface) {
  const auto& all = surface.controls();
  return std::any_of(all.begin(), all.end(), [](const auto& control) {
    const auto* const picture = dynamic_cast<const toolkit::Pictured*>(control.get());
    return picture != nullptr && picture->visible() && picture->picture();
  });
}

void compareKind(Comparison& result, const QWidget& widget, const toolkit::Control& control) {
  if (const auto* const label = dynamic_cast<const toolkit::Label*>(&control)) {
    result.same("caption", caption(dynamic_cast<const QLabel&>(widget).text()), label->caption());
  } else if (const auto* const frame = dynamic_cast<const toolkit::Frame*>(&control)) {
    result.same("caption", caption(dynamic_cast<const QGroupBox&>(widget).title()),
                frame->caption());
  } else if (const auto* const text = dynamic_cast<const toolkit::TextBox*>(&control)) {
    result.same("text", dynamic_cast<const QLineEdit&>(widget).text().toStdString(), text->text());
  } else if (const auto* const combo = dynamic_cast<const toolkit::ComboBox*>(&control)) {
    const auto& box = dynamic_cast<const QComboBox&>(widget);
    compareItems(result, *combo, box.count(), [&](int i) { return box.itemText(i); });
    result.same("selection", box.currentIndex(), combo->listIndex());
    if (box.isEditable()) {
      result.same("text", box.currentText().toStdString(), combo->text());
    }
  } else if (const auto* const list = dynamic_cast<const toolkit::ListBox*>(&control)) {
    const auto& box = dynamic_cast<const QListWidget&>(widget);
    compareItems(result, *list, box.count(), [&](int i) { return box.item(i)->text(); });
    result.same("selection", box.currentRow(), list->listIndex());
  } else if (const auto* const button = dynamic_cast<const QAbstractButton*>(&widget)) {
    const auto compare = [&](const auto& model) {
      const std::string shown = caption(button->text());
      result.same("caption", shown, cutLike(shown, model.caption()));
    };
    if (const auto* const check = dynamic_cast<const toolkit::CheckBox*>(&control)) {
      constexpr int kStates[] = {Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked};
      result.same("value", dynamic_cast<const QCheckBox&>(widget).checkState(),
                  kStates[check->value()]);
      compare(*check);
    } else if (const auto* const option = dynamic_cast<const toolkit::OptionButton*>(&control)) {
      result.same("value", button->isChecked(), option->value());
      compare(*option);
    } else {
      compare(dynamic_cast<const toolkit::CommandButton&>(control));
    }
  }
}

}  // namespace

std::string differences(const qt::FormView& view, const toolkit::Control& control) {
  const QWidget* const widget = view.widgetOf(control);
  Comparison result(control);
  if (control.kind() == toolkit::Kind::Timer) {
    result.same("widget", widget != nullptr, false);
    return result.lines();
  }
  result.same("usable", widget->isEnabledTo(view.parentWidget()), control.usable());
  if (control.kind() == toolkit::Kind::Form) {
    return result.lines();
  }
  // A picture hides what it touches, too, which the tests of the layout look at.
  const bool reachable = toolkit::reachable(control.surface(), control);
  if (widget->isVisibleTo(&view) || !isPictureShown(control.surface())) {
    result.same("visible", widget->isVisibleTo(&view), reachable);
  }
  result.same("tool tip", widget->toolTip().toStdString(), control.look().toolTip);
  result.same("spoken name", widget->accessibleName().toStdString(), control.look().accessibleName);
  result.same("name", widget->objectName().toStdString(), control.fullName());
  compareKind(result, *widget, control);
  return result.lines();
}

std::string differences(const qt::FormView& view, const toolkit::Surface& surface) {
  std::string lines;
  for (const auto& control : surface.controls()) {
    lines += differences(view, *control);
  }
  return lines;
}

}  // namespace lumodevice::support
