#include <algorithm>
#include <vector>

#include "simulator/commands/command.hpp"
#include "simulator/commands/command_tables.hpp"

namespace zansim {
namespace {

/// The rows by the nodes of their headers, so that a look-up does not walk all of them.
class HeaderTree {
 public:
  explicit HeaderTree(std::span<const std::span<const Row>> tables) {
    for (const std::span<const Row> table : tables) {
      for (const Row& row : table) {
        add(root_, row.header, row);
      }
    }
  }

  [[nodiscard]] const Row* find(const Header& header) const {
    const Branch* branch = &root_;
    for (std::size_t i = 0; i < header.count; ++i) {
      const auto next =
          std::find_if(branch->children.begin(), branch->children.end(),
                       [&](const Branch& child) { return isWord(header.nodes[i], child.node); });
      if (next == branch->children.end()) {
        return nullptr;
      }
      branch = &*next;
    }
    return branch->row;
  }

 private:
  struct Branch {
    std::string_view node;
    const Row* row = nullptr;
    std::vector<Branch> children;
  };

  static void add(Branch& branch, std::string_view pattern, const Row& row) {
    if (pattern.empty()) {
      branch.row = &row;
      return;
    }
    const bool optional = pattern.starts_with('[');
    pattern.remove_prefix(optional ? 1 : 0);
    pattern.remove_prefix(pattern.starts_with(':') ? 1 : 0);
    const std::string_view node = pattern.substr(0, pattern.find_first_of(":[]"));
    pattern.remove_prefix(node.size() + (optional ? 1 : 0));
    auto child = std::find_if(branch.children.begin(), branch.children.end(),
                              [&](const Branch& known) { return known.node == node; });
    if (child == branch.children.end()) {
      child = branch.children.insert(child, Branch{node, nullptr, {}});
    }
    add(*child, pattern, row);
    if (optional) {
      add(branch, pattern, row);
    }
  }

  Branch root_;
};

}  // namespace

const Row* findRow(const Header& header) {
  static const HeaderTree tree(commandTables());
  return tree.find(header);
}

}  // namespace zansim
