' What macros read: named fields, or an error that says what is missing.
Option Explicit

Public Sub CheckLists()
    Dim followUp As QlxFollowUp, party As QlxCaseParty
    Expect "counts", UserCount() & FollowUpKindCount() & FollowUpCount("12345678") & CasePartyCount("12345678"), "3344"
    followUp = FollowUpAt("12345678", 1)
    Expect "a follow-up's case and party", followUp.CaseNumber & "," & followUp.PartyRecordId, "12345678,202"
    followUp = FollowUpAt("12345678", 4)
    Expect "a party without an address", followUp.PartyRecordId, UnknownParty
    party = CasePartyAt("12345678", 4)
    Expect "a party without a relation", party.RelationCode & "," & party.Name & "," & party.PartyRecordId, _
        ",Ohne Beziehung,204"
End Sub

Public Sub CheckPositions()
    On Error Resume Next
    UserAt 0
    Refused "user 0", qlxNotThere, "ab 1"
    FollowUpKindAt -1
    Refused "kind -1", qlxNotThere, "ab 1"
    UserAt 4
    Refused "a user beyond the last", qlxNotThere, "Benutzer 4"
    FollowUpAt "12345678", 5
    Refused "a follow-up beyond the last", qlxNotThere, "Wiedervorlage 5"
    CasePartyAt "12345678", 3
    Refused "the party without an address", qlxNotThere, "Beteiligter 3"
    FollowUpAt "999", 1
    Refused "a follow-up of an unknown case", qlxNotThere, "Die Akte 999 gibt es nicht"
    CasePartyAt "999", 1
    Refused "a party of an unknown case", qlxNotThere, "Die Akte 999 gibt es nicht"
    FollowUpAt "12345678x", 1
    Refused "a follow-up of a longer case number", qlxNotThere, "höchstens 8 Zeichen"
    CasePartyAt "12345678x", 1
    Refused "a party of a longer case number", qlxNotThere, "höchstens 8 Zeichen"
    CasePartyAt ChrW$(945) & "1234567", 1
    Refused "a case number with a foreign letter", qlxNotThere, "Windows-1252"
    ReadCase "123456789"
    Refused "a case of a longer number", qlxNotThere, "höchstens 8 Zeichen"
    FollowUpCount "999"
    Refused "follow-ups of an unknown case", qlxNotThere, "Die Akte 999 gibt es nicht"
End Sub

' A "|" in an office's text, and a number that is none.
Public Sub CheckSeparators()
    Dim at As Long, texts As String, oneKind As QlxFollowUpKind, followUp As QlxFollowUp, facts As QlxCase
    For at = 1 To FollowUpCount("12345678")
        followUp = FollowUpAt("12345678", at)
        texts = texts & followUp.Id & followUp.Text & ","
    Next
    Expect "a list with a | in a text", texts, "1Termin, Saal 217,4Gutachten | Anlage,5Verjährung prüfen,6x,"
    oneKind = FollowUpKindAt(3)
    Expect "a kind's name with a |", oneKind.Name & "," & oneKind.Id, "Termin | vor Ort,4"
    facts = ReadCase("12345678")
    Expect "a long text with a |", facts.LongText & "," & facts.UserSign, "Auffahrunfall | Mietwagen,JM"
    On Error Resume Next
    UserAt 2
    Refused "a user's name with a |", qlxNotRead, "Trennzeichen"
    userRecords(0) = "A|B|C|D|3000000000"
    UserAt 1
    Refused "a number beyond a Long", qlxNotRead, "Trennzeichen"
    userRecords(0) = "A|B|C|D"
    UserAt 1
    Refused "a record without all fields", qlxNotRead, "vollständig"
    followUpRecords(0) = "15.05.2024|Frist|2|Text|Name mit | darin|MIT|2|||0|0|1"
    FollowUpAt "12345678", 1
    Refused "a follow-up of a user with a | in the name", qlxNotRead, "Trennzeichen"
    followUpRecords(0) = "15.05.2024|Termin ||4|Text|Petra Lohmeyer|PL|4|||0|0|1"
    FollowUpAt "12345678", 1
    Refused "a follow-up of a kind that ends in a |", qlxNotRead, "Trennzeichen"
    NewOffice
