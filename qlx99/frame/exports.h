// The library's exports, as macros declare them. Texts are zero-terminated Windows-1252; a null
// pointer counts as empty text. A `record` is the caller's buffer of at least 1024 bytes; a null
// pointer gives the result 0. Results are -1 for delivered or done and 0 for neither, unless said
// otherwise. What each export does stands with its room's source.
#pragma once

#include <cstdint>

#include "platform/windows_api.h"

namespace qlx99 {

extern "C" {

// frame/
std::int32_t WINAPI GetDocuRoot(std::int32_t length, char* buffer);
std::int32_t WINAPI GetProgramRoot(std::int32_t length, char* buffer);
LRESULT CALLBACK MainWndProc(HWND window, UINT message, WPARAM wordParam, LPARAM longParam);

// users/
std::int32_t WINAPI UserInit();
std::int32_t WINAPI UserNext(const char* index, char* record);

// followups/
std::int32_t WINAPI ZtkodoliInit();
std::int32_t WINAPI ZtkodoliNext(const char* index, char* record);
std::int32_t WINAPI WVInit(const char* caseNumber);
std::int32_t WINAPI WVNext(const char* caseNumber, const char* index, char* record);
std::int32_t WINAPI WVNew(const char* caseNumber, const char* kindId, const char* date,
                          const char* userId, const char* secondUserId, const char* partyRecordId,
                          const char* text);
std::int32_t WINAPI WVChange(const char* followUpId, const char* kindId, const char* date,
                             const char* userId, const char* secondUserId,
                             const char* partyRecordId, const char* text);
std::int32_t WINAPI WVDelete(const char* followUpId);

// cases/
std::int32_t WINAPI SLesenDLL(const char* caseNumber, char* record);

// addresses/
std::int32_t WINAPI ALesenDLL(const char* caseNumber, const char* addressNumber, char* record,
                              const char* linkNumber);

// parties/
std::int32_t WINAPI BLesenDLL(const char* role, const char* caseNumber, const char* spare,
                              const char* noDialog, char* result);
std::int32_t WINAPI BListeInit(const char* caseNumber);
std::int32_t WINAPI BListeNext(const char* caseNumber, const char* index, char* record);
std::int32_t WINAPI GetAdrFieldsMain(const char* first, const char* second, const char* third,
                                     const char* fourth);
std::int32_t WINAPI GetAdressTyp(const char* first, const char* second);

// caseparties/
std::int32_t WINAPI GetDokuNr(const char* caseNumber);

}  // extern "C"

}  // namespace qlx99
