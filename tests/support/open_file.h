// A record file as the tests open it for themselves, through the embedded record manager.
#pragma once

#include <filesystem>

#include "store/record_layout.h"
#include "testkit/embedded_manager.h"

namespace qlx99::tests {

// A failure to make, open or close it fails the test. Of its operations, whoever calls looks at the
// status.
class OpenFile : public btrieve::Client {
 public:
  static void Create(const RecordLayout& layout, const std::filesystem::path& folder);

  OpenFile(const RecordLayout& layout, const std::filesystem::path& folder);
  ~OpenFile();
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
};

}  // namespace qlx99::tests
