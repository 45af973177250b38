/* The exports of qlx99.dll, for callers in C and C++; link with qlx99.lib. Macros have the module
   qlx99.bas instead. exports.md (in docs/ of the sources, in macros/ of the package) tells of each
   export's record, field by field.

   Texts are zero-terminated, in the code page of a German Windows (1252); they stay the caller's
   and are not kept. Numbers are passed as decimal text unless the parameter is an int; what does
   not begin with a number counts as 0. A null pointer counts as empty text. Case numbers are read
   up to their 8th character; positions in lists count from 1, and one below 1 means the first.

   A `record` is the caller's buffer of QLX99_RECORD_SIZE bytes. The record is one line of fields,
   each ended by '|' except the last. Functions marked (blanks) write nothing behind it, not even a
   terminator, so fill the buffer with blanks before; those marked (zeros) write five zero bytes and
   a byte of value 1. A null pointer as `record` gives the result 0.

   The result is QLX99_TRUE for delivered or done and 0 for neither, unless said otherwise. What
   goes wrong is told to the user in a message box before the function returns. A function that
   delivers may also return 0 with a whole record: when its first two fields are empty.

   Not for several threads at a time: dialogs and message boxes run on the caller's thread. */
#ifndef QLX99_H
#define QLX99_H

#ifndef WINAPI
#include <windows.h>
#endif

/* Bytes that a record and what is written behind it take at most. */
#define QLX99_RECORD_SIZE 1024

/* The macro language's true. */
#define QLX99_TRUE (-1)

#ifdef __cplusplus
extern "C" {
#endif

/* Where the office's documents lie. Copies `length` bytes of the path and the zero bytes behind it,
   at most 260; the text is terminated only if it is shorter than `length`. Returns 1, or 0 when no
   path is configured; `path` is untouched then. */
int WINAPI GetDocuRoot(int length, char* path);

/* The same for the case-management system's program. Returns 0 also when there is no such folder;
   its path is in `path` then. */
int WINAPI GetProgramRoot(int length, char* path);

/* The number of users of the office, and the user at a position (blanks, 5 fields). */
int WINAPI UserInit(void);
int WINAPI UserNext(const char* index, char* record);

/* The number of follow-up kinds, and the kind at a position (blanks, 3 fields). */
int WINAPI ZtkodoliInit(void);
int WINAPI ZtkodoliNext(const char* index, char* record);

/* The number of follow-ups of a case, and the follow-up at a position (blanks, 12 fields). */
int WINAPI WVInit(const char* caseNumber);
int WINAPI WVNext(const char* caseNumber, const char* index, char* record);

/* Creates a follow-up. `dueDate` is DD.MM.YYYY, up to the year 2050; `secondUserId` and
   `partyRecordId` may be 0; `text` has at most 150 characters, blanks at its end not counted.
   Returns 0, with nothing written, for what is not valid and for an unknown case. */
int WINAPI WVNew(const char* caseNumber, const char* kindId, const char* dueDate,
                 const char* userId, const char* secondUserId, const char* partyRecordId,
                 const char* text);

/* Rewrites a follow-up, all of it but its case. Returns 0, with nothing written, for what is not
   valid, for an unknown follow-up, and when another workstation has changed it meanwhile. */
int WINAPI WVChange(const char* followUpId, const char* kindId, const char* dueDate,
                    const char* userId, const char* secondUserId, const char* partyRecordId,
                    const char* text);

/* Removes a follow-up. Returns 0 when there is none of that number. */
int WINAPI WVDelete(const char* followUpId);

/* A case (zeros, 15 fields). For an unknown one the record is "0|". */
int WINAPI SLesenDLL(const char* caseNumber, char* record);

/* An address (zeros, 25 fields) with what a case says of it, for which `caseNumber` and
   `linkNumber` name the party. A null pointer as `linkNumber` means the one of the last call, so
   pass "" for none. Of several contact persons or bank connections the user chooses in a dialog;
   without a choice it is the first. */
int WINAPI ALesenDLL(const char* caseNumber, const char* addressNumber, char* record,
                     const char* linkNumber);

/* The reference of the party of a case in a role: address number, relation code, 0 and address-link
   number, zero-terminated, in at most 29 bytes. `role` is a code of two characters: "M " client,
   "G " opponent, "V " opposing counsel, "C " court, "\247M" and "\247G" legal representative of
   client and opponent, "RM" the client's legal-expenses insurer, "HG" the opponent's liability
   insurer, "  " any party. Of several the user chooses in a dialog, unless `noDialog` is "1".
   Returns 0 with `result` untouched when there is no party, or several and no dialog; 0 with
   "| | |" when the user chose none. `spare` means nothing; pass "". */
int WINAPI BLesenDLL(const char* role, const char* caseNumber, const char* spare,
                     const char* noDialog, char* result);

/* The number of parties of a case, and the party at a position (zeros, 9 fields). The first field
   is missing altogether where the relation is, the second where the address is. Beyond the last
   party the record is "||", and the result is 0. */
int WINAPI BListeInit(const char* caseNumber);
int WINAPI BListeNext(const char* caseNumber, const char* index, char* record);

/* Do nothing and return QLX99_TRUE, except where another library does this one's work (the
   delegated kind of installation); it alone says what they take. */
int WINAPI GetAdrFieldsMain(const char* first, const char* second, const char* third,
                            const char* fourth);
int WINAPI GetAdressTyp(const char* first, const char* second);

/* Issues the next document number of a case and returns it: 1, 2, 3 ... Returns 0 when none could
   be issued, but 1 when the file of the numbers could not be opened. Unknown cases share one
   counter. */
int WINAPI GetDokuNr(const char* caseNumber);

#ifdef __cplusplus
}
#endif

#endif
