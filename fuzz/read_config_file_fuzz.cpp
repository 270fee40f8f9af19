// Feeds arbitrary bytes to the client as its server configuration file: each input is written
// to a file in a temporary folder and read with read_config_file. The client never connects.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

#include "core/MirelNamespace.h"
#include "files/WCStPath.h"
#include "redis/WCRedisClient.h"

using namespace MIREL_NAMESPACE_NAME;

namespace {

std::string gFolder;
std::string gConfigPath;

void RemoveFolder() {
    std::remove(gConfigPath.c_str());
    rmdir(gFolder.c_str());
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    static char folder[] = "/tmp/mirel-redis-fuzz-XXXXXX";
    if (mkdtemp(folder) == nullptr)
        std::abort();
    // The client's default folders must not reach the real user's.
    setenv("XDG_DATA_DIRS", folder, 1);
    setenv("XDG_DATA_HOME", folder, 1);
    setenv("XDG_CONFIG_HOME", folder, 1);
    gFolder = folder;
    gConfigPath = gFolder + "/mirel-redis-server.conf";
    std::atexit(&RemoveFolder);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::FILE *file = std::fopen(gConfigPath.c_str(), "wb");
    if (file == nullptr)
        return 0;
    if (size != 0)
        std::fwrite(data, 1, size, file);
    std::fclose(file);

    Redis::WCRedisClient client("fuzz", "");
    FM::WCStPath const path(gConfigPath);
    client.set_config_file_path(&path);
    int const result = client.read_config_file();
    WCFixedString<127> host;
    int port = 0;
    client.get_connection_details(host, port);
    // A read that succeeded always leaves a host behind.
    if (result == 0 && (!client.is_config_read() || host.empty()))
        std::abort();
    return 0;
}
