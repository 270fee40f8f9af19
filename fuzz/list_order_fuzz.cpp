// Feeds arbitrary bytes to the "List Order.txt" reader, then orders a small list with whatever
// names came out: neither may crash, hang or leak, and a failure must leave the names alone.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "files/WCStFolderIterator.h"

using namespace MIREL_NAMESPACE_NAME;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::string const text(reinterpret_cast<char const *>(data), size);
    FM::WCStFolderIterator::WTNameVector names{"sentinel"};
    int const error = FM::WCStFolderIterator::ReadItemOrderFromString(text, names);
    if (error != eNoErr && names.size() != 1)
        std::abort();
    FM::WCStFolderIterator::WTPathVector paths;
    for (char const *leaf : {"/f/a", "/f/b.xps", "/f/c", "/f/sentinel"})
        paths.emplace_back(leaf);
    FM::WCStFolderIterator::OrderItemsInFolder(names, paths);
    if (paths.size() != 4 || paths.front().GetLeaf().compare("sentinel") != 0)
        std::abort();
    return 0;
}
