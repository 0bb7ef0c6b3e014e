// The test program: every test runs with an ear on the library's assertions.
// GoogleTest's own main, plus a listener that installs a Hearing around each test that has none.
#include <memory>

#include "support/hearing.h"

namespace {

class AroundEachTest final : public ::testing::EmptyTestEventListener {
  void OnTestStart (const ::testing::TestInfo&) override {
    hearing = std::make_unique<clxml::testing::Hearing> ();
  }
  void OnTestEnd (const ::testing::TestInfo&) override { hearing.reset (); }
  std::unique_ptr<clxml::testing::Hearing> hearing;
};

}  // namespace

int main (int argc, char** argv) {
  ::testing::InitGoogleTest (&argc, argv);
  ::testing::UnitTest::GetInstance ()->listeners ().Append (new AroundEachTest);
  return RUN_ALL_TESTS ();
}
