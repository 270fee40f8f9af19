#include "redis/WCRedisConnection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "core/WUAssert.h"
#include "tests/redis/RedisTestSupport.h"

namespace {

using namespace MIREL_NAMESPACE_NAME;
using namespace MIREL_NAMESPACE_NAME::Redis;
using mirel_redis_test::RedisProbe;
using mirel_redis_test::WaitFor;

// A connection straight to the test server, without the configuration file.
class ConnectionTest : public mirel_redis_test::RedisServerTest {
protected:
    void SetUp() override {
        RedisServerTest::SetUp();
        if (HasFatalFailure())
            return;
        m_connection.set_connection_details("127.0.0.1", m_server->port());
        ASSERT_EQ(m_connection.connect(), eNoErr);
        ASSERT_TRUE(m_connection.is_connected());
    }

    WCRedisConnection m_connection;
};

std::atomic<int> gAssertCount{0};
void CountAssert(const char *, int, const char *) {
    ++gAssertCount;
}

TEST(WCRedisConnectionState, StartsNotConnectedAndEveryCallReturnsItsEmptyValue) {
    WCRedisConnection connection;
    EXPECT_EQ(connection.GetError(), eRedisNotConnected);
    EXPECT_FALSE(connection.is_connected());
    EXPECT_TRUE(connection.get_value("k").empty());
    EXPECT_EQ(connection.increment_value("k", 1), -1);
    EXPECT_EQ(connection.increment_hash_value("k", "f", 1), -1);
    EXPECT_EQ(connection.get_type("k"), "no reply");
    EXPECT_FALSE(connection.is_hash_key("k", "f"));
    EXPECT_FALSE(connection.set_value_if_not_exist("k", "v"));
    connection.set_value_pending("k", "v");
    EXPECT_EQ(connection.get_pending_replies(), 0u);
    connection.set_value_now("k", "v");
    EXPECT_TRUE(connection.get_keys_to_delete().empty());
    connection.subscribe("channel", nullptr, nullptr);
    EXPECT_FALSE(connection.is_listening());
    connection.disconnect();
    EXPECT_EQ(connection.GetError(), eRedisNotConnected);
}

TEST(WCRedisConnectionState, NullArgumentsAreReportedAndRefused) {
    gAssertCount = 0;
    WTAssertHandler const previous = SetAssertHandler(&CountAssert);
    WCRedisConnection connection;
    connection.set_value_now(nullptr, "v");
    connection.set_hash_item_pending("k", nullptr, "v");
    EXPECT_TRUE(connection.get_value(nullptr).empty());
    EXPECT_EQ(connection.increment_value(nullptr, 1), -1);
    WTRedisStack stack;
    WCRedisConnection::append_key_value_to_stack(nullptr, "v", stack);
    SetAssertHandler(previous);
    EXPECT_EQ(gAssertCount.load(), 5);
    EXPECT_TRUE(stack.empty());
}

TEST(WCRedisConnectionStack, FormatsEachValueType) {
    WCRedisConnection connection;
    connection.append_key_value_to_stack("text", "abc");
    connection.append_key_value_to_stack("fixed", WCFixedString<15>("xyz"));
    connection.append_key_value_to_stack("double", 1.5);
    connection.append_key_value_to_stack("integer", std::int64_t(-42));
    connection.append_key_value_to_stack("yes", true);
    connection.append_key_value_to_stack("no", false);
    connection.append_key_hex_value_to_stack("hex", 0xDEADBEEFull);
    connection.append_key_value_to_stack("null", static_cast<const char *>(nullptr));
    connection.append_key_hex_value_to_stack("hex", ~0ull);
    std::string stack;
    for (auto const &[key, value] : connection.get_stack())
        stack.append(key.view()).append("=").append(value.view()).append(";");
    EXPECT_EQ(stack, "text=abc;fixed=xyz;double=1.5000000000;integer=-42;yes=true;no=false;"
                     "hex=0x00000000DEADBEEF;null=;hex=0xFFFFFFFFFFFFFFFF;");
}

TEST_F(ConnectionTest, ImmediateWritesLandAtOnce) {
    m_connection.set_value_now("s", "value");
    m_connection.set_hash_item_now("h", "field", "hv");
    m_connection.add_set_item_now("set", "m1");
    m_connection.add_set_item_now("set", "m2");
    m_connection.left_push_to_list_now("l", "b");
    m_connection.left_push_to_list_now("l", "a");
    m_connection.right_push_to_list_now("l", "c");

    EXPECT_EQ(m_probe->get("s"), "value");
    EXPECT_EQ(m_probe->hget("h", "field"), "hv");
    EXPECT_EQ(m_probe->members("set"), (std::set<std::string>{"m1", "m2"}));
    EXPECT_EQ(m_probe->list({"LRANGE", "l", "0", "-1"}), (std::vector<std::string>{"a", "b", "c"}));

    m_connection.remove_value_from_set_now("set", "m1");
    m_connection.move_value_from_set_to_set_now("set", "other", "m2");
    m_connection.del_hash_item_now("h", "field");
    m_connection.del_key_now("s");
    EXPECT_TRUE(m_probe->members("set").empty());
    EXPECT_EQ(m_probe->members("other"), (std::set<std::string>{"m2"}));
    EXPECT_FALSE(m_probe->exists("h"));
    EXPECT_FALSE(m_probe->exists("s"));
}

TEST_F(ConnectionTest, PendingWritesWaitForTheCommit) {
    m_connection.set_value_pending("p", "1");
    m_connection.set_hash_item_pending("ph", "f", "2");
    m_connection.right_push_to_list_pending("pl", "3");
    EXPECT_EQ(m_connection.get_pending_replies(), 3u);
    EXPECT_FALSE(m_probe->exists("p")) << "a pending command was sent before the commit";

    m_connection.append_key_value_to_stack("f", "v");
    m_connection.commit_pending_commands();
    EXPECT_EQ(m_connection.get_pending_replies(), 0u);
    EXPECT_TRUE(m_connection.get_stack().empty()) << "a commit always empties the stack";
    EXPECT_EQ(m_probe->get("p"), "1");
    EXPECT_EQ(m_probe->hget("ph", "f"), "2");
    EXPECT_EQ(m_probe->list({"LRANGE", "pl", "0", "-1"}), std::vector<std::string>{"3"});
}

TEST_F(ConnectionTest, ImmediateCommandAfterPendingOnesGetsItsOwnReply) {
    m_probe->command({"SET", "b", "bee"});
    m_connection.set_value_pending("a", "1");
    m_connection.set_value_pending("a2", "2");
    EXPECT_EQ(m_connection.get_value("b"), "bee");
    EXPECT_EQ(m_connection.get_pending_replies(), 0u);
    EXPECT_EQ(m_probe->get("a2"), "2");
}

TEST_F(ConnectionTest, StackWritesSendEveryPairCutToItsFieldAndEmptyTheStack) {
    m_connection.set_hash_from_stack_now("never");
    m_connection.set_values_from_stack_now();
    EXPECT_FALSE(m_probe->exists("never")) << "an empty stack sends nothing";
    EXPECT_TRUE(m_connection.get_keys_to_delete().empty());

    m_connection.append_key_value_to_stack("f1", "v1");
    m_connection.append_key_value_to_stack("f2", 2.25);
    m_connection.append_key_value_to_stack("long", std::string(1500, 'x').c_str());
    m_connection.set_hash_from_stack_now("hash");
    EXPECT_TRUE(m_connection.get_stack().empty());
    auto const hash = m_probe->hash("hash");
    EXPECT_EQ(hash.at("f1"), "v1");
    EXPECT_EQ(hash.at("f2"), "2.2500000000");
    EXPECT_EQ(hash.at("long"), std::string(1023, 'x'));

    m_connection.append_key_value_to_stack("f3", "v3");
    m_connection.set_hash_from_stack_pending("hash");
    m_connection.commit_pending_commands();
    EXPECT_EQ(m_probe->hget("hash", "f3"), "v3");

    WTRedisStack mine;
    WCRedisConnection::append_key_value_to_stack("f4", "v4", mine);
    m_connection.set_hash_from_stack_now("hash", mine);
    EXPECT_EQ(mine.size(), 1u) << "the caller's stack is the caller's";
    EXPECT_EQ(m_probe->hget("hash", "f4"), "v4");

    // Plain values go in one MSET, and each key is remembered for deletion.
    m_connection.append_key_value_to_stack("m1", "a");
    m_connection.append_key_value_to_stack("m2", "b");
    m_connection.set_values_from_stack_now();
    EXPECT_EQ(m_probe->get("m1"), "a");
    EXPECT_EQ(m_probe->get("m2"), "b");
    EXPECT_EQ(m_connection.get_keys_to_delete().count(WTRedisKey("m1")), 1u);
    EXPECT_EQ(m_connection.get_keys_to_delete().count(WTRedisKey("m2")), 1u);
}

TEST_F(ConnectionTest, ReadsTypesAndIncrementsAnswerWhatTheServerHolds) {
    m_probe->command({"SET", "s", "text"});
    m_probe->command({"HSET", "h", "a", "1", "b", "2"});
    m_probe->command({"RPUSH", "l", "x", "y", "z"});
    m_probe->command({"SADD", "set", "p", "q"});

    EXPECT_EQ(m_connection.get_value("s"), "text");
    EXPECT_TRUE(m_connection.get_value("missing").empty());
    EXPECT_EQ(m_connection.get_hash_value("h", "b"), "2");
    EXPECT_EQ(m_connection.get_list_value_by_index("l", "1"), "y");

    WTRedisHash hash;
    hash[WTRedisKey("a")] = "old";
    hash[WTRedisKey("keep")] = "k";
    m_connection.get_hash("h", hash);
    EXPECT_EQ(hash[WTRedisKey("a")], "1") << "an existing entry gets the new value";
    EXPECT_EQ(hash[WTRedisKey("keep")], "k");
    EXPECT_EQ(hash.size(), 3u);

    WTRedisValueList list{WTRedisValue("stale")};
    m_connection.get_list("l", list);
    ASSERT_EQ(list.size(), 3u) << "the list is cleared first";
    EXPECT_EQ(list[2], "z");

    WTRedisValueList members{WTRedisValue("stale")};
    m_connection.get_set("set", members);
    EXPECT_EQ(members.size(), 2u);

    WTRedisKeySet keys{WTRedisKey("already")};
    m_connection.get_all_keys(keys, "*");
    EXPECT_EQ(keys.size(), 5u) << "keys are added to what is there";

    EXPECT_EQ(m_connection.left_pop_list_value("l"), "x");
    EXPECT_EQ(m_connection.right_pop_list_value("l"), "z");
    EXPECT_TRUE(m_connection.left_pop_list_value("nothing").empty());

    EXPECT_EQ(m_connection.get_type("h"), "hash");
    EXPECT_TRUE(m_connection.is_type("h", "hash"));
    EXPECT_FALSE(m_connection.is_type("h", "has"));
    EXPECT_FALSE(m_connection.is_type("h", nullptr));
    EXPECT_TRUE(m_connection.is_hash_key("h", "b"));
    EXPECT_FALSE(m_connection.is_hash_key("h", "g"));

    // Increments answer the new value, and an error reply is no number.
    EXPECT_EQ(m_connection.increment_value("n", 5), 5);
    EXPECT_EQ(m_connection.increment_value("n", -7), -2);
    EXPECT_EQ(m_connection.increment_hash_value("h", "a", 3), 4);
    EXPECT_EQ(m_connection.increment_value("s", 1), -1);
}

TEST_F(ConnectionTest, SetIfNotExistSetsOnceAndHonoursTheTtl) {
    EXPECT_TRUE(m_connection.set_value_if_not_exist("lock", "a"));
    EXPECT_FALSE(m_connection.set_value_if_not_exist("lock", "b"));
    EXPECT_EQ(m_probe->get("lock"), "a");
    EXPECT_EQ(m_probe->integer({"PTTL", "lock"}), -1);

    EXPECT_TRUE(m_connection.set_value_if_not_exist("ttl", "a", 60000));
    long long const ttl = m_probe->integer({"PTTL", "ttl"});
    EXPECT_GT(ttl, 0);
    EXPECT_LE(ttl, 60000);
}

TEST_F(ConnectionTest, ConditionalHashWritesCheckFirst) {
    m_probe->command({"SET", "string", "1"});
    m_probe->command({"HSET", "hash", "present", "1"});
    m_connection.set_hash_item_now_if_hash_exists("string", "f", "x");
    m_connection.set_hash_item_now_if_hash_exists("missing", "f", "x");
    m_connection.set_hash_item_now_if_hash_exists("hash", "f", "x");
    EXPECT_EQ(m_probe->type("string"), "string");
    EXPECT_FALSE(m_probe->exists("missing"));
    EXPECT_EQ(m_probe->hget("hash", "f"), "x");

    m_connection.set_hash_item_now_if_key_exists("hash", "absent", "y");
    m_connection.set_hash_item_now_if_key_exists("hash", "present", "y");
    EXPECT_EQ(m_probe->integer({"HEXISTS", "hash", "absent"}), 0);
    EXPECT_EQ(m_probe->hget("hash", "present"), "y");

    // They never create the hash, so it stays its owner's when this connection ends.
    m_connection.disconnect();
    EXPECT_EQ(m_probe->hget("hash", "f"), "x");
}

TEST_F(ConnectionTest, DelKeysPatternDeletesOnlyMatches) {
    for (auto const *key : {"k:1", "k:2", "k:3", "other"})
        m_probe->command({"SET", key, "v"});
    m_connection.del_keys_pattern_now("k:*");
    EXPECT_FALSE(m_probe->exists("k:1"));
    EXPECT_FALSE(m_probe->exists("k:3"));
    EXPECT_TRUE(m_probe->exists("other"));
    m_connection.del_keys_pattern_now("nothing:*");
    EXPECT_TRUE(m_probe->exists("other"));
}

TEST_F(ConnectionTest, DisconnectDeletesCreatedKeysOnly) {
    m_connection.set_value_now("s", "1");
    m_connection.set_hash_item_pending("h", "f", "1");
    m_connection.add_set_item_now("set", "m");
    m_connection.left_push_to_list_now("list", "x");
    m_connection.increment_value("counter", 1);
    m_probe->command({"SET", "foreign", "1"});
    std::string const longKey(600, 'k');
    m_connection.set_value_now(longKey.c_str(), "1");
    m_probe->command({"SET", longKey.substr(0, 511), "foreign"});
    m_connection.disconnect();

    EXPECT_EQ(m_connection.GetError(), eRedisNotConnected);
    EXPECT_FALSE(m_connection.is_connected());
    EXPECT_FALSE(m_probe->exists("s"));
    EXPECT_FALSE(m_probe->exists("h")) << "pending commands are committed before the DEL";
    EXPECT_FALSE(m_probe->exists("set"));
    EXPECT_TRUE(m_probe->exists("list")) << "list pushes are not remembered";
    EXPECT_TRUE(m_probe->exists("counter"));
    EXPECT_TRUE(m_probe->exists("foreign"));
    EXPECT_FALSE(m_probe->exists(longKey)) << "a long key is deleted whole";
    EXPECT_TRUE(m_probe->exists(longKey.substr(0, 511))) << "not the key its cut name names";
}

TEST_F(ConnectionTest, ForgottenKeysAndKeysWrittenWithDeletingOffSurviveTheDisconnect) {
    m_connection.set_value_now("deleted-by-hand", "1");
    m_connection.set_value_now("forgotten", "1");
    m_connection.del_key_now("deleted-by-hand");
    m_connection.remove_from_keys_to_delete("forgotten");
    EXPECT_TRUE(m_connection.get_keys_to_delete().empty());
    m_probe->command({"SET", "deleted-by-hand", "again"});
    m_connection.set_should_delete_current_keys(false);
    m_connection.set_value_now("kept", "1");
    m_connection.set_should_delete_current_keys(true);
    m_connection.set_value_now("gone", "1");
    m_connection.disconnect();
    EXPECT_TRUE(m_probe->exists("forgotten"));
    EXPECT_TRUE(m_probe->exists("deleted-by-hand"));
    EXPECT_TRUE(m_probe->exists("kept"));
    EXPECT_FALSE(m_probe->exists("gone"));
}

TEST_F(ConnectionTest, DestructorCleansUpLikeDisconnect) {
    {
        WCRedisConnection other;
        other.set_connection_details("127.0.0.1", m_server->port());
        ASSERT_EQ(other.connect(), eNoErr);
        other.set_value_now("scoped", "1");
        other.set_hash_item_pending("scoped-hash", "f", "1");
        EXPECT_FALSE(m_probe->exists("scoped-hash"));
    }
    EXPECT_FALSE(m_probe->exists("scoped"));
    EXPECT_FALSE(m_probe->exists("scoped-hash"));
}

struct Recorder {
    std::mutex lock;
    std::vector<std::pair<std::string, std::string>> messages;
    std::atomic<bool> result{true};
    WCRedisConnection *unsubscribeFrom = nullptr;

