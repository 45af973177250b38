Attribute VB_Name = "letter"
' A sample: the letter to the client of a case, as `qlx letter` writes it. Needs the module qlx99.
Option Explicit

Private Const Indent As String = "    "

' Asks for the case and writes the letter into a new document.
Public Sub BriefAnMandanten()
    Dim caseNumber As String, wholeLetter As String
    caseNumber = Trim$(InputBox("Aktennummer:", "Brief an den Mandanten"))
    If caseNumber = "" Then Exit Sub
    On Error GoTo NoLetter
    wholeLetter = LetterText(caseNumber, RoleClient) ' first: without a letter there is no document either
    Documents.Add.Content.Text = wholeLetter
    Exit Sub
NoLetter:
    MsgBox Err.Description, vbExclamation, "Kein Brief"
End Sub

' The letter to the party of the case in the role, for paper that bears the office's head already.
Public Function LetterText(ByVal caseNumber As String, ByVal partyRole As String) As String
    Dim theParty As QlxPartyReference, theAddressee As QlxAddress, theFacts As QlxCase, documentNumber As Long
    theParty = PartyInRole(partyRole, caseNumber)
    theAddressee = ReadAddress(caseNumber, theParty.AddressNumber, theParty.LinkNumber)
    RequirePostalAddress theAddressee
    theFacts = ReadCase(caseNumber)
    documentNumber = NextDocumentNumber(caseNumber) ' last, because the number is used up

    Dim theText As String
    theText = AddressBlock(theAddressee) & vbCr & vbCr
    theText = theText & ReferenceBlock(caseNumber, documentNumber, theFacts, theAddressee) & vbCr & vbCr
    theText = theText & Lines(theFacts.Rubrum, theFacts.Text40, theFacts.Text30) & vbCr & vbCr
    theText = theText & SalutationLine(theAddressee) & vbCr & FirstParagraph(theFacts) & vbCr
    theText = theText & BankParagraphs(theAddressee)
    theText = theText & "Bei Antworten und Rückfragen geben Sie bitte unser Zeichen an." & vbCr & vbCr
    LetterText = theText & "Mit freundlichen Grüßen" & vbCr & vbCr & vbCr & Lines(theFacts.UserName)
End Function

Private Sub RequirePostalAddress(ByRef theAddressee As QlxAddress)
    If theAddressee.Name = "" Then
        Err.Raise qlxNotRead, "letter", "Die Adresse hat keinen Ansprechpartner, an den sich schreiben lässt."
    End If
    If theAddressee.Place = "" And theAddressee.SecondPlace = "" Then
        Err.Raise qlxNotRead, "letter", "Die Adresse von " & theAddressee.Name & " hat keinen Ort."
    End If
End Sub

' --- The blocks of the letter, each ended like its last line. Types of a module are passed ByRef in Basic.

Private Function AddressBlock(ByRef theAddressee As QlxAddress) As String
    Dim placeLine As String
    If theAddressee.Place <> "" Then
        placeLine = Joined(" ", theAddressee.PostalCode, theAddressee.Place)
    Else
        placeLine = Joined(" ", theAddressee.SecondPostalCode, theAddressee.SecondPlace)
    End If
    AddressBlock = Lines(AboveTheName(theAddressee.LetterSalutation), _
        Joined(" ", theAddressee.Title, theAddressee.FirstName, theAddressee.Name), theAddressee.NameAddition, _
        theAddressee.ContactAddition, theAddressee.AddressAddition, Trim$(theAddressee.Street), placeLine)
End Function

' By the letter's salutation: that of the address would be wrong for the second of its contact persons.
Private Function AboveTheName(ByVal letterSalutation As String) As String
    If BeginsWith(letterSalutation, "Sehr geehrter Herr") Then AboveTheName = "Herrn"
    If BeginsWith(letterSalutation, "Sehr geehrte Frau") Then AboveTheName = "Frau"
End Function

Private Function ReferenceBlock(ByVal caseNumber As String, ByVal documentNumber As Long, ByRef theFacts As QlxCase, _
    ByRef theAddressee As QlxAddress) As String
    ReferenceBlock = Lines(Labelled("Unser Zeichen:", Joined("/", caseNumber, theFacts.UserSign)), _
        Labelled("Dokument Nr.:", CStr(documentNumber)), Labelled("Bearbeitet von:", theFacts.UserName), _
        Labelled("Ihr Zeichen:", theAddressee.LinkText))
End Function

