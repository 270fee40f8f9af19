#pragma once

#include <cstdio>

namespace mirel_host {

// `mirel-host preset ...`: prints a preset file (.xps or .yps) or converts it to the other form,
// so a preset can be read and mended by hand. `argv` starts after the word "preset". Answers
// the exit code the usage text documents.
int RunPresetCommand(int argc, char **argv);

// The lines of the usage text that belong to the preset command, with its exit codes; `alone`
// starts them with "usage: ", else they continue the lines of the other commands.
void PrintPresetUsage(std::FILE *out, bool alone);

} // namespace mirel_host
