' What check_macros runs: the functions for macros, and each fault that they had.
Option Explicit

Public newDocument As String
Public boxAnswers As String ' what a person answers one question after the other, with ";" between
Public shownMessage As String

Public Sub RunAll()
    Open Environ("QLX99_RESULTS") For Output As #1
    NewOffice
    CheckLists
    CheckPositions
    CheckSeparators
    CheckCases
    CheckParties
    CheckUnconfigured
    CheckNewFollowUps
    CheckRefusedDates
    CheckRefusedTexts
    CheckFollowUpsThereAndBack
    CheckChangedFollowUps
    CheckExports
    CheckLetters
    CheckSamples
    Print #1, "done"
    Close #1
End Sub

Public Sub RunImportedAsUtf8()
    Open Environ("QLX99_RESULTS") For Output As #1
    NewOffice
    On Error Resume Next
    ReadCase "12345678"
    Refused "a case, by the file of a clone", qlxWrongCharacters, "UTF-8"
    PartyInRole RoleClientRepresentative, "12345678"
    Refused "a party, by the file of a clone", qlxWrongCharacters, "UTF-8"
    Print #1, "done"
    Close #1
End Sub

' --- What a person sees and answers

Public Sub ShowBox(ByVal shown As String, Optional ByVal kind As Variant, Optional ByVal title As Variant)
    shownMessage = shown
End Sub

Public Function AnsweredBox(ByVal question As String, Optional ByVal title As Variant) As String
    Dim at As Long
    at = InStr(boxAnswers & ";", ";")
    AnsweredBox = Left$(boxAnswers, at - 1)
    boxAnswers = Mid$(boxAnswers, at + 1)
End Function

' --- What is found and what was expected

Private Sub Expect(ByVal what As String, ByVal found As Variant, ByVal expected As Variant)
    If CStr(found) = CStr(expected) Then
        Print #1, "ok " & what
    Else
        Print #1, "FAILED " & what & ": """ & CStr(found) & """ instead of """ & CStr(expected) & """"
    End If
End Sub

' The line before made this error, with a text that says so; nothing was written.
Private Sub Refused(ByVal what As String, ByVal expected As Long, ByVal word As String)
    Dim found As String
    found = Err.Number & " " & Err.Description
    If Err.Number = expected And InStr(Err.Description, word) > 0 Then found = "refused"
    Err.Clear
    Expect what, found & lastWritten, "refused"
    lastWritten = ""
End Sub

Private Function Flat(ByVal whole As String) As String
    Flat = Replace(whole, vbCr, " ")
    Do While InStr(Flat, "  ") > 0
        Flat = Replace(Flat, "  ", " ")
    Loop
    Flat = Trim$(Flat)
End Function

' --- Reading

Private Sub CheckLists()
    Dim oneUser As QlxUser, oneKind As QlxFollowUpKind, followUp As QlxFollowUp, party As QlxCaseParty
    Expect "counts", UserCount() & FollowUpKindCount() & FollowUpCount("12345678") & CasePartyCount("12345678"), "3344"
    oneUser = UserAt(1)
    Expect "a user", oneUser.Name & "," & oneUser.ThirdText & "," & oneUser.SecondText & "," & oneUser.ShortSign & "," & _
        oneUser.Number, "Rechtsanwalt Dr. Jan Merten,-11,merten@kanzlei-am-ring.example,JM,1"
    oneKind = FollowUpKindAt(2)
    Expect "a kind", oneKind.Name & "," & oneKind.Number & "," & oneKind.Id, "Frist,20,2"
    followUp = FollowUpAt("12345678", 1)
    Expect "a follow-up", followUp.DueDate & "," & followUp.KindName & "," & followUp.KindId & "," & followUp.Text & "," & _
        followUp.UserName & "," & followUp.UserSign & "," & followUp.UserId & "," & followUp.SecondUserName & "," & _
        followUp.SecondUserSign & "," & followUp.SecondUserId & "," & followUp.PartyPosition & "," & followUp.Id, _
        "15.05.2024,Gerichtstermin,4,Termin, Saal 217,Rechtsanwalt Dr. Jan Merten,JM,1,Petra Lohmeyer,PL,4,2,1"
    Expect "its case and party", followUp.CaseNumber & "," & followUp.PartyRecordId, "12345678,202"
    followUp = FollowUpAt("12345678", 4)
    Expect "a party without an address", followUp.PartyRecordId, UnknownParty
    party = CasePartyAt("12345678", 2)
    Expect "a party", party.RelationCode & "," & party.Salutation & "," & party.Name & "," & party.Street & "," & _
        party.Place & "," & party.AddressNumber & "," & party.LinkNumber & "," & party.PartyRecordId, _
        "0 ,Herrn,Wernicke,Krefelder Wall 40,Köln,4801,0,202"
    party = CasePartyAt("12345678", 4)
    Expect "a party without a relation", party.RelationCode & "," & party.Name & "," & party.PartyRecordId, _
        ",Ohne Beziehung,204"
