#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "files/WCStPath.h"
#include "redis/WCRedisConnection.h"

namespace YAML {
class Node;
}

MIREL_NAMESPACE_BEGIN
namespace Redis {

// A connection that finds its server through the configuration file, names itself
// ("mi:<category>:<name>:<id>", blanks turned into "_"), registers in the global instance sets
// and writes its details into the hash of its name; plus the reads and writes that text commands
// describe with a YAML map.
//
// Without a configuration file nothing is ever tried: connect returns at once and the whole
// bridge stays silent. disconnect moves the name from "mi:active_instances" to
// "mi:deactive_instances", where it stays, and deletes the keys the client made.
//
// Threads: as WCRedisConnection; the owner serialises calls. The default configuration path and
// the two expressions that read the configuration are shared by the process. [any-thread]
class WCRedisClient : public WCRedisConnection {
public:
    static constexpr const char *kConfigFolderName = "Redis";
    static constexpr const char *kConfigFileName = "mirel-redis-server.conf";
    // Never deleted by a client: ids stay unique for the life of the server.
    static constexpr const char *kInstanceCounterKey = "mi:instance_counter";
    static constexpr const char *kActiveInstancesKey = "mi:active_instances";
    static constexpr const char *kDeactiveInstancesKey = "mi:deactive_instances";

    // `name` and `category` may be null (taken as empty). The configuration path is the default.
    WCRedisClient(const char *name, const char *category);
    ~WCRedisClient() override;

    // Reads the configuration, connects, takes an id, names the client and registers it.
    // Answers the error code afterwards: eRedisNotConnected when there is no configuration,
    // eRedisConnectFailed when the server did not answer.
    int connect() override;
    void disconnect() override;

    // "Redis/mirel-redis-server.conf" in eMirelAppDataFolder of the local domain. Built once per
    // process, and again when it has become invalid or after reset.
    static FM::WCStPath get_default_config_file_path();
    // Forgets the shared default path, so the next call builds it from the environment again.
    static void reset_default_config_file_path();
    // True when the default configuration file exists.
    static bool is_redis_enabled();

    // A null path means the default.
    void set_config_file_path(FM::WCStPath const *path);
    FM::WCStPath const &get_config_file_path() const noexcept { return m_configFilePath; }

    // Takes the first "port" and "bind" lines of a server configuration file (defaults stay for
    // missing lines). eNoErr when read; the file error when it is missing or unreadable;
    // eExceptionErr when the expressions failed.
    int read_config_file();
    bool is_config_read() const noexcept { return m_configRead; }
    // The two searches of read_config_file over a text; false when the expressions failed.
    static bool parse_config_text(std::string_view text, WCFixedStringBase &ioHost, int &ioPort);
    // Writes host and port as a YAML map ("redis_address", "redis_port"), file mode 0644. This
    // is not the format read_config_file understands, on purpose: it is for other tools.
    int write_config_file();

    WCFixedStringBase const &instance_name() const noexcept { return m_instanceName; }
    std::int64_t instance_id() const noexcept { return m_instanceId; }
    WCFixedStringBase const &client_name() const noexcept { return m_clientName; }
    WCFixedStringBase const &category() const noexcept { return m_category; }
    // One more id from the counter; the client's own id stays.
    std::int64_t next_instance_id();
    static void calc_instance_name(const char *category, const char *name, std::int64_t id,
                                   WCFixedStringBase &outName);

    // Pushes the client details onto the stack.
    void set_client_details();
    // Pushes the local time as "%Y/%m/%d-%H:%M:%S".
    void append_current_time_to_stack(const char *key);

    // Reads text from the sources the map names ("path", "key", "hash-name" with "hash-key",
    // "list-left", "list-right"; the last present wins), then commits. eNoErr, or
    // eRedisMissingTarget without a source. A "path" that cannot be read answers the file's code
    // at once, with `outText` empty: no later source is read (a list would lose its item) and
    // nothing is committed. `outSource` gets "path", "key", "hash" or "list" (null when none).
    int read_data(YAML::Node const &node, std::string &outText);
    int read_data(YAML::Node const &node, std::string &outText, const char *&outSource);
    // Writes the data to every target the map names ("path", "key", "hash-name" with
    // "hash-key", "list-left", "list-right", "set", "publish", "stdout"). eRedisMissingTarget
    // without a target, else the file result (eNoErr when no file was written).
    int write_data(std::string const &data, YAML::Node const &node);
    int write_data(WCFixedStringBase const &data, YAML::Node const &node);
    int write_data(const void *data, std::uint64_t size, YAML::Node const &node);

private:
    WCFixedString<511> m_clientName;
    WCFixedString<511> m_instanceName;
    WCFixedString<511> m_category;
    FM::WCStPath m_configFilePath;
    std::int64_t m_instanceId;
    bool m_configRead;
};

} // namespace Redis
MIREL_NAMESPACE_END
