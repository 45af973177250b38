#include "project_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <regex>

#include "testkit/files.h"

namespace office {

std::string Replaced(std::string text,
                     const std::vector<std::pair<std::string, std::string>>& replacements) {
  for (const auto& [pattern, by] : replacements) {
    text = std::regex_replace(text, std::regex(pattern), by);
  }
  return text;
}

std::string ProjectFile(const std::string& name) {
  std::string text = testkit::ReadAll(QLX99_PROJECT "/" + name);
  EXPECT_FALSE(text.empty()) << name;
  return text;
}

std::vector<std::string> All(const std::string& text, const char* pattern) {
  const std::string flat = Replaced(text, {{"( _)?\\s+", " "}});
  const std::regex regex(pattern);
  std::vector<std::string> found;
  std::transform(std::sregex_iterator(flat.begin(), flat.end(), regex), {},
                 std::back_inserter(found), [](const std::smatch& match) { return match.str(1); });
  return found;
}

std::vector<std::string> Prototypes() {
  return All(ProjectFile("qlx99/qlx99.h"), "int WINAPI (\\w+\\([^)]*\\));");
}

std::string Lower(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
  return text;
}

}  // namespace office
