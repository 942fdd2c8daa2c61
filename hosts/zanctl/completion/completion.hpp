#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/zanctl/completion/syntax.hpp"

/// Scripts by which shells complete a command line of zanctl.
namespace zanctl {

/// What a shell offers for a placeholder.
enum class Offer { Nothing, Choices, Files, Folders, Ports, Controls, Addresses };

[[nodiscard]] Offer offerFor(const Placeholder& placeholder);

/// The names of the panel's controls, a control array once.
[[nodiscard]] std::vector<std::string> controlNames();

/// The words with blanks between them.
[[nodiscard]] std::string joined(const std::vector<std::string>& words);

[[nodiscard]] std::string bashCompletion(const Syntax& syntax);
[[nodiscard]] std::string zshCompletion(const Syntax& syntax);
[[nodiscard]] std::string fishCompletion(const Syntax& syntax);

struct Shell {
  std::string_view name;
  std::string (*script)(const Syntax& syntax);
};
inline constexpr std::array kShells = {Shell{"bash", bashCompletion}, Shell{"zsh", zshCompletion},
                                       Shell{"fish", fishCompletion}};

}  // namespace zanctl
