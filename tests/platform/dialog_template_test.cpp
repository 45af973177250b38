#include <gmock/gmock.h>

#include <cstddef>
#include <vector>

#include "platform/dialog_template.h"
#include "platform/resources.h"
#include "platform/windows_api.h"
#include "test_library.h"

namespace {

using platform::Control;
using platform::ControlKind;
using platform::DialogTemplate;
using platform::ParseDialogTemplate;
using platform::ResourceBytes;

constexpr WORD kDialog = 5;

class Template : public testing::TestWithParam<WORD> {
 protected:
  ResourceBytes Bytes(WORD id) const {
    return platform::FindResourceOf(library_.Handle(), kDialog, id);
  }

 private:
  const TestLibrary library_;
};

TEST_F(Template, GivesTheDialogAsTheScriptHasIt) {
  const std::optional<DialogTemplate> dialog = ParseDialogTemplate(Bytes(1));
  ASSERT_TRUE(dialog);
  EXPECT_EQ(dialog->title, "Bank ausw\xE4hlen");
  EXPECT_EQ(dialog->place.x, 19);
  EXPECT_EQ(dialog->place.height, 114);
  ASSERT_EQ(dialog->controls.size(), 8U);
  const Control& list = dialog->controls.at(3);
  EXPECT_EQ(list.id, 403);
  EXPECT_EQ(list.kind, ControlKind::kListBox);
  EXPECT_EQ(list.place.x, 8);
  EXPECT_EQ(list.place.y, 32);
  EXPECT_EQ(list.place.width, 164);
  EXPECT_EQ(list.place.height, 76);
  EXPECT_TRUE(list.IsVisible());
  EXPECT_FALSE(dialog->controls.at(4).IsVisible());
  EXPECT_EQ(dialog->controls.at(6).text,
            "&\xDC"
            "bernehmen");
}

TEST_F(Template, KnowsClassesByNumberAndByName) {
  std::vector<ControlKind> kinds;
  const std::optional<DialogTemplate> dialog = ParseDialogTemplate(Bytes(2));
  ASSERT_TRUE(dialog);
  for (const Control& control : dialog->controls) {
    kinds.push_back(control.kind);
  }
  EXPECT_THAT(kinds,
              testing::ElementsAre(ControlKind::kStatic, ControlKind::kEdit, ControlKind::kListBox,
                                   ControlKind::kButton, ControlKind::kButton));
  EXPECT_EQ(dialog->controls.at(2).id, 201);
}

INSTANTIATE_TEST_SUITE_P(BothForms, Template, testing::Values(1, 2));

TEST_P(Template, ThatIsCutOffIsNoDialog) {
  const ResourceBytes whole = Bytes(GetParam());
  ASSERT_TRUE(ParseDialogTemplate(whole));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    // Copied, so that a read past the end is seen.
    const std::vector<std::byte> part(whole.begin(),
                                      whole.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_FALSE(ParseDialogTemplate(part)) << length;
  }
}

std::vector<std::byte> Script(std::initializer_list<int> bytes) {
  std::vector<std::byte> script;
  for (const int byte : bytes) {
    script.push_back(static_cast<std::byte>(byte));
  }
  return script;
}

TEST(CompiledScript, MayBeBrokenAnywhere) {
  const std::vector<std::byte> whole =
      Script({0, 0, 0, 0, 16, 0, 0, 0, 0xFF, 0xFF, 0, 0, 0xFF, 0xFF, 0, 0,  // mark
              2, 0, 0, 0, 16, 0, 0, 0, 0xFF, 0xFF, 5, 0, 0xFF, 0xFF, 1, 0, 'a', 'b', 0, 0});
  EXPECT_EQ(platform::FindResourceIn(whole, kDialog, 1).size(), 2U);
  EXPECT_TRUE(platform::FindResourceIn(whole, kDialog, 2).empty());
  EXPECT_TRUE(platform::FindResourceIn(whole, 4, 1).empty());
  for (std::size_t length = 0; length < whole.size() - 2; ++length) {
    const std::vector<std::byte> part(whole.begin(),
                                      whole.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_TRUE(platform::FindResourceIn(part, kDialog, 1).empty()) << length;
  }
  for (const auto& script : {Script({0, 0, 0, 0, 0, 0, 0, 0}),
                             Script({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF})}) {
    EXPECT_TRUE(platform::FindResourceIn(script, kDialog, 1).empty());
  }
}

}  // namespace
