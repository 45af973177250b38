Attribute VB_Name = "qlx99"
' qlx99.dll for macros, in word processors of 32 and of 64 bits. For each thing that a letter asks for there is a
' function; it gives named fields and, when there is nothing to give, raises an error that macros can handle (On Error).
' They need no more than these; HANDBUCH tells of each. The exports themselves, under their own names, are for macros
' that bring their own buffer along; exports.md tells of every export and field.
' One module, although it is long: it is imported by hand, and the helpers of a second one would have to be public.
' Every name is made of two words: the Basic editor gives a name one form throughout a project, and a parameter "text"
' here would make ".text" of the office's ".Text".
Option Explicit

' A 64-bit word processor cannot load a 32-bit library. There the functions at the end of this module call the
' automation server, under the same names. A 32-bit one takes the declarations as they are, also where it knows PtrSafe
' (VBA7).
#If Win64 Then
Private Const ByAutomation As Boolean = True
Private theLibrary As Object
#Else
Private Const ByAutomation As Boolean = False
Public Declare Function GetDocuRoot Lib "qlx99.dll" Alias "GetDocuRoot" (ByVal theLength As Long, _
    ByVal thePath As String) As Long
Public Declare Function GetProgramRoot Lib "qlx99.dll" Alias "GetProgramRoot" (ByVal theLength As Long, _
    ByVal thePath As String) As Long
Public Declare Function UserInit Lib "qlx99.dll" Alias "UserInit" () As Long
Public Declare Function UserNext Lib "qlx99.dll" Alias "UserNext" (ByVal theIndex As String, _
    ByVal theRecord As String) As Long
Public Declare Function ZtkodoliInit Lib "qlx99.dll" Alias "ZtkodoliInit" () As Long
Public Declare Function ZtkodoliNext Lib "qlx99.dll" Alias "ZtkodoliNext" (ByVal theIndex As String, _
    ByVal theRecord As String) As Long
Public Declare Function WVInit Lib "qlx99.dll" Alias "WVInit" (ByVal caseNumber As String) As Long
Public Declare Function WVNext Lib "qlx99.dll" Alias "WVNext" (ByVal caseNumber As String, _
    ByVal theIndex As String, ByVal theRecord As String) As Long
Public Declare Function WVNew Lib "qlx99.dll" Alias "WVNew" (ByVal caseNumber As String, ByVal kindId As String, _
    ByVal dueDate As String, ByVal userId As String, ByVal secondUserId As String, ByVal partyRecordId As String, _
    ByVal theText As String) As Long
Public Declare Function WVChange Lib "qlx99.dll" Alias "WVChange" (ByVal followUpId As String, _
    ByVal kindId As String, ByVal dueDate As String, ByVal userId As String, ByVal secondUserId As String, _
    ByVal partyRecordId As String, ByVal theText As String) As Long
Public Declare Function WVDelete Lib "qlx99.dll" Alias "WVDelete" (ByVal followUpId As String) As Long
Public Declare Function SLesenDLL Lib "qlx99.dll" Alias "SLesenDLL" (ByVal caseNumber As String, _
    ByVal theRecord As String) As Long
Public Declare Function ALesenDLL Lib "qlx99.dll" Alias "ALesenDLL" (ByVal caseNumber As String, _
    ByVal addressNumber As String, ByVal theRecord As String, ByVal linkNumber As String) As Long
Public Declare Function BLesenDLL Lib "qlx99.dll" Alias "BLesenDLL" (ByVal theRole As String, _
    ByVal caseNumber As String, ByVal theSpare As String, ByVal noDialog As String, _
    ByVal theResult As String) As Long
Public Declare Function BListeInit Lib "qlx99.dll" Alias "BListeInit" (ByVal caseNumber As String) As Long
Public Declare Function BListeNext Lib "qlx99.dll" Alias "BListeNext" (ByVal caseNumber As String, _
    ByVal theIndex As String, ByVal theRecord As String) As Long
Public Declare Function GetAdrFieldsMain Lib "qlx99.dll" Alias "GetAdrFieldsMain" (ByVal theFirst As String, _
    ByVal theSecond As String, ByVal theThird As String, ByVal theFourth As String) As Long
Public Declare Function GetAdressTyp Lib "qlx99.dll" Alias "GetAdressTyp" (ByVal theFirst As String, _
    ByVal theSecond As String) As Long
Public Declare Function GetDokuNr Lib "qlx99.dll" Alias "GetDokuNr" (ByVal caseNumber As String) As Long
#End If

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
Private Const AllRoles As String = "|M |G |V |C |§M|§G|RM|HG|  |"

Public Const UnknownParty As Long = -1

' What can go wrong. The library has told the user the reason already where it is a file or the configuration.
Public Enum QlxError
    qlxNotRead = vbObjectError + 1001
    qlxNotWritten = vbObjectError + 1002
    qlxNoParty = vbObjectError + 1003
    qlxNothingChosen = vbObjectError + 1004
    qlxNoDocumentNumber = vbObjectError + 1005
    qlxNotThere = vbObjectError + 1006
    qlxNotValid = vbObjectError + 1007
    qlxWrongCharacters = vbObjectError + 1008
