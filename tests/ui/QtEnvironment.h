#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <memory>

namespace tallory::test {

// One application for the whole run of a Qt test program, gone before the statics of Qt are.
// Include this header in exactly one file of each Qt test program.
class QtEnvironment : public testing::Environment {
  public:
    void SetUp() override { app_ = std::make_unique<QApplication>(argc_, argv_); }
    void TearDown() override { app_.reset(); }

  private:
    int argc_ = 1;
    char name_[13] = "tallory-test";
    char* argv_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> app_;
};

[[maybe_unused]] inline testing::Environment* const kQtEnvironment =
    testing::AddGlobalTestEnvironment(new QtEnvironment);

}  // namespace tallory::test
