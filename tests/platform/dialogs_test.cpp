// Dialogs that end before they are shown, so that nobody has to sit before them.
#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "platform/windows_api.h"
#include "support/text.h"
#include "test_library.h"

namespace {

using qlx99::tests::Wide;

constexpr int kVisible = 403;  // lists
constexpr int kHidden = 601;
constexpr auto kNone = static_cast<WPARAM>(-1);

struct Message {
  UINT message;
  WPARAM wordParam;
  LPARAM longParam;
};

Message Say(UINT message, WPARAM wordParam = 0, LPARAM longParam = 0) {
  return {message, wordParam, longParam};
}

// What the messages to a list are answered, as "0 1 -1".
std::string Answers(HWND dialog, int list, const std::vector<Message>& messages) {
  std::string answers;
  for (const auto& [message, wordParam, longParam] : messages) {
    const LRESULT answer = SendDlgItemMessageA(dialog, list, message, wordParam, longParam);
    answers += (answers.empty() ? "" : " ") + std::to_string(answer);
  }
  return answers;
}

class Dialogs : public testing::Test {
 protected:
  // Does `initialisation` while the dialog begins, then ends it with 7.
  INT_PTR Begin(std::function<void(HWND)> initialisation, int id = 1) {
    onInitialisation = std::move(initialisation);
    return DialogBoxParamW(library_.Handle(), MAKEINTRESOURCEW(id), nullptr, Procedure, 4711);
  }

  static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM /*wordParam*/,
                                    LPARAM longParam) {
    if (message == WM_INITDIALOG) {
      EXPECT_EQ(longParam, 4711);
      const auto initialise = onInitialisation;  // which a dialog within this one replaces
      initialise(dialog);
      EXPECT_TRUE(EndDialog(dialog, 7));
    }
    return 0;
  }

 private:
  const TestLibrary library_;
  static inline std::function<void(HWND)> onInitialisation;
};

LRESULT Add(HWND dialog, int list, const std::string& line) {
  return SendDlgItemMessageW(dialog, list, LB_ADDSTRING, 0,
                             reinterpret_cast<LPARAM>(Wide(line).c_str()));
}

TEST_F(Dialogs, ListsAnswerTheirMessages) {
  Begin([](HWND dialog) {
    std::array<WCHAR, 300> text{};
    const auto textOf = [&](WPARAM index) {
      return SendDlgItemMessageW(dialog, kVisible, LB_GETTEXT, index,
                                 reinterpret_cast<LPARAM>(text.data()));
    };
    int index = 0;
    for (const std::string& line :
         {std::string("Köln\t€\u0081"), std::string(), std::string(299, 'x')}) {
      EXPECT_EQ(Add(dialog, kVisible, line), index);
      EXPECT_EQ(textOf(static_cast<WPARAM>(index++)), LRESULT(Wide(line).size()));
      EXPECT_EQ(text.data(), Wide(line));
    }
    EXPECT_EQ(textOf(3), LB_ERR);
    EXPECT_EQ(textOf(kNone), LB_ERR);
    EXPECT_EQ(Answers(dialog, kVisible,
                      {Say(LB_GETCURSEL), Say(LB_SETCURSEL, 3), Say(LB_SETCURSEL, 1),
                       Say(LB_GETCURSEL), Say(LB_SETCURSEL, kNone), Say(LB_GETCURSEL)}),
              "-1 -1 1 1 -1 -1");
    // Item data, whole.
    for (const char* line : {"a", "b"}) Add(dialog, kHidden, line);
    EXPECT_EQ(Answers(dialog, kHidden,
                      {Say(LB_SETITEMDATA, 1, 0x01020304), Say(LB_GETITEMDATA, 1),
                       Say(LB_SETITEMDATA, 1, -0x7FFFFFFF - 1), Say(LB_GETITEMDATA, 1),
                       Say(LB_GETITEMDATA, 0), Say(LB_GETITEMDATA, 2), Say(LB_SETITEMDATA, 2, 5)}),
              "1 16909060 1 -2147483648 0 -1 -1");
    EXPECT_EQ(Answers(dialog, 999, {Say(LB_GETCURSEL)}), "0");
    // Tab stops need their style.
    const int stop = 100;
    const Message setStops = Say(LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&stop));
    EXPECT_EQ(Answers(dialog, kVisible,
                      {setStops, Say(LB_GETHORIZONTALEXTENT), Say(LB_SETHORIZONTALEXTENT, 500),
                       Say(LB_GETHORIZONTALEXTENT)}),
              "1 0 0 500");
    EXPECT_EQ(Answers(dialog, kHidden, {setStops}), "0");
  });
}