End Sub

Private Sub CheckPositions()
    On Error Resume Next
    UserAt 0
    Refused "user 0", qlxNotThere, "ab 1"
    FollowUpKindAt -1
    Refused "kind -1", qlxNotThere, "ab 1"
    FollowUpAt "12345678", 0
    Refused "follow-up 0", qlxNotThere, "ab 1"
    CasePartyAt "12345678", 0
    Refused "party 0", qlxNotThere, "ab 1"
    UserAt 4
    Refused "a user beyond the last", qlxNotThere, "Benutzer 4"
    FollowUpKindAt 4
    Refused "a kind beyond the last", qlxNotThere, "Wiedervorlageart 4"
    FollowUpAt "12345678", 5
    Refused "a follow-up beyond the last", qlxNotThere, "Wiedervorlage 5"
    CasePartyAt "12345678", 5
    Refused "a party beyond the last", qlxNotThere, "Beteiligter 5"
    CasePartyAt "12345678", 3
    Refused "the party without an address", qlxNotThere, "Beteiligter 3"
    FollowUpAt "999", 1
    Refused "a follow-up of an unknown case", qlxNotThere, "Die Akte 999 gibt es nicht"
    CasePartyAt "999", 1
    Refused "a party of an unknown case", qlxNotThere, "Die Akte 999 gibt es nicht"
    FollowUpCount "999"
    Refused "follow-ups of an unknown case", qlxNotThere, "Die Akte 999 gibt es nicht"
    CasePartyCount "999"
    Refused "parties of an unknown case", qlxNotThere, "Die Akte 999 gibt es nicht"
End Sub

' A "|" in an office's text, and a number that is none.
Private Sub CheckSeparators()
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
    userRecords(0) = "A|B|C|D|99999999999"
    UserAt 1
    Refused "a number beyond 32 bits", qlxNotRead, "Trennzeichen"
    userRecords(0) = "A|B|C|D|3000000000"
    UserAt 1
    Refused "a number beyond a Long", qlxNotRead, "Trennzeichen"
    userRecords(0) = "A|B|C|D"
    UserAt 1
    Refused "a record without all fields", qlxNotRead, "vollständig"
    NewOffice
End Sub

Private Sub CheckCases()
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

Private Sub CheckParties()
    Dim party As QlxPartyReference, address As QlxAddress
    party = PartyInRole(RoleClient, "12345678")
    Expect "the client", party.AddressNumber & "," & party.RelationCode & "," & party.Always0 & "," & party.LinkNumber, _
        "4711,25,0,815"
    party = PartyInRole("M", "12345678")
    Expect "a role without its blank", party.AddressNumber, 4711
    address = ReadAddress("12345678", 4711, 815)
    Expect "an address", address.FirstName & "," & address.Name & "," & address.Street & "," & address.RelationDesignation, _
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
    PartyInRole "", "12345678"
    Refused "no role", qlxNotValid, "Rolle"
    PartyInRole RoleClient, "999"
    Refused "a party of an unknown case, by its role", qlxNotThere, "Die Akte 999 gibt es nicht"
    ReadAddress "12345678", 9999
    Refused "an unknown address", qlxNotThere, "Die Adresse 9999 gibt es nicht"
    ReadAddress "999", 4711
    Refused "an address for an unknown case", qlxNotThere, "Die Akte 999 gibt es nicht"
    Expect "an address without a case", Err.Number & ReadAddress("", 4711).PostalCode, "050935"
    NewOffice
End Sub

Private Sub CheckUnconfigured()
    isConfigured = False
    On Error Resume Next
    ReadCase "12345678"
    Refused "a case, unconfigured", qlxNotRead, "eingerichtet"
    ReadAddress "", 4711
    Refused "an address, unconfigured", qlxNotRead, "eingerichtet"
    PartyInRole RoleClient, "12345678"
    Refused "a party, unconfigured", qlxNotRead, "eingerichtet"
    NextDocumentNumber "12345678"
    Refused "a document number, unconfigured", qlxNotRead, "eingerichtet"
    AddFollowUp "12345678", 1, "15.05.2026", 1, "Text"
    Refused "a new follow-up, unconfigured", qlxNotRead, "eingerichtet"
    FollowUpAt "12345678", 1
    Refused "a follow-up, unconfigured", qlxNotRead, "eingerichtet"
    isConfigured = True
    documentText = ""
    DocumentRoot
    Refused "no folder of documents", qlxNotRead, "Dokumentenverzeichnis"
    ProgramRoot
    Refused "no program's folder", qlxNotRead, "Programmverzeichnis"
    NewOffice
    Expect "the folders", DocumentRoot() & ProgramRoot(), "C:\qlx99\office\DokumenteC:\qlx99\office\Dokumente"
