#include "ui/Rights.h"

#include "platform/win32/Win32.h"

namespace hivesweep {

bool HasMachineRights() {
  SID_IDENTIFIER_AUTHORITY Authority = {SECURITY_NT_AUTHORITY};
  PSID Administrators = nullptr;
  if (!AllocateAndInitializeSid(&Authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS,
                                0, 0, 0, 0, 0, 0, &Administrators))
    return false;
  BOOL IsMember = FALSE;
  const bool Told = CheckTokenMembership(nullptr, Administrators, &IsMember) != 0;
  FreeSid(Administrators);
  return Told && IsMember;
}

} // namespace hivesweep
