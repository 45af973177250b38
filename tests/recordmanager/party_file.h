// A fresh party file in a folder of its own, for one test.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "parties.h"
#include "support/temporary_folder.h"

namespace recordmanager_tests {

class PartyFile : public testing::Test {
  qlx99::tests::TemporaryFolder temporaryFolder_;

 protected:
  PartyFile();
  ~PartyFile() override;

  std::string InFolder(const std::string& name) const { return (folder / name).string(); }

  const std::filesystem::path& folder = temporaryFolder_.Path();
  std::string path;
  Client client;  // has the file open
};

// The numbers of the records that a client reads along a key, as a text such as "1 3 2".
std::string Walk(Client client, int keyNumber, WORD start = btrieve::kGetFirst,
                 WORD step = btrieve::kGetNext);

}  // namespace recordmanager_tests
