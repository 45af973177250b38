// Dialogs on a host without Windows: what is read from a resource script, what a person at the
// dialog sees and does, and what the dialog procedure hears of it.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "platform/dialog_template.h"
#include "platform/resources.h"
#include "platform/screen.h"
#include "support/user.h"
#include "test_library.h"

namespace {

using platform::FindResourceIn;
using qlx99::tests::OpenDialog;
using testing::ElementsAre;

constexpr WORD kDialog = 5;  // type of resource

std::vector<std::byte> Bytes(std::string_view text) {
  const auto* const first = reinterpret_cast<const std::byte*>(text.data());
  return {first, first + text.size()};
}

TEST(Resources, MayBeBrokenAnywhere) {
  using std::string_view_literals::operator""sv;
  const auto script = Bytes(
      "\0\0\0\0\x10\0\0\0\xFF\xFF\0\0\xFF\xFF\0\0"  // mark
      "\2\0\0\0\x10\0\0\0\xFF\xFF\5\0\xFF\xFF\1\0ab\0\0"sv);
  EXPECT_EQ(FindResourceIn(script, kDialog, 1).size(), 2U);
  EXPECT_TRUE(FindResourceIn(script, kDialog, 2).empty());
  EXPECT_TRUE(FindResourceIn(script, 4, 1).empty());
  // Copied, so that a read past the end is seen.
  for (std::size_t length = 0; length < script.size() - 2; ++length) {
    const std::vector part(script.begin(), script.begin() + std::ptrdiff_t(length));
    EXPECT_TRUE(FindResourceIn(part, kDialog, 1).empty()) << length;
  }
  EXPECT_TRUE(FindResourceIn(Bytes(std::string(8, '\0')), kDialog, 1).empty());
  EXPECT_TRUE(FindResourceIn(Bytes(std::string(8, '\xFF')), kDialog, 1).empty());

  const TestLibrary library;
  for (const WORD id : {WORD{1}, WORD{2}}) {
    const auto dialog = platform::FindResourceOf(library.Handle(), kDialog, id);
    EXPECT_TRUE(platform::ParseDialogTemplate(dialog));
    for (std::size_t length = 0; length < dialog.size(); ++length) {
      const std::vector part(dialog.begin(), dialog.begin() + std::ptrdiff_t(length));
      EXPECT_FALSE(platform::ParseDialogTemplate(part)) << length;
    }
  }
}

class View : public testing::Test {
 protected:
  View() { heard.clear(); }

  INT_PTR Show() {
    return DialogBoxParamA(library_.Handle(), MAKEINTRESOURCEA(1), nullptr, Procedure, 0);
  }

  /// Buttons end the dialog with their ids.
  static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wordParam,
                                    LPARAM /*unused*/) {
    if (message == WM_INITDIALOG) {
      SendDlgItemMessageA(dialog, 403, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>("a\tb"));
      SendDlgItemMessageA(dialog, 403, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>("c"));
      SetDlgItemTextA(dialog, 206, std::string(300, 'x').c_str());
      SendDlgItemMessageA(dialog, 501, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("anderer Text"));
      SetWindowTextA(dialog, "anderer Titel");
      return 0;
    }
    heard += message != WM_COMMAND ? "end"
                                   : std::to_string(LOWORD(wordParam)) + '/' +
                                         std::to_string(HIWORD(wordParam)) + ' ';
    if (message == WM_COMMAND && LOWORD(wordParam) < 100) EndDialog(dialog, LOWORD(wordParam));
    return 0;
  }

  qlx99::tests::User user_;
  static inline std::string heard;  // "control/notification "

 private:
  const TestLibrary library_;
};

TEST_F(View, ShowsWhatTheProcedureDidAndTellsItOfWhatAPersonCanDo) {
  user_.Does([](OpenDialog& dialog) {
    EXPECT_FALSE(dialog.Press(7)) << "hidden";
    EXPECT_FALSE(dialog.Press(403)) << "no button";
    EXPECT_FALSE(dialog.Press(999)) << "not there";
    EXPECT_FALSE(dialog.Select(601, 0)) << "hidden";
    EXPECT_FALSE(dialog.Select(403, 2)) << "no such line";
    EXPECT_FALSE(dialog.DoubleClick(403, -1)) << "no such line";
    EXPECT_FALSE(dialog.Select(206, 0)) << "no list";
    EXPECT_TRUE(dialog.Select(403, 1));
    EXPECT_EQ(dialog.Look().Control(403).selected, 1);
    EXPECT_TRUE(dialog.DoubleClick(403, 0));
    EXPECT_TRUE(dialog.IsOpen());
    EXPECT_TRUE(dialog.Press(IDOK));
    EXPECT_FALSE(dialog.Press(IDOK)) << "closed";
    EXPECT_FALSE(dialog.Select(403, 0)) << "closed";
    dialog.Cancel();
  });
  EXPECT_EQ(Show(), IDOK);
  EXPECT_EQ(heard, "403/1 403/1 403/2 1/0 end");
  const qlx99::tests::ShownDialog shown = user_.OnlyDialog();
  EXPECT_EQ(shown.title, "anderer Titel");
  EXPECT_EQ(shown.Control(206).text, std::string(300, 'x'));
  EXPECT_EQ(shown.Control(501).text, "anderer Text");
  EXPECT_THAT(shown.Control(403).lines, ElementsAre("a\tb", "c"));
  EXPECT_EQ(shown.Control(403).selected, -1);
  user_.Cancels();  // without a button for it
  EXPECT_EQ(Show(), IDCANCEL);
}

class EmptyChair final : public platform::Screen {
  int ShowMessage(const platform::MessageBoxView& /*message*/) override { return 0; }
  void ShowDialog(platform::DialogView& /*dialog*/) override {}
};

TEST_F(View, EndsTheProcessBeyondWhatTheLayerKnows) {
  EmptyChair nobody;
  platform::SetScreen(&nobody);
  EXPECT_DEATH(Show(), "leaves open");
  EXPECT_DEATH(MessageBoxA(nullptr, "?", "?", 4), "MessageBoxA");
  EXPECT_DEATH(WideCharToMultiByte(1252, 0, u"x", 1, nullptr, 0, nullptr, nullptr),
               "WideCharToMultiByte");
}

}  // namespace
