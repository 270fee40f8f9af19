// The command-line host: drives the run-time from a shell.

#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "core/MirelNamespace.h"
#include "core/WTErrors.h"

namespace {

int PrintVersion() {
    std::printf("MirelLib %s (namespace %s)\n", MIREL_VERSION_STRING, MIREL_NAMESPACE_TEXT);
    for (WTErr code : {eNoErr, eFMFileNotFound, eRMResNotFound, eMemNullPointer, eXMLParserFailed,
                       eKeyNotFound, kErrSharingViolation})
        std::printf("%8d  %s\n", code, WTErrName(code));
    return 0;
}

void PrintUsage() {
    std::printf("usage: mirel-host version|demo\n");
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 2 || std::strcmp(argv[1], "version") == 0 || std::strcmp(argv[1], "demo") == 0)
        return PrintVersion();
    PrintUsage();
    return 2;
}
