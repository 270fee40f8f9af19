#include "redis/WCRedisClient.h"

#include <gtest/gtest.h>
#include <yaml-cpp/yaml.h>

#include <chrono>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "core/MirelNamespace.h"
#include "tests/redis/RedisTestSupport.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::Redis;
using mirel_redis_test::ReadFile;
using mirel_redis_test::WaitFor;
using mirel_redis_test::WriteFile;
using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

FM::WCStPath PathOf(std::filesystem::path const &path) {
    return FM::WCStPath(path.string());
}

// The host and port the client would connect to.
std::pair<std::string, int> DetailsOf(WCRedisClient &client) {
    WCFixedString<127> host;
    int port = 0;
    client.get_connection_details(host, port);
    return {std::string(host.view()), port};
}

class ConfigFileTest : public mirel_redis_test::RedisHomeTest {
protected:
    // Reads `text` as the default configuration file; answers host and port.
    std::pair<std::string, int> read(std::string const &text) {
        WriteFile(default_config_path(), text);
        WCRedisClient client("c", "");
        EXPECT_EQ(client.read_config_file(), eNoErr);
        EXPECT_TRUE(client.is_config_read());
        return DetailsOf(client);
    }
};

TEST_F(ConfigFileTest, TakesOnlyPortAndBindLinesThatStartWithTheWord) {
    struct Case {
        const char *text;
        const char *host;
        int port;
    };
    Case const cases[] = {
        {"# a server\nbind 127.0.0.1 ::1\nport 6399\n", "127.0.0.1", 6399},
        {"# port 1234\nbind 10.0.0.1\n", "10.0.0.1", 63179},
        {"#port 1234\n", "localhost", 63179},
        {"   port 7000\n\tbind   host.name_1\n", "host.name_1", 7000},
        {"tls-port 6380\nxbind 1.2.3.4\n", "localhost", 63179},
        {"bind 127.0.0.1:99 other\n", "127.0.0.1", 63179},
        // "-::1" starts with no word character, so the later line counts.
        {"bind -::1\nbind 10.1.1.1\n", "10.1.1.1", 63179},
        {"", "localhost", 63179},
        {"port 99999999999999999999\n", "localhost", 63179},
        {"port abc\nport 12\n", "localhost", 12},
    };
    for (Case const &c : cases)
        EXPECT_EQ(read(c.text), (std::pair<std::string, int>{c.host, c.port})) << c.text;
}

TEST_F(ConfigFileTest, DefaultFileInTheLocalAppDataFolderEnablesRedis) {
    EXPECT_EQ(WCRedisClient::get_default_config_file_path().GetNativePathString().view(),
              default_config_path().string());
    WCRedisClient client("c", "");
    EXPECT_EQ(client.read_config_file(), eFMFileNotFound);
    EXPECT_FALSE(client.is_config_read());
    EXPECT_FALSE(WCRedisClient::is_redis_enabled());
    WriteFile(default_config_path(), "port 1\n");
    EXPECT_TRUE(WCRedisClient::is_redis_enabled());
}

TEST_F(ConfigFileTest, AnExplicitPathIsUsedAndNullMeansTheDefault) {
    auto const other = m_home.path() / "elsewhere.conf";
    WriteFile(other, "port 4242\n");
    WCRedisClient client("c", "");
    FM::WCStPath const path = PathOf(other);
    client.set_config_file_path(&path);
    EXPECT_EQ(client.read_config_file(), eNoErr);
    EXPECT_EQ(DetailsOf(client).second, 4242);

    client.set_config_file_path(nullptr);
    EXPECT_EQ(client.get_config_file_path(), WCRedisClient::get_default_config_file_path());
}

TEST_F(ConfigFileTest, WrittenFileIsYamlThatTheReaderDoesNotUnderstand) {
    WCRedisClient writer("c", "");
    writer.set_connection_details("10.9.8.7", 7777);
    ASSERT_EQ(writer.write_config_file(), eNoErr);

    YAML::Node const written = YAML::LoadFile(default_config_path().string());
    EXPECT_EQ(written["redis_address"].as<std::string>(), "10.9.8.7");
    EXPECT_EQ(written["redis_port"].as<int>(), 7777);
    struct stat info {};
    ASSERT_EQ(stat(default_config_path().c_str(), &info), 0);
    EXPECT_EQ(
        info.st_mode & 0777, 0644u & ~[] {
            mode_t const mask = umask(0);
            umask(mask);
            return mask;
        }());

    // Kept apart on purpose: the reader looks only for server configuration lines.
    auto const [host, port] = read(ReadFile(default_config_path()));
    EXPECT_EQ(host, "localhost");
    EXPECT_EQ(port, 63179);
}