End Sub

' --- Writing

Private Sub Written(ByVal what As String, ByVal expected As String)
    Expect what, lastWritten, expected
    lastWritten = ""
End Sub

Private Sub CheckNewFollowUps()
    AddFollowUp "12345678", 1, DateSerial(2026, 5, 15), 1, "Text", 4, 202
    Written "a new follow-up", "WVNew|12345678|1|15.05.2026|1|4|202|Text"
    AddFollowUp "12345678", 4, "01.01.1900", 4, "€ äöüß – " & String$(141, "x")
    Written "the first day and the longest text", "WVNew|12345678|4|01.01.1900|4|0|0|€ äöüß – " & String$(141, "x")
    AddFollowUp "12345678", 1, "31.12.2050", 2, ""
    Written "the last day, a user with a | in the name", "WVNew|12345678|1|31.12.2050|2|0|0|"
    RemoveFollowUp 4
    Written "a removed follow-up", "WVDelete|4"
    On Error Resume Next
    RemoveFollowUp 0
    Refused "the removal of none", qlxNotThere, "Wiedervorlage 0"
    AddFollowUp "999", 1, "15.05.2026", 1, "Text"
    Refused "a follow-up for an unknown case", qlxNotThere, "Die Akte 999 gibt es nicht"
    AddFollowUp "12345678", 9, "15.05.2026", 1, "Text"
    Refused "an unknown kind", qlxNotValid, "Wiedervorlageart 9"
    AddFollowUp "12345678", 0, "15.05.2026", 1, "Text"
    Refused "no kind", qlxNotValid, "Wiedervorlageart 0"
    AddFollowUp "12345678", 1, "15.05.2026", 9, "Text"
    Refused "an unknown user", qlxNotValid, "Benutzer 9"
    AddFollowUp "12345678", 1, "15.05.2026", 0, "Text"
    Refused "no user", qlxNotValid, "Benutzer 0"
    AddFollowUp "12345678", 1, "15.05.2026", 1, "Text", 9
    Refused "an unknown second user", qlxNotValid, "Benutzer 9"
    AddFollowUp "12345678", 1, "15.05.2026", 1, "Text", 0, 999
    Refused "an unknown party", qlxNotValid, "Beteiligten 999"
End Sub

Private Sub CheckRefusedDates()
    Dim refusedDates As Variant, unset As Date, at As Long
    refusedDates = Array(unset, DateSerial(1850, 3, 1), DateSerial(1899, 12, 31), DateSerial(2051, 1, 1), "", "31.02.2026", _
        "29.02.1900", "00.01.2026", "01.13.2026", "15.5.2026", "2026-05-15", "15.05.2026 ", 46000)
    On Error Resume Next
    For at = 0 To UBound(refusedDates)
        AddFollowUp "12345678", 1, refusedDates(at), 1, "Text"
        Refused "the date " & at, qlxNotValid, "braucht ein Datum"
    Next
End Sub

Private Sub CheckRefusedTexts()
    Dim refusedTexts As Variant, at As Long
    refusedTexts = Array("a|b", "a" & vbCr, "a" & vbLf & "b", Chr$(11), "a" & Chr$(0), Chr$(9), ChrW$(945), ChrW$(129), _
        String$(151, "x"))
    On Error Resume Next
    For at = 0 To UBound(refusedTexts)
        AddFollowUp "12345678", 1, "15.05.2026", 1, refusedTexts(at)
        Refused "the text " & at, qlxNotValid, "Der Text"
    Next
End Sub

Private Sub CheckFollowUpsThereAndBack()
    Dim followUp As QlxFollowUp
    followUp = FollowUpAt("12345678", 1)
    ChangeFollowUp followUp
    Written "a follow-up with everything", "WVChange|1|4|15.05.2024|1|4|202|Termin, Saal 217"
    followUp = FollowUpAt("12345678", 2)
    ChangeFollowUp followUp
    Written "one without a date, with a |", "WVChange|4|1|31.12.1899|4|0|0|Gutachten | Anlage"
    followUp = FollowUpAt("12345678", 3)
    ChangeFollowUp followUp
    Written "one of an unknown kind and user", "WVChange|5|7|31.12.2024|9|0|0|Verjährung prüfen"
    followUp = FollowUpAt("12345678", 4)
    On Error Resume Next
    ChangeFollowUp followUp
    Refused "one whose party cannot be named", qlxNotValid, "Beteiligten -1"
    followUp.PartyRecordId = 0
    ChangeFollowUp followUp
    Written "without that party", "WVChange|6|1|31.12.2024|4|0|0|x"
