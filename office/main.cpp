// The tool qlx.
#include <iostream>

#include "frame/attach.h"
#include "office/command_line.h"
#include "office/host.h"

int main(int argc, char** argv) {
  office::PrepareConsole();
  qlx99::AttachLibrary(GetModuleHandleA(nullptr));
  const int code = office::Run(office::CommandLineArguments(argc, argv), std::cout, std::cerr);
  qlx99::DetachLibrary(qlx99::Detachment::kFreed);
  return code;
}