TEST(WCRedisClientNames, InstanceNameJoinsCategoryNameAndIdWithBlanksReplaced) {
    struct Case {
        const char *category;
        const char *name;
        std::int64_t id;
        const char *expected;
    };
    Case const cases[] = {
        {"active_plugins", "A B", 7, "mi:active_plugins:A_B:7"},
        {"", "A B", 7, "mi:A_B:7"},
        {nullptr, nullptr, 3, "mi:3"},
        {"my cat", "", -12, "mi:my_cat:-12"},
        {"c", "x  y", 0, "mi:c:x__y:0"},
    };
    for (Case const &c : cases) {
        WCFixedString<511> name;
        WCRedisClient::calc_instance_name(c.category, c.name, c.id, name);
        EXPECT_EQ(name, c.expected);
    }
}

TEST_F(ConfigFileTest, WithoutConfigurationConnectReturnsAtOnce) {
    WCRedisClient client("A B", "active_plugins");
    auto const start = Clock::now();
    EXPECT_EQ(client.connect(), eRedisNotConnected);
    EXPECT_LT(SecondsSince(start), 1.0);
    EXPECT_FALSE(client.is_connected());
    EXPECT_EQ(client.GetError(), eRedisNotConnected);
    EXPECT_EQ(client.instance_id(), 0);
    EXPECT_TRUE(client.instance_name().empty());
}

TEST_F(ConfigFileTest, ServerThatIsNotRunningFailsQuietly) {
    WriteFile(default_config_path(),
              "bind 127.0.0.1\nport " + std::to_string(mirel_test::FindFreeLoopbackPort()));
    WCRedisClient client("A", "cat");
    EXPECT_EQ(client.connect(), eRedisConnectFailed);
    EXPECT_FALSE(client.is_connected());
    client.set_value_now("k", "v");
    client.disconnect();
    EXPECT_EQ(client.GetError(), eRedisNotConnected);
}

class ClientTest : public mirel_redis_test::RedisServerTest {};

TEST_F(ClientTest, PortOutOfRangeFailsInsteadOfReachingTheWrappedPort) {
    // Past 65535 the number is wrapped or cut to its first five digits on its way to the socket.
    for (int const port : {m_server->port() * 10 + 7, m_server->port() + 65536, 0}) {
        WriteFile(default_config_path(), "bind 127.0.0.1\nport " + std::to_string(port) + "\n");
        WCRedisClient client("A", "cat");
        EXPECT_EQ(client.connect(), eRedisConnectFailed) << port;
        EXPECT_FALSE(client.is_connected());
    }
    EXPECT_FALSE(m_probe->exists("mi:instance_counter")) << "a client reached the test server";
}

TEST_F(ClientTest, ConnectRegistersTheInstanceWithItsDetails) {
    m_probe->command({"SET", "mi:instance_counter", "6"});
    m_probe->command({"SADD", "mi:deactive_instances", "mi:active_plugins:A_B:7"});
    WCRedisClient client("A B", "active_plugins");
    ASSERT_EQ(client.connect(), eNoErr);
    ASSERT_TRUE(client.is_connected());
    EXPECT_EQ(client.instance_id(), 7);
    std::string const name = "mi:active_plugins:A_B:7";
    EXPECT_EQ(client.instance_name(), name.c_str());

    EXPECT_EQ(m_probe->members("mi:active_instances"), std::set<std::string>{name});
    EXPECT_TRUE(m_probe->members("mi:deactive_instances").empty());
    EXPECT_NE(m_probe->text({"CLIENT", "LIST"}).find("name=" + name), std::string::npos);

    // Readers look the details up by these names; the values that come from this process are
    // checked, the build's own texts are not restated.
    auto const details = m_probe->hash(name);
    std::set<std::string> fields;
    for (auto const &[field, value] : details)
        fields.insert(field);
    EXPECT_EQ(fields, (std::set<std::string>{
                          "ARCH", "application path", "build configuration", "compilation time",
                          "compiler", "endian", "initialization time", "kUseBkgConsole", "miNS",
                          "operating system", "process id", "redis config file", "redis key"}));
    EXPECT_EQ(details.at("redis key"), name);
    EXPECT_EQ(details.at("process id"), std::to_string(getpid()));
    EXPECT_EQ(details.at("redis config file"), default_config_path().string());
    EXPECT_EQ(details.at("miNS"), MIREL_NAMESPACE_TEXT);
}