End Sub

Public Sub CheckCases()
    Dim facts As QlxCase
    facts = ReadCase("12345678")
    Expect "a case", facts.Rubrum & "," & facts.CaseType & "," & facts.Amount & "," & facts.SecondDate & "," & _
        facts.ArchiveMark & "," & facts.PartyCount & "," & facts.CurrencyCode, _
        "Brandstätter ./. Wernicke,Verkehrsunfallsache,12.345,67,15.05.2024,,4,EUR"
    Expect "document numbers", NextDocumentNumber("12345678") & NextDocumentNumber("12345678"), "12"
    On Error Resume Next
    ReadCase "999"
    Refused "an unknown case", qlxNotThere, "Die Akte 999 gibt es nicht"
    NextDocumentNumber "999"
    Refused "a document number of an unknown case", qlxNotThere, "Die Akte 999 gibt es nicht"
    Expect "what an unknown case costs", lastNumber, 2
    characterOf208 = ChrW$(1056)
    ReadCase "12345678"
    If Environ("QLX99_BITS") = "64" Then
        Expect "a code page that automation does not use", Err.Number, 0
        Err.Clear
    Else
        Refused "another code page", qlxWrongCharacters, "1252"
    End If
    NewOffice
End Sub

Public Sub CheckParties()
    Dim party As QlxPartyReference, address As QlxAddress
    party = PartyInRole(RoleClient, "12345678")
    Expect "the client", party.AddressNumber & "," & party.RelationCode & "," & party.Always0 & "," & _
        party.LinkNumber, _
        "4711,25,0,815"
    party = PartyInRole("M", "12345678")
    Expect "a role without its blank", party.AddressNumber, 4711
    address = ReadAddress("12345678", 4711, 815)
    Expect "an address", address.FirstName & "," & address.Name & "," & address.Street & "," & _
        address.RelationDesignation, _
        "Klaus,Brandstätter,Lindenthaler Gürtel 84 a,Mandant"
    On Error Resume Next
    PartyInRole RoleOpponent, "12345678", False
    Refused "several parties, not to be asked", qlxNoParty, "nicht genau einen"
    PartyInRole RoleCourt, "12345678"
    Refused "no party", qlxNoParty, "keinen"
    hasAnsweredChoice = False
    PartyInRole RoleOpponent, "12345678"
    Refused "no choice", qlxNothingChosen, "ausgewählt"
    PartyInRole "X", "12345678"
    Refused "an unknown role", qlxNotValid, "Rolle ""X"""
    PartyInRole RoleClient, "999"
    Refused "a party of an unknown case, by its role", qlxNotThere, "Die Akte 999 gibt es nicht"
    ReadAddress "12345678", 9999
    Refused "an unknown address", qlxNotThere, "Die Adresse 9999 gibt es nicht"
    ReadAddress "999", 4711
    Refused "an address for an unknown case", qlxNotThere, "Die Akte 999 gibt es nicht"
    Expect "an address without a case", Err.Number & ReadAddress("", 4711).PostalCode, "050935"
    NewOffice
End Sub

Public Sub CheckUnconfigured()
    isConfigured = False
    On Error Resume Next
    ReadCase "12345678"
    Refused "a case, unconfigured", qlxNotRead, "eingerichtet"
    ReadAddress "", 4711
    Refused "an address, unconfigured", qlxNotRead, "eingerichtet"
    FollowUpAt "12345678", 1
    Refused "a follow-up, unconfigured", qlxNotRead, "eingerichtet"
    isConfigured = True
    caseText = ""
    ReadCase "12345678"
    Refused "a case, not logged in", qlxNotRead, "kann nicht gelesen werden"
    documentText = ""
    DocumentRoot
    Refused "no folder of documents", qlxNotRead, "Dokumentenverzeichnis"
    ProgramRoot
    Refused "no program's folder", qlxNotRead, "Das Programmverzeichnis ist nicht eingerichtet."
    NewOffice
    Expect "the folders", DocumentRoot() & ProgramRoot(), "C:\qlx99\office\DokumenteC:\qlx99\office\Dokumente"
End Sub
