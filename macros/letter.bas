Attribute VB_Name = "letter"
' A sample: the letter to the client of a case, as `qlx letter` writes it. Needs the module qlx99.
Option Explicit

Private Const Indent As String = "    "

' Asks for the case and writes the letter into a new document.
Public Sub BriefAnMandanten()
    Dim caseNumber As String
    caseNumber = Trim$(InputBox("Aktennummer:", "Brief an den Mandanten"))
    If caseNumber = "" Then Exit Sub
    On Error GoTo NoLetter
    Documents.Add.Content.Text = LetterText(caseNumber, RoleClient)
    Exit Sub
NoLetter:
    MsgBox Err.Description, vbExclamation, "Kein Brief"
End Sub

' The letter to the party of the case in the role, for paper that bears the office's head already.
Public Function LetterText(ByVal caseNumber As String, ByVal role As String) As String
    Dim party As PartyReference, addressee As Address, facts As CaseData, documentNumber As Long
    party = PartyInRole(role, caseNumber)
    addressee = ReadAddress(caseNumber, party.AddressNumber, party.LinkNumber)
    RequirePostalAddress addressee
    facts = ReadCase(caseNumber)
    documentNumber = NextDocumentNumber(caseNumber) ' last, because the number is used up

    Dim text As String
    text = AddressBlock(addressee) & vbCr & vbCr
    text = text & ReferenceBlock(caseNumber, documentNumber, facts, addressee) & vbCr & vbCr
    text = text & Lines(facts.Rubrum, facts.Text40, facts.Text30) & vbCr & vbCr
    text = text & SalutationLine(addressee) & vbCr & FirstParagraph(facts) & vbCr & BankParagraphs(addressee)
    text = text & "Bei Antworten und Rückfragen geben Sie bitte unser Zeichen an." & vbCr & vbCr
    LetterText = text & "Mit freundlichen Grüßen" & vbCr & vbCr & vbCr & Lines(facts.UserName)
End Function

Private Sub RequirePostalAddress(ByRef addressee As Address)
    If addressee.Name = "" Then
        Err.Raise qlxNotRead, "letter", "Die Adresse hat keinen Ansprechpartner, an den sich schreiben lässt."
    End If
    If addressee.Place = "" And addressee.SecondPlace = "" Then
        Err.Raise qlxNotRead, "letter", "Die Adresse von " & addressee.Name & " hat keinen Ort."
    End If
End Sub

' --- The blocks of the letter, each ended like its last line. Types of a module are passed ByRef in Basic.

Private Function AddressBlock(ByRef addressee As Address) As String
    Dim placeLine As String
    If addressee.Place <> "" Then
        placeLine = Joined(" ", addressee.PostalCode, addressee.Place)
    Else
        placeLine = Joined(" ", addressee.SecondPostalCode, addressee.SecondPlace)
    End If
    AddressBlock = Lines(AboveTheName(addressee.LetterSalutation), _
        Joined(" ", addressee.Title, addressee.FirstName, addressee.Name), addressee.NameAddition, _
        addressee.ContactAddition, addressee.AddressAddition, Trim$(addressee.Street), placeLine)
End Function

' By the letter's salutation: that of the address would be wrong for the second of its contact persons.
Private Function AboveTheName(ByVal letterSalutation As String) As String
    If BeginsWith(letterSalutation, "Sehr geehrter Herr") Then AboveTheName = "Herrn"
    If BeginsWith(letterSalutation, "Sehr geehrte Frau") Then AboveTheName = "Frau"
End Function

Private Function ReferenceBlock(ByVal caseNumber As String, ByVal documentNumber As Long, ByRef facts As CaseData, _
    ByRef addressee As Address) As String
    ReferenceBlock = Lines(Labelled("Unser Zeichen:", Joined("/", caseNumber, facts.UserSign)), _
        Labelled("Dokument Nr.:", CStr(documentNumber)), Labelled("Bearbeitet von:", facts.UserName), _
        Labelled("Ihr Zeichen:", addressee.LinkText))
End Function

