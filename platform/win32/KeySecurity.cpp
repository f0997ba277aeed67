#include "platform/win32/KeySecurity.h"

#include <cstring>
#include <optional>

namespace hivesweep {

namespace {

// One of the two lists of a descriptor: who may do what, or the one that the label is in.
enum class TWhichList { Access, System };

// The list in a descriptor. Null: the descriptor says that everybody may do everything.
struct TAccessList {
  std::vector<std::byte> Copy; // the system wants it at a multiple of four
  SECURITY_DESCRIPTOR_CONTROL Control = 0;

  ACL *Get() { return Copy.empty() ? nullptr : reinterpret_cast<ACL *>(Copy.data()); }
};

// Nothing when the descriptor has no such list, or one that reaches beyond its end or is no
// list at all.
std::optional<TAccessList> ListOf(std::span<const std::byte> Security, TWhichList Which) {
  SECURITY_DESCRIPTOR_RELATIVE Head = {};
  if (Security.size() < sizeof Head)
    return std::nullopt;
  std::memcpy(&Head, Security.data(), sizeof Head);
  const bool IsAccess = Which == TWhichList::Access;
  const int Needed = SE_SELF_RELATIVE | (IsAccess ? SE_DACL_PRESENT : SE_SACL_PRESENT);
  const DWORD Offset = IsAccess ? Head.Dacl : Head.Sacl;
  if (Head.Revision != SECURITY_DESCRIPTOR_REVISION || (Head.Control & Needed) != Needed ||
      Offset > Security.size())
    return std::nullopt;
  TAccessList List = {{}, Head.Control};
  if (Offset == 0)
    return List;
  const std::span<const std::byte> Rest = Security.subspan(Offset);
  ACL ListHead = {};
  if (Rest.size() < sizeof ListHead)
    return std::nullopt;
  std::memcpy(&ListHead, Rest.data(), sizeof ListHead);
  if (ListHead.AclSize < sizeof ListHead || ListHead.AclSize > Rest.size())
    return std::nullopt;
  List.Copy.assign(Rest.begin(), Rest.begin() + ListHead.AclSize);
  return IsValidAcl(List.Get()) ? std::optional(std::move(List)) : std::nullopt;
}

LONG ReadParts(HKEY Key, SECURITY_INFORMATION Parts, std::vector<std::byte> &Out) {
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

// Control, with what the bits Of say about a list and its key's parents: Protected, that they
// hand nothing down to it, Inherited, that they do. The system keeps the latter only of who
// sets Asked as well.
SECURITY_DESCRIPTOR_CONTROL ControlWith(SECURITY_DESCRIPTOR_CONTROL Control,
                                        SECURITY_DESCRIPTOR_CONTROL Of, int Protected,
                                        int Inherited, int Asked) {
  int Out = Control | (Of & Protected);
  if ((Of & Inherited) != 0)
    Out |= Inherited | Asked;
  return static_cast<SECURITY_DESCRIPTOR_CONTROL>(Out);
}

// A copy of the security identifier at that place; empty when there is none.
std::vector<std::byte> IdentifierAt(std::span<const std::byte> Security, std::size_t At) {
  constexpr std::size_t HeadSize = 8;
  if (At == 0 || At > Security.size() || Security.size() - At < HeadSize)
    return {};
  const auto Parts = std::to_integer<std::size_t>(Security[At + 1]);
  const std::size_t Size = HeadSize + 4 * Parts;
  if (Security[At] != std::byte{SID_REVISION} || Parts > SID_MAX_SUB_AUTHORITIES ||
      Size > Security.size() - At)
    return {};
  const auto First = Security.begin() + static_cast<std::ptrdiff_t>(At);
  return {First, First + static_cast<std::ptrdiff_t>(Size)};
}

// While it lives, an administrator may give a key to somebody else.
class TRestorePrivilege {
public:
  TRestorePrivilege() {
    TOKEN_PRIVILEGES Wanted = {1, {{{SeRestore, 0}, SE_PRIVILEGE_ENABLED}}};
    DWORD Size = sizeof Before_;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &Token_))
      Token_ = nullptr;
    else if (!AdjustTokenPrivileges(Token_, FALSE, &Wanted, sizeof Before_, &Before_, &Size))
      Before_.PrivilegeCount = 0;
  }
  TRestorePrivilege(const TRestorePrivilege &) = delete;
  TRestorePrivilege &operator=(const TRestorePrivilege &) = delete;
  ~TRestorePrivilege() {
    if (Token_ && Before_.PrivilegeCount != 0)
      AdjustTokenPrivileges(Token_, FALSE, &Before_, 0, nullptr, nullptr);
    if (Token_)
      CloseHandle(Token_);
  }

private:
  static constexpr DWORD SeRestore = 18; // the same number on every system
  HANDLE Token_ = nullptr;
  TOKEN_PRIVILEGES Before_ = {};
};

} // namespace

