// The sizes of texts. Nothing is drawn here: each character of a dialog's font is as wide as four
// dialog units, which is what they are made of.
#include <memory>
#include <utility>

#include "platform/dialog.h"
#include "platform/unsupported.h"

// A device context.
struct HDC__ {
  HWND window;
  HGDIOBJ font;
};

namespace {

constexpr int kCharacterWidth = 6;  // in pixels, as of the dialogs' font on a usual screen
constexpr int kCharacterHeight = 13;
constexpr int kUnitsPerWidth = 4;  // dialog units
constexpr int kUnitsPerHeight = 8;

char systemFont;  // of a fresh device context
char dialogFont;

LONG Scaled(LONG units, int pixels, int unitsPerPixels) {
  return (units * pixels + unitsPerPixels / 2) / unitsPerPixels;
}

}  // namespace

HGDIOBJ platform::DialogFont() { return &dialogFont; }

BOOL WINAPI MapDialogRect(HWND dialog, RECT* rect) {
  if (platform::DialogOf(dialog) == nullptr) return FALSE;
  for (LONG* x : {&rect->left, &rect->right}) *x = Scaled(*x, kCharacterWidth, kUnitsPerWidth);
  for (LONG* y : {&rect->top, &rect->bottom}) *y = Scaled(*y, kCharacterHeight, kUnitsPerHeight);
  return TRUE;
}

// On the heap, so that the sanitizers see one that is not released.
HDC WINAPI GetDC(HWND window) {
  if (platform::DialogOf(window) == nullptr) {
    platform::Unsupported("GetDC", "anything but an open dialog");
  }
  return std::make_unique<HDC__>(HDC__{window, &systemFont}).release();
}

int WINAPI ReleaseDC(HWND window, HDC context) {
  if (context->window != window) return 0;
  const std::unique_ptr<HDC__> released(context);
  return 1;
}

HGDIOBJ WINAPI SelectObject(HDC context, HGDIOBJ object) {
  if (object != &systemFont && object != &dialogFont) {
    platform::Unsupported("SelectObject", "anything but a font of this layer");
  }
  return std::exchange(context->font, object);
}

DWORD WINAPI GetTabbedTextExtentW(HDC context, LPCWSTR text, int length, int tabStopCount,
                                  const int* tabStops) {
  if (context->font != &dialogFont || tabStopCount != 1 || *tabStops <= 0) {
    platform::Unsupported("GetTabbedTextExtentW", "another font, or other tab stops than one");
  }
  int width = 0;
  for (LPCWSTR c = text; c != text + length; ++c) {
    width = *c == u'\t' ? (width / *tabStops + 1) * *tabStops : width + kCharacterWidth;
  }
  return static_cast<DWORD>(MAKEWPARAM(static_cast<WORD>(width), kCharacterHeight));
}
