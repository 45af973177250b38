#include "office/command_names.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <string_view>

#include "office/failure.h"

namespace office {
namespace {

// How many characters have to be put in, left out or changed (Levenshtein's distance).
std::size_t SlipsBetween(std::string_view typed, std::string_view name) {
  std::vector<std::size_t> row(name.size() + 1);  // for the part of `typed` so far
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (const char c : typed) {
    std::size_t diagonal = row[0]++;
    for (std::size_t i = 0; i < name.size(); ++i) {
      const std::size_t changed = diagonal + (c == name[i] ? 0 : 1);
      diagonal = row[i + 1];
      row[i + 1] = std::min({changed, diagonal + 1, row[i] + 1});
    }
  }
  return row.back();
}

// The name that `typed` begins, or else the one that the fewest slips make of it; empty when it
// would take more than two.
std::string NearestName(std::string_view typed, const std::vector<std::string>& names) {
  constexpr std::size_t kMostSlips = 2;
  const auto slips = [typed](const std::string& name) {
    const bool begins = !typed.empty() && name.starts_with(typed);
    return begins ? 0 : SlipsBetween(typed, name);
  };
  const auto nearest = std::ranges::min_element(names, {}, slips);
  return nearest == names.end() || slips(*nearest) > kMostSlips ? "" : *nearest;
}

using Commands = std::vector<const CLI::App*>;

[[noreturn]] void RefuseWord(const std::string& word, const Commands& commands,
                             const std::string& path) {
  std::vector<std::string> names;
  std::ranges::transform(commands, std::back_inserter(names), &CLI::App::get_name);
  const std::string nearest = NearestName(word, names);
  throw WrongUsage("There is no command \"" + word + "\"." +
                   (nearest.empty() ? "" : " Did you mean \"" + nearest + "\"?") + " `" + path +
                   " --help` lists all.");
}

void RequireOption(const CLI::App& command, const std::string& word, const std::string& path) {
  if (command.get_option_no_throw(word) != nullptr) return;
  throw WrongUsage("There is no option \"" + word + "\". `" + path + " --help` lists all.");
}

}  // namespace

void RequireCommands(const CLI::App& program, const std::vector<std::string>& words) {
  const CLI::App* at = &program;
  std::string path = at->get_name();
  for (const std::string& word : words) {
    const Commands commands = at->get_subcommands([](const CLI::App*) { return true; });
    if (commands.empty()) return;
    if (word.starts_with('-')) return RequireOption(*at, word, path);
    const auto found = std::ranges::find(commands, word, &CLI::App::get_name);
    if (found == commands.end()) RefuseWord(word, commands, path);
    at = *found;
    path.append(" ").append(word);
  }
}

}  // namespace office
