#include "office/command_line.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <optional>
#include <ostream>

#include "office/argument_checks.h"
#include "office/call_json.h"
#include "office/check_office.h"
#include "office/command_names.h"
#include "office/copy_office.h"
#include "office/export_call.h"
#include "office/failure.h"
#include "office/follow_up_table.h"
#include "office/host.h"
#include "office/letter.h"
#include "office/new_office.h"
#include "office/progress.h"
#include "office/setup.h"
#include "office/show_file.h"
#include "office/text_encoding.h"
#include "office/unattended.h"

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
  qlx office copy backup           all record files, also while others work
  qlx help office create           what a command takes)";

constexpr const char* kCallNotes = R"(
Arguments are texts, in the order in which a macro gives them but without its buffer. Those left out
at the end are null pointers. The exports and their arguments:)";

// The options' and arguments' values, and the commands that are run with them.
class CommandLine {
 public:
  CommandLine(std::ostream& out, std::ostream& err) : out_(out), err_(err) {
    app_.require_subcommand(1);
    app_.set_version_flag("--version", "qlx " QLX_VERSION);
    app_.set_help_flag("-h,--help", "Print this help message and exit");
    AddLetter();
    AddCall();
    AddFollowUps();
    AddOffice();
    AddSetup();
    app_.footer(kExamples);  // after the commands, which would take it over
  }

  // Throws CLI::ParseError, WrongUsage or Failure.
  void Run(std::vector<std::string> arguments) {
    if (!arguments.empty() && arguments.front() == "help") {
      std::rotate(arguments.begin(), arguments.begin() + 1, arguments.end());
      arguments.back() = "--help";
    }
    RequireCommands(app_, arguments);
    std::ranges::reverse(arguments);  // the parser takes them from the back
    app_.parse(std::move(arguments));
  }

  // Of the command that was run.
  int ExitCode() const { return exitCode_; }

  // What a parse error means to the user: help that was asked for, or a mistake.
  int Report(const CLI::ParseError& error) {
    return app_.exit(error, out_, err_) == 0 ? kDone : kWrongUsage;
  }

 private:
  void AddLetter() {
    CLI::App* letter = app_.add_subcommand("letter", "Write the letter that a macro would write");
    letter->add_option("CASE", caseNumber_, "Case number")->required()->check(CaseNumber());
    letter
        ->add_option("--role", role_,
                     "Addressee: M client, G opponent, V opposing counsel, C court, §M and §G "
                     "their legal representatives, RM the client's legal-expenses insurer, HG "
                     "the opponent's liability insurer, two blanks anyone")
        ->capture_default_str()
        ->check(Filled());
    AddNoDialog(letter);
    letter->callback([this] {
      LookForUser();
      out_ << ComposeLetter(ReadLetterFacts(caseNumber_, role_));
    });
  }

  void AddCall() {
    CLI::App* call = app_.add_subcommand("call", "Call an export and show what it delivers");
    call->add_option("EXPORT", exportName_, "Its name, and what it is given")
        ->option_text("ARGUMENT...")
        ->required();
    call->add_flag("--json", json_,
                   "Answer with one line of JSON; exit code 1 when the export delivered nothing");
    AddNoDialog(call);
    call->footer(kCallNotes + ExportList());
    // An argument may begin with a minus sign.
    call->prefix_command();
    call->callback([this, call] { Call(call->remaining()); });
  }

  void AddFollowUps() {
    CLI::App* followUps =
        app_.add_subcommand("followups", "List the follow-ups of a case, soonest first");
    followUps->add_option("CASE", caseNumber_, "Case number")->required()->check(CaseNumber());
    AddNoDialog(followUps);
    followUps->callback([this] {
      LookForUser();
      out_ << FollowUpTable(caseNumber_);
    });
  }

  void AddOffice() {
    CLI::App* office = app_.add_subcommand("office", "Make, check and show record files");
    office->require_subcommand(1);

    CLI::App* create = office->add_subcommand("create", "Make the record files of an office");
    create->add_option("DIR", directory_, "Folder; made if need be")->required()->check(NotEmpty());
    create
        ->add_option("--cases", cases_,
                     "Generate this many cases, numbered from 10000001, instead of the small "
                     "readable sample")
        ->check(CLI::Range(1, kMostGeneratedCases));
    create->callback([this] { Create(); });

    CLI::App* check = office->add_subcommand(
        "check", "Check this installation: library, registry, record manager, files");
    check
        ->add_option("--library", library_,
                     "The qlx99.dll that macros load, as it lies in the word processor's folder; "
                     "otherwise the one that this program finds")
        ->check(NotEmpty());
    check->callback([this] { Check(); });

    CLI::App* copy = office->add_subcommand(
        "copy", "Copy all record files, as a backup or for another record manager");
    copy->add_option("TARGET", directory_, "A new folder, or one without record files")
        ->required()
        ->check(NotEmpty());
    copy->add_option("--from", from_,
                     "Library of the record manager that has the office, such as atbtrv32.dll; "
                     "otherwise the one that qlx99 finds")
        ->check(NotEmpty());
    copy->add_option("--to", to_, "The same, of the one that is to have the copy")
        ->check(NotEmpty());
    copy->callback([this] { Copy(); });

    CLI::App* show = office->add_subcommand("show", "Show the records of a file");
    show->add_option("FILE", fileName_, "Name of the record file, such as ZTCASE")->required();
    show->add_flag("--csv", csv_, "A line for each record, fields divided by commas, in UTF-8");
    show->callback([this] { Show(); });
  }

