// The program's own files on a POSIX system. Read-only is a file that nobody may write.
#pragma once

#include "platform/Storage.h"

namespace hivesweep {

class TPosixStorage final : public TStorage {
public:
  TDiskError List(std::u16string_view Folder, std::vector<TStoredFile> &Out) override;
  TDiskError Read(std::u16string_view Path, std::string &Out) override;
  TDiskError Write(std::u16string_view Path, std::string_view Bytes) override;
  TDiskError Rename(std::u16string_view From, std::u16string_view To) override;
  TDiskError Remove(std::u16string_view Path) override;
  TDiskError CreateFolder(std::u16string_view Path) override;
  void MakeWritable(std::u16string_view Path) override;
};

} // namespace hivesweep
