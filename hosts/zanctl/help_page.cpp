#include "hosts/zanctl/help_page.hpp"

#include <sstream>
#include <vector>

#include "hosts/zanctl/output/wrap.hpp"

namespace zanctl {

namespace {

/// The lines of a text as the library indents them: behind each other with line feeds.
std::string joined(const std::vector<std::string>& lines, const std::string& between) {
  std::string text;
  for (const std::string& line : lines) {
    text += (text.empty() ? "" : between) + line;
  }
  return text;
}

}  // namespace

std::string HelpPage::make_option_desc(const CLI::Option* option) const {
  return joined(wrapped(Formatter::make_option_desc(option), kPageWidth - get_column_width()),
                "\n");
}

std::string HelpPage::make_subcommand(const CLI::App* command) const {
  constexpr std::size_t kNameWidth = 12;
  std::ostringstream out;
  CLI::detail::format_help(
      out, command->get_name(),
      joined(wrapped(command->get_description(), kPageWidth - kNameWidth), "\n"), kNameWidth);
  return out.str();
}

std::string CommandHelpPage::make_usage(const CLI::App* /*app*/, std::string /*name*/) const {
  std::string usage = "Usage: zanctl [OPTIONS] ";
  usage.append(command_.name).append(command_.usage.empty() ? "" : " ").append(command_.usage);
  const std::string indent(9, ' ');
  return joined(wrapped(usage, kPageWidth - indent.size()), "\n" + indent) + "\n";
}

}  // namespace zanctl
