// Dialogs that end before they are shown, so that nobody has to sit before them.
#include <gmock/gmock.h>

#include <array>
#include <functional>
#include <string>

#include "platform/windows_api.h"
#include "test_library.h"

namespace {

constexpr int kVisibleList = 403;
constexpr int kHiddenList = 601;
constexpr int kSortedList = 602;

class Dialogs : public testing::Test {
 protected:
  /// Does `initialisation` while the dialog begins, then ends it with 7.
  INT_PTR Begin(std::function<void(HWND)> initialisation, int id = 1) {
    onInitialisation = std::move(initialisation);
    return DialogBoxParamA(library_.Handle(), MAKEINTRESOURCEA(id), nullptr, Procedure, 4711);
  }

  static LRESULT Send(HWND dialog, int id, UINT message, WPARAM wordParam = 0,
                      LPARAM longParam = 0) {
    return SendDlgItemMessageA(dialog, id, message, wordParam, longParam);
  }
  static LRESULT Add(HWND dialog, int id, const char* line) {
    return Send(dialog, id, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line));
  }
  static std::string Line(HWND dialog, int id, WPARAM index) {
    std::string line(static_cast<std::size_t>(Send(dialog, id, LB_GETTEXTLEN, index)), '#');
    EXPECT_EQ(Send(dialog, id, LB_GETTEXT, index, reinterpret_cast<LPARAM>(line.data())),
              static_cast<LRESULT>(line.size()));
    return line;
  }

  static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM /*wordParam*/,
                                    LPARAM longParam) {
    if (message == WM_INITDIALOG) {
      EXPECT_EQ(longParam, 4711);
      onInitialisation(dialog);
      EXPECT_TRUE(EndDialog(dialog, 7));
    }
    return 0;
  }

  const TestLibrary library_;

 private:
  static inline std::function<void(HWND)> onInitialisation;
};

TEST_F(Dialogs, ReturnWhatTheyWereEndedWith) {
  for (const int id : {1, 2}) {
    EXPECT_EQ(Begin([](HWND dialog) { EXPECT_NE(dialog, nullptr); }, id), 7) << id;
  }
}

TEST_F(Dialogs, MayBelongToTheProgramItself) {
  for (HMODULE module : {static_cast<HMODULE>(nullptr), GetModuleHandleA(nullptr)}) {
    Begin([](HWND) {});
    EXPECT_EQ(DialogBoxParamA(module, MAKEINTRESOURCEA(30001), nullptr, Procedure, 4711), 7);
  }
}

TEST_F(Dialogs, WithoutTemplateFailWithAReason) {
  SetLastError(ERROR_SUCCESS);
  EXPECT_EQ(Begin([](HWND) { FAIL(); }, 3), -1);
  EXPECT_EQ(GetLastError(), ERROR_RESOURCE_NAME_NOT_FOUND);
}

TEST_F(Dialogs, KeepTheLinesOfAListInOrder) {
  Begin([](HWND dialog) {
    EXPECT_EQ(Send(dialog, kVisibleList, LB_GETCOUNT), 0);
    EXPECT_EQ(Add(dialog, kVisibleList, "Sparkasse\t12\t"), 0);
    EXPECT_EQ(Add(dialog, kVisibleList, ""), 1);
    EXPECT_EQ(Add(dialog, kVisibleList, std::string(299, 'x').c_str()), 2);
    EXPECT_EQ(Send(dialog, kVisibleList, LB_GETCOUNT), 3);
    EXPECT_EQ(Line(dialog, kVisibleList, 0), "Sparkasse\t12\t");
    EXPECT_EQ(Line(dialog, kVisibleList, 1), "");
    EXPECT_EQ(Line(dialog, kVisibleList, 2), std::string(299, 'x'));
  });
}

TEST_F(Dialogs, SortAListThatAsksForIt) {
  Begin([](HWND dialog) {
    EXPECT_EQ(Add(dialog, kSortedList, "Meier"), 0);
    EXPECT_EQ(Add(dialog, kSortedList, "adler"), 0);
    EXPECT_EQ(Add(dialog, kSortedList, "Zander"), 2);
    EXPECT_EQ(Add(dialog, kSortedList, "lange"), 1);
    EXPECT_EQ(Line(dialog, kSortedList, 1), "lange");
  });
}