TEST_F(ClientTest, EachClientTakesTheNextIdAndNextInstanceIdLeavesItsOwn) {
    WCRedisClient first("p", "");
    WCRedisClient second("p", "");
    ASSERT_EQ(first.connect(), eNoErr);
    ASSERT_EQ(second.connect(), eNoErr);
    EXPECT_EQ(second.instance_id(), first.instance_id() + 1);
    EXPECT_EQ(first.next_instance_id(), second.instance_id() + 1);
    EXPECT_EQ(first.instance_id(), 1);
    EXPECT_EQ(m_probe->members("mi:active_instances"), (std::set<std::string>{"mi:p:1", "mi:p:2"}));
}

TEST_F(ClientTest, DisconnectCleansKeysMovesTheNameAndKeepsTheCounter) {
    WCRedisClient other("other", "");
    ASSERT_EQ(other.connect(), eNoErr);
    WCRedisClient client("A B", "active_plugins");
    ASSERT_EQ(client.connect(), eNoErr);
    std::string const name(client.instance_name().view());
    client.set_hash_item_now(name.c_str(), "extra", "1");
    client.set_value_now("mine", "1");
    std::string const counter = m_probe->get("mi:instance_counter");

    client.disconnect();
    EXPECT_EQ(client.GetError(), eRedisNotConnected);
    EXPECT_FALSE(m_probe->exists(name));
    EXPECT_FALSE(m_probe->exists("mine"));
    EXPECT_EQ(m_probe->members("mi:active_instances"),
              std::set<std::string>{std::string(other.instance_name().view())})
        << "the shared set outlives one client";
    EXPECT_EQ(m_probe->members("mi:deactive_instances"), std::set<std::string>{name});
    EXPECT_EQ(m_probe->get("mi:instance_counter"), counter);
    EXPECT_EQ(m_probe->text({"CLIENT", "LIST"}).find("name=" + name), std::string::npos);
}

TEST_F(ClientTest, DestructorDisconnectsLikeDisconnect) {
    std::string name;
    {
        WCRedisClient client("scoped", "");
        ASSERT_EQ(client.connect(), eNoErr);
        name = client.instance_name().view();
    }
    EXPECT_FALSE(m_probe->exists(name));
    EXPECT_EQ(m_probe->members("mi:deactive_instances"), std::set<std::string>{name});
    EXPECT_TRUE(m_probe->members("mi:active_instances").empty());
}

class DataTest : public ClientTest {
protected:
    void SetUp() override {
        ClientTest::SetUp();
        if (HasFatalFailure())
            return;
        ASSERT_EQ(m_client.connect(), eNoErr);
    }
    std::string path(const char *leaf) const { return (m_home.path() / leaf).string(); }

    WCRedisClient m_client{"data", ""};
};

TEST_F(DataTest, UnreadableFileFailsTheReadWithoutTouchingLaterSourcesOrCommitting) {
    m_probe->command({"SET", "k", "from key"});
    m_probe->command({"RPUSH", "l", "first", "last"});
    m_client.set_value_pending("queued", "v");
    ASSERT_EQ(m_client.get_pending_replies(), 1u);
    for (const char *more : {"", ", key: k", ", list-left: l", ", list-right: l, hash-name: h"}) {
        std::string text = "stale";
        const char *source = nullptr;
        YAML::Node const node = YAML::Load("{path: '" + path("none.txt") + "'" + more + "}");
        EXPECT_EQ(m_client.read_data(node, text, source), eFMFileNotFound) << more;
        EXPECT_TRUE(text.empty()) << more;
        EXPECT_STREQ(source, "path") << more;
    }
    // No item was popped, and the pending command waits for the caller's own commit.
    EXPECT_EQ(m_probe->list({"LRANGE", "l", "0", "-1"}),
              (std::vector<std::string>{"first", "last"}));
    EXPECT_EQ(m_client.get_pending_replies(), 1u);
    m_client.commit_pending_commands();
    EXPECT_EQ(m_probe->get("queued"), "v");
}

