// What a person at a dialog sees and does, and what the dialog procedure hears of it.
#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/screen.h"
#include "platform/windows_api.h"
#include "test_library.h"

namespace {

using platform::Control;
using platform::DialogView;
using platform::MessageBoxView;
using testing::ElementsAre;

/// Does with the dialog what the test says, and remembers what was shown.
class Person final : public platform::Screen {
 public:
  Person() { platform::SetScreen(this); }
  ~Person() override { platform::SetScreen(nullptr); }
  Person(const Person&) = delete;
  Person& operator=(const Person&) = delete;

  int ShowMessage(const MessageBoxView& message) override {
    messages.push_back(message);
    return IDOK;
  }
  void ShowDialog(DialogView& dialog) override { atTheDialog(dialog); }

  std::function<void(DialogView&)> atTheDialog = [](DialogView&) {
    FAIL() << "no dialog was expected";
  };
  std::vector<MessageBoxView> messages;
};

const Control& ControlOf(const DialogView& dialog, int id) {
  for (const Control& control : dialog.Controls()) {
    if (control.id == id) {
      return control;
    }
  }
  throw std::out_of_range("control " + std::to_string(id));
}

class View : public testing::Test {
 protected:
  View() { heard.clear(); }

  INT_PTR Show(std::function<void(DialogView&)> person, int id = 1) {
    person_.atTheDialog = std::move(person);
    return DialogBoxParamA(library_.Handle(), MAKEINTRESOURCEA(id), nullptr, Procedure, 0);
  }

  /// Buttons end the dialog with their ids.
  static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wordParam,
                                    LPARAM /*longParam*/) {
    if (message == WM_INITDIALOG) {
      SendDlgItemMessageA(dialog, 403, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>("a\tb"));
      SendDlgItemMessageA(dialog, 403, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>("c"));
      const int stop = 100;
      SendDlgItemMessageA(dialog, 403, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&stop));
      SendDlgItemMessageA(dialog, 403, LB_SETHORIZONTALEXTENT, 500, 0);
      SetDlgItemTextA(dialog, 206, std::string(300, 'x').c_str());
      SendDlgItemMessageA(dialog, 501, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("anderer Text"));
      SetWindowTextA(dialog, "anderer Titel");
      return 0;
    }
    heard.push_back(std::to_string(message == WM_COMMAND ? LOWORD(wordParam) : 0) + "/" +
                    std::to_string(HIWORD(wordParam)));
    if (message == WM_COMMAND && LOWORD(wordParam) < 100) {
      EndDialog(dialog, LOWORD(wordParam));
    }
    return 0;
  }

  Person person_;
  static inline std::vector<std::string>
      heard;  // "control/notification", "0/0" for the dialog's end

 private:
  const TestLibrary library_;
};

TEST_F(View, ShowsWhatTheProcedureDidToTheControls) {
  Show([](DialogView& dialog) {
    EXPECT_EQ(dialog.Title(), "anderer Titel");
    EXPECT_EQ(ControlOf(dialog, 206).text, std::string(300, 'x'));
    EXPECT_EQ(ControlOf(dialog, 501).text, "anderer Text");
    const platform::ListBox& list = ControlOf(dialog, 403).list;
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.Line(0), "a\tb");
    EXPECT_THAT(list.TabStops(), ElementsAre(100));
    EXPECT_EQ(list.HorizontalExtent(), 500);
    EXPECT_EQ(list.Selected(), -1);
    dialog.Cancel();
  });
}

TEST_F(View, TellsTheProcedureOfEveryAct) {
  const INT_PTR result = Show([](DialogView& dialog) {
    EXPECT_TRUE(dialog.Select(403, 1));
    EXPECT_EQ(ControlOf(dialog, 403).list.Selected(), 1);
    EXPECT_TRUE(dialog.DoubleClick(403, 0));
    EXPECT_TRUE(dialog.IsOpen());
    EXPECT_TRUE(dialog.Press(IDOK));
    EXPECT_FALSE(dialog.IsOpen());
  });
  EXPECT_EQ(result, IDOK);
  EXPECT_THAT(heard, ElementsAre("403/1", "403/1", "403/2", "1/0", "0/0"));
}

TEST_F(View, CancelsWithoutACancelButton) {
  EXPECT_EQ(Show([](DialogView& dialog) { dialog.Cancel(); }), IDCANCEL);
}

TEST_F(View, AllowsOnlyWhatAPersonCanDo) {
  Show([](DialogView& dialog) {
    EXPECT_FALSE(dialog.Press(7)) << "hidden";
    EXPECT_FALSE(dialog.Press(403)) << "no button";
    EXPECT_FALSE(dialog.Press(999)) << "not there";
    EXPECT_FALSE(dialog.Select(601, 0)) << "hidden";
    EXPECT_FALSE(dialog.Select(403, 2)) << "no such line";
    EXPECT_FALSE(dialog.DoubleClick(403, -1)) << "no such line";
    EXPECT_FALSE(dialog.Select(206, 0)) << "no list";
    EXPECT_TRUE(heard.empty());
    dialog.Cancel();
    EXPECT_FALSE(dialog.Press(IDOK)) << "closed";
    EXPECT_FALSE(dialog.Select(403, 0)) << "closed";
    dialog.Cancel();
  });
  EXPECT_THAT(heard, ElementsAre("2/0", "0/0"));
}

TEST_F(View, MustNotBeLeftOpen) {
  EXPECT_DEATH(Show([](DialogView&) {}), "leaves open");
}

TEST_F(View, OfAMessageBoxIsWhatTheCallerWrote) {
  EXPECT_EQ(MessageBoxA(nullptr, "Text ! ", "Systemmeldung !", MB_ICONHAND | MB_SYSTEMMODAL), IDOK);
  EXPECT_EQ(MessageBoxA(nullptr, nullptr, "", MB_OK), IDOK);
  ASSERT_EQ(person_.messages.size(), 2U);
  EXPECT_EQ(person_.messages.at(0).text, "Text ! ");
  EXPECT_EQ(person_.messages.at(0).title, "Systemmeldung !");
  EXPECT_EQ(person_.messages.at(0).style, 0x1010U);
  EXPECT_EQ(person_.messages.at(1).text, "");
}

TEST(Beyond, WhatTheLayerKnowsTheProcessEnds) {
  EXPECT_DEATH(MessageBoxA(nullptr, "?", "?", 4), "MessageBoxA");
  EXPECT_DEATH(WideCharToMultiByte(1252, 0, u"x", 1, nullptr, 0, nullptr, nullptr),
               "WideCharToMultiByte");
}

}  // namespace
