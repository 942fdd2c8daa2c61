#pragma once

#include <CLI/App.hpp>
#include <CLI/Formatter.hpp>
#include <string>

#include "hosts/zanctl/commands/command.hpp"

namespace zanctl {

/// A help page that is no wider than kPageWidth.
class HelpPage : public CLI::Formatter {
 public:
  std::string make_option_desc(const CLI::Option* option) const override;
  std::string make_subcommand(const CLI::App* command) const override;
};

/// The same of a command, with the usage that its row tells.
class CommandHelpPage : public HelpPage {
 public:
  /// The command must outlive it.
  explicit CommandHelpPage(const Command& command) : command_(command) {}
  std::string make_usage(const CLI::App* app, std::string name) const override;

 private:
  const Command& command_;
};

}  // namespace zanctl
