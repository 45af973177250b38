// What is written beside the code, as text for comparisons.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace office {

// Each pattern is a regular expression; they are replaced one after the other.
std::string Replaced(std::string text,
                     const std::vector<std::pair<std::string, std::string>>& replacements);

std::string Lower(std::string text);

// Of a file of the project, by its path in it.
std::string ProjectFile(const std::string& name);

// The first group of every match; lines that are continued count as one.
std::vector<std::string> All(const std::string& text, const char* pattern);

// Of every export: "UserNext(const char* index, char* record)".
std::vector<std::string> Prototypes();

}  // namespace office
