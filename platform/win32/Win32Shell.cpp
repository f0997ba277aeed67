#include "platform/win32/Hosts.h"
#include "platform/win32/Win32.h"

#include <objbase.h>
#include <shellapi.h>
#include <shlobj.h>

namespace hivesweep {

namespace {

class TWin32Process final : public TProcess {
public:
  explicit TWin32Process(HANDLE Process) : Process_(Process ? Process : INVALID_HANDLE_VALUE) {}

  bool WaitForEnd(std::uint32_t Milliseconds) override {
    return !Process_.IsOpen() || WaitForSingleObject(Process_.Get(), Milliseconds) == WAIT_OBJECT_0;
  }

private:
  TFileHandle Process_;
};

// Holds an interface of a system's object, and releases it.
template <typename TInterface> class TComPointer {
public:
  TComPointer() = default;
  TComPointer(const TComPointer &) = delete;
  TComPointer &operator=(const TComPointer &) = delete;
  ~TComPointer() {
    if (Owned_)
      Owned_->Release();
  }

  void **Out() { return reinterpret_cast<void **>(&Owned_); }
  TInterface *operator->() const { return Owned_; }
  TInterface &operator*() const { return *Owned_; }

private:
  TInterface *Owned_ = nullptr;
};

// The thread may use the system's objects for as long as this lives. A thread that
// has been made ready in another way can use them as well.
class TComThread {
public:
  TComThread() : Entered_(SUCCEEDED(CoInitialize(nullptr))) {}
  TComThread(const TComThread &) = delete;
  TComThread &operator=(const TComThread &) = delete;
  ~TComThread() {
    if (Entered_)
      CoUninitialize();
  }

private:
  bool Entered_;
};

// An installer's shortcut: what it leads to is the installer's affair, whatever path
// stands in it.
bool IsAdvertised(IShellLinkW &Link) {
  TComPointer<IShellLinkDataList> Data;
  DWORD Flags = 0;
  return SUCCEEDED(Link.QueryInterface(IID_IShellLinkDataList, Data.Out())) &&
         SUCCEEDED(Data->GetFlags(&Flags)) && (Flags & SLDF_HAS_DARWINID) != 0;
}

class TWin32Shell final : public TShell {
public:
  bool Open(std::u16string_view Target, std::u16string_view Parameters) override {
    return Start(Target, Parameters) != nullptr;
  }

  std::unique_ptr<TProcess> Start(std::u16string_view Target,
                                  std::u16string_view Parameters) override {
    if (Target.empty() || HoldsZero(Target) || HoldsZero(Parameters))
      return nullptr;
    const std::u16string File(Target);
    const std::u16string Arguments(Parameters);
    SHELLEXECUTEINFOW Info = {};
    Info.cbSize = sizeof Info;
    // This program may have ended before a conversation with the other one has.
    Info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI | SEE_MASK_FLAG_DDEWAIT;
    Info.lpVerb = L"open";
    Info.lpFile = Wide(File);
    Info.lpParameters = Wide(Arguments);
    Info.nShow = SW_SHOWNORMAL;
    if (!ShellExecuteExW(&Info))
      return nullptr;
    return std::make_unique<TWin32Process>(Info.hProcess);
  }

  std::optional<std::u16string> ShortcutTarget(std::u16string_view LinkPath) override {
    if (HoldsZero(LinkPath))
      return std::nullopt;
    if (!Thread_)
      Thread_.emplace();
    // A fresh object for each file: not every system's forgets all of the last one.
    TComPointer<IShellLinkW> Link;
    TComPointer<IPersistFile> File;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                Link.Out())) ||
        FAILED(Link->QueryInterface(IID_IPersistFile, File.Out())) ||
        FAILED(File->Load(Wide(std::u16string(LinkPath)), STGM_READ)))
      return std::nullopt;
    if (IsAdvertised(*Link))
      return u"";
    wchar_t Path[MAX_PATH] = {};
    if (FAILED(Link->GetPath(Path, MAX_PATH, nullptr, SLGP_RAWPATH)))
      return std::nullopt;
    std::u16string Target = FromWide(Path);
    // One that fills the room was probably cut.
    if (Target.size() + 1 >= MAX_PATH)
      return std::nullopt;
    return Target;
  }

private:
  std::optional<TComThread> Thread_;
};

} // namespace

std::unique_ptr<TShell> MakeWin32Shell() { return std::make_unique<TWin32Shell>(); }

} // namespace hivesweep