TEST_F(Dialogs, SelectOnlyLinesThatAreThere) {
  Begin([](HWND dialog) {
    EXPECT_EQ(Send(dialog, kVisibleList, LB_GETCURSEL), LB_ERR);
    EXPECT_EQ(Send(dialog, kVisibleList, LB_SETCURSEL, 0), LB_ERR);
    Add(dialog, kVisibleList, "a");
    Add(dialog, kVisibleList, "b");
    EXPECT_EQ(Send(dialog, kVisibleList, LB_SETCURSEL, 1), 1);
    EXPECT_EQ(Send(dialog, kVisibleList, LB_GETCURSEL), 1);
    EXPECT_EQ(Send(dialog, kVisibleList, LB_SETCURSEL, static_cast<WPARAM>(-1)), LB_ERR);
    EXPECT_EQ(Send(dialog, kVisibleList, LB_GETCURSEL), LB_ERR);
  });
}

TEST_F(Dialogs, KeepItemDataWhole) {
  Begin([](HWND dialog) {
    Add(dialog, kHiddenList, "a");
    Add(dialog, kHiddenList, "b");
    EXPECT_EQ(Send(dialog, kHiddenList, LB_GETITEMDATA, 1), 0);
    for (const LONG data : {LONG{0x01020304}, LONG{-2}, LONG{-0x7FFFFFFF - 1}, LONG{0x7FFFFFFF}}) {
      EXPECT_NE(Send(dialog, kHiddenList, LB_SETITEMDATA, 1, data), LB_ERR);
      EXPECT_EQ(static_cast<LONG>(Send(dialog, kHiddenList, LB_GETITEMDATA, 1)), data);
    }
    EXPECT_EQ(Send(dialog, kHiddenList, LB_GETITEMDATA, 0), 0);
  });
}

TEST_F(Dialogs, RefuseIndexesOutsideOfAList) {
  Begin([](HWND dialog) {
    Add(dialog, kVisibleList, "a");
    std::array<char, 10> buffer{};
    for (const WPARAM index : {WPARAM{1}, WPARAM{1000}, static_cast<WPARAM>(-1)}) {
      EXPECT_EQ(
          Send(dialog, kVisibleList, LB_GETTEXT, index, reinterpret_cast<LPARAM>(buffer.data())),
          LB_ERR);
      EXPECT_EQ(Send(dialog, kVisibleList, LB_GETTEXTLEN, index), LB_ERR);
      EXPECT_EQ(Send(dialog, kVisibleList, LB_GETITEMDATA, index), LB_ERR);
    }
    EXPECT_EQ(Send(dialog, kVisibleList, LB_SETITEMDATA, 1, 5), LB_ERR);
  });
}

TEST_F(Dialogs, SetTabStopsWhereTheStyleAllowsThem) {
  Begin([](HWND dialog) {
    int stop = 100;
    EXPECT_EQ(Send(dialog, kVisibleList, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&stop)), TRUE);
    EXPECT_EQ(Send(dialog, kHiddenList, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&stop)), FALSE);
    EXPECT_EQ(Send(dialog, kVisibleList, LB_SETHORIZONTALEXTENT, 500), 0);
  });
}

TEST_F(Dialogs, SayWhetherAControlIsThere) {
  Begin([](HWND dialog) {
    EXPECT_FALSE(SetDlgItemTextA(dialog, 999, "Text"));
    EXPECT_EQ(Send(dialog, 999, LB_GETCOUNT), 0);
    EXPECT_TRUE(SetDlgItemTextA(dialog, 206, "Text"));
    EXPECT_TRUE(SetWindowTextA(dialog, "Titel"));
  });
}

TEST_F(Dialogs, AreGoneOnceTheyHaveEnded) {
  HWND ended = nullptr;
  Begin([&](HWND dialog) { ended = dialog; });
  for (HWND window : {ended, static_cast<HWND>(nullptr)}) {
    SetLastError(ERROR_SUCCESS);
    EXPECT_FALSE(EndDialog(window, 1));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_WINDOW_HANDLE);
    EXPECT_FALSE(SetDlgItemTextA(window, 206, "Text"));
    EXPECT_EQ(Send(window, kVisibleList, LB_GETCOUNT), 0);
  }
}

TEST_F(Dialogs, MayNest) {
  std::string trace;
  const INT_PTR result = Begin([&](HWND outer) {
    trace += '(';
    EXPECT_EQ(Begin([&](HWND inner) { trace += inner == outer ? "same" : "inner"; }, 2), 7);
    trace += ')';
    EXPECT_EQ(Add(outer, kVisibleList, "a"), 0);
  });
  EXPECT_EQ(result, 7);
  EXPECT_EQ(trace, "(inner)");
}

}  // namespace
