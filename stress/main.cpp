// Tries to make an office lose something.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <iostream>
#include <random>

#include "stress/store.h"
#include "stress/trials.h"
#include "stress/worker.h"

namespace {

// This program as one of its own workers.
void WorkAs(const std::vector<std::string>& arguments) {
  if (arguments.at(0) == "prepare") {
    stress::Prepare(arguments.at(1), std::stoi(arguments.at(2)));
  } else {
    stress::Work(stress::AssignmentOf(arguments));
  }
}

int Complain(const std::exception& error, int code) {
  std::fprintf(stderr, "qlx_stress: %s\n", error.what());
  return code;
}

int Run(int argc, char** argv) {
  CLI::App app{
      "Puts an office under load and its disk out of order; in the end all that was "
      "acknowledged must be there. Exit code 0 when it is.",
      "qlx_stress"};
  stress::Plan plan;
  std::string folder = (std::filesystem::temp_directory_path() /
                        ("qlx_stress_" + std::to_string(std::random_device()())))
                           .string();
  std::vector<std::string> worker;
  app.add_option("--folder", folder, "Where; made, and removed unless something is found");
  app.add_option("--worker", worker)->group("");  // for this program's own use
  CLI::App* load = app.add_subcommand("load", "Many processes, killed at random moments");
  load->add_option("--seconds", plan.seconds, "How long")->capture_default_str();
  load->add_option("--processes", plan.processes, "How many at a time")->capture_default_str();
  load->add_option("--pause", plan.pause,
                   "Milliseconds between two kills on the average; 0 kills nobody")
      ->capture_default_str();
  load->add_flag("--rollback-journal", plan.rollbackJournal,
                 "Files as they work on network drives");
  int seconds = 5;
  for (const stress::Trial& trial : stress::kTrials) {
    app.add_subcommand(trial.name, trial.about)
        ->add_option("--seconds", seconds, "How long")
        ->capture_default_str();
  }
  CLI::App* faults = app.add_subcommand("faults", "Disks that are full or fail, at every request");
  CLI::App* power = app.add_subcommand("power", "The power goes at random moments");
  stress::PowerPlan powerPlan;
  powerPlan.seed = std::random_device()();
  power->add_option("--losses", powerPlan.losses, "How often")->capture_default_str();
  power->add_option("--seed", powerPlan.seed, "What happens follows from it; otherwise by chance");
  power->add_flag("--ignore-sync", powerPlan.ignoreSync,
                  "The disk only says that it has written; this must find losses");
  CLI11_PARSE(app, argc, argv);

  plan.folder = folder;
  bool sound = true;
  if (!worker.empty()) WorkAs(worker);
  if (load->parsed()) sound = stress::RunLoad(plan, std::cout);
  for (const stress::Trial& trial : stress::kTrials) {
    if (app.got_subcommand(trial.name)) {
      sound = stress::RunTrial(trial, folder, seconds, std::cout) && sound;
    }
  }
  powerPlan.folder = folder;
  if (power->parsed()) sound = stress::RunPower(powerPlan, std::cout) && sound;
  if (faults->parsed()) sound = stress::RunFaults(folder, std::cout) && sound;
  return sound ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const stress::Fault& fault) {
    return Complain(fault, fault.kind);
  } catch (const std::exception& error) {
    return Complain(error, stress::Fault::kCrashed);
  }
}