End Sub

Private Sub CheckChangedFollowUps()
    Dim followUp As QlxFollowUp
    followUp = FollowUpAt("12345678", 1)
    followUp.KindId = 2
    followUp.DueDate = DateSerial(2026, 5, 22)
    followUp.UserId = 4
    followUp.SecondUserId = 0
    followUp.PartyRecordId = 201
    followUp.Text = "neu"
    ChangeFollowUp followUp
    Written "a changed follow-up", "WVChange|1|2|22.05.2026|4|0|201|neu"
    On Error Resume Next
    followUp.DueDate = ""
    ChangeFollowUp followUp
    Refused "a date taken away", qlxNotValid, "braucht ein Datum"
    followUp.DueDate = "22.05.2026"
    followUp.KindId = 9
    ChangeFollowUp followUp
    Refused "a change to an unknown kind", qlxNotValid, "Wiedervorlageart 9"
    followUp.KindId = 2
    followUp.UserId = 9
    ChangeFollowUp followUp
    Refused "a change to an unknown user", qlxNotValid, "Benutzer 9"
    followUp.UserId = 4
    followUp.SecondUserId = 9
    ChangeFollowUp followUp
    Refused "a change to an unknown second user", qlxNotValid, "Benutzer 9"
    followUp.SecondUserId = 0
    followUp.PartyRecordId = 999
    ChangeFollowUp followUp
    Refused "a change to an unknown party", qlxNotValid, "Beteiligten 999"
    followUp.PartyRecordId = 0
    followUp.Text = "a|b"
    ChangeFollowUp followUp
    Refused "a change to a text with a |", qlxNotValid, "Trennzeichen"
    followUp.Id = 99
    ChangeFollowUp followUp
    Refused "a change of none", qlxNotThere, "Wiedervorlage 99"
End Sub

' --- Macros that bring their own buffer: the same with both kinds of word processors

Private Sub CheckExports()
    Dim record As String
    record = String$(1024, " ")
    Expect "an export", SLesenDLL("12345678", record), -1
    Expect "its buffer", Len(record), 1024
    Expect "its record", Left$(record, InStr(record, Chr$(0)) - 1), caseText
    record = String$(1024, " ")
    UserNext "1", record
    Expect "a record with blanks behind it", RTrim$(record), userRecords(0)
    Expect "its buffer, too", Len(record), 1024
    record = String$(1024, " ")
    UserNext "99", record
    Expect "an untouched buffer", record, String$(1024, " ")
    Expect "cut in the safe form", RTrim$(Left$(record, InStr(record & Chr$(0), Chr$(0)) - 1)), ""
    Expect "the two for the other kind", GetAdrFieldsMain("", "", "", "") + GetAdressTyp("", ""), -2
End Sub

' --- The letter, and the samples of the handbook

Private Sub CheckLetters()
    boxAnswers = "12345678"
    BriefAnMandanten
    Expect "the letter", Flat(newDocument), Trim$(Environ("QLX99_LETTER"))
    newDocument = ""
    boxAnswers = "999"
    BriefAnMandanten
    Expect "the letter of an unknown case", newDocument & shownMessage, "Die Akte 999 gibt es nicht."
End Sub

Private Sub CheckSamples()
    Dim expected As String
    NewOffice
    expected = "Klaus Brandstätter Lindenthaler Gürtel 84 a 50935 Köln Brandstätter ./. Wernicke Unser Zeichen: 12345678/JM " & _
        "Dokument Nr.: @ Sehr geehrter Herr Brandstätter, Mit freundlichen Grüßen Rechtsanwalt Dr. Jan Merten"
    boxAnswers = "12345678"
    MusterBriefMandant
    Expect "the sample for the client", Flat(newDocument), Replace(expected, "@", "1")
    boxAnswers = "12345678"
    MusterBriefGegner
    Expect "the sample for the opponent", Flat(newDocument), Replace(expected, "@", "2")
    boxAnswers = "12345678;15.05.2026"
    MusterFrist
    Written "the sample of a deadline", "WVNew|12345678|2|15.05.2026|1|0|0|Fristablauf"
    boxAnswers = "12345678;15.5.2026"
    MusterFrist
    Expect "a deadline without a date", lastWritten & (InStr(shownMessage, "braucht ein Datum") > 0), CStr(True)
    boxAnswers = "12345678"
    MusterBeteiligte
    Expect "the sample of a list", Flat(newDocument), "1. Brandstätter, Lindenthaler Gürtel 84 a, Köln 2. Wernicke, " & _
        "Krefelder Wall 40, Köln 3. Beteiligter 3 der Akte 12345678 gibt es nicht oder kann nicht gelesen werden. " & _
        "4. Ohne Beziehung, Ring 1, Köln"
End Sub
