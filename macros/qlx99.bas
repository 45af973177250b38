Attribute VB_Name = "qlx99"
' qlx99.dll for macros. At the end stands a function for each thing that a letter asks for; it gives named fields and,
' when there is nothing to give, raises an error that macros can handle (On Error). They need no more than these.
' The exports themselves, under their own names, are for macros that bring their own buffer along.
' docs/exports.md tells of every export and field.
Option Explicit

' A 64-bit word processor cannot load a 32-bit library, with PtrSafe or without; it stops here and says so. A 32-bit
' one takes the declarations as they are, also where it knows PtrSafe (VBA7).
#If Win64 Then
qlx99_braucht_die_32_Bit_Ausgabe_der_Textverarbeitung
#End If

Public Declare Function GetDocuRoot Lib "qlx99.dll" (ByVal length As Long, ByVal path As String) As Long
Public Declare Function GetProgramRoot Lib "qlx99.dll" (ByVal length As Long, ByVal path As String) As Long
Public Declare Function UserInit Lib "qlx99.dll" () As Long
Public Declare Function UserNext Lib "qlx99.dll" (ByVal index As String, ByVal record As String) As Long
Public Declare Function ZtkodoliInit Lib "qlx99.dll" () As Long
Public Declare Function ZtkodoliNext Lib "qlx99.dll" (ByVal index As String, ByVal record As String) As Long
Public Declare Function WVInit Lib "qlx99.dll" (ByVal caseNumber As String) As Long
Public Declare Function WVNext Lib "qlx99.dll" (ByVal caseNumber As String, ByVal index As String, _
    ByVal record As String) As Long
Public Declare Function WVNew Lib "qlx99.dll" (ByVal caseNumber As String, ByVal kindId As String, _
    ByVal dueDate As String, ByVal userId As String, ByVal secondUserId As String, ByVal partyRecordId As String, _
    ByVal text As String) As Long
Public Declare Function WVChange Lib "qlx99.dll" (ByVal followUpId As String, ByVal kindId As String, _
    ByVal dueDate As String, ByVal userId As String, ByVal secondUserId As String, ByVal partyRecordId As String, _
    ByVal text As String) As Long
Public Declare Function WVDelete Lib "qlx99.dll" (ByVal followUpId As String) As Long
Public Declare Function SLesenDLL Lib "qlx99.dll" (ByVal caseNumber As String, ByVal record As String) As Long
Public Declare Function ALesenDLL Lib "qlx99.dll" (ByVal caseNumber As String, ByVal addressNumber As String, _
    ByVal record As String, ByVal linkNumber As String) As Long
Public Declare Function BLesenDLL Lib "qlx99.dll" (ByVal role As String, ByVal caseNumber As String, _
    ByVal spare As String, ByVal noDialog As String, ByVal result As String) As Long
Public Declare Function BListeInit Lib "qlx99.dll" (ByVal caseNumber As String) As Long
Public Declare Function BListeNext Lib "qlx99.dll" (ByVal caseNumber As String, ByVal index As String, _
    ByVal record As String) As Long
Public Declare Function GetAdrFieldsMain Lib "qlx99.dll" (ByVal first As String, ByVal second As String, _
    ByVal third As String, ByVal fourth As String) As Long
Public Declare Function GetAdressTyp Lib "qlx99.dll" (ByVal first As String, ByVal second As String) As Long
Public Declare Function GetDokuNr Lib "qlx99.dll" (ByVal caseNumber As String) As Long

' What an export writes its record into.
Private Const BufferSize As Long = 1024

' The roles that PartyInRole takes.
Public Const RoleClient As String = "M "
Public Const RoleOpponent As String = "G "
Public Const RoleOpposingCounsel As String = "V "
Public Const RoleCourt As String = "C "
Public Const RoleClientRepresentative As String = "§M"
Public Const RoleOpponentRepresentative As String = "§G"
Public Const RoleClientInsurer As String = "RM"
Public Const RoleOpponentInsurer As String = "HG"
Public Const RoleAny As String = "  "

