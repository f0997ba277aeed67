#include "tests/platform/TestHosts.h"

#include <gtest/gtest.h>

#include "platform/memory/MemoryRegistry.h"

namespace hivesweep {

namespace {

class TMemoryTestRegistry final : public TTestRegistry {
public:
  TRegistryHost &Host() override { return Registry_; }
  bool KeepsValueOrder() const override { return true; }
  bool Deny(std::u16string_view Below) override {
    return Registry_.Deny(u"HKEY_CURRENT_USER\\" + Path(Below));
  }

protected:
  void LoadFile(std::string_view Bytes) override {
    const auto Error = Registry_.LoadText(Bytes);
    ASSERT_FALSE(Error) << ToUtf8(Error->Message) << " in line " << Error->Line;
  }

private:
  TMemoryRegistry Registry_;
};

} // namespace

std::vector<TRegistryKind> AllRegistries() {
  std::vector<TRegistryKind> Kinds = LiveRegistries();
  Kinds.push_back({"Memory", []() -> std::unique_ptr<TTestRegistry> {
                     return std::make_unique<TMemoryTestRegistry>();
                   }});
  return Kinds;
}

std::u16string TTestRegistry::Path(std::u16string_view Below) const {
  // The test's name, with the host that it runs over behind it: "Suite/Test/Host".
  const testing::TestInfo *Test = testing::UnitTest::GetInstance()->current_test_info();
  const std::string Name =
      Test ? std::string(Test->test_suite_name()) + "." + Test->name() : "No test";
  std::u16string Out = u"Software\\Hivesweep tests\\" + FromUtf8(Name);
  return Below.empty() ? Out : Out.append(u"\\").append(Below);
}

void TTestRegistry::Load(std::u16string_view Text) {
  std::u16string Whole = u"\uFEFFWindows Registry Editor Version 5.00\r\n\r\n";
  for (const std::u16string_view Line : SplitLines(Text)) {
    const std::size_t Mark = Line.starts_with(u"[~") ? 1 : Line.starts_with(u"[-~") ? 2 : 0;
    if (Mark != 0)
      Whole.append(Line.substr(0, Mark)).append(u"HKEY_CURRENT_USER\\").append(Path());
    Whole.append(Line.substr(Mark == 0 ? 0 : Mark + 1)).append(u"\r\n");
  }
  LoadFile(Utf16Bytes(Whole));
}

} // namespace hivesweep
