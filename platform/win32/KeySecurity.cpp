#include "platform/win32/KeySecurity.h"

#include <cstring>
#include <optional>

namespace hivesweep {

namespace {

// The list in a descriptor. Null: the descriptor says that everybody may do everything.
struct TAccessList {
  std::vector<std::byte> Copy; // the system wants it at a multiple of four
  SECURITY_DESCRIPTOR_CONTROL Control = 0;

  ACL *Get() { return Copy.empty() ? nullptr : reinterpret_cast<ACL *>(Copy.data()); }
};

// Nothing when the descriptor has no list, or one that reaches beyond its end or is no
// list at all.
std::optional<TAccessList> AccessListOf(std::span<const std::byte> Security) {
  SECURITY_DESCRIPTOR_RELATIVE Head = {};
  if (Security.size() < sizeof Head)
    return std::nullopt;
  std::memcpy(&Head, Security.data(), sizeof Head);
  constexpr SECURITY_DESCRIPTOR_CONTROL Needed = SE_SELF_RELATIVE | SE_DACL_PRESENT;
  if (Head.Revision != SECURITY_DESCRIPTOR_REVISION || (Head.Control & Needed) != Needed ||
      Head.Dacl > Security.size())
    return std::nullopt;
  TAccessList List = {{}, Head.Control};
  if (Head.Dacl == 0)
    return List;
  const std::span<const std::byte> Rest = Security.subspan(Head.Dacl);
  ACL ListHead = {};
  if (Rest.size() < sizeof ListHead)
    return std::nullopt;
  std::memcpy(&ListHead, Rest.data(), sizeof ListHead);
  if (ListHead.AclSize < sizeof ListHead || ListHead.AclSize > Rest.size())
    return std::nullopt;
  List.Copy.assign(Rest.begin(), Rest.begin() + ListHead.AclSize);
  return IsValidAcl(List.Get()) ? std::optional(std::move(List)) : std::nullopt;
}

} // namespace

LONG ReadKeySecurity(HKEY Key, std::vector<std::byte> &Out) {
  constexpr SECURITY_INFORMATION Parts =
      OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
  DWORD Size = 1024;
  LONG Error = ERROR_INSUFFICIENT_BUFFER;
  // The needed size may have changed by the next call, but hardly again and again.
  for (int Try = 0; Error == ERROR_INSUFFICIENT_BUFFER && Try < 10; ++Try) {
    Out.resize(Size);
    Error = RegGetKeySecurity(Key, Parts, Out.data(), &Size);
  }
  if (Error != ERROR_SUCCESS)
    Out.clear();
  else
    Out.resize(GetSecurityDescriptorLength(Out.data()));
  return Error;
}

void SetKeyAccessList(HKEY Key, std::span<const std::byte> Security) {
  std::optional<TAccessList> List = AccessListOf(Security);
  SECURITY_DESCRIPTOR Descriptor = {};
  if (!List || !InitializeSecurityDescriptor(&Descriptor, SECURITY_DESCRIPTOR_REVISION) ||
      !SetSecurityDescriptorDacl(&Descriptor, TRUE, List->Get(), FALSE))
    return;
  // Whether the key takes part in what its parents hand down. The system keeps the
  // second bit only of who asks for it.
  int Control = Descriptor.Control | (List->Control & SE_DACL_PROTECTED);
  if ((List->Control & SE_DACL_AUTO_INHERITED) != 0)
    Control |= SE_DACL_AUTO_INHERITED | SE_DACL_AUTO_INHERIT_REQ;
  Descriptor.Control = static_cast<SECURITY_DESCRIPTOR_CONTROL>(Control);
  RegSetKeySecurity(Key, DACL_SECURITY_INFORMATION, &Descriptor);
}

} // namespace hivesweep
