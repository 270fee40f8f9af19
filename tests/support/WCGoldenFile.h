#pragma once

#include <string>

namespace mirel_test {

// The whole file as bytes; empty when it cannot be read.
std::string ReadFileText(const std::string &path);

// Compares `actual` with the reviewed file `folder`/`name`; with MIREL_UPDATE_GOLDEN=1 the file
// is rewritten instead, for a review of the diff by eye.
void ExpectGoldenFile(const std::string &actual, const std::string &folder, const char *name);

} // namespace mirel_test
