// Tries to make an office lose something.
#include <CLI/CLI.hpp>

#include <iostream>
#include <random>

#include "stress/trials.h"
#include "stress/worker.h"

namespace {

namespace fs = std::filesystem;

struct Trial {
  const char* name;
  const char* about;
  void (*run)(const stress::Options& options);
};
constexpr Trial kTrials[] = {
    {"load", "Many processes, killed at random moments", stress::RunLoad},
    {"faults", "Disks that are full or fail, at every request", stress::RunFaults},
    {"power", "The power goes at random moments", stress::RunPower},
    {"restore", "Backups are put back beside what killed programs leave", stress::RunRestore},
    {"leave", "Hosts end while their threads are at work", stress::RunLeave},
    {"pause", "Readers pause within walks while others write", stress::RunPause},
    {"create", "Races to create a file", stress::RunCreate},
    {"fork", "Processes fork", stress::RunFork}};

void Run(const Trial& trial, const stress::Options& options) {
  fs::create_directories(options.folder);
  trial.run(options);
  std::cout << trial.name << ": nothing found\n";
  fs::remove_all(options.folder);
}

int RunAny(int argc, char** argv) {
  CLI::App app{
      "Puts an office under load and its disk out of order; in the end all that was acknowledged "
      "must be there. Exit code 0 when it is; otherwise the folder that is left shows more.",
      "qlx_stress"};
  stress::Options options;
  options.folder = fs::canonical(fs::temp_directory_path()) /
                   ("qlx_stress_" + std::to_string(std::random_device()()));
  options.seed = std::random_device()();
  app.add_option("--seconds", options.seconds, "How long")->capture_default_str();
  app.add_option("--processes", options.processes, "load: at a time")->capture_default_str();
  app.add_option("--pause", options.pause, "load: milliseconds between two kills, on the average")
      ->capture_default_str();
  app.add_flag("--rollback-journal", options.rollbackJournal,
               "load: files as they work on network drives");
  app.add_option("--losses", options.losses, "power: how often it goes")->capture_default_str();
  app.add_option("--seed", options.seed, "power: what happens follows from it");
  app.add_flag("--ignore-sync", options.ignoreSync,
               "power: the disk only says that it has written; this must find losses");
  app.require_subcommand(1)->fallthrough();
  for (const Trial& trial : kTrials) {
    app.add_subcommand(trial.name, trial.about)->callback([&] { Run(trial, options); });
  }
  CLI11_PARSE(app, argc, argv);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::vector<std::string> arguments(argv, argv + argc);
    if (argc < 2 || arguments[1] != stress::kWorker) return RunAny(argc, argv);
    stress::WorkAs(arguments);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "FOUND: " << error.what() << '\n';
    return 1;
  }
}
