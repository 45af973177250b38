// Puts an office under load: many processes read and write it, any of which is killed at any
// moment, and in the end everything that was acknowledged must be there.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <iostream>
#include <random>

#include "stress/load.h"
#include "stress/store.h"
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

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{
      "Many processes read and write one office and are killed at random moments; in the "
      "end all that was acknowledged must be there. Exit code 0 when it is.",
      "qlx_stress"};
  stress::Plan plan;
  std::string folder = (std::filesystem::temp_directory_path() /
                        ("qlx_stress_" + std::to_string(std::random_device()())))
                           .string();
  std::vector<std::string> worker;
  app.add_option("--seconds", plan.seconds, "How long")->capture_default_str();
  app.add_option("--processes", plan.processes, "How many at a time")->capture_default_str();
  app.add_option("--pause", plan.pause,
                 "Milliseconds between two kills on the average; 0 kills nobody")
      ->capture_default_str();
  app.add_flag("--rollback-journal", plan.rollbackJournal, "Files as they work on network drives");
  app.add_option("--folder", folder, "Where; made, and removed unless something is found");
  app.add_option("--worker", worker)->group("");  // for this program's own use
  CLI11_PARSE(app, argc, argv);
  plan.folder = folder;
  try {
    if (worker.empty()) return stress::RunLoad(plan, std::cout) ? 0 : 1;
    WorkAs(worker);
    return 0;
  } catch (const stress::Fault& fault) {
    return Complain(fault, fault.kind);
  } catch (const std::exception& error) {
    return Complain(error, stress::Fault::kCrashed);
  }
}
