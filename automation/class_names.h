// The class of the library object, as clients find it in the registry.
#pragma once

#include "platform/windows_api.h"

namespace automation {

inline constexpr CLSID kLibraryClass = {
    0xA3F2BE8F, 0xF156, 0x4BB0, {0xB3, 0xBA, 0x7C, 0xA7, 0x3F, 0x00, 0x43, 0x44}};
inline constexpr auto kClassId = L"{A3F2BE8F-F156-4BB0-B3BA-7CA73F004344}";
inline constexpr auto kClassName = L"qlx99.Library";
inline constexpr auto kVersionedName = L"qlx99.Library.1";

}  // namespace automation
