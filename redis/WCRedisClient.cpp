#include "redis/WCRedisClient.h"

#include <bit>
#include <charconv>
#include <cstdio>
#include <memory>
#include <mutex>
#include <stdexcept>

#include <boost/regex.hpp>
#include <hiredis/hiredis.h>
#include <yaml-cpp/yaml.h>

#include "core/WUAssert.h"
#include "files/WUFileSystemObjects.h"
#include "files/WUOpenFile.h"
#include "redis/linux/WURedisPlatform.h"

MIREL_NAMESPACE_BEGIN
namespace Redis {

namespace {

// Build constants reported with the client details.
constexpr const char *kOperatingSystem = "Linux";
constexpr const char *kCompilationTime = __DATE__ "-" __TIME__;
#ifdef NDEBUG
constexpr const char *kBuildConfiguration = "Release";
#else
constexpr const char *kBuildConfiguration = "Debug";
#endif
#if defined(__clang__)
constexpr long long kCompilerVersion =
    __clang_major__ * 10000LL + __clang_minor__ * 100LL + __clang_patchlevel__;
#elif defined(__GNUC__)
constexpr long long kCompilerVersion =
    __GNUC__ * 10000LL + __GNUC_MINOR__ * 100LL + __GNUC_PATCHLEVEL__;
#else
constexpr long long kCompilerVersion = 0;
#endif
constexpr const char *kEndian =
    std::endian::native == std::endian::little ? "__LITTLE_ENDIAN__" : "__BIG_ENDIAN__";

struct WSDefaultConfigPath {
    std::mutex lock;
    std::unique_ptr<FM::WCStPath> path;
};

WSDefaultConfigPath &DefaultConfigPath() {
    static WSDefaultConfigPath shared;
    return shared;
}

// Searched over the whole text; "^" matches at every line start, so a commented line (which
// starts with "#") never counts.
boost::regex const &PortExpression() {
    static boost::regex const expression(R"(^\s*port\s+(\d+))");
    return expression;
}

boost::regex const &BindExpression() {
    static boost::regex const expression(R"(^\s*bind\s+([\w.]+))");
    return expression;
}

// The text of `key` in `map` when it is there, not null and a scalar.
bool ScalarOf(YAML::Node const &map, const char *key, std::string &outText) {
    YAML::Node const value = map[key];
    if (!value.IsDefined() || value.IsNull() || !value.IsScalar())
        return false;
    outText = value.Scalar();
    return true;
}

} // namespace

WCRedisClient::WCRedisClient(const char *name, const char *category)
    : m_clientName(name), m_category(category), m_configFilePath(get_default_config_file_path()),
      m_instanceId(0), m_configRead(false) {}

WCRedisClient::~WCRedisClient() {
    WCRedisClient::disconnect();
}

// --- configuration --------------------------------------------------------------------------

FM::WCStPath WCRedisClient::get_default_config_file_path() {
    WSDefaultConfigPath &shared = DefaultConfigPath();
    std::lock_guard<std::mutex> guard(shared.lock);
    if (shared.path == nullptr || !shared.path->IsValid()) {
        auto path = std::make_unique<FM::WCStPath>(FM::eLocalDomain, FM::eMirelAppDataFolder);
        path->Append(kConfigFolderName);
        path->Append(kConfigFileName);
        shared.path = std::move(path);
    }
    return *shared.path;
}

void WCRedisClient::reset_default_config_file_path() {
    WSDefaultConfigPath &shared = DefaultConfigPath();
    std::lock_guard<std::mutex> guard(shared.lock);
    shared.path.reset();
}

bool WCRedisClient::is_redis_enabled() {
    return get_default_config_file_path().IsFile();
}

void WCRedisClient::set_config_file_path(FM::WCStPath const *path) {
    m_configFilePath = path != nullptr ? *path : get_default_config_file_path();
}

bool WCRedisClient::parse_config_text(std::string_view text, WCFixedStringBase &ioHost,
                                      int &ioPort) {
    const char *const first = text.data() != nullptr ? text.data() : "";
    const char *const last = first + text.size();
    try {
        boost::cmatch match;
        if (boost::regex_search(first, last, match, PortExpression())) {
            int port = 0;
            auto const [end, error] = std::from_chars(match[1].first, match[1].second, port);
            if (error == std::errc() && end == match[1].second)
                ioPort = port;
        }
        if (boost::regex_search(first, last, match, BindExpression()))
            ioHost.assign(match[1].first, match[1].second);
    } catch (std::runtime_error const &) {
        // The library gives up on texts that are too complex for it.
        return false;
    }
    return true;
}

int WCRedisClient::read_config_file() {
    m_configRead = false;
    if (!m_configFilePath.IsValid())
        m_configFilePath = get_default_config_file_path();
    if (!m_configFilePath.IsFile())
        return eFMFileNotFound;
    std::string text;
    WTErr const error = FM::ReadTheWholeFile(m_configFilePath, text);
    if (error != eNoErr)
        return error;
    WCFixedString<127> host(kDefaultHost);
    int port = kDefaultPort;
    if (!parse_config_text(text, host, port))
        return eExceptionErr;
    set_connection_details(host.c_str(), port);
    m_configRead = true;
    return eNoErr;
}

int WCRedisClient::write_config_file() {
    FM::WCStPath const path =
        m_configFilePath.IsValid() ? m_configFilePath : get_default_config_file_path();
    WCFixedString<127> host;
    int port = 0;
    get_connection_details(host, port);
    try {
        YAML::Emitter out;
        out << YAML::BeginMap;
        out << YAML::Key << "redis_address" << YAML::Value << host.c_str();
        out << YAML::Key << "redis_port" << YAML::Value << port;
        out << YAML::EndMap;
        if (!out.good())
            return eExceptionErr;
        return FM::ReplaceFileContents(path, out.c_str(), out.size(), 0644);
    } catch (YAML::Exception const &) {
        return eExceptionErr;
    }
}

// --- connecting -----------------------------------------------------------------------------

int WCRedisClient::connect() {
    if (is_connected())
        return eNoErr;
    read_config_file();
    if (!m_configRead)
        return GetError();
    WCRedisConnection::connect();
    if (!IsValid())
        return GetError();

    m_instanceId = increment_value(kInstanceCounterKey, 1);
    calc_instance_name(m_category.c_str(), m_clientName.c_str(), m_instanceId, m_instanceName);
    set_client_name(m_instanceName.c_str());

    remove_value_from_set_pending(kDeactiveInstancesKey, m_instanceName.c_str());
    add_set_item_pending(kActiveInstancesKey, m_instanceName.c_str());
    // The set is shared by every client; one client's end must not delete it.
    forget_key(kActiveInstancesKey);
    commit_pending_commands();

    set_client_details();
    set_hash_from_stack_now(m_instanceName.c_str());

    // A server that accepted the socket but never answered counts as a failed connection.
    if (!is_connected() && GetError() == eNoErr)
        SetError(eRedisConnectFailed);
    return GetError();
}

void WCRedisClient::disconnect() {
    if (is_connected())
        move_value_from_set_to_set_now(kActiveInstancesKey, kDeactiveInstancesKey,
                                       m_instanceName.c_str());
    disconnect_connection();
}

std::int64_t WCRedisClient::next_instance_id() {
    return increment_value(kInstanceCounterKey, 1);
}

void WCRedisClient::calc_instance_name(const char *category, const char *name, std::int64_t id,
                                       WCFixedStringBase &outName) {
    outName = "mi";
    if (category != nullptr && *category != 0)
        outName << ':' << category;
    if (name != nullptr && *name != 0)
        outName << ':' << name;
    outName << ':' << static_cast<long long>(id);
    // Client names on the server may hold no blanks.
    outName.replace(' ', '_');
}

void WCRedisClient::set_client_details() {
    WCFixedString<1023> text;
    append_key_value_to_stack("redis key", m_instanceName);
    append_key_value_to_stack("process id", Platform::CurrentProcessId());
    Platform::GetApplicationPath(text);
    append_key_value_to_stack("application path", text);
    append_key_value_to_stack("redis config file", m_configFilePath.GetNativePathString());
    append_key_value_to_stack("ARCH", "64");
    append_key_value_to_stack("operating system", kOperatingSystem);
    append_key_value_to_stack("miNS", MIREL_NAMESPACE_TEXT);
    append_key_value_to_stack("compilation time", kCompilationTime);
    append_key_value_to_stack("build configuration", kBuildConfiguration);
    append_key_value_to_stack("kUseBkgConsole", "Off");
    append_key_value_to_stack("endian", kEndian);
    append_key_value_to_stack("compiler", static_cast<std::int64_t>(kCompilerVersion));
    append_current_time_to_stack("initialization time");
}

void WCRedisClient::append_current_time_to_stack(const char *key) {
    WCFixedString<63> text;
    Platform::GetLocalTimeText(text);
    append_key_value_to_stack(key, text);
}

// --- reading and writing by description -----------------------------------------------------

int WCRedisClient::read_data(YAML::Node const &node, std::string &outText) {
    const char *source = nullptr;
    return read_data(node, outText, source);
}

int WCRedisClient::read_data(YAML::Node const &node, std::string &outText, const char *&outSource) {
    outSource = nullptr;
    try {
        if (node.IsMap()) {
            std::string name;
            std::string field;
            // The whole reply: a read description is not bound to the 1023 of a value.
            auto take = [&outText](WTRedisReply const &reply) {
                outText.clear();
                if (reply != nullptr && reply->type == REDIS_REPLY_STRING)
                    outText.assign(reply->str, reply->len);
            };
            if (ScalarOf(node, "path", name)) {
                FM::WCStPath const file(name);
                // A device such as /dev/zero or a pipe has no end to read up to: any publisher
                // could make the host block or fill its memory, so only plain files are read.
                bool const special = file.IsExist() && !file.IsFile() && !file.IsFolder();
                WTErr const fileResult =
                    special ? eFMIsNotAFile : FM::ReadTheWholeFile(file, outText);
                outSource = "path";
                if (fileResult != eNoErr) {
                    outText.clear();
                    return fileResult;
                }
            }
            if (ScalarOf(node, "key", name)) {
                take(run_now({"GET", name}));
                outSource = "key";
            }
            if (ScalarOf(node, "hash-name", name) && ScalarOf(node, "hash-key", field)) {
                take(run_now({"HGET", name, field}));
                outSource = "hash";
            }
            if (ScalarOf(node, "list-left", name)) {
                take(run_now({"LPOP", name}));
                outSource = "list";
            }
            if (ScalarOf(node, "list-right", name)) {
                take(run_now({"RPOP", name}));
                outSource = "list";
            }
        }
    } catch (YAML::Exception const &) {
        outSource = nullptr;
    }
    commit_pending_commands();
    return outSource == nullptr ? eRedisMissingTarget : eNoErr;
}

int WCRedisClient::write_data(std::string const &data, YAML::Node const &node) {
    return write_data(data.data(), data.size(), node);
}

int WCRedisClient::write_data(WCFixedStringBase const &data, YAML::Node const &node) {
    return write_data(data.data(), data.size(), node);
}

int WCRedisClient::write_data(const void *data, std::uint64_t size, YAML::Node const &node) {
    MIREL_ASSERT_RETURN(data != nullptr || size == 0, eMemNullPointer);
    if (data == nullptr)
        data = "";
    std::string_view const value(static_cast<const char *>(data), static_cast<std::size_t>(size));
    bool served = false;
    WTErr result = eNoErr;
    try {
        if (node.IsMap()) {
            std::string name;
            std::string field;
            if (ScalarOf(node, "path", name)) {
                served = true;
                result = FM::ReplaceFileContents(FM::WCStPath(name), data, size, 0644);
            }
            if (ScalarOf(node, "key", name)) {
                served = true;
                run_pending({"SET", name, value}, name);
            }
            if (ScalarOf(node, "hash-name", name) && ScalarOf(node, "hash-key", field)) {
                served = true;
                run_pending({"HSET", name, field, value}, name);
            }
            if (ScalarOf(node, "list-left", name)) {
                served = true;
                run_pending({"LPUSH", name, value});
            }
            if (ScalarOf(node, "list-right", name)) {
                served = true;
                run_pending({"RPUSH", name, value});
            }
            if (ScalarOf(node, "set", name)) {
                served = true;
                run_pending({"SADD", name, value}, name);
            }
            if (ScalarOf(node, "publish", name)) {
                served = true;
                run_pending({"PUBLISH", name, value});
            }
            if (ScalarOf(node, "stdout", name)) {
                served = true;
                std::fwrite(value.data(), 1, value.size(), stdout);
                std::fflush(stdout);
            }
        }
    } catch (YAML::Exception const &) {
        // What was queued before the broken entry is still committed below.
    }
    commit_pending_commands();
    return served ? result : eRedisMissingTarget;
}

} // namespace Redis
MIREL_NAMESPACE_END
