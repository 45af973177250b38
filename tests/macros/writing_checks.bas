' What macros write: just what they asked for, or an error and nothing.
Option Explicit

Public Sub CheckNewFollowUps()
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
End Sub

' Kind, user, second user, party: of each one that there is not.
Public Sub CheckRefusedIds()
    Dim refusedIds As Variant, ids As Variant, followUp As QlxFollowUp, at As Long
    refusedIds = Array(Array(9, 1, 0, 0, "Wiedervorlageart 9"), Array(1, 9, 0, 0, "Benutzer 9"), _
        Array(1, 1, 9, 0, "Benutzer 9"), Array(1, 1, 0, 999, "Beteiligten 999"))
    On Error Resume Next
    For at = 0 To UBound(refusedIds)
        ids = refusedIds(at)
        AddFollowUp "12345678", ids(0), "15.05.2026", ids(1), "Text", ids(2), ids(3)
        Refused "new, with the id " & at, qlxNotValid, ids(4)
        followUp = FollowUpAt("12345678", 1)
        followUp.KindId = ids(0)
        followUp.UserId = ids(1)
        followUp.SecondUserId = ids(2)
        followUp.PartyRecordId = ids(3)
        ChangeFollowUp followUp
        Refused "changed, with the id " & at, qlxNotValid, ids(4)
    Next
End Sub

Public Sub CheckRefusedDates()
    Dim refusedDates As Variant, unset As Date, at As Long
    refusedDates = Array(unset, DateSerial(1850, 3, 1), DateSerial(1899, 12, 31), DateSerial(2051, 1, 1), "", _
        "31.02.2026", _
        "29.02.1900", "00.01.2026", "01.13.2026", "15.5.2026", "2026-05-15", "15.05.2026 ", 46000)
    On Error Resume Next
    For at = 0 To UBound(refusedDates)
        AddFollowUp "12345678", 1, refusedDates(at), 1, "Text"
        Refused "the date " & at, qlxNotValid, "braucht ein Datum"
    Next
End Sub

Public Sub CheckRefusedTexts()
    Dim refusedTexts As Variant, at As Long
    refusedTexts = Array("a|b", "a" & vbCr, "a" & vbLf & "b", Chr$(11), "a" & Chr$(0), Chr$(9), ChrW$(945), _
        ChrW$(129), _
        String$(151, "x"))
    On Error Resume Next
    For at = 0 To UBound(refusedTexts)
        AddFollowUp "12345678", 1, "15.05.2026", 1, refusedTexts(at)
        Refused "the text " & at, qlxNotValid, "Der Text"
    Next
End Sub

Public Sub CheckFollowUpsThereAndBack()
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

Public Sub CheckChangedFollowUps()
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
    followUp.Text = "a|b"
    ChangeFollowUp followUp
    Refused "a change to a text with a |", qlxNotValid, "Trennzeichen"
    followUp.Id = 99
    ChangeFollowUp followUp
    Refused "a change of none", qlxNotThere, "Wiedervorlage 99"
End Sub
