// What the families that read and write whole files share.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include <unistd.h>

#include "platform/DiskFile.h"

namespace hivesweep {

// The error of an errno.
TError Errno(int Number);

// A file's descriptor; closes it.
class TDescriptor {
public:
  explicit TDescriptor(int Number) : Number_(Number) {}
  TDescriptor(TDescriptor &&Other) noexcept : Number_(std::exchange(Other.Number_, -1)) {}
  TDescriptor(const TDescriptor &) = delete;
  TDescriptor &operator=(const TDescriptor &) = delete;
  ~TDescriptor() {
    if (IsOpen())
      close(Number_);
  }

  bool IsOpen() const { return Number_ >= 0; }
  int Get() const { return Number_; }
  // Some systems report only here that the disk was full.
  bool Close() { return close(std::exchange(Number_, -1)) == 0; }

private:
  int Number_;
};

// Writes all bytes and waits until the disk has them, where there is one behind the file.
// False with an errno.
bool WriteAndFlush(int File, std::string_view Bytes);

// The bytes of a name. PathFromBytes has made half a pair of each byte that is no UTF-8, and
// this makes that byte of it again.
std::string BytesOfPath(std::u16string_view Path);

// A name with a zero inside would be cut there, and mean another file.
bool IsName(std::u16string_view Path);

// There is a file of that name, and nobody may write it.
bool IsReadOnly(const std::string &Path);

// There is something of that name that is neither a regular file nor a folder: a device, a
// pipe, a socket. Opening it may wait, or do something.
bool IsSpecial(const std::string &Path);

} // namespace hivesweep
