#include "office/letter.h"

#include <algorithm>
#include <string_view>

#include "office/text_encoding.h"

namespace office {
namespace {

constexpr std::size_t kLineColumns = 72;

std::string Joined(const std::vector<std::string>& parts, std::string_view between) {
  std::string joined;
  for (const std::string& part : parts) {
    if (part.empty()) continue;
    if (!joined.empty()) joined += between;
    joined += part;
  }
  return joined;
}

// The lines that are not empty.
std::string Lines(const std::vector<std::string>& lines) { return Joined(lines, "\n") + "\n"; }

// Breaks the text between words.
std::string Paragraph(std::string_view text) {
  std::string lines;
  std::string line;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    const std::string_view word = text.substr(0, end);
    if (!line.empty() && ColumnsOf(line) + 1 + ColumnsOf(word) > kLineColumns) {
      lines += line + "\n";
      line.clear();
    }
    if (!line.empty()) line += ' ';
    line += word;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines + line + "\n";
}

bool IsToOnePerson(const std::string& letterSalutation) {
  return !letterSalutation.empty() &&
         letterSalutation.find("Damen und Herren") == std::string::npos;
}

// The salutation above the name goes by the one in the letter: an address's own would be wrong for
// the second of its contact persons.
std::string AboveTheName(const std::string& letterSalutation) {
  if (letterSalutation.starts_with("Sehr geehrter Herr")) return "Herrn";
  if (letterSalutation.starts_with("Sehr geehrte Frau")) return "Frau";
  return {};
}

std::string AddressBlock(const DeliveredRecord& address) {
  const bool hasStreetPlace = !address["place"].empty();
  const std::string& code = address[hasStreetPlace ? "postalCode" : "secondPostalCode"];
  const std::string& place = address[hasStreetPlace ? "place" : "secondPlace"];
  return Lines({AboveTheName(address["letterSalutation"]),
                Joined({address["title"], address["firstName"], address["name"]}, " "),
                address["nameAddition"], address["contactAddition"], address["addressAddition"],
                address["street"], Joined({code, place}, " ")});
}

std::string Reference(std::string_view label, const std::string& text) {
  constexpr std::size_t kLabelColumns = 20;
  return text.empty() ? "" : PaddedRight(label, kLabelColumns) + text;
}

std::string ReferenceBlock(const LetterFacts& facts) {
  const DeliveredRecord& caseData = facts.caseData;
  return Lines({Reference("Unser Zeichen:", Joined({facts.caseNumber, caseData["userSign"]}, "/")),
                Reference("Dokument Nr.:", std::to_string(facts.documentNumber)),
                Reference("Bearbeitet von:", caseData["userName"]),
                Reference("Ihr Zeichen:", facts.address["linkText"])});
}

std::string SalutationLine(const DeliveredRecord& address) {
  const std::string& salutation = address["letterSalutation"];
  if (!IsToOnePerson(salutation)) return "Sehr geehrte Damen und Herren,\n";
  // People are addressed by academic titles, not by professional ones.
  const std::string& title = address["title"];
  const bool academic = title.find("Dr.") != std::string::npos || title.starts_with("Prof.");
  return Joined({salutation, academic ? title : "", address["name"]}, " ") + ",\n";
}

// Empty for a case without an amount in dispute: its record says 0. A negative amount is not
// called one in dispute.
std::string AmountSentence(const DeliveredRecord& caseData) {
  const std::string& amount = caseData["amount"];
  if (amount == "0,00") return {};
  const std::string text = Joined({amount, caseData["currencyCode"]}, " ");
  if (amount.starts_with('-')) return "Zur Akte ist ein Betrag von " + text + " vermerkt.";
  return "Der Gegenstandswert beträgt derzeit " + text + ".";
}

std::string DatesSentence(const DeliveredRecord& caseData) {
  const std::string& first = caseData["firstDate"];
  const std::string& second = caseData["secondDate"];
  if (first.empty() && second.empty()) return {};
  const bool both = !first.empty() && !second.empty();
  return std::string(both ? "Als Daten sind der " : "Als Datum ist der ") +
         Joined({first, second}, " und der ") + " vermerkt.";
}

std::string ArchiveSentence(const DeliveredRecord& caseData) {
  if (caseData["archiveDate"].empty()) return {};
  const std::string& mark = caseData["archiveMark"];
  return "Die Akte ist seit dem " + caseData["archiveDate"] + " abgelegt" +
         (mark.empty() ? "" : " (Ablagezeichen " + mark + ")") + ".";
}

// The case's long text stays out: it is the office's own note and may not be for the addressee.
std::string FirstParagraph(const DeliveredRecord& caseData) {
  const std::string& kind = caseData["caseType"];
  return Paragraph(
      Joined({"in der vorbezeichneten Angelegenheit" + (kind.empty() ? "" : " (" + kind + ")") +
                  " nehmen wir Bezug auf den bei uns geführten Vorgang.",
              AmountSentence(caseData), DatesSentence(caseData), ArchiveSentence(caseData)},
             " "));
}

std::string Indented(std::string_view label, const std::string& text) {
  return text.empty() ? "" : "    " + std::string(label) + text;
}

std::string BankParagraphs(const DeliveredRecord& address) {
  const std::string& account = address["accountNumber"];
  if (account.empty()) return {};
  return Paragraph("Für Zahlungen an Sie ist bei uns folgende Bankverbindung hinterlegt:") + "\n" +
         Lines({Indented("", address["bankName"]), Indented("Bankleitzahl ", address["bankCode"]),
                Indented("Konto ", account)}) +
         "\n" + Paragraph("Bitte teilen Sie uns mit, falls diese Angaben nicht mehr zutreffen.") +
         "\n";
}

}  // namespace

std::string ComposeLetter(const LetterFacts& facts) {
  const DeliveredRecord& address = facts.address;
  const DeliveredRecord& caseData = facts.caseData;
  return AddressBlock(address) + "\n\n" + ReferenceBlock(facts) + "\n\n" +
         Lines({caseData["rubrum"], caseData["text40"], caseData["text30"]}) + "\n\n" +
         SalutationLine(address) + "\n" + FirstParagraph(caseData) + "\n" +
         BankParagraphs(address) +
         Paragraph("Bei Antworten und Rückfragen geben Sie bitte unser Zeichen an.") + "\n" +
         "Mit freundlichen Grüßen\n\n\n" + Lines({caseData["userName"]});
}

}  // namespace office
