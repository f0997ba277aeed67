// The program's own files on a POSIX system. Read-only is a file that nobody may write.
#pragma once

#include "platform/Storage.h"

namespace hivesweep {

class TPosixStorage final : public TStorage {
public:
  TError List(std::u16string_view Folder, std::vector<TStoredFile> &Out) override;
  TError Read(std::u16string_view Path, std::string &Out) override;
  TError ReadFront(std::u16string_view Path, std::size_t Size, std::string &Out) override;
  TError Write(std::u16string_view Path, std::string_view Bytes) override;
  TError WriteNew(std::u16string_view Path, std::string_view Bytes) override;
  TError Rename(std::u16string_view From, std::u16string_view To) override;
  TError RenameNew(std::u16string_view From, std::u16string_view To) override;
  TError Remove(std::u16string_view Path) override;
  TError CreateFolder(std::u16string_view Path) override;
  void MakeWritable(std::u16string_view Path) override;
  THolding Hold(std::u16string_view Path) override;
};

} // namespace hivesweep
