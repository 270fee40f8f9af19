#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <hiredis/hiredis.h>

#include "files/WCStPath.h"
#include "redis/WCRedisClient.h"
#include "tests/support/WCGoldenFile.h"
#include "tests/support/WCRedisServerFixture.h"
#include "tests/support/WCTestHome.h"

namespace mirel_redis_test {

// A second client that talks to the server without the library, to see what really landed.
class RedisProbe {
public:
    explicit RedisProbe(int port) {
        timeval timeout{2, 0};
        m_context = redisConnectWithTimeout("127.0.0.1", port, timeout);
        if (m_context != nullptr && m_context->err == 0)
            redisSetTimeout(m_context, timeout);
    }
    ~RedisProbe() {
        if (m_context != nullptr)
            redisFree(m_context);
    }
    RedisProbe(RedisProbe const &) = delete;
    RedisProbe &operator=(RedisProbe const &) = delete;

    bool ok() const { return m_context != nullptr && m_context->err == 0; }

    using Reply = std::unique_ptr<redisReply, void (*)(void *)>;
    Reply command(std::vector<std::string> const &args) {
        std::vector<const char *> argv;
        std::vector<size_t> lengths;
        for (auto const &arg : args) {
            argv.push_back(arg.data());
            lengths.push_back(arg.size());
        }
        void *reply = ok() ? redisCommandArgv(m_context, static_cast<int>(argv.size()), argv.data(),
                                              lengths.data())
                           : nullptr;
        return Reply(static_cast<redisReply *>(reply), freeReplyObject);
    }
    std::string text(std::vector<std::string> const &args) {
        Reply const reply = command(args);
        if (reply == nullptr ||
            (reply->type != REDIS_REPLY_STRING && reply->type != REDIS_REPLY_STATUS))
            return {};
        return std::string(reply->str, reply->len);
    }
    long long integer(std::vector<std::string> const &args) {
        Reply const reply = command(args);
        return reply != nullptr && reply->type == REDIS_REPLY_INTEGER ? reply->integer : -1;
    }
    std::vector<std::string> list(std::vector<std::string> const &args) {
        return strings(command(args).get());
    }
    std::string get(std::string const &key) { return text({"GET", key}); }
    std::string hget(std::string const &key, std::string const &field) {
        return text({"HGET", key, field});
    }
    bool exists(std::string const &key) { return integer({"EXISTS", key}) == 1; }
    std::string type(std::string const &key) { return text({"TYPE", key}); }
    std::set<std::string> members(std::string const &key) {
        auto const all = list({"SMEMBERS", key});
        return {all.begin(), all.end()};
    }
    std::map<std::string, std::string> hash(std::string const &key) {
        auto const all = list({"HGETALL", key});
        std::map<std::string, std::string> out;
        for (size_t i = 0; i + 1 < all.size(); i += 2)
            out[all[i]] = all[i + 1];
        return out;
    }
    // The next reply that arrives unasked (a published message on a subscribed probe).
    std::vector<std::string> next_push() {
        void *raw = nullptr;
        if (!ok() || redisGetReply(m_context, &raw) != REDIS_OK)
            return {};
        return strings(Reply(static_cast<redisReply *>(raw), freeReplyObject).get());
    }
    long long subscribers(std::string const &channel) {
        Reply const reply = command({"PUBSUB", "NUMSUB", channel});
        if (reply == nullptr || reply->type != REDIS_REPLY_ARRAY || reply->elements < 2)
            return -1;
        return reply->element[1]->integer;
    }

private:
    // The texts of an array reply; nothing for any other reply.
    static std::vector<std::string> strings(redisReply const *reply) {
        std::vector<std::string> out;
        if (reply != nullptr && reply->type == REDIS_REPLY_ARRAY) {
            for (size_t i = 0; i < reply->elements; ++i)
                out.emplace_back(reply->element[i]->str != nullptr ? reply->element[i]->str : "");
        }
        return out;
    }

    redisContext *m_context = nullptr;
};

// Polls `condition` until it holds or `limit` has passed.
inline bool WaitFor(std::function<bool()> const &condition,
                    std::chrono::milliseconds limit = std::chrono::seconds(5)) {
    auto const deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

inline std::string ReadFile(std::filesystem::path const &path) {
    return mirel_test::ReadFileText(path.string());
}

inline void WriteFile(std::filesystem::path const &path, std::string const &text) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

// A temporary XDG home with the client's default configuration path reset to it, and the
// path where the configuration file belongs.
class RedisHomeTest : public ::testing::Test {
protected:
    RedisHomeTest() { Redis::WCRedisClient::reset_default_config_file_path(); }
    ~RedisHomeTest() override { Redis::WCRedisClient::reset_default_config_file_path(); }

    std::filesystem::path default_config_path() const {
        return m_home.path() / "usr/share/Mirel Audio/Redis/mirel-redis-server.conf";
    }

    mirel_test::WCTestHome m_home;
};

// A real server, with its configuration file installed where the client looks by default.
class RedisServerTest : public RedisHomeTest {
protected:
    void SetUp() override {
        m_server = std::make_unique<mirel_test::WCRedisServer>(m_home.path());
        ASSERT_TRUE(m_server->running()) << m_server->error();
        WriteFile(default_config_path(), ReadFile(m_server->config_path()));
        m_probe = std::make_unique<RedisProbe>(m_server->port());
        ASSERT_TRUE(m_probe->ok());
    }

    std::unique_ptr<mirel_test::WCRedisServer> m_server;
    std::unique_ptr<RedisProbe> m_probe;
};

} // namespace mirel_redis_test
