#pragma once

#include <algorithm>
#include <span>

#include "lumodevice/form/tables.hpp"

/// What must hold of the form's tables, as questions that the compiler answers.
namespace lumodevice::form {

using ControlRows = std::span<const ControlRow>;
using SettingRows = std::span<const SettingRow>;

namespace checks {

/// The position of the first row of that name; rows.size() where there is none.
constexpr std::size_t find(ControlRows rows, std::string_view name) {
  std::size_t position = 0;
  while (position < rows.size() && rows[position].name != name) {
    ++position;
  }
  return position;
}

constexpr bool isContainer(toolkit::Kind kind) {
  return kind == toolkit::Kind::Form || kind == toolkit::Kind::Frame;
}

constexpr bool hasLetter(std::string_view caption, char letter) {
  return letter == kNoLetter || caption.find(letter) != std::string_view::npos;
}

/// What an operator works with, or reads and copies from.
constexpr bool isWorkedWith(toolkit::Kind kind) {
  using enum toolkit::Kind;
  return !isContainer(kind) && kind != Label && kind != Image && kind != Timer;
}

}  // namespace checks

/// A control stands there once, or is element 0, 1, 2 ... of an array.
constexpr bool namesCount(ControlRows rows) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto before = rows.first(i);
    const auto same = std::count_if(before.begin(), before.end(), [&](const ControlRow& other) {
      return other.name == rows[i].name;
    });
    if (same != (rows[i].index == kSingle ? 0 : rows[i].index)) {
      return false;
    }
  }
  return true;
}

/// The form comes first, and every container before what sits in it.
constexpr bool containersComeFirst(ControlRows rows) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::size_t container = checks::find(rows.first(i), rows[i].container);
    const bool sits = container < i && checks::isContainer(rows[container].kind);
    if (i == 0 ? rows[i].kind != toolkit::Kind::Form : !sits) {
      return false;
    }
  }
  return true;
}

/// Settings are elements 0, 1, 2 ... of their arrays, each in a frame of the form and sending
/// something; what they stand beside sits in that frame.
constexpr bool settingsFit(SettingRows settings, ControlRows rows) {
  for (std::size_t i = 0; i < settings.size(); ++i) {
    const SettingRow& setting = settings[i];
    const std::size_t frame = checks::find(rows, setting.frame);
    const std::size_t beside = checks::find(rows, setting.beside);
    const bool sits = frame < rows.size() && rows[frame].kind == toolkit::Kind::Frame;
    const bool standsWell =
        setting.beside.empty() || (beside < rows.size() && rows[beside].container == setting.frame);
    if (setting.index != static_cast<int>(i) || setting.command.none() || !sits || !standsWell) {
      return false;
    }
  }
  return true;
}

/// Mnemonics are letters of their captions.
constexpr bool lettersAreThere(ControlRows rows, SettingRows settings) {
  return std::all_of(rows.begin(), rows.end(),
                     [](const ControlRow& row) {
                       return checks::hasLetter(row.text, row.details.mnemonic);
                     }) &&
         std::all_of(settings.begin(), settings.end(), [](const SettingRow& row) {
           return checks::hasLetter(row.caption, row.mnemonic);
         });
}

/// What an operator works with has a tool tip: its command, or one of its own.
constexpr bool tipsAreThere(ControlRows rows) {
  return std::all_of(rows.begin(), rows.end(), [](const ControlRow& row) {
    return !checks::isWorkedWith(row.kind) || !row.command.none() || !row.details.tip.empty();
  });
}

/// What the Enter key clicks is a button of the form.
constexpr bool enterClicksButtons(ControlRows rows) {
  return std::all_of(rows.begin(), rows.end(), [&](const ControlRow& row) {
    const std::size_t button = checks::find(rows, row.details.enterClicks);
    return row.details.enterClicks.empty() ||
           (button < rows.size() && rows[button].kind == toolkit::Kind::CommandButton);
  });
}

}  // namespace lumodevice::form