' What can go wrong. The library has told the user the reason already where it is a file or the configuration.
Public Enum QlxError
    qlxNotRead = vbObjectError + 1001
    qlxNotWritten = vbObjectError + 1002
    qlxNoParty = vbObjectError + 1003
    qlxNothingChosen = vbObjectError + 1004
    qlxNoDocumentNumber = vbObjectError + 1005
End Enum

' The records, field by field in their order. Dates are DD.MM.YYYY or empty; a number that is not there is 0.

' UserNext
Public Type User
    Name As String
    ThirdText As String
    SecondText As String
    ShortSign As String
    Number As Long
End Type

' ZtkodoliNext
Public Type FollowUpKind
    Name As String
    Number As Long
    Id As Long
End Type

' WVNext
Public Type FollowUp
    DueDate As String
    KindName As String
    KindId As Long
    Text As String
    UserName As String
    UserSign As String
    UserId As Long
    SecondUserName As String
    SecondUserSign As String
    SecondUserId As Long
    PartyPosition As Long
    Id As Long
End Type

' SLesenDLL
Public Type CaseData
    Rubrum As String
    Text40 As String
    Text30 As String
    ShortCode As String
    CaseType As String
    Amount As String
    FirstDate As String
    SecondDate As String
    LongText As String
    UserName As String
    UserSign As String
    ArchiveDate As String
    ArchiveMark As String
    PartyCount As Long
    CurrencyCode As String
End Type

' ALesenDLL
Public Type Address
    FirstName As String
    Name As String
    LetterSalutation As String
    Title As String
    NameAddition As String
    FreeText As String
    ShortField1 As String
    ShortField2 As String
    ShortField3 As String
    ShortField4 As String
    ShortField5 As String
    WideField As String
    Street As String
    PostalCode As String
    Place As String
    SecondPostalCode As String
    SecondPlace As String
    AddressAddition As String
    Nationality As String
    BankName As String
    BankCode As String
    AccountNumber As String
    ContactAddition As String
    LinkText As String
    RelationDesignation As String
End Type

' BLesenDLL
Public Type PartyReference
    AddressNumber As Long
    RelationCode As String
    Always0 As String
    LinkNumber As Long
End Type

' BListeNext
Public Type CaseParty
    RelationCode As String
    Salutation As String
    Name As String
    NameAddition As String
    Street As String
    Place As String
    AddressNumber As Long
    LinkNumber As Long
    PartyRecordId As Long
End Type

' --- Users, positions 1 to UserCount

Public Function UserCount() As Long
    UserCount = UserInit()
End Function

Public Function UserAt(ByVal position As Long) As User
    Dim buffer As String, fields() As String
    buffer = EmptyBuffer()
    UserNext CStr(position), buffer
    fields = FieldsOf(RecordIn(buffer), 5, "Benutzer " & position)
    Dim found As User
    found.Name = fields(0)
    found.ThirdText = fields(1)
    found.SecondText = fields(2)
    found.ShortSign = fields(3)
    found.Number = NumberOf(fields(4))
    UserAt = found
End Function

' --- Follow-up kinds, positions 1 to FollowUpKindCount

Public Function FollowUpKindCount() As Long
    FollowUpKindCount = ZtkodoliInit()
End Function

Public Function FollowUpKindAt(ByVal position As Long) As FollowUpKind
    Dim buffer As String, fields() As String
    buffer = EmptyBuffer()
    ZtkodoliNext CStr(position), buffer
    fields = FieldsOf(RecordIn(buffer), 3, "Wiedervorlageart " & position, 0)
    Dim found As FollowUpKind
    found.Name = fields(0)
    found.Number = NumberOf(fields(1))
    found.Id = NumberOf(fields(2))
    FollowUpKindAt = found
End Function

