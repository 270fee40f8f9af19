// Linked into every test program that mirel_add_test makes (an object library, so nothing can
// drop it): registers the program's temporary home as a global environment before main runs.
#include <gtest/gtest.h>

#include "tests/support/WCTestHome.h"

namespace {
::testing::Environment *const kProgramHome =
    ::testing::AddGlobalTestEnvironment(new mirel_test::WCTestHomeEnvironment);
} // namespace
