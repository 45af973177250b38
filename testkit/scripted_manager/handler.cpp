#include "handler.h"

namespace testkit {
namespace {

ManagerHandler* currentHandler = nullptr;
void* currentContext = nullptr;

}  // namespace

short Handle(const btrieve::Arguments& arguments) {
  if (currentHandler == nullptr) return btrieve::kIoError;
  return static_cast<short>(currentHandler(currentContext, arguments));
}

extern "C" void SetHandler(ManagerHandler* handler, void* context) {
  currentHandler = handler;
  currentContext = context;
}

}  // namespace testkit