  void AddSetup() {
    CLI::App* setup = app_.add_subcommand("setup", "Make the library read the office in a folder");
    setup->add_option("DIR", directory_, "Folder with the record files")
        ->required()
        ->check(NotEmpty());
    setup->add_flag("--force", force_, "Replace what is set up already");
    setup->callback([this] {
      out_ << SetUp(PathOf(directory_), force_ ? Replacing::kAnything : Replacing::kNothing);
    });
  }

  // For commands that call exports.
  void AddNoDialog(CLI::App* command) {
    command->add_flag("--no-dialog", noDialog_,
                      "Messages go to standard error, and nobody is asked to choose");
  }

  void LookForUser() {
    if (noDialog_ || !HasScreen()) absence_.emplace(err_);
  }

  void Call(const std::vector<std::string>& arguments) {
    RequireRegistry();
    LookForUser();
    if (!json_) {
      out_ << DescribeCall(exportName_, arguments);
      return;
    }
    const JsonAnswer answer = CallForJson(exportName_, arguments);
    out_ << answer.text << "\n";
    exitCode_ = answer.delivered ? kDone : kFailed;
  }

  void Create() {
    const std::filesystem::path directory = PathOf(directory_);
    if (cases_ == 0) {
      MakeSampleOffice(directory);
    } else {
      ProgressLine progress(err_, "cases");
      MakeGeneratedOffice(directory, cases_,
                          [&](auto done, auto all) { progress.Show(done, all); });
    }
    out_ << "The office is in " << directory_ << ". `qlx setup " << Typed(directory_)
         << "` makes the library read it.\n";
  }

  void Show() {
    RequireRegistry();
    ShowFile(fileName_, csv_ ? Listing::kCsv : Listing::kBlocks, out_);
  }

  void Copy() {
    RequireRegistry();
    ProgressLine copied(err_, "records copied");
    ProgressLine compared(err_, "records compared");
    const auto files =
        CopyOffice({.target = PathOf(directory_), .from = from_, .to = to_},
                   {.copied = [&](auto done, auto all) { copied.Show(done, all); },
                    .compared = [&](auto done, auto all) { compared.Show(done, all); }});
    out_ << files << " record files were copied to " << directory_ << ", and all is equal.\n";
  }

  void Check() {
    RequireRegistry();
    if (!CheckOffice(library_, out_)) {
      throw Failure("This installation is not sound; see the lines marked with \"!\".");
    }
  }

  std::ostream& out_;
  std::ostream& err_;
  std::optional<Unattended> absence_;  // from the moment when nobody is there
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
  bool noDialog_ = false;
  bool json_ = false;
  bool csv_ = false;
  bool force_ = false;
  int exitCode_ = kDone;
};

int Complain(std::ostream& err, const std::string& words, int code) {
  err << "qlx: " << words << "\n";
  return code;
}

int RunCommand(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  CommandLine commandLine(out, err);
  try {
    commandLine.Run(arguments);
    return commandLine.ExitCode();
  } catch (const CLI::ParseError& error) {
    return commandLine.Report(error);
  } catch (const WrongUsage& wrong) {
    return Complain(err, wrong.what(), kWrongUsage);
  } catch (const std::filesystem::filesystem_error& error) {
    return Complain(err,
                    "The path " + PathText(error.path1()) + " cannot be used (error " +
                        std::to_string(error.code().value()) +
                        "): a name in it is too long or not allowed, or rights are missing.",
                    kFailed);
  } catch (const std::exception& failure) {
    return Complain(err, failure.what(), kFailed);
  }
}

}  // namespace

int Run(const std::vector<std::string>& arguments, std::ostream& out, std::ostream& err) {
  const int code = RunCommand(arguments, out, err);
  if (out.flush()) return code;
  return Complain(err, "Not everything could be written to the output.", kFailed);
}

}  // namespace office