    static bool Callback(const char *channel, const char *message, void *user) {
        auto *self = static_cast<Recorder *>(user);
        {
            std::lock_guard<std::mutex> guard(self->lock);
            self->messages.emplace_back(channel, message);
        }
        if (self->unsubscribeFrom != nullptr)
            self->unsubscribeFrom->unsubscribe();
        return self->result.load();
    }
    std::size_t count() {
        std::lock_guard<std::mutex> guard(lock);
        return messages.size();
    }
};

TEST_F(ConnectionTest, SubscriptionDeliversMessagesOnItsOwnNamedConnection) {
    Recorder recorder;
    m_connection.subscribe("mi:chan", &Recorder::Callback, &recorder);
    ASSERT_TRUE(m_connection.is_listening());
    EXPECT_EQ(m_probe->subscribers("mi:chan"), 1);
    EXPECT_NE(m_probe->text({"CLIENT", "LIST"}).find("name=mi:chan"), std::string::npos);

    m_probe->command({"PUBLISH", "mi:chan", "hello"});
    m_probe->command({"PUBLISH", "mi:chan", "world"});
    ASSERT_TRUE(WaitFor([&] { return recorder.count() == 2; }));
    EXPECT_EQ(recorder.messages[0], (std::pair<std::string, std::string>{"mi:chan", "hello"}));
    EXPECT_EQ(recorder.messages[1].second, "world");

    m_connection.unsubscribe();
    EXPECT_FALSE(m_connection.is_listening());
    EXPECT_EQ(m_probe->subscribers("mi:chan"), 0);
}

TEST_F(ConnectionTest, QuitEndsTheSubscriptionButQuitWithABlankIsAMessage) {
    Recorder recorder;
    m_connection.subscribe("chan", &Recorder::Callback, &recorder);
    m_probe->command({"PUBLISH", "chan", "quit "});
    ASSERT_TRUE(WaitFor([&] { return recorder.count() == 1; }));
    EXPECT_EQ(recorder.messages[0].second, "quit ");
    EXPECT_TRUE(m_connection.is_listening());

    m_probe->command({"PUBLISH", "chan", "quit"});
    EXPECT_TRUE(WaitFor([&] { return !m_connection.is_listening(); }));
    EXPECT_TRUE(WaitFor([&] { return m_probe->subscribers("chan") == 0; }));
    EXPECT_EQ(recorder.count(), 1u) << "\"quit\" never reaches the callback";
}

TEST_F(ConnectionTest, QuitEndsASubscriptionWhoseChannelIsLongerThanTheCallbackSees) {
    // An instance name can run to 511 characters and is the channel of its text commands.
    std::string const channel = "mi:" + std::string(400, 'c');
    Recorder recorder;
    m_connection.subscribe(channel.c_str(), &Recorder::Callback, &recorder);
    ASSERT_TRUE(m_connection.is_listening());
    m_probe->command({"PUBLISH", channel, "quit"});
    EXPECT_TRUE(WaitFor([&] { return !m_connection.is_listening(); }));
    EXPECT_EQ(recorder.count(), 0u);

    m_connection.subscribe(channel.c_str(), &Recorder::Callback, &recorder);
    ASSERT_TRUE(m_connection.is_listening());
    m_probe->command({"PUBLISH", channel, "hello"});
    ASSERT_TRUE(WaitFor([&] { return recorder.count() == 1; }));
    EXPECT_EQ(recorder.messages[0].first, channel.substr(0, 255));
    m_connection.unsubscribe();
    EXPECT_FALSE(m_connection.is_listening());
}

TEST_F(ConnectionTest, SubscribingAgainRightAfterQuitListensAgain) {
    Recorder recorder;
    for (int round = 0; round < 20; ++round) {
        m_connection.subscribe("chan", &Recorder::Callback, &recorder);
        ASSERT_TRUE(m_connection.is_listening()) << "round " << round;
        m_probe->command({"PUBLISH", "chan", "quit"});
        // No sleep: the next subscribe comes while the old thread may still be closing.
        auto const deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (m_connection.is_listening() && std::chrono::steady_clock::now() < deadline) {
        }
    }
}

bool ThrowingCallback(const char *, const char *, void *) {
    throw std::runtime_error("callback failed");
}

TEST_F(ConnectionTest, EachWayOfEndingASubscriptionLeavesNoSubscriberAndCanStartAgain) {
    struct {
        const char *name;
        WTSubscriptionCallback callback;
        bool result;
        bool unsubscribeInside;
    } const cases[] = {{"false from the callback", &Recorder::Callback, false, false},
                       {"callback that throws", &ThrowingCallback, true, false},
                       {"unsubscribe inside the callback", &Recorder::Callback, true, true}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        Recorder recorder;
        recorder.result = c.result;
        recorder.unsubscribeFrom = c.unsubscribeInside ? &m_connection : nullptr;
        m_connection.subscribe("chan", c.callback, &recorder);
        m_probe->command({"PUBLISH", "chan", "one"});
        EXPECT_TRUE(WaitFor([&] { return !m_connection.is_listening(); }));
        EXPECT_TRUE(WaitFor([&] { return m_probe->subscribers("chan") == 0; }));
        m_probe->command({"PUBLISH", "chan", "two"});

        Recorder again;
        m_connection.subscribe("chan", &Recorder::Callback, &again);
        EXPECT_TRUE(m_connection.is_listening());
        m_probe->command({"PUBLISH", "chan", "three"});
        EXPECT_TRUE(WaitFor([&] { return again.count() == 1; }));
        m_connection.unsubscribe();
        EXPECT_EQ(recorder.count(), c.callback == &ThrowingCallback ? 0u : 1u);
    }
    Recorder recorder;
    m_connection.subscribe("chan", &Recorder::Callback, &recorder);
    m_connection.disconnect();
    EXPECT_FALSE(m_connection.is_listening());
    EXPECT_TRUE(WaitFor([&] { return m_probe->subscribers("chan") == 0; }));
}

} // namespace
