#include <gmock/gmock.h>

#include "support/record_managers.h"

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  qlx99::tests::FindTheEmbeddedManager();
  return RUN_ALL_TESTS();
}