End Enum

' The records, field by field in their order. Dates are DD.MM.YYYY or empty; a number that is not there is 0.

' UserNext
Public Type QlxUser
    Name As String
    ThirdText As String
    SecondText As String
    ShortSign As String
    Number As Long
End Type

' ZtkodoliNext
Public Type QlxFollowUpKind
    Name As String
    Number As Long
    Id As Long
End Type

' WVNext
' Behind its fields, for ChangeFollowUp, the case and the party's record ID: 0 for no party, UnknownParty where it
' cannot be had. The date is a text when it was read, and may be set to a text of that form or to a Date.
Public Type QlxFollowUp
    DueDate As Variant
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
    CaseNumber As String
    PartyRecordId As Long
End Type

' SLesenDLL
Public Type QlxCase
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
Public Type QlxAddress
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
Public Type QlxPartyReference
    AddressNumber As Long
    RelationCode As String
    Always0 As String
    LinkNumber As Long
End Type

' BListeNext
Public Type QlxCaseParty
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

Public Function UserAt(ByVal atPosition As Long) As QlxUser
    Dim theFields() As String
    theFields = FieldsOf(UserRecord(atPosition), 5, "Benutzer " & atPosition)
    Dim theEntry As QlxUser
    theEntry.Name = theFields(0)
    theEntry.ThirdText = theFields(1)
    theEntry.SecondText = theFields(2)
    theEntry.ShortSign = theFields(3)
    theEntry.Number = NumberOf(theFields(4))
    UserAt = theEntry
End Function

' --- Follow-up kinds, positions 1 to FollowUpKindCount

Public Function FollowUpKindCount() As Long
    FollowUpKindCount = ZtkodoliInit()
End Function

Public Function FollowUpKindAt(ByVal atPosition As Long) As QlxFollowUpKind
    Dim theFields() As String
    theFields = FieldsOf(FollowUpKindRecord(atPosition), 3, "Wiedervorlageart " & atPosition, 0)
    Dim theEntry As QlxFollowUpKind
    theEntry.Name = theFields(0)
    theEntry.Number = NumberOf(theFields(1))
    theEntry.Id = NumberOf(theFields(2))
    FollowUpKindAt = theEntry
End Function

' --- Follow-ups of a case, positions 1 to FollowUpCount

Public Function FollowUpCount(ByVal caseNumber As String) As Long
    RequireCase caseNumber
    FollowUpCount = WVInit(caseNumber)
End Function

Public Function FollowUpAt(ByVal caseNumber As String, ByVal atPosition As Long) As QlxFollowUp
    Dim theRecord As String, theFields() As String
    theRecord = FollowUpRecord(caseNumber, atPosition)
    If theRecord = "" Then RequireCase caseNumber
    theFields = FieldsOf(theRecord, 12, "Wiedervorlage " & atPosition & " der Akte " & caseNumber, 3)
    Dim theEntry As QlxFollowUp
    theEntry.DueDate = FormedAs("##.##.####", theFields(0))
    theEntry.KindName = theFields(1)
    theEntry.KindId = NumberOf(theFields(2))
    theEntry.Text = theFields(3)
    theEntry.UserName = theFields(4)
    theEntry.UserSign = theFields(5)
    theEntry.UserId = NumberOf(theFields(6))
    theEntry.SecondUserName = theFields(7)
    theEntry.SecondUserSign = theFields(8)
    theEntry.SecondUserId = NumberOf(theFields(9))
    theEntry.PartyPosition = NumberOf(theFields(10))
    theEntry.Id = NumberOf(theFields(11))
    theEntry.CaseNumber = caseNumber
    theEntry.PartyRecordId = PartyRecordIdAt(caseNumber, theEntry.PartyPosition)
    FollowUpAt = theEntry
    If InStr(theEntry.Text, "|") > 0 Then RequireNames theEntry
End Function

' The kind is the Id of a QlxFollowUpKind, the user the Number of a QlxUser, the party the PartyRecordId of a
' QlxCaseParty. The date is a Date or a text DD.MM.YYYY. Everything is looked at before anything is written.
Public Sub AddFollowUp(ByVal caseNumber As String, ByVal kindId As Long, ByVal dueDate As Variant, _
    ByVal userId As Long, ByVal theText As String, Optional ByVal secondUserId As Long = 0, _
    Optional ByVal partyRecordId As Long = 0)
    Dim dateText As String
    RequireCase caseNumber
    RequireFollowUpKind kindId
    dateText = DateTextOf(dueDate)
    RequireUser userId
    If secondUserId <> 0 Then RequireUser secondUserId
    If partyRecordId <> 0 Then RequireParty caseNumber, partyRecordId
    RequirePlainText theText
    If WVNew(caseNumber, CStr(kindId), dateText, CStr(userId), CStr(secondUserId), CStr(partyRecordId), _
        theText) = 0 Then
        Fail qlxNotWritten, "Zur Akte " & caseNumber & " wurde keine Wiedervorlage angelegt."
    End If
End Sub

