// The resources of each module: one compiled resource script (.res) within the module's own data.
#pragma once

#include <cstddef>
#include <span>

#include "platform/windows_api.h"

namespace platform {

using ResourceBytes = std::span<const std::byte>;

// The resource of this type and id in the script of `module`; empty when there is none.
ResourceBytes FindResourceOf(HMODULE module, WORD type, WORD id);

// Belongs to a module as long as it is mapped; see embedded_resources.cpp.in.
class EmbeddedResources {
 public:
  // `script` lies in the data of the module that it is for.
  explicit EmbeddedResources(ResourceBytes script);
  ~EmbeddedResources();
  EmbeddedResources(const EmbeddedResources&) = delete;
  EmbeddedResources& operator=(const EmbeddedResources&) = delete;

 private:
  HMODULE module_;
};

}  // namespace platform
