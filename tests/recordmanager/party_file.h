// A fresh party file in a folder of its own, for one test.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <random>
#include <string>

#include "parties.h"

namespace recordmanager_tests {

class PartyFile : public testing::Test {
 protected:
  PartyFile() {
    std::filesystem::create_directory(folder);
    EXPECT_EQ(Create(path), btrieve::kSuccess);
    EXPECT_EQ(client.Open(path), btrieve::kSuccess);
  }

  ~PartyFile() override {
    client.Do("close");
    for (Client& other : others_) other.Do("close");
    std::error_code ignored;  // where open files cannot be deleted, the host's clean-up will
    std::filesystem::remove_all(folder, ignored);
  }

  std::string InFolder(const std::string& name) const { return (folder / name).string(); }

  // One more client of a file; closed at the end.
  Client& Opened(const std::string& name, char mode = btrieve::kOpenNormal) {
    EXPECT_EQ(others_.emplace_back().Open(name, mode), btrieve::kSuccess) << name;
    return others_.back();
  }

  const std::filesystem::path folder = std::filesystem::temp_directory_path() /
                                       ("parties-" + std::to_string(std::random_device()()));
  const std::string path = InFolder("PARTIES.KRV");
  Client client;  // has the file open

 private:
  std::deque<Client> others_;
};

}  // namespace recordmanager_tests