' Takes what FollowUpAt gave, with some of its fields changed: KindId, DueDate, Text, UserId, SecondUserId,
' PartyRecordId. What is as it was stays, even where AddFollowUp would not take it; but a party that has left the case is
' lost, as FollowUpAt is not told of it. Other fields are not looked at.
Public Sub ChangeFollowUp(ByRef theFollowUp As QlxFollowUp)
    Dim asStored As QlxFollowUp, dateText As String
    asStored = FollowUpWithId(theFollowUp.CaseNumber, theFollowUp.Id)
    If theFollowUp.KindId <> asStored.KindId Then RequireFollowUpKind theFollowUp.KindId
    dateText = ChangedDateText(theFollowUp.DueDate, asStored.DueDate)
    If theFollowUp.UserId <> asStored.UserId Or theFollowUp.UserId = 0 Then RequireUser theFollowUp.UserId
    If theFollowUp.SecondUserId <> asStored.SecondUserId And theFollowUp.SecondUserId <> 0 Then
        RequireUser theFollowUp.SecondUserId
    End If
    If theFollowUp.PartyRecordId <> asStored.PartyRecordId And theFollowUp.PartyRecordId <> 0 Or _
        theFollowUp.PartyRecordId = UnknownParty Then RequireParty theFollowUp.CaseNumber, theFollowUp.PartyRecordId
    If theFollowUp.Text <> asStored.Text Then RequirePlainText theFollowUp.Text
    If WVChange(CStr(theFollowUp.Id), CStr(theFollowUp.KindId), dateText, CStr(theFollowUp.UserId), _
        CStr(theFollowUp.SecondUserId), CStr(theFollowUp.PartyRecordId), theFollowUp.Text) = 0 Then
        Fail qlxNotWritten, "Die Wiedervorlage " & theFollowUp.Id & " wurde nicht geändert."
    End If
End Sub

Public Sub RemoveFollowUp(ByVal followUpId As Long)
    If followUpId < 1 Then Fail qlxNotThere, "Die Wiedervorlage " & followUpId & " gibt es nicht."
    If WVDelete(CStr(followUpId)) = 0 Then
        Fail qlxNotWritten, "Die Wiedervorlage " & followUpId & " wurde nicht gelöscht."
    End If
End Sub

' --- Cases

Public Function ReadCase(ByVal caseNumber As String) As QlxCase
    Dim theFields() As String
    theFields = FieldsOf(CaseRecord(caseNumber), 15, "Akte " & caseNumber, 8)
    Dim theEntry As QlxCase
    theEntry.Rubrum = theFields(0)
    theEntry.Text40 = theFields(1)
    theEntry.Text30 = theFields(2)
    theEntry.ShortCode = theFields(3)
    theEntry.CaseType = theFields(4)
    theEntry.Amount = FormedAs("*,##", theFields(5))
    theEntry.FirstDate = FormedAs("##.##.####", theFields(6))
    theEntry.SecondDate = FormedAs("##.##.####", theFields(7))
    theEntry.LongText = theFields(8)
    theEntry.UserName = theFields(9)
    theEntry.UserSign = theFields(10)
    theEntry.ArchiveDate = FormedAs("##.##.####", theFields(11))
    theEntry.ArchiveMark = theFields(12)
    theEntry.PartyCount = NumberOf(theFields(13))
    theEntry.CurrencyCode = theFields(14)
    ReadCase = theEntry
End Function

' An unknown case costs no number.
Public Function NextDocumentNumber(ByVal caseNumber As String) As Long
    RequireCase caseNumber
    NextDocumentNumber = GetDokuNr(caseNumber)
    If NextDocumentNumber = 0 Then
        Fail qlxNoDocumentNumber, "Zur Akte " & caseNumber & " wurde keine Dokumentnummer vergeben."
    End If
End Function

' --- Parties and their addresses