' People are addressed by academic titles, not by professional ones.
Private Function SalutationLine(ByRef addressee As Address) As String
    Dim salutation As String, academicTitle As String
    salutation = addressee.LetterSalutation
    If InStr(addressee.Title, "Dr.") > 0 Or BeginsWith(addressee.Title, "Prof.") Then academicTitle = addressee.Title
    If salutation = "" Or InStr(salutation, "Damen und Herren") > 0 Then
        SalutationLine = "Sehr geehrte Damen und Herren," & vbCr
    Else
        SalutationLine = Joined(" ", salutation, academicTitle, addressee.Name) & "," & vbCr
    End If
End Function

' Without the case's long text: it is the office's own note and may not be for the addressee.
Private Function FirstParagraph(ByRef facts As CaseData) As String
    Dim kind As String
    If facts.CaseType <> "" Then kind = " (" & facts.CaseType & ")"
    FirstParagraph = Joined(" ", "in der vorbezeichneten Angelegenheit" & kind & _
        " nehmen wir Bezug auf den bei uns geführten Vorgang.", AmountSentence(facts), DatesSentence(facts), _
        ArchiveSentence(facts)) & vbCr
End Function

' A case without an amount has 0,00; a negative amount is none to be in dispute.
Private Function AmountSentence(ByRef facts As CaseData) As String
    Dim amount As String
    amount = Joined(" ", facts.Amount, facts.CurrencyCode)
    If BeginsWith(amount, "-") Then
        AmountSentence = "Zur Akte ist ein Betrag von " & amount & " vermerkt."
    ElseIf facts.Amount <> "0,00" Then
        AmountSentence = "Der Gegenstandswert beträgt derzeit " & amount & "."
    End If
End Function

Private Function DatesSentence(ByRef facts As CaseData) As String
    Dim dates As String
    dates = Joined(" und der ", facts.FirstDate, facts.SecondDate)
    If facts.FirstDate <> "" And facts.SecondDate <> "" Then
        DatesSentence = "Als Daten sind der " & dates & " vermerkt."
    ElseIf dates <> "" Then
        DatesSentence = "Als Datum ist der " & dates & " vermerkt."
    End If
End Function

Private Function ArchiveSentence(ByRef facts As CaseData) As String
    Dim mark As String
    If facts.ArchiveMark <> "" Then mark = " (Ablagezeichen " & facts.ArchiveMark & ")"
    If facts.ArchiveDate <> "" Then ArchiveSentence = "Die Akte ist seit dem " & facts.ArchiveDate & " abgelegt" & _
        mark & "."
End Function

Private Function BankParagraphs(ByRef addressee As Address) As String
    If addressee.AccountNumber = "" Then Exit Function
    Dim bankCode As String
    If addressee.BankCode <> "" Then bankCode = Indent & "Bankleitzahl " & addressee.BankCode
    BankParagraphs = "Für Zahlungen an Sie ist bei uns folgende Bankverbindung hinterlegt:" & vbCr & vbCr & _
        Lines(IIf(addressee.BankName = "", "", Indent & addressee.BankName), bankCode, _
            Indent & "Konto " & addressee.AccountNumber) & vbCr & _
        "Bitte teilen Sie uns mit, falls diese Angaben nicht mehr zutreffen." & vbCr & vbCr
End Function

' --- Texts

Private Function BeginsWith(ByVal text As String, ByVal beginning As String) As Boolean
    BeginsWith = (Left$(text, Len(beginning)) = beginning)
End Function

Private Function Labelled(ByVal label As String, ByVal text As String) As String
    If text <> "" Then Labelled = Left$(label & Space$(20), 20) & text
End Function

' The lines that are not empty, each ended.
Private Function Lines(ParamArray all() As Variant) As String
    Dim one As Variant
    For Each one In all
        If one <> "" Then Lines = Lines & one & vbCr
    Next
End Function

' The parts that are not empty.
Private Function Joined(ByVal between As String, ParamArray all() As Variant) As String
    Dim one As Variant
    For Each one In all
        If one <> "" Then Joined = Joined & IIf(Joined = "", "", between) & one
    Next
End Function