' People are addressed by academic titles, not by professional ones.
Private Function SalutationLine(ByRef theAddressee As QlxAddress) As String
    Dim theSalutation As String, academicTitle As String
    theSalutation = theAddressee.LetterSalutation
    If InStr(theAddressee.Title, "Dr.") > 0 Or BeginsWith(theAddressee.Title, "Prof.") Then
        academicTitle = theAddressee.Title
    End If
    If theSalutation = "" Or InStr(theSalutation, "Damen und Herren") > 0 Then
        SalutationLine = "Sehr geehrte Damen und Herren," & vbCr
    Else
        SalutationLine = Joined(" ", theSalutation, academicTitle, theAddressee.Name) & "," & vbCr
    End If
End Function

' Without the case's long text: it is the office's own note and may not be for the addressee.
Private Function FirstParagraph(ByRef theFacts As QlxCase) As String
    Dim caseKind As String
    If theFacts.CaseType <> "" Then caseKind = " (" & theFacts.CaseType & ")"
    FirstParagraph = Joined(" ", "in der vorbezeichneten Angelegenheit" & caseKind & _
        " nehmen wir Bezug auf den bei uns geführten Vorgang.", AmountSentence(theFacts), DatesSentence(theFacts), _
        ArchiveSentence(theFacts)) & vbCr
End Function

' A case without an amount has 0,00; a negative amount is none to be in dispute.
Private Function AmountSentence(ByRef theFacts As QlxCase) As String
    Dim theAmount As String
    theAmount = Joined(" ", theFacts.Amount, theFacts.CurrencyCode)
    If BeginsWith(theAmount, "-") Then
        AmountSentence = "Zur Akte ist ein Betrag von " & theAmount & " vermerkt."
    ElseIf theFacts.Amount <> "0,00" Then
        AmountSentence = "Der Gegenstandswert beträgt derzeit " & theAmount & "."
    End If
End Function

Private Function DatesSentence(ByRef theFacts As QlxCase) As String
    Dim theDates As String
    theDates = Joined(" und der ", theFacts.FirstDate, theFacts.SecondDate)
    If theFacts.FirstDate <> "" And theFacts.SecondDate <> "" Then
        DatesSentence = "Als Daten sind der " & theDates & " vermerkt."
    ElseIf theDates <> "" Then
        DatesSentence = "Als Datum ist der " & theDates & " vermerkt."
    End If
End Function

Private Function ArchiveSentence(ByRef theFacts As QlxCase) As String
    Dim theMark As String
    If theFacts.ArchiveMark <> "" Then theMark = " (Ablagezeichen " & theFacts.ArchiveMark & ")"
    If theFacts.ArchiveDate <> "" Then
        ArchiveSentence = "Die Akte ist seit dem " & theFacts.ArchiveDate & " abgelegt" & theMark & "."
    End If
End Function

Private Function BankParagraphs(ByRef theAddressee As QlxAddress) As String
    If theAddressee.AccountNumber = "" Then Exit Function
    Dim bankCode As String
    If theAddressee.BankCode <> "" Then bankCode = Indent & "Bankleitzahl " & theAddressee.BankCode
    BankParagraphs = "Für Zahlungen an Sie ist bei uns folgende Bankverbindung hinterlegt:" & vbCr & vbCr & _
        Lines(IIf(theAddressee.BankName = "", "", Indent & theAddressee.BankName), bankCode, _
            Indent & "Konto " & theAddressee.AccountNumber) & vbCr & _
        "Bitte teilen Sie uns mit, falls diese Angaben nicht mehr zutreffen." & vbCr & vbCr
End Function

' --- Texts

Private Function BeginsWith(ByVal theText As String, ByVal itsBeginning As String) As Boolean
    BeginsWith = (Left$(theText, Len(itsBeginning)) = itsBeginning)
End Function

Private Function Labelled(ByVal theLabel As String, ByVal theText As String) As String
    If theText <> "" Then Labelled = Left$(theLabel & Space$(20), 20) & theText
End Function

' The lines that are not empty, each ended.
Private Function Lines(ParamArray allTexts() As Variant) As String
    Dim oneText As Variant
    For Each oneText In allTexts
        If oneText <> "" Then Lines = Lines & oneText & vbCr
    Next
End Function

' The parts that are not empty.
Private Function Joined(ByVal theSeparator As String, ParamArray allTexts() As Variant) As String
    Dim oneText As Variant
    For Each oneText In allTexts
        If oneText <> "" Then Joined = Joined & IIf(Joined = "", "", theSeparator) & oneText
    Next
End Function