' Of several parties in the role the user chooses; if the macro may not ask, several are as good as none.
Public Function PartyInRole(ByVal partyRole As String, ByVal caseNumber As String, _
    Optional ByVal mayAsk As Boolean = True) As QlxPartyReference
    Dim theBuffer As String, theFields() As String, wholeRole As String
    wholeRole = RoleOf(partyRole)
    RequireCase caseNumber
    theBuffer = EmptyBuffer()
    If BLesenDLL(wholeRole, caseNumber, "", IIf(mayAsk, "", "1"), theBuffer) = 0 Then
        If RecordIn(theBuffer) <> "" Then Fail qlxNothingChosen, "Es wurde kein Beteiligter ausgewählt."
        Fail qlxNoParty, "Zur Akte " & caseNumber & " gibt es " & IIf(mayAsk, "keinen", "nicht genau einen") & _
            " Beteiligten in der Rolle """ & wholeRole & """."
    End If
    theFields = FieldsOf(RecordIn(theBuffer), 4, "Beteiligter der Akte " & caseNumber)
    Dim theEntry As QlxPartyReference
    theEntry.AddressNumber = NumberOf(theFields(0))
    theEntry.RelationCode = theFields(1)
    theEntry.Always0 = theFields(2)
    theEntry.LinkNumber = NumberOf(theFields(3))
    PartyInRole = theEntry
End Function

' With what the case says of the party, which the numbers of a QlxPartyReference or a QlxCaseParty name.
Public Function ReadAddress(ByVal caseNumber As String, ByVal addressNumber As Long, _
    Optional ByVal linkNumber As Long = 0) As QlxAddress
    Dim theBuffer As String, theFields() As String
    If Trim$(caseNumber) <> "" Then RequireCase caseNumber
    theBuffer = EmptyBuffer()
    ALesenDLL caseNumber, CStr(addressNumber), theBuffer, CStr(linkNumber)
    theFields = FieldsOf(AddressRecord(RecordIn(theBuffer), addressNumber), 25, "Adresse " & addressNumber)
    Dim theEntry As QlxAddress
    theEntry.FirstName = theFields(0)
    theEntry.Name = theFields(1)
    theEntry.LetterSalutation = theFields(2)
    theEntry.Title = theFields(3)
    theEntry.NameAddition = theFields(4)
    theEntry.FreeText = theFields(5)
    theEntry.ShortField1 = theFields(6)
    theEntry.ShortField2 = theFields(7)
    theEntry.ShortField3 = theFields(8)
    theEntry.ShortField4 = theFields(9)
    theEntry.ShortField5 = theFields(10)
    theEntry.WideField = theFields(11)
    theEntry.Street = theFields(12)
    theEntry.PostalCode = theFields(13)
    theEntry.Place = theFields(14)
    theEntry.SecondPostalCode = theFields(15)
    theEntry.SecondPlace = theFields(16)
    theEntry.AddressAddition = theFields(17)
    theEntry.Nationality = theFields(18)
    theEntry.BankName = theFields(19)
    theEntry.BankCode = theFields(20)
    theEntry.AccountNumber = theFields(21)
    theEntry.ContactAddition = theFields(22)
    theEntry.LinkText = theFields(23)
    theEntry.RelationDesignation = theFields(24)
    ReadAddress = theEntry
End Function

' Positions 1 to CasePartyCount.
Public Function CasePartyCount(ByVal caseNumber As String) As Long
    RequireCase caseNumber
    CasePartyCount = BListeInit(caseNumber)
End Function

Public Function CasePartyAt(ByVal caseNumber As String, ByVal atPosition As Long) As QlxCaseParty
    Dim theRecord As String, theFields() As String
    theRecord = CasePartyRecord(caseNumber, atPosition)
    If theRecord = "" Then RequireCase caseNumber
    theFields = FieldsOf(WholePartyRecord(theRecord), 9, "Beteiligter " & atPosition & " der Akte " & caseNumber)
    Dim theEntry As QlxCaseParty
    theEntry.RelationCode = FormedAs("??", theFields(0))
    theEntry.Salutation = theFields(1)
    theEntry.Name = theFields(2)
    theEntry.NameAddition = theFields(3)
    theEntry.Street = theFields(4)
    theEntry.Place = theFields(5)
    theEntry.AddressNumber = NumberOf(theFields(6))
    theEntry.LinkNumber = NumberOf(theFields(7))
    theEntry.PartyRecordId = NumberOf(theFields(8))
    CasePartyAt = theEntry
End Function

' --- Folders

Public Function DocumentRoot() As String
    Dim theBuffer As String
    theBuffer = EmptyBuffer()
    If GetDocuRoot(BufferSize, theBuffer) = 0 Then Fail qlxNotRead, "Das Dokumentenverzeichnis ist nicht eingerichtet."
    DocumentRoot = RecordIn(theBuffer)
End Function

Public Function ProgramRoot() As String
    Dim theBuffer As String
    theBuffer = EmptyBuffer()
    If GetProgramRoot(BufferSize, theBuffer) = 0 Then
        Fail qlxNotRead, "Das Programmverzeichnis " & _
            IIf(RecordIn(theBuffer) = "", "ist nicht eingerichtet.", "fehlt: " & RecordIn(theBuffer))
    End If
    ProgramRoot = RecordIn(theBuffer)
End Function

' --- Records; an empty one says that there is none

Private Function UserRecord(ByVal atPosition As Long) As String
    Dim theBuffer As String
    theBuffer = BufferFor(atPosition)
    UserNext CStr(atPosition), theBuffer
    UserRecord = RecordIn(theBuffer)
End Function

Private Function FollowUpKindRecord(ByVal atPosition As Long) As String
    Dim theBuffer As String
    theBuffer = BufferFor(atPosition)
    ZtkodoliNext CStr(atPosition), theBuffer
    FollowUpKindRecord = RecordIn(theBuffer)
End Function

Private Function FollowUpRecord(ByVal caseNumber As String, ByVal atPosition As Long) As String
    Dim theBuffer As String
    RequireCaseNumber caseNumber
    theBuffer = BufferFor(atPosition)
    WVNext caseNumber, CStr(atPosition), theBuffer
    FollowUpRecord = RecordIn(theBuffer)
End Function

Private Function CasePartyRecord(ByVal caseNumber As String, ByVal atPosition As Long) As String
    Dim theBuffer As String
    RequireCaseNumber caseNumber
    theBuffer = BufferFor(atPosition)
    BListeNext caseNumber, CStr(atPosition), theBuffer
    CasePartyRecord = RecordIn(theBuffer)
    If CasePartyRecord = "||" Then CasePartyRecord = ""
End Function

' A case that is not there has a party count and a currency only, one that cannot be read not even those; there is no
' record at all where another interface library answers and the user has not logged in.
Private Function CaseRecord(ByVal caseNumber As String) As String
    Dim theBuffer As String
    RequireCaseNumber caseNumber
    theBuffer = EmptyBuffer()
    SLesenDLL caseNumber, theBuffer
    CaseRecord = RecordIn(theBuffer)
    If CaseRecord = "0|" Then Fail qlxNotThere, "Die Akte " & caseNumber & " gibt es nicht."
    If CaseRecord = "|" Or CaseRecord = "" Then
        Fail qlxNotRead, "Die Akte " & caseNumber & " kann nicht gelesen werden: qlx99 ist auf diesem Arbeitsplatz " & _
            "nicht eingerichtet, oder die Datendateien sind nicht erreichbar."
    End If
End Function

Private Sub RequireCase(ByVal caseNumber As String)
    CaseRecord caseNumber
End Sub

' Of a longer one the library would take the beginning, and for a character that Windows-1252 lacks one that looks like
' it: both may be another case's number.
Private Sub RequireCaseNumber(ByVal caseNumber As String)
    Dim atCharacter As Long
    For atCharacter = 1 To Len(caseNumber)
        If Not IsInWindows1252(Mid$(caseNumber, atCharacter, 1)) Then
            Fail qlxNotThere, "Die Akte " & caseNumber & " gibt es nicht: Aktennummern stehen in Windows-1252."
        End If
    Next
    If Len(RTrim$(caseNumber)) > 8 Then
        Fail qlxNotThere, "Die Akte " & caseNumber & " gibt es nicht: Aktennummern haben höchstens 8 Zeichen."
    End If
End Sub

' An address that is there has a blank at least, in its street.
Private Function AddressRecord(ByVal theRecord As String, ByVal addressNumber As Long) As String
    AddressRecord = theRecord
    If theRecord = "" Then
        Fail qlxNotRead, "Die Adresse " & addressNumber & " kann nicht gelesen werden: qlx99 ist auf diesem " & _
            "Arbeitsplatz nicht eingerichtet, oder die Datendateien sind nicht erreichbar."
    End If
    If Replace(theRecord, "|", "") = "" Then Fail qlxNotThere, "Die Adresse " & addressNumber & " gibt es nicht."
End Function

' The library takes a position below 1 for the first.
Private Function BufferFor(ByVal atPosition As Long) As String
    If atPosition < 1 Then Fail qlxNotThere, "Einen Eintrag " & atPosition & " gibt es nicht; gezählt wird ab 1."
    BufferFor = EmptyBuffer()
End Function

' A string of its own length is what the library may write into, and blanks show where it has not. Whoever asks the
' library for a record comes by here.
Private Function EmptyBuffer() As String
    RequireWindows1252
    EmptyBuffer = String$(BufferSize, " ")
End Function

' These errors are told without umlauts, as those are what is wrong. Basic gives a library its texts in the code page of
' the machine; automation needs none.
Private Sub RequireWindows1252()
    If Len("ä") <> 1 Then
        Fail qlxWrongCharacters, "Dieses Modul wurde aus einer UTF-8-Datei importiert. Bitte durch qlx99.bas aus " & _
            "dem Paket ersetzen."
    End If
    If ByAutomation Then Exit Sub
    If AscW(Chr$(208)) <> 208 Then
        Fail qlxWrongCharacters, "Dieses Windows verwendet nicht die westliche Codepage 1252; mit einer anderen " & _
            "verlieren Texte ihre Umlaute (Systemsteuerung, Region, Verwaltung)."
    End If
End Sub

' What the library wrote: up to the first zero byte or, when it wrote none, without the blanks.
Private Function RecordIn(ByVal theBuffer As String) As String
    RecordIn = RTrim$(Left$(theBuffer, InStr(theBuffer & Chr$(0), Chr$(0)) - 1))
End Function

' The export's result is not asked, as it is 0 also for a record that begins with two empty fields. A text of the office
' may hold a "|" itself. In `freeText`, counted from 0, it does no harm: that field is all between the others.
Private Function FieldsOf(ByVal theRecord As String, ByVal fieldCount As Long, ByVal entryName As String, _
    Optional ByVal freeText As Long = -1) As String()
    Dim theFields() As String
    If theRecord = "" Then Fail qlxNotThere, entryName & " fehlt oder kann nicht gelesen werden."
    theFields = Split(theRecord, "|")
    If freeText >= 0 And UBound(theFields) >= fieldCount Then
        JoinFreeText theFields, freeText, UBound(theFields) + 1 - fieldCount
    End If
    If UBound(theFields) >= fieldCount Then FailForText
    If UBound(theFields) + 1 < fieldCount Then Fail qlxNotRead, entryName & " kann nicht vollständig gelesen werden."
    FieldsOf = theFields
End Function

Private Sub JoinFreeText(ByRef theFields() As String, ByVal freeText As Long, ByVal surplusCount As Long)
    Dim atField As Long
    For atField = 1 To surplusCount
        theFields(freeText) = theFields(freeText) & "|" & theFields(freeText + atField)
    Next
    For atField = freeText + 1 To UBound(theFields) - surplusCount
        theFields(atField) = theFields(atField + surplusCount)
    Next
    ReDim Preserve theFields(UBound(theFields) - surplusCount)
End Sub

' A party's record has no relation code where there is no relation, and no salutation where there is no address. Where
' there is one, its street is a blank at least. A record with all fields but without one of the two has a "|" in a text.
Private Function WholePartyRecord(ByVal theRecord As String) As String
    Dim theFields() As String
    theFields = Split(theRecord, "|")
    WholePartyRecord = theRecord
    If UBound(theFields) = 6 Then WholePartyRecord = "||" & theRecord
    If UBound(theFields) = 8 Then
        If theFields(0) = "" Or theFields(4) = "" Then FailForText
    End If
    If UBound(theFields) <> 7 Then Exit Function
    If theFields(3) = "" Then
        WholePartyRecord = Replace(theRecord, "|", "||", 1, 1)
    Else
        WholePartyRecord = "|" & theRecord
    End If
End Function

' An empty field is a number that is not there.
Private Function NumberOf(ByVal theField As String) As Long
    If theField = "" Then Exit Function
    If Not IsNumber(theField) Then FailForText
    NumberOf = CLng(Val(theField))
End Function

' As the library writes a number, and not beyond a Long.
Private Function IsNumber(ByVal theField As String) As Boolean
    If theField = "" Or Len(theField) > 11 Or theField Like "*[!-0-9]*" Then Exit Function
    If Abs(Val(theField)) <= 2147483647# Then IsNumber = (CStr(CLng(Val(theField))) = theField)
End Function

Private Function FormedAs(ByVal thePattern As String, ByVal theField As String) As String
    If theField <> "" And Not (theField Like thePattern) Then FailForText
    FormedAs = theField
End Function

Private Sub FailForText()
    Fail qlxNotRead, "Der Eintrag kann nicht gelesen werden, weil ein Text darin das Trennzeichen | enthält."
End Sub

' Users, kinds, follow-ups and parties have their number behind everything else, so that no text can be in its way.
Private Function HasNumber(ByVal theRecord As String, ByVal entryNumber As Long) As Boolean
    HasNumber = (LastField(theRecord) = CStr(entryNumber))
End Function

Private Function LastField(ByVal theRecord As String) As String
    LastField = Mid$(theRecord, InStrRev(theRecord, "|") + 1)
End Function

' A "|" in a name moves the fields as one in the text does, and a change would write what is not the text's own. Then the
' names are not those of the lists.
Private Sub RequireNames(ByRef theFollowUp As QlxFollowUp)
    If theFollowUp.KindName <> KindNameOf(theFollowUp.KindId) Then FailForText
    If theFollowUp.UserName <> UserNameOf(theFollowUp.UserId) Then FailForText
    If theFollowUp.SecondUserName <> UserNameOf(theFollowUp.SecondUserId) Then FailForText
End Sub

Private Function KindNameOf(ByVal kindId As Long) As String
    Dim atPosition As Long
    For atPosition = 1 To ZtkodoliInit()
        If HasNumber(FollowUpKindRecord(atPosition), kindId) Then KindNameOf = FirstField(FollowUpKindRecord(atPosition))
    Next
End Function

Private Function UserNameOf(ByVal userId As Long) As String
    Dim atPosition As Long
    For atPosition = 1 To UserInit()
        If HasNumber(UserRecord(atPosition), userId) Then UserNameOf = FirstField(UserRecord(atPosition))
    Next
End Function

Private Function FirstField(ByVal theRecord As String) As String
    FirstField = Left$(theRecord, InStr(theRecord & "|", "|") - 1)
End Function

Private Function PartyRecordIdAt(ByVal caseNumber As String, ByVal atPosition As Long) As Long
    Dim lastText As String
    If atPosition = 0 Then Exit Function
    PartyRecordIdAt = UnknownParty
    lastText = LastField(CasePartyRecord(caseNumber, atPosition))
    If IsNumber(lastText) Then PartyRecordIdAt = CLng(lastText)
End Function

Private Function FollowUpWithId(ByVal caseNumber As String, ByVal followUpId As Long) As QlxFollowUp
    Dim atPosition As Long
    For atPosition = 1 To FollowUpCount(caseNumber)
        If HasNumber(FollowUpRecord(caseNumber, atPosition), followUpId) Then
            FollowUpWithId = FollowUpAt(caseNumber, atPosition)
            Exit Function
        End If
    Next
    Fail qlxNotThere, "Die Wiedervorlage " & followUpId & " gibt es in der Akte " & caseNumber & " nicht."
End Function

' --- What is to be written

Private Sub RequireFollowUpKind(ByVal kindId As Long)
    Dim atPosition As Long
    For atPosition = 1 To ZtkodoliInit()
        If HasNumber(FollowUpKindRecord(atPosition), kindId) Then Exit Sub
    Next
    Fail qlxNotValid, "Die Wiedervorlageart " & kindId & " gibt es nicht."
End Sub

Private Sub RequireUser(ByVal userId As Long)
    Dim atPosition As Long
    For atPosition = 1 To UserInit()
        If HasNumber(UserRecord(atPosition), userId) Then Exit Sub
    Next
    Fail qlxNotValid, "Den Benutzer " & userId & " gibt es nicht."
End Sub

Private Sub RequireParty(ByVal caseNumber As String, ByVal partyRecordId As Long)
    Dim atPosition As Long
    For atPosition = 1 To BListeInit(caseNumber)
        If HasNumber(CasePartyRecord(caseNumber, atPosition), partyRecordId) Then Exit Sub
    Next
    Fail qlxNotValid, "Den Beteiligten " & partyRecordId & " gibt es in der Akte " & caseNumber & " nicht."
End Sub

Private Sub RequirePlainText(ByVal theText As String)
    Dim atCharacter As Long
    If Len(RTrim$(theText)) > 150 Then Fail qlxNotValid, "Der Text darf höchstens 150 Zeichen lang sein."
    For atCharacter = 1 To Len(theText)
        RequirePlainCharacter Mid$(theText, atCharacter, 1)
    Next
End Sub

Private Sub RequirePlainCharacter(ByVal oneCharacter As String)
    If oneCharacter = "|" Then Fail qlxNotValid, "Der Text darf das Trennzeichen | nicht enthalten."
    If AscW(oneCharacter) >= 0 And AscW(oneCharacter) < 32 Then
        Fail qlxNotValid, "Der Text darf keinen Zeilenumbruch und kein Steuerzeichen enthalten."
    End If
    If Not IsInWindows1252(oneCharacter) Then
        Fail qlxNotValid, "Der Text enthält ein Zeichen, das sich nicht speichern lässt: " & oneCharacter
    End If
End Sub

' The list has the characters that Windows-1252 has between 128 and 159, by their Unicode numbers.
Private Function IsInWindows1252(ByVal oneCharacter As String) As Boolean
    Const FromThere As String = " 8364 8218 402 8222 8230 8224 8225 710 8240 352 8249 338 381 8216 8217 8220 " & _
        "8221 8226 8211 8212 732 8482 353 8250 339 382 376 "
    Dim charCode As Long
    charCode = AscW(oneCharacter) And &HFFFF&
    IsInWindows1252 = charCode < 127 Or (charCode > 159 And charCode < 256) Or _
        InStr(FromThere, " " & charCode & " ") > 0
End Function

' The text of a Date or of a text that is one; an unset Date is a day of 1899.
Private Function DateTextOf(ByVal dueDate As Variant) As String
    If VarType(dueDate) = vbDate Then DateTextOf = Format$(dueDate, "dd\.mm\.yyyy")
    If VarType(dueDate) = vbString Then DateTextOf = dueDate
    If Not IsDay(DateTextOf) Then
        Fail qlxNotValid, "Die Wiedervorlage braucht ein Datum vom 01.01.1900 bis zum 31.12.2050 in der Form " & _
            "TT.MM.JJJJ; """ & DateTextOf & """ ist keines."
    End If
End Function

' A follow-up that has no date may keep none: this is the day that is stored as none.
Private Function ChangedDateText(ByVal dueDate As Variant, ByVal storedDate As String) As String
    If VarType(dueDate) = vbString Then
        If dueDate = "" And storedDate = "" Then ChangedDateText = "31.12.1899"
    End If
    If ChangedDateText = "" Then ChangedDateText = DateTextOf(dueDate)
End Function

Private Function IsDay(ByVal dateText As String) As Boolean
    Dim dayNumber As Long, monthNumber As Long, yearNumber As Long
    If Not (dateText Like "##.##.####") Then Exit Function
    dayNumber = CLng(Left$(dateText, 2))
    monthNumber = CLng(Mid$(dateText, 4, 2))
    yearNumber = CLng(Right$(dateText, 4))
    If yearNumber < 1900 Or yearNumber > 2050 Or monthNumber < 1 Or monthNumber > 12 Then Exit Function
    IsDay = (Day(DateSerial(yearNumber, monthNumber, dayNumber)) = dayNumber)
End Function

' A role may be given without its blank.
Private Function RoleOf(ByVal partyRole As String) As String
    RequireWindows1252
    RoleOf = partyRole
    If Len(Trim$(partyRole)) = 1 Then RoleOf = Trim$(partyRole) & " "
    If Len(RoleOf) <> 2 Or InStr(AllRoles, "|" & RoleOf & "|") = 0 Then
        Fail qlxNotValid, "Die Rolle """ & partyRole & """ gibt es nicht."
    End If
End Function

Private Sub Fail(ByVal errorNumber As QlxError, ByVal errorText As String)
    Err.Raise errorNumber, "qlx99", errorText
End Sub

#If Win64 Then
' --- The exports, by automation. An answer takes its place at the beginning of the buffer, as if the library wrote it.

Private Function QlxLibrary() As Object
    If theLibrary Is Nothing Then Set theLibrary = CreateObject("qlx99.Library")
    Set QlxLibrary = theLibrary
End Function

Private Sub PutAnswer(ByVal theAnswer As String, ByVal endMark As String, ByRef theBuffer As String)
    If theAnswer <> "" Then theBuffer = theAnswer & endMark & Mid$(theBuffer, Len(theAnswer & endMark) + 1)
End Sub

Public Function GetDocuRoot(ByVal theLength As Long, ByRef thePath As String) As Long
    Dim theAnswer As String
    GetDocuRoot = QlxLibrary().GetDocuRoot(theLength, theAnswer)
    PutAnswer theAnswer, Chr$(0), thePath
End Function

Public Function GetProgramRoot(ByVal theLength As Long, ByRef thePath As String) As Long
    Dim theAnswer As String
    GetProgramRoot = QlxLibrary().GetProgramRoot(theLength, theAnswer)
    PutAnswer theAnswer, Chr$(0), thePath
End Function

Public Function UserInit() As Long
    UserInit = QlxLibrary().UserInit()
End Function

Public Function UserNext(ByVal theIndex As String, ByRef theRecord As String) As Long
    Dim theAnswer As String
    UserNext = QlxLibrary().UserNext(theIndex, theAnswer)
    PutAnswer theAnswer, "", theRecord
End Function

Public Function ZtkodoliInit() As Long
    ZtkodoliInit = QlxLibrary().ZtkodoliInit()
End Function

Public Function ZtkodoliNext(ByVal theIndex As String, ByRef theRecord As String) As Long
    Dim theAnswer As String
    ZtkodoliNext = QlxLibrary().ZtkodoliNext(theIndex, theAnswer)
    PutAnswer theAnswer, "", theRecord
End Function

Public Function WVInit(ByVal caseNumber As String) As Long
    WVInit = QlxLibrary().WVInit(caseNumber)
End Function

Public Function WVNext(ByVal caseNumber As String, ByVal theIndex As String, ByRef theRecord As String) As Long
    Dim theAnswer As String
    WVNext = QlxLibrary().WVNext(caseNumber, theIndex, theAnswer)
    PutAnswer theAnswer, "", theRecord
End Function

Public Function WVNew(ByVal caseNumber As String, ByVal kindId As String, ByVal dueDate As String, _
    ByVal userId As String, ByVal secondUserId As String, ByVal partyRecordId As String, _
    ByVal theText As String) As Long
    WVNew = QlxLibrary().WVNew(caseNumber, kindId, dueDate, userId, secondUserId, partyRecordId, theText)
End Function

Public Function WVChange(ByVal followUpId As String, ByVal kindId As String, ByVal dueDate As String, _
    ByVal userId As String, ByVal secondUserId As String, ByVal partyRecordId As String, _
    ByVal theText As String) As Long
    WVChange = QlxLibrary().WVChange(followUpId, kindId, dueDate, userId, secondUserId, partyRecordId, theText)
End Function

Public Function WVDelete(ByVal followUpId As String) As Long
    WVDelete = QlxLibrary().WVDelete(followUpId)
End Function

Public Function SLesenDLL(ByVal caseNumber As String, ByRef theRecord As String) As Long
    Dim theAnswer As String
    SLesenDLL = QlxLibrary().SLesenDLL(caseNumber, theAnswer)
    PutAnswer theAnswer, Chr$(0), theRecord
End Function

Public Function ALesenDLL(ByVal caseNumber As String, ByVal addressNumber As String, ByRef theRecord As String, _
    ByVal linkNumber As String) As Long
    Dim theAnswer As String
    ALesenDLL = QlxLibrary().ALesenDLL(caseNumber, addressNumber, theAnswer, linkNumber)
    PutAnswer theAnswer, Chr$(0), theRecord
End Function

Public Function BLesenDLL(ByVal theRole As String, ByVal caseNumber As String, ByVal theSpare As String, _
    ByVal noDialog As String, ByRef theResult As String) As Long
    Dim theAnswer As String
    BLesenDLL = QlxLibrary().BLesenDLL(theRole, caseNumber, theSpare, noDialog, theAnswer)
    PutAnswer theAnswer, Chr$(0), theResult
End Function

Public Function BListeInit(ByVal caseNumber As String) As Long
    BListeInit = QlxLibrary().BListeInit(caseNumber)
End Function

Public Function BListeNext(ByVal caseNumber As String, ByVal theIndex As String, ByRef theRecord As String) As Long
    Dim theAnswer As String
    BListeNext = QlxLibrary().BListeNext(caseNumber, theIndex, theAnswer)
    PutAnswer theAnswer, Chr$(0), theRecord
End Function

Public Function GetAdrFieldsMain(ByVal theFirst As String, ByVal theSecond As String, ByVal theThird As String, _
    ByVal theFourth As String) As Long
    GetAdrFieldsMain = QlxLibrary().GetAdrFieldsMain(theFirst, theSecond, theThird, theFourth)
End Function

Public Function GetAdressTyp(ByVal theFirst As String, ByVal theSecond As String) As Long
    GetAdressTyp = QlxLibrary().GetAdressTyp(theFirst, theSecond)
End Function

Public Function GetDokuNr(ByVal caseNumber As String) As Long
    GetDokuNr = QlxLibrary().GetDokuNr(caseNumber)
End Function
#End If