LONG ReadKeySecurity(HKEY Key, std::vector<std::byte> &Out) {
  return ReadParts(
      Key, OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION,
      Out);
}

LONG ReadKeyLabel(HKEY Key, std::vector<std::byte> &Out) {
  Out.clear();
  static const bool HasLabels = FindFunction(L"advapi32.dll", "AddMandatoryAce") != nullptr;
  const LONG Error = HasLabels ? ReadParts(Key, LABEL_SECURITY_INFORMATION, Out) : ERROR_SUCCESS;
  std::optional<TAccessList> List = ListOf(Out, TWhichList::System);
  if (!List || !List->Get() || List->Get()->AceCount == 0)
    Out.clear();
  return Error;
}

LONG SetKeyLabel(HKEY Key, std::span<const std::byte> Label) {
  std::optional<TAccessList> List = ListOf(Label, TWhichList::System);
  SECURITY_DESCRIPTOR Descriptor = {};
  if (!List || !InitializeSecurityDescriptor(&Descriptor, SECURITY_DESCRIPTOR_REVISION) ||
      !SetSecurityDescriptorSacl(&Descriptor, TRUE, List->Get(), FALSE))
    return ERROR_INVALID_ACL;
  Descriptor.Control = ControlWith(Descriptor.Control, List->Control, SE_SACL_PROTECTED,
                                   SE_SACL_AUTO_INHERITED, SE_SACL_AUTO_INHERIT_REQ);
  return RegSetKeySecurity(Key, LABEL_SECURITY_INFORMATION, &Descriptor);
}

void SetKeyAccessList(HKEY Key, std::span<const std::byte> Security) {
  std::optional<TAccessList> List = ListOf(Security, TWhichList::Access);
  SECURITY_DESCRIPTOR Descriptor = {};
  if (!List || !InitializeSecurityDescriptor(&Descriptor, SECURITY_DESCRIPTOR_REVISION) ||
      !SetSecurityDescriptorDacl(&Descriptor, TRUE, List->Get(), FALSE))
    return;
  Descriptor.Control = ControlWith(Descriptor.Control, List->Control, SE_DACL_PROTECTED,
                                   SE_DACL_AUTO_INHERITED, SE_DACL_AUTO_INHERIT_REQ);
  RegSetKeySecurity(Key, DACL_SECURITY_INFORMATION, &Descriptor);
}

void SetKeyOwner(HKEY Key, std::span<const std::byte> Security) {
  SECURITY_DESCRIPTOR_RELATIVE Head = {};
  if (Security.size() < sizeof Head)
    return;
  std::memcpy(&Head, Security.data(), sizeof Head);
  const TRestorePrivilege Privilege;
  for (const SECURITY_INFORMATION Part : {OWNER_SECURITY_INFORMATION, GROUP_SECURITY_INFORMATION}) {
    const bool IsOwner = Part == OWNER_SECURITY_INFORMATION;
    std::vector<std::byte> Id = IdentifierAt(Security, IsOwner ? Head.Owner : Head.Group);
    SECURITY_DESCRIPTOR Descriptor = {};
    if (Id.empty() || !InitializeSecurityDescriptor(&Descriptor, SECURITY_DESCRIPTOR_REVISION))
      continue;
    (IsOwner ? Descriptor.Owner : Descriptor.Group) = Id.data();
    RegSetKeySecurity(Key, Part, &Descriptor);
  }
}

} // namespace hivesweep
