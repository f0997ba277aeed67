#include "tests/ui/DiskFiles.h"

#include <filesystem>

#include "platform/Text.h"

namespace hivesweep {

namespace {

namespace fs = std::filesystem;

class TPosixFiles final : public TFileSystem {
public:
  TPathState Look(std::u16string_view Path) override {
    std::error_code Error;
    const fs::file_status Status = fs::status(ToUtf8(Path), Error);
    if (!fs::exists(Status))
      return TPathState::Missing;
    return fs::is_directory(Status) ? TPathState::Folder : TPathState::File;
  }

  bool List(std::u16string_view Folder,
            const std::function<bool(const TFolderEntry &Entry)> &Take) override {
    std::error_code Error;
    for (const fs::directory_entry &Entry : fs::directory_iterator(ToUtf8(Folder), Error)) {
      const std::u16string Name = Entry.path().filename().u16string();
      if (!Take({Name, Entry.is_directory()}))
        return false;
    }
    return !Error;
  }

  bool CreateFolder(std::u16string_view Path) override {
    std::error_code Error;
    return fs::create_directory(ToUtf8(Path), Error);
  }
  // Languages are only looked for here; their files are read as whole files of the disk.
  TFileStatus ReadContent(std::u16string_view, TFileContent &) override {
    return TFileStatus::Failed;
  }
  TFileStatus WriteContent(std::u16string_view, const TFileContent &) override {
    return TFileStatus::Failed;
  }
  TFileStatus RemoveFile(std::u16string_view) override { return TFileStatus::Failed; }
  void *DisableRedirection() override { return nullptr; }
  void RevertRedirection(void * /*Saved*/) override {}
};

} // namespace

std::unique_ptr<TFileSystem> RealFiles() { return std::make_unique<TPosixFiles>(); }

} // namespace hivesweep
