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
    CheckRefusedIds
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

Public Sub Expect(ByVal what As String, ByVal found As Variant, ByVal expected As Variant)
    If CStr(found) = CStr(expected) Then
        Print #1, "ok " & what
    Else
        Print #1, "FAILED " & what & ": """ & CStr(found) & """ instead of """ & CStr(expected) & """"
    End If
End Sub

' The line before made this error, with a text that says so; nothing was written.
Public Sub Refused(ByVal what As String, ByVal expected As Long, ByVal word As String)
    Dim found As String
    found = Err.Number & " " & Err.Description
    If Err.Number = expected And InStr(Err.Description, word) > 0 Then found = "refused"
    Err.Clear
    Expect what, found & lastWritten, "refused"
    lastWritten = ""
End Sub

' What the line before wrote.
Public Sub Written(ByVal what As String, ByVal expected As String)
    Expect what, lastWritten, expected
    lastWritten = ""
End Sub

Private Function Flat(ByVal whole As String) As String
    Flat = Replace(whole, vbCr, " ")
    Do While InStr(Flat, "  ") > 0
        Flat = Replace(Flat, "  ", " ")
    Loop
    Flat = Trim$(Flat)
End Function

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
    Expect "the sample of a list", Flat(newDocument), _
        "1. Brandstätter, Lindenthaler Gürtel 84 a, Köln 2. Wernicke, " & _
        "Krefelder Wall 40, Köln 3. Beteiligter 3 der Akte 12345678 fehlt oder kann nicht gelesen werden. " & _
        "4. Ohne Beziehung, Ring 1, Köln"
End Sub
