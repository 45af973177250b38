#include "office/command_line.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <ostream>

#include "office/check_office.h"
#include "office/copy_office.h"
#include "office/export_call.h"
#include "office/failure.h"
#include "office/follow_up_table.h"
#include "office/host.h"
#include "office/letter.h"
#include "office/new_office.h"
#include "office/setup.h"
#include "office/show_file.h"

namespace office {
namespace {

constexpr const char* kAbout =
    "qlx makes, checks and shows a law office's record files, and calls the interface library as "
    "the word processor's macros do.";

constexpr const char* kExamples = R"(Examples:
  qlx office create office         a small sample office in the folder "office"
  qlx setup office                 make it the one that the library reads
  qlx letter 12345678              a letter to the client of this case
  qlx letter 12345678 --role G     ... to the opponent
  qlx call BListeNext 12345678 1   what a macro is given for the first party
  qlx followups 12345678           the case's deadlines, soonest first
  qlx office show ZTCASE           all cases
  qlx office copy backup           all record files, also while others work)";

constexpr const char* kCallNotes = R"(
Arguments are texts, in the order in which a macro gives them but without its buffer. Those left out
at the end are null pointers. The exports and their arguments:)";

// The options' and arguments' values, and the commands that are run with them.
class CommandLine {
 public:
  CommandLine(std::ostream& out, std::ostream& err) : out_(out), err_(err) {
    app_.require_subcommand(1);
    app_.set_version_flag("--version", "qlx " QLX_VERSION);
    app_.set_help_flag("--help", "Print this help message and exit");
    AddLetter();
    AddCall();
    AddFollowUps();
    AddOffice();
    AddSetup();
    app_.footer(kExamples);  // after the commands, which would take it over
  }

  // Throws CLI::ParseError, WrongUsage or Failure.
  void Run(std::vector<std::string> arguments) {
    std::ranges::reverse(arguments);  // the parser takes them from the back
    app_.parse(std::move(arguments));
  }

  // What a parse error means to the user: help that was asked for, or a mistake.
  int Report(const CLI::ParseError& error) {
    return app_.exit(error, out_, err_) == 0 ? kDone : kWrongUsage;
  }

 private:
  void AddLetter() {
    CLI::App* letter = app_.add_subcommand("letter", "Write the letter that a macro would write");
    letter->add_option("CASE", caseNumber_, "Case number")->required();
    letter
        ->add_option("--role", role_,
                     "Addressee: M client, G opponent, V opposing counsel, C court, §M and §G "
                     "their legal representatives, RM the client's legal-expenses insurer, HG "
                     "the opponent's liability insurer, two blanks anyone")
        ->capture_default_str();
    letter->callback([this] { out_ << ComposeLetter(ReadLetterFacts(caseNumber_, role_)); });
  }

  void AddCall() {
    CLI::App* call = app_.add_subcommand("call", "Call an export and show what it delivers");
    call->add_option("EXPORT", exportName_, "Its name, and what it is given")
        ->option_text("ARGUMENT...")
        ->required();
    call->footer(kCallNotes + ExportList());
    // An argument may begin with a minus sign.
    call->prefix_command();
    call->callback([this, call] { out_ << DescribeCall(exportName_, call->remaining()); });
  }

  void AddFollowUps() {
    CLI::App* followUps =
        app_.add_subcommand("followups", "List the follow-ups of a case, soonest first");
    followUps->add_option("CASE", caseNumber_, "Case number")->required();
    followUps->callback([this] { out_ << FollowUpTable(caseNumber_); });
  }

  void AddOffice() {
    CLI::App* office = app_.add_subcommand("office", "Make, check and show record files");
    office->require_subcommand(1);

    CLI::App* create = office->add_subcommand("create", "Make the record files of an office");
    create->add_option("DIR", directory_, "Folder; made if need be")->required();
    create
        ->add_option("--cases", cases_,
                     "Generate this many cases, numbered from 10000001, instead of the small "
                     "readable sample")
        ->check(CLI::Range(1, kMostGeneratedCases));
    create->callback([this] { Create(); });

    CLI::App* check = office->add_subcommand(
        "check", "Check this installation: library, registry, record manager, files");
    check->add_option("--library", library_,
                      "The qlx99.dll that macros load, as it lies in the word processor's folder; "
                      "otherwise the one that this program finds");
    check->callback([this] { Check(); });

    CLI::App* copy = office->add_subcommand(
        "copy", "Copy all record files, as a backup or for another record manager");
    copy->add_option("TARGET", directory_, "A new folder, or one without record files")->required();
    copy->add_option("--from", from_,
                     "Library of the record manager that has the office, such as atbtrv32.dll; "
                     "otherwise the one that qlx99 finds");
    copy->add_option("--to", to_, "The same, of the one that is to have the copy");
    copy->callback([this] { Copy(); });

    CLI::App* show = office->add_subcommand("show", "Show the records of a file");
    show->add_option("FILE", fileName_, "Name of the record file, such as ZTCASE")->required();
    show->callback([this] { ShowFile(fileName_, out_); });
  }

  void AddSetup() {
    CLI::App* setup = app_.add_subcommand("setup", "Make the library read the office in a folder");
    setup->add_option("DIR", directory_, "Folder with the record files")->required();
    setup->callback([this] { out_ << SetUp(PathOf(directory_)); });
  }

  void Create() {
    const std::filesystem::path directory = PathOf(directory_);
    if (cases_ == 0) {
      MakeSampleOffice(directory);
    } else {
      MakeGeneratedOffice(directory, cases_, [this](std::int32_t done, std::int32_t all) {
        err_ << "\r" << done << " of " << all << " cases" << (done == all ? "\n" : "")
             << std::flush;
      });
    }
    out_ << "The office is in " << directory_ << ". `qlx setup " << directory_
         << "` makes the library read it.\n";
  }

  void Copy() {
    const auto shown = [this](const char* what) {
      return [this, what](std::int32_t done, std::int32_t all) {
        err_ << "\r" << done << " of " << all << " " << what << (done == all ? "\n" : "")
             << std::flush;
      };
    };
    const std::size_t files =
        CopyOffice({.target = PathOf(directory_), .from = from_, .to = to_},
                   {.copied = shown("records copied"), .compared = shown("records compared")});
    out_ << files << " record files were copied to " << directory_ << ", and all is equal.\n";
  }

  void Check() {
    if (!CheckOffice(library_, out_)) {
      throw Failure("This installation is not sound; see the lines marked with \"!\".");
    }
  }

  std::ostream& out_;
  std::ostream& err_;
  CLI::App app_{kAbout, "qlx"};
  std::string caseNumber_;
  std::string role_ = "M ";
  std::string exportName_;
  std::string directory_;
  std::string library_;
  std::string from_;
  std::string to_;
  std::string fileName_;
  std::int32_t cases_ = 0;
};

int Complain(std::ostream& err, const char* words, int code) {
  err << "qlx: " << words << "\n";
  return code;
}

}  // namespace

int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  CommandLine commandLine(out, err);
  try {
    commandLine.Run(arguments);
    if (!out.flush()) throw Failure("Not everything could be written to the output.");
    return kDone;
  } catch (const CLI::ParseError& error) {
    return commandLine.Report(error);
  } catch (const WrongUsage& wrong) {
    return Complain(err, wrong.what(), kWrongUsage);
  } catch (const std::exception& failure) {
    return Complain(err, failure.what(), kFailed);
  }
}

}  // namespace office