TEST_F(Dialogs, ComeFromTheirModule) {
  EXPECT_EQ(Begin([](HWND) {}, 1), 7);
  EXPECT_EQ(Begin([](HWND) {}, 2), 7);
  for (HMODULE module : {static_cast<HMODULE>(nullptr), GetModuleHandleA(nullptr)}) {
    EXPECT_EQ(DialogBoxParamW(module, MAKEINTRESOURCEW(30001), nullptr, Procedure, 4711), 7);
  }
  EXPECT_EQ(Begin([](HWND) { FAIL(); }, 3), -1);
}

// In pixels, in the font of a list of the dialog, with a tab stop at 100.
int WidthOf(HWND dialog, const std::string& line) {
  const int stop = 100;
  const auto text = Wide(line);
  HDC context = GetDC(dialog);
  const LRESULT font = SendDlgItemMessageA(dialog, kVisible, WM_GETFONT, 0, 0);
  HGDIOBJ previous = SelectObject(context, reinterpret_cast<HGDIOBJ>(font));
  EXPECT_NE(previous, nullptr);
  const DWORD extent = GetTabbedTextExtentW(context, text.data(), int(text.size()), 1, &stop);
  EXPECT_EQ(SelectObject(context, previous), reinterpret_cast<HGDIOBJ>(font));
  EXPECT_EQ(ReleaseDC(dialog, context), 1);
  return LOWORD(extent);
}

TEST_F(Dialogs, MeasureTexts) {
  Begin([](HWND dialog) {
    const int name = WidthOf(dialog, "Meier");
    EXPECT_TRUE(0 < name && name < 100) << name;
    EXPECT_EQ(WidthOf(dialog, ""), 0);
    EXPECT_EQ(WidthOf(dialog, "MeierMeier"), 2 * name);
    EXPECT_EQ(WidthOf(dialog, "\tMeier"), 100 + name);
    EXPECT_EQ(WidthOf(dialog, "Meier\tMeier"), 100 + name);
    EXPECT_EQ(WidthOf(dialog, "\t\tMeier\t"), 300);
    const std::string longName(50, 'n');
    const int width = WidthOf(dialog, longName);
    EXPECT_GT(width, 100);
    EXPECT_EQ(WidthOf(dialog, longName + "\tMeier"), (width / 100 + 1) * 100 + name);
    RECT units{4, 8, 400, 800};
    EXPECT_TRUE(MapDialogRect(dialog, &units));
    EXPECT_EQ(units.right, 100 * units.left);
    EXPECT_EQ(units.bottom, 100 * units.top);
    EXPECT_GT(units.left, 0);
    EXPECT_GT(units.top, units.left);
  });
}

TEST_F(Dialogs, HaveAWordForTheirCaller) {
  Begin([this](HWND outer) {
    int own = 0;
    const auto word = reinterpret_cast<LONG_PTR>(&own);
    EXPECT_EQ(GetWindowLongPtrA(outer, DWLP_USER), 0);
    EXPECT_EQ(SetWindowLongPtrA(outer, DWLP_USER, word), 0);
    Begin([&](HWND inner) { EXPECT_EQ(SetWindowLongPtrA(inner, DWLP_USER, 1), 0); }, 2);
    EXPECT_EQ(SetWindowLongPtrA(outer, DWLP_USER, 2), word);
    EXPECT_EQ(GetWindowLongPtrA(outer, DWLP_USER), 2);
  });
}

TEST_F(Dialogs, NestAndAreGoneOnceTheyHaveEnded) {
  HWND ended = nullptr;
  Begin([&](HWND outer) {
    EXPECT_EQ(Begin([&](HWND inner) { EXPECT_NE(inner, outer); }, 2), 7);
    EXPECT_TRUE(SetDlgItemTextW(outer, 206, Wide("Text").c_str()));
    EXPECT_FALSE(SetDlgItemTextW(outer, 999, Wide("Text").c_str()));
    EXPECT_TRUE(SetWindowTextW(outer, Wide("Titel").c_str()));
    ended = outer;
  });
  for (HWND window : {ended, static_cast<HWND>(nullptr)}) {
    EXPECT_FALSE(EndDialog(window, 1));
    EXPECT_FALSE(SetWindowTextW(window, Wide("Titel").c_str()));
    EXPECT_FALSE(SetDlgItemTextW(window, 206, Wide("Text").c_str()));
    EXPECT_EQ(Answers(window, kVisible, {Say(LB_GETCURSEL)}), "0");
    EXPECT_EQ(GetWindowLongPtrA(window, DWLP_USER), 0);
    EXPECT_EQ(SetWindowLongPtrA(window, DWLP_USER, 1), 0);
    RECT units{};
    EXPECT_FALSE(MapDialogRect(window, &units));
  }
}

}  // namespace
