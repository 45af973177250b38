#include "access.h"

#include <array>
#include <cstddef>
#include <vector>

#include "platform/windows_api.h"
// Windows' own must come before it.
#include <objbase.h>

namespace automation {
namespace {

constexpr DWORD kCallFromHere = COM_RIGHTS_EXECUTE | COM_RIGHTS_EXECUTE_LOCAL;

// The token's user, with his identifier behind it; empty when it cannot be read.
std::vector<std::byte> ReadUser() {
  HANDLE token = nullptr;
  if (OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == FALSE) return {};
  DWORD size = 0;
  GetTokenInformation(token, TokenUser, nullptr, 0, &size);
  std::vector<std::byte> user(size);
  if (GetTokenInformation(token, TokenUser, user.data(), size, &size) == FALSE) user.clear();
  CloseHandle(token);
  return user;
}

}  // namespace

bool AdmitOnlyThisUser() {
  std::vector<std::byte> user = ReadUser();
  if (user.empty()) return false;
  PSID const userId = reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid;
  std::array<std::byte, SECURITY_MAX_SID_SIZE> system{};
  DWORD size = system.size();
  alignas(ACL) std::array<std::byte, 512> memory{};
  auto* const list = reinterpret_cast<ACL*>(memory.data());
  SECURITY_DESCRIPTOR descriptor{};
  // COM wants an owner and a group, whoever they are.
  return CreateWellKnownSid(WinLocalSystemSid, nullptr, system.data(), &size) != FALSE &&
         InitializeAcl(list, memory.size(), ACL_REVISION) != FALSE &&
         AddAccessAllowedAce(list, ACL_REVISION, kCallFromHere, userId) != FALSE &&
         AddAccessAllowedAce(list, ACL_REVISION, kCallFromHere, system.data()) != FALSE &&
         InitializeSecurityDescriptor(&descriptor, SECURITY_DESCRIPTOR_REVISION) != FALSE &&
         SetSecurityDescriptorOwner(&descriptor, userId, FALSE) != FALSE &&
         SetSecurityDescriptorGroup(&descriptor, userId, FALSE) != FALSE &&
         SetSecurityDescriptorDacl(&descriptor, TRUE, list, FALSE) != FALSE &&
         SUCCEEDED(CoInitializeSecurity(&descriptor, -1, nullptr, nullptr,
                                        RPC_C_AUTHN_LEVEL_CONNECT, RPC_C_IMP_LEVEL_IDENTIFY,
                                        nullptr, EOAC_NONE, nullptr));
}

}  // namespace automation