TEST_F(DataTest, ReadRefusesAPathThatIsNoPlainFile) {
    // A device or a pipe could be read for ever; each refusal names what the path is.
    std::filesystem::create_directories(path("folder"));
    std::pair<std::string, int> const cases[] = {{path("folder"), eFMIsAFolder},
                                                 {"/dev/null", eFMIsNotAFile}};
    for (auto const &[target, code] : cases) {
        std::string text = "stale";
        const char *source = nullptr;
        EXPECT_EQ(m_client.read_data(YAML::Load("{path: '" + target + "'}"), text, source), code)
            << target;
        EXPECT_TRUE(text.empty());
        EXPECT_STREQ(source, "path");
    }
}

TEST_F(DataTest, ReadServesEachSourceAndTheLastOnePresentWins) {
    WriteFile(path("in.txt"), std::string("line\nwith\0zero", 14));
    m_probe->command({"SET", "k", "from key"});
    m_probe->command({"HSET", "h", "f", "hashed"});
    m_probe->command({"RPUSH", "l", "first", "last"});
    struct Case {
        std::string yaml;
        std::string text;
        const char *source;
    };
    Case const cases[] = {
        {"{path: '" + path("in.txt") + "'}", std::string("line\nwith\0zero", 14), "path"},
        {"{hash-name: h, hash-key: f}", "hashed", "hash"},
        {"{list-left: l}", "first", "list"},
        {"{list-right: l}", "last", "list"},
        {"{key: absent}", "", "key"},
        {"{path: '" + path("in.txt") + "', key: k}", "from key", "key"},
    };
    for (Case const &c : cases) {
        std::string text = "stale";
        const char *source = nullptr;
        EXPECT_EQ(m_client.read_data(YAML::Load(c.yaml), text, source), eNoErr) << c.yaml;
        EXPECT_EQ(text, c.text) << c.yaml;
        EXPECT_STREQ(source, c.source) << c.yaml;
    }
}

TEST_F(DataTest, ReadOrWriteWithoutASourceOrTargetIsMissingTarget) {
    std::string text = "kept";
    for (const char *yaml :
         {"{}", "{hash-name: h}", "{key: ~}", "plain", "[key, k]", "{key: [a, b]}"}) {
        const char *source = "x";
        EXPECT_EQ(m_client.read_data(YAML::Load(yaml), text, source), eRedisMissingTarget) << yaml;
        EXPECT_EQ(source, nullptr);
    }
    EXPECT_EQ(text, "kept");
    for (const char *yaml : {"{}", "text", "{hash-key: f}", "{key: ~}"})
        EXPECT_EQ(m_client.write_data(std::string("x"), YAML::Load(yaml)), eRedisMissingTarget);
}

TEST_F(DataTest, WriteServesEveryTargetPresent) {
    mirel_redis_test::RedisProbe listener(m_server->port());
    listener.command({"SUBSCRIBE", "news"});
    YAML::Node const node = YAML::Load("{path: '" + path("out/o.txt") +
                                       "', key: k, hash-name: h, hash-key: f, list-left: ll, "
                                       "list-right: lr, set: s, publish: news, stdout: yes}");
    testing::internal::CaptureStdout();
    EXPECT_EQ(m_client.write_data(WCFixedString<31>("payload"), node), eNoErr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "payload");
    std::string const binary("a\0b", 3);
    EXPECT_EQ(m_client.write_data(binary.data(), binary.size(), YAML::Load("{key: bin}")), eNoErr);
    EXPECT_EQ(m_probe->get("bin"), binary);

    EXPECT_EQ(ReadFile(path("out/o.txt")), "payload");
    EXPECT_EQ(m_probe->get("k"), "payload");
    EXPECT_EQ(m_probe->hget("h", "f"), "payload");
    EXPECT_EQ(m_probe->list({"LRANGE", "ll", "0", "-1"}), std::vector<std::string>{"payload"});
    EXPECT_EQ(m_probe->list({"LRANGE", "lr", "0", "-1"}), std::vector<std::string>{"payload"});
    EXPECT_EQ(m_probe->members("s"), std::set<std::string>{"payload"});
    EXPECT_EQ(listener.next_push(), (std::vector<std::string>{"message", "news", "payload"}));
    EXPECT_EQ(m_client.get_pending_replies(), 0u);
}