' --- Follow-ups of a case, positions 1 to FollowUpCount

Public Function FollowUpCount(ByVal caseNumber As String) As Long
    FollowUpCount = WVInit(caseNumber)
End Function

Public Function FollowUpAt(ByVal caseNumber As String, ByVal position As Long) As FollowUp
    Dim buffer As String, fields() As String
    buffer = EmptyBuffer()
    WVNext caseNumber, CStr(position), buffer
    fields = FieldsOf(RecordIn(buffer), 12, "Wiedervorlage " & position & " der Akte " & caseNumber, 3)
    Dim found As FollowUp
    found.DueDate = FormedAs("##.##.####", fields(0))
    found.KindName = fields(1)
    found.KindId = NumberOf(fields(2))
    found.Text = fields(3)
    found.UserName = fields(4)
    found.UserSign = fields(5)
    found.UserId = NumberOf(fields(6))
    found.SecondUserName = fields(7)
    found.SecondUserSign = fields(8)
    found.SecondUserId = NumberOf(fields(9))
    found.PartyPosition = NumberOf(fields(10))
    found.Id = NumberOf(fields(11))
    FollowUpAt = found
End Function

' The kind is the Id of a FollowUpKind, the user the Number of a User, the party the PartyRecordId of a CaseParty.
Public Sub AddFollowUp(ByVal caseNumber As String, ByVal kindId As Long, ByVal dueDate As Date, ByVal userId As Long, _
    ByVal text As String, Optional ByVal secondUserId As Long = 0, Optional ByVal partyRecordId As Long = 0)
    If WVNew(caseNumber, CStr(kindId), DateText(dueDate), CStr(userId), CStr(secondUserId), CStr(partyRecordId), _
        text) = 0 Then
        Fail qlxNotWritten, "Zur Akte " & caseNumber & " wurde keine Wiedervorlage angelegt."
    End If
End Sub

' Everything but the case is replaced.
Public Sub ChangeFollowUp(ByVal followUpId As Long, ByVal kindId As Long, ByVal dueDate As Date, _
    ByVal userId As Long, ByVal text As String, Optional ByVal secondUserId As Long = 0, _
    Optional ByVal partyRecordId As Long = 0)
    If WVChange(CStr(followUpId), CStr(kindId), DateText(dueDate), CStr(userId), CStr(secondUserId), _
        CStr(partyRecordId), text) = 0 Then
        Fail qlxNotWritten, "Die Wiedervorlage " & followUpId & " wurde nicht geändert."
    End If
End Sub

Public Sub RemoveFollowUp(ByVal followUpId As Long)
    If WVDelete(CStr(followUpId)) = 0 Then
        Fail qlxNotWritten, "Die Wiedervorlage " & followUpId & " wurde nicht gelöscht."
    End If
End Sub

' --- Cases

Public Function ReadCase(ByVal caseNumber As String) As CaseData
    Dim buffer As String, fields() As String
    buffer = EmptyBuffer()
    SLesenDLL caseNumber, buffer
    fields = FieldsOf(RecordIn(buffer), 15, "Akte " & caseNumber, 8)
    Dim found As CaseData
    found.Rubrum = fields(0)
    found.Text40 = fields(1)
    found.Text30 = fields(2)
    found.ShortCode = fields(3)
    found.CaseType = fields(4)
    found.Amount = FormedAs("*,##", fields(5))
    found.FirstDate = FormedAs("##.##.####", fields(6))
    found.SecondDate = FormedAs("##.##.####", fields(7))
    found.LongText = fields(8)
    found.UserName = fields(9)
    found.UserSign = fields(10)
    found.ArchiveDate = FormedAs("##.##.####", fields(11))
    found.ArchiveMark = fields(12)
    found.PartyCount = NumberOf(fields(13))
    found.CurrencyCode = fields(14)
    ReadCase = found
End Function

