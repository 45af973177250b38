// Every message of the library, in one place, word for word as the office knows it: several end in
// a blank, and several of those about the data path name another kind of data than the call that
// shows them.
#pragma once

#include "frame/ansi_text.h"
#include "platform/windows_api.h"

namespace qlx99 {

struct Message {
  const char* text;  // Windows-1252; "%s" stands for a name
  const char* title;
  UINT style;  // of MessageBoxW
};

// Shows the message at once, without an owner window, and waits until the user has read it.
void ShowMessage(const Message& message);

// The same for a text with one "%s", which `name` replaces. The text is cut where it would grow
// beyond 255 bytes.
void ShowMessage(const Message& message, const char* name);

inline constexpr const char* kTitle = "Systemmeldung !";
inline constexpr const char* kRecordManagerTitle = "Systemmeldung";

// The data directory is not configured.
inline constexpr Message kNoDataPathForUsers{
    u8"Datenpfad nicht gefunden !\n User können nicht übernommen werden ! "_ansi, kTitle,
    MB_ICONHAND};
inline constexpr Message kNoDataPathForUserData{
    u8"Datenpfad nicht gefunden !\n Userdaten können nicht übernommen werden ! "_ansi, kTitle,
    MB_ICONHAND};
inline constexpr Message kNoDataPathForCases{
    u8"Datenpfad nicht gefunden !\n Aktendaten können nicht übernommen werden ! "_ansi, kTitle,
    MB_ICONHAND};
inline constexpr Message kNoDataPathForAddresses{
    u8"Datenpfad nicht gefunden !\n Adressadaten können nicht übernommen werden ! "_ansi, kTitle,
    MB_ICONHAND};
inline constexpr Message kNoDataPathForDocuments{
    u8"Datenpfad nicht gefunden !\n Dokumentdaten können nicht übernommen werden ! "_ansi, kTitle,
    MB_ICONHAND};
inline constexpr Message kNoDataPathForFollowUps{
    u8"Datenpfad nicht gefunden !\n Wiedervorlagedaten können nicht übernommen werden ! "_ansi,
    kTitle, MB_ICONHAND};
inline constexpr Message kNoDataPathForWritingFollowUps{
    u8"Datenpfad nicht gefunden !\n Wiedervorlagedaten können nicht gelöscht werden ! "_ansi,
    kTitle, MB_ICONHAND};

// Results and record files.
inline constexpr Message kResultTooLong{u8"Datenmenge ist zu groß !"_ansi, kTitle, MB_ICONHAND};
inline constexpr Message kFileNotOpened{u8"Die Datei %s kann nicht geöffnet werden !"_ansi, kTitle,
                                        MB_OK};
inline constexpr Message kFileNotClosed{u8"Die Datei %s kann nicht geschlossen werden !"_ansi,
                                        kTitle, MB_OK};

// Follow-ups that cannot be written as they were given.
inline constexpr Message kFollowUpInvalid{u8"Geben Sie bitte eine gültige Wiedervorlage an !"_ansi,
                                          kTitle, MB_OK};
inline constexpr Message kUserInvalid{u8"Geben Sie bitte einen gültigen Benutzer an !"_ansi, kTitle,
                                      MB_OK};
inline constexpr Message kDateMissing{u8"Geben Sie bitte ein Datum an !"_ansi, kTitle, MB_OK};
inline constexpr Message kDateInvalid{u8"Geben Sie bitte ein gültiges Datum an !"_ansi, kTitle,
                                      MB_OK};
inline constexpr Message kFollowUpTextTooLong{
    u8"Der Text der Wiedervorlage darf höchstens 150 Zeichen lang sein !"_ansi, kTitle, MB_OK};

// The record manager.
inline constexpr Message kRecordManagerNotLoaded{
    u8"Die Datenbank Schnittstelle Pervasie.SQL / Btrieve konnte nicht geladen werden"_ansi,
    kRecordManagerTitle, MB_OK};
inline constexpr Message kRecordManagerIncomplete{
    u8"Funktionen der Datenbank Schnittstelle Pervasie.SQL / Btrieve konnten nicht gefunden werden"_ansi,
    kRecordManagerTitle, MB_OK};
inline constexpr Message kRecordManagerBusy{
    u8"Die max. Anzahl von Versuchen die Datenbank-Aktion durchzuführen ist erreicht."_ansi,
    kRecordManagerTitle, MB_OK};

// The delegated kind.
inline constexpr Message kLoggedInElsewhere{
    u8"Sie sind nicht in einer STELVORA-Bürogemeinschaft angemeldet. Bitte und melden Sie sich um."_ansi,
    kTitle, MB_SYSTEMMODAL};
inline constexpr Message kDelegateNotFound{u8"Funktion >%s< aus der QLX02.DLL nicht gefunden"_ansi,
                                           kTitle, MB_OK};
inline constexpr Message kNotImplemented{u8"Funktion >%s< noch nicht implementiert"_ansi, kTitle,
                                         MB_OK};

}  // namespace qlx99