TEST_F(DataTest, WrittenKeysHashesAndSetsDieWithTheClientButListsStay) {
    m_client.write_data(std::string("v"),
                        YAML::Load("{key: k, hash-name: h, hash-key: f, set: s, list-left: l}"));
    m_client.disconnect();
    EXPECT_FALSE(m_probe->exists("k"));
    EXPECT_FALSE(m_probe->exists("h"));
    EXPECT_FALSE(m_probe->exists("s"));
    EXPECT_TRUE(m_probe->exists("l"));
}

TEST_F(DataTest, WriteReportsAFileFailureAndLeavesTheTargetWhole) {
    WriteFile(path("folder/keep.txt"), "old");
    int const result = m_client.write_data(std::string("new"),
                                           YAML::Load("{path: '" + path("folder") + "', key: k}"));
    EXPECT_LT(result, 0);
    EXPECT_EQ(ReadFile(path("folder/keep.txt")), "old");
    EXPECT_EQ(m_probe->get("k"), "new") << "the other targets are served all the same";
}

bool NeverCalled(const char *, const char *, void *) {
    return true;
}

TEST_F(ClientTest, ServerKilledWhileConnectedLeavesEveryLaterCallQuiet) {
    WCRedisClient client("victim", "");
    ASSERT_EQ(client.connect(), eNoErr);
    client.subscribe(client.instance_name().c_str(), &NeverCalled, nullptr);
    ASSERT_TRUE(client.is_listening());
    m_probe.reset();
    m_server->kill_now();

    auto const start = Clock::now();
    client.set_value_now("k", "v");
    EXPECT_FALSE(client.is_connected());
    EXPECT_TRUE(client.get_value("k").empty());
    EXPECT_EQ(client.increment_value("n", 1), -1);
    EXPECT_EQ(client.get_type("k"), "no reply");
    client.set_hash_item_pending("h", "f", "v");
    client.commit_pending_commands();
    std::string text;
    EXPECT_EQ(client.write_data(std::string("x"), YAML::Load("{key: k}")), eNoErr);
    EXPECT_EQ(client.read_data(YAML::Load("{key: k}"), text), eNoErr);
    EXPECT_TRUE(WaitFor([&] { return !client.is_listening(); }));
    client.disconnect();
    EXPECT_EQ(client.GetError(), eRedisNotConnected);
    EXPECT_LT(SecondsSince(start), 5.0);
}

TEST_F(ClientTest, ServerKilledBeforeTheFirstCommandAfterPendingOnes) {
    WCRedisClient client("victim", "");
    ASSERT_EQ(client.connect(), eNoErr);
    for (int i = 0; i < 1000; ++i)
        client.set_hash_item_pending("h", std::to_string(i).c_str(), "value");
    m_probe.reset();
    m_server->kill_now();
    client.commit_pending_commands();
    EXPECT_EQ(client.get_pending_replies(), 0u);
    EXPECT_FALSE(client.is_connected());
}

TEST_F(ConfigFileTest, SilentServerTimesOutOnceAndEveryLaterCallReturnsAtOnce) {
    mirel_test::WCSilentServer silent;
    ASSERT_TRUE(silent.running());
    WriteFile(default_config_path(), "bind 127.0.0.1\nport " + std::to_string(silent.port()));
    WCRedisClient client("A", "cat");

    auto const start = Clock::now();
    EXPECT_EQ(client.connect(), eRedisConnectFailed);
    double const connectSeconds = SecondsSince(start);
    EXPECT_GE(connectSeconds, WCRedisClient::kTimeoutSeconds - 1.0);
    EXPECT_LT(connectSeconds, WCRedisClient::kTimeoutSeconds + 3.0);
    EXPECT_FALSE(client.is_connected());

    auto const later = Clock::now();
    client.set_value_now("k", "v");
    EXPECT_TRUE(client.get_value("k").empty());
    client.subscribe("chan", &NeverCalled, nullptr);
    EXPECT_FALSE(client.is_listening());
    client.disconnect();
    EXPECT_LT(SecondsSince(later), 1.0);
}

} // namespace