' Read the case first: unknown cases share one counter.
Public Function NextDocumentNumber(ByVal caseNumber As String) As Long
    NextDocumentNumber = GetDokuNr(caseNumber)
    If NextDocumentNumber = 0 Then
        Fail qlxNoDocumentNumber, "Zur Akte " & caseNumber & " wurde keine Dokumentnummer vergeben."
    End If
End Function

' --- Parties and their addresses

' Of several parties in the role the user chooses; if the macro may not ask, several are as good as none.
Public Function PartyInRole(ByVal role As String, ByVal caseNumber As String, _
    Optional ByVal mayAsk As Boolean = True) As PartyReference
    Dim buffer As String, fields() As String
    buffer = EmptyBuffer()
    If BLesenDLL(role, caseNumber, "", IIf(mayAsk, "", "1"), buffer) = 0 Then
        If RecordIn(buffer) <> "" Then Fail qlxNothingChosen, "Es wurde kein Beteiligter ausgewählt."
        Fail qlxNoParty, "Zur Akte " & caseNumber & " gibt es " & IIf(mayAsk, "keinen", "nicht genau einen") & _
            " Beteiligten in der Rolle """ & role & """."
    End If
    fields = FieldsOf(RecordIn(buffer), 4, "Beteiligter der Akte " & caseNumber)
    Dim found As PartyReference
    found.AddressNumber = NumberOf(fields(0))
    found.RelationCode = fields(1)
    found.Always0 = fields(2)
    found.LinkNumber = NumberOf(fields(3))
    PartyInRole = found
End Function

' With what the case says of the party, which the numbers of a PartyReference or a CaseParty name.
Public Function ReadAddress(ByVal caseNumber As String, ByVal addressNumber As Long, _
    Optional ByVal linkNumber As Long = 0) As Address
    Dim buffer As String, fields() As String
    buffer = EmptyBuffer()
    ALesenDLL caseNumber, CStr(addressNumber), buffer, CStr(linkNumber)
    fields = FieldsOf(RecordIn(buffer), 25, "Adresse " & addressNumber)
    Dim found As Address
    found.FirstName = fields(0)
    found.Name = fields(1)
    found.LetterSalutation = fields(2)
    found.Title = fields(3)
    found.NameAddition = fields(4)
    found.FreeText = fields(5)
    found.ShortField1 = fields(6)
    found.ShortField2 = fields(7)
    found.ShortField3 = fields(8)
    found.ShortField4 = fields(9)
    found.ShortField5 = fields(10)
    found.WideField = fields(11)
    found.Street = fields(12)
    found.PostalCode = fields(13)
    found.Place = fields(14)
    found.SecondPostalCode = fields(15)
    found.SecondPlace = fields(16)
    found.AddressAddition = fields(17)
    found.Nationality = fields(18)
    found.BankName = fields(19)
    found.BankCode = fields(20)
    found.AccountNumber = fields(21)
    found.ContactAddition = fields(22)
    found.LinkText = fields(23)
    found.RelationDesignation = fields(24)
    ReadAddress = found
End Function

' Positions 1 to CasePartyCount.
Public Function CasePartyCount(ByVal caseNumber As String) As Long
    CasePartyCount = BListeInit(caseNumber)
End Function

Public Function CasePartyAt(ByVal caseNumber As String, ByVal position As Long) As CaseParty
    Dim buffer As String, fields() As String
    buffer = EmptyBuffer()
    BListeNext caseNumber, CStr(position), buffer
    fields = FieldsOf(WholePartyRecord(RecordIn(buffer)), 9, "Beteiligter " & position & " der Akte " & caseNumber)
    Dim found As CaseParty
    found.RelationCode = FormedAs("??", fields(0))
    found.Salutation = fields(1)
    found.Name = fields(2)
    found.NameAddition = fields(3)
    found.Street = fields(4)
    found.Place = fields(5)
    found.AddressNumber = NumberOf(fields(6))
    found.LinkNumber = NumberOf(fields(7))
    found.PartyRecordId = NumberOf(fields(8))
    CasePartyAt = found
End Function

' --- Folders

Public Function DocumentRoot() As String
    Dim path As String
    path = EmptyBuffer()
    If GetDocuRoot(BufferSize, path) = 0 Then Fail qlxNotRead, "Das Dokumentenverzeichnis ist nicht eingerichtet."
    DocumentRoot = RecordIn(path)
End Function

Public Function ProgramRoot() As String
    Dim path As String
    path = EmptyBuffer()
    If GetProgramRoot(BufferSize, path) = 0 Then Fail qlxNotRead, "Das Programmverzeichnis fehlt: " & RecordIn(path)
    ProgramRoot = RecordIn(path)
End Function

' --- Records

' A string of its own length is what the library may write into, and blanks show where it has not.
Private Function EmptyBuffer() As String
    EmptyBuffer = String$(BufferSize, " ")
End Function

' What the library wrote: up to the first zero byte or, when it wrote none, without the blanks.
Private Function RecordIn(ByVal buffer As String) As String
    RecordIn = RTrim$(Left$(buffer, InStr(buffer & Chr$(0), Chr$(0)) - 1))
End Function

' The export's result is not asked, as it is 0 also for a record that begins with two empty fields. A text of the office
' may hold a "|" itself. In `freeText`, counted from 0, it does no harm: that field is all between the others.
Private Function FieldsOf(ByVal record As String, ByVal count As Long, ByVal what As String, _
    Optional ByVal freeText As Long = -1) As String()
    Dim fields() As String
    fields = Split(record, "|")
    If freeText >= 0 And UBound(fields) >= count Then JoinFreeText fields, freeText, UBound(fields) + 1 - count
    If UBound(fields) + 1 <> count Then Fail qlxNotRead, what & " wurde nicht gefunden oder kann nicht gelesen werden."
    FieldsOf = fields
End Function

Private Sub JoinFreeText(ByRef fields() As String, ByVal freeText As Long, ByVal surplus As Long)
    Dim i As Long
    For i = 1 To surplus
        fields(freeText) = fields(freeText) & "|" & fields(freeText + i)
    Next
    For i = freeText + 1 To UBound(fields) - surplus
        fields(i) = fields(i + surplus)
    Next
    ReDim Preserve fields(UBound(fields) - surplus)
End Sub

' A party's record has no relation code where there is no relation, and no salutation where there is no address. Where
' there is one, its street is a blank at least. A record with all fields but without one of the two has a "|" in a text.
Private Function WholePartyRecord(ByVal record As String) As String
    Dim fields() As String
    fields = Split(record, "|")
    WholePartyRecord = record
    If UBound(fields) = 6 Then WholePartyRecord = "||" & record
    If UBound(fields) = 8 Then
        If fields(0) = "" Or fields(4) = "" Then WholePartyRecord = ""
    End If
    If UBound(fields) <> 7 Then Exit Function
    If fields(3) = "" Then
        WholePartyRecord = Replace(record, "|", "||", 1, 1)
    Else
        WholePartyRecord = "|" & record
    End If
End Function

' An empty field is a number that is not there.
Private Function NumberOf(ByVal field As String) As Long
    NumberOf = CLng(Val(field))
    If field <> "" And CStr(NumberOf) <> field Then FailForText
End Function

Private Function FormedAs(ByVal pattern As String, ByVal field As String) As String
    If field <> "" And Not (field Like pattern) Then FailForText
    FormedAs = field
End Function

Private Sub FailForText()
    Fail qlxNotRead, "Der Eintrag kann nicht gelesen werden, weil ein Text darin das Trennzeichen | enthält."
End Sub

Private Function DateText(ByVal day As Date) As String
    DateText = Format$(day, "dd\.mm\.yyyy")
End Function

Private Sub Fail(ByVal number As QlxError, ByVal description As String)
    Err.Raise number, "qlx99", description
End Sub
