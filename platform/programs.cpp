// Starting programs. Windows exist within one process here, so a program that talks through them
// runs within that process: a library with a WinMain, which gets a thread of its own. One program
// started twice at a time shares its data.
#include <bit>
#include <chrono>
#include <string>
#include <thread>

#include "platform/desktop.h"
#include "platform/windows_api.h"

namespace {

using platform::MessageQueue;
using platform::TheDesktop;

using Main = int WINAPI(HINSTANCE, HINSTANCE, LPSTR, int);

void Run(HMODULE program, Main* main, int showCommand, const std::shared_ptr<MessageQueue>& queue) {
  std::string noArguments;
  platform::AdoptQueue(queue);
  main(program, nullptr, noArguments.data(), showCommand);
  platform::RetireQueue(*queue);
  std::unique_lock lock(TheDesktop().mutex);
  std::erase_if(TheDesktop().classes, [&](const auto& one) { return one.first.first == program; });
  lock.unlock();
  FreeLibrary(program);
}

}  // namespace

UINT WINAPI WinExec(LPCSTR commandLine, UINT showCommand) {
  constexpr UINT kStarted = 33;  // any number above 31
  constexpr std::chrono::seconds kPatience{30};
  std::string file = commandLine;
  std::erase(file, '"');
  HMODULE program = LoadLibraryA(file.c_str());
  if (program == nullptr) return ERROR_FILE_NOT_FOUND;
  auto* main = std::bit_cast<Main*>(GetProcAddress(program, "WinMain"));
  const auto queue = std::make_shared<MessageQueue>();
  std::thread(Run, program, main, static_cast<int>(showCommand), queue).detach();
  // As on Windows, until it is ready for its first message.
  std::unique_lock lock(TheDesktop().mutex);
  TheDesktop().changed.wait_for(lock, kPatience, [&] { return queue->isIdle; });
  return kStarted;
}
