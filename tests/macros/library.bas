' Stands in for the library: the exports' answers in a small office, with the library's own oddities. check_macros makes
' every declared export call CalledAsDll, and the methods of the automation object call Answered.
Option Explicit

Public isConfigured As Boolean
Public hasAnsweredChoice As Boolean
Public lastWritten As String ' the last writing call, its arguments with "|" between them
Public lastNumber As Long
Public characterOf208 As String ' what the machine's code page makes of the byte 208
Public userRecords As Variant, kindRecords As Variant, followUpRecords As Variant, partyRecords As Variant
Public caseText As String, addressText As String, documentText As String
Public noBuffer As String

Public Sub NewOffice()
    isConfigured = True
    hasAnsweredChoice = True
    lastWritten = ""
    lastNumber = 0
    characterOf208 = ChrW$(208)
    documentText = "C:\qlx99\office\Dokumente"
    userRecords = Array("Rechtsanwalt Dr. Jan Merten|-11|merten@kanzlei-am-ring.example|JM|1", _
        "Name mit | darin|||MIT|2", "Petra Lohmeyer|-20||PL|4")
    kindRecords = Array("Wiedervorlage|10|1", "Frist|20|2", "Termin | vor Ort|30|4")
    followUpRecords = Array("15.05.2024|Gerichtstermin|4|Termin, Saal 217|Rechtsanwalt Dr. Jan Merten|JM|1|Petra Lohmeyer|PL|4|2|1", _
        "|Wiedervorlage|1|Gutachten | Anlage|Petra Lohmeyer|PL|4|||0|0|4", _
        "31.12.2024||7|Verjährung prüfen|||9|||0|0|5", "31.12.2024|Wiedervorlage|1|x|Petra Lohmeyer|PL|4|||0|3|6")
    partyRecords = Array("25|Herrn|Brandstätter||Lindenthaler Gürtel 84 a|Köln|4711|815|201", _
        "0 |Herrn|Wernicke||Krefelder Wall 40|Köln|4801||202", "||", "Firma|Ohne Beziehung||Ring 1|Köln|4802||204")
    caseText = "Brandstätter ./. Wernicke|wegen Schadensersatz aus Verkehrsunfall|Landgericht Köln, 5 O 217/24|VERK|" & _
        "Verkehrsunfallsache|12.345,67|19.02.2024|15.05.2024|Auffahrunfall | Mietwagen|Rechtsanwalt Dr. Jan Merten|JM|||4|EUR"
    addressText = "Klaus|Brandstätter|Sehr geehrter Herr|Dr.||Bitte nicht vor 10 Uhr anrufen.|0221 5550147||" & _
        "praxis@brandst.example|||Kieferorthopäde|Lindenthaler Gürtel 84 a|50935|Köln|||Hinterhaus, 2. Etage|deutsch|" & _
        "Stadtsparkasse Köln|370 501 98|1900 456 712|c/o Praxis Dr. Brandstätter|Vers.-Nr. RS 24-118-3307|Mandant"
End Sub

' Writes as the library does: over what is there, and no further than the buffer goes.
Public Function CalledAsDll(ByVal exportName As String, ByVal given As Variant, ByRef buffer As String) As Long
    Dim answer As String
    CalledAsDll = Answered(exportName, given, answer)
    If answer = "" Then Exit Function
    If InStr(" UserNext ZtkodoliNext WVNext ", " " & exportName & " ") = 0 Then answer = answer & String$(5, _
        Chr$(0)) & Chr$(1)
    buffer = Left$(answer & Mid$(buffer, Len(answer) + 1), Len(buffer))
End Function

Public Function Answered(ByVal exportName As String, ByVal given As Variant, ByRef answer As String) As Long
    Answered = -1
    Select Case exportName
    Case "GetDocuRoot", "GetProgramRoot"
        If given(0) <> 1024 Then Exit Function
        answer = documentText
        Answered = IIf(answer = "", 0, 1)
    Case "UserInit": Answered = CountOf(userRecords)
    Case "UserNext": answer = EntryAt(userRecords, given(0))
    Case "ZtkodoliInit": Answered = CountOf(kindRecords)
    Case "ZtkodoliNext": answer = EntryAt(kindRecords, given(0))
    Case "WVInit": Answered = IIf(given(0) = "12345678", CountOf(followUpRecords), 0)
    Case "WVNext": If given(0) = "12345678" Then answer = EntryAt(followUpRecords, given(1))
    Case "WVNew", "WVChange", "WVDelete"
        lastWritten = exportName & "|" & Join(given, "|")
    Case "BListeInit": Answered = IIf(given(0) = "12345678", CountOf(partyRecords), 0)
    Case "BListeNext"
        answer = "||"
        If given(0) = "12345678" Then answer = EntryAt(partyRecords, given(1))
    Case "GetDokuNr"
        lastNumber = lastNumber + 1
        Answered = IIf(isConfigured, lastNumber, 0)
    Case Else: Answered = AnsweredOfCase(exportName, given, answer)
    End Select
End Function

Private Function AnsweredOfCase(ByVal exportName As String, ByVal given As Variant, ByRef answer As String) As Long
    AnsweredOfCase = -1
    Select Case exportName
    Case "SLesenDLL"
        answer = IIf(given(0) = "12345678", caseText, "0|")
        If Not isConfigured Then answer = "|"
    Case "ALesenDLL"
        answer = IIf(given(1) = "4711" Or given(1) = "4801", addressText, String$(24, "|"))
        If Not isConfigured Then answer = ""
    Case "BLesenDLL"
        If given(0) = "M " Then answer = "4711|25|0|815"
        If given(0) = "G " And given(3) = "" Then answer = IIf(hasAnsweredChoice, "4801|0 |0|", "| | |")
        If answer = "" Or answer = "| | |" Then AnsweredOfCase = 0
    End Select
End Function

Private Function CountOf(ByVal all As Variant) As Long
    CountOf = IIf(isConfigured, UBound(all) + 1, 0)
End Function

' A position below 1 is the first.
Private Function EntryAt(ByVal all As Variant, ByVal position As String) As String
    Dim at As Long
    at = IIf(CLng(position) < 1, 1, CLng(position))
    If at <= CountOf(all) Then EntryAt = all(at - 1)
End Function
