#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/MirelNamespace.h"
#include "core/WCFixedString.h"
#include "core/WUValidatable.h"
#include "core/miThread.h"
#include "redis/WTRedisErrors.h"

struct redisContext;
struct redisReply;

MIREL_NAMESPACE_BEGIN
namespace Redis {

using WTRedisKey = WCFixedString<511>;
using WTRedisValue = WCFixedString<1023>;
using WTRedisKeyValue = std::pair<WTRedisKey, WTRedisValue>;
// The key/value stack: pairs pushed one by one and sent in one command.
using WTRedisStack = std::vector<WTRedisKeyValue>;
using WTRedisHash = std::map<WTRedisKey, WTRedisValue>;
using WTRedisValueList = std::vector<WTRedisValue>;
using WTRedisTypeName = WCFixedString<15>;

// Orders keys by their bytes and finds them by any text, so a lookup builds no fixed string.
struct WSRedisKeyLess {
    using is_transparent = void;
    static std::string_view View(WCFixedStringBase const &s) noexcept { return s.view(); }
    static std::string_view View(std::string_view s) noexcept { return s; }
    template <class A, class B>
    bool operator()(A const &a, B const &b) const noexcept {
        return View(a) < View(b);
    }
};
using WTRedisKeySet = std::set<WTRedisKey, WSRedisKeyLess>;
// The keys a connection deletes when it ends, kept whole: a key cut to 511 characters would name
// another key.
using WTRedisKeysToDelete = std::set<std::string, WSRedisKeyLess>;

// [subscribe-thread] Receives one message of a subscription; false ends the subscription, and
// so does an exception.
using WTSubscriptionCallback = bool (*)(const char *channel, const char *message, void *user);

// Frees a hiredis reply.
struct WSRedisReplyDeleter {
    void operator()(redisReply *reply) const noexcept;
};
using WTRedisReply = std::unique_ptr<redisReply, WSRedisReplyDeleter>;

// One connection to a Redis server: typed commands, each either immediate (sent, and its reply
// read and freed at once) or pending (queued on the socket; the replies are read together by
// commit_pending_commands), a key/value stack for commands with many arguments, the set of keys
// that are deleted in one "DEL" when the connection ends, and one subscription served by a thread
// with its own connection.
//
// Life cycle: not connected (eRedisNotConnected) -> connect -> connected (eNoErr) or failed
// (eRedisConnectFailed) -> disconnect -> not connected. A connection whose socket dies stays
// valid but answers false to is_connected, and from then on every command returns at once with
// its empty value. Nothing is reported to the caller by writes.
//
// Threads: not thread-safe. One thread at a time uses it, or the owner guards it with a lock
// (the lock depth and the mutex are kept here for that owner). Only the subscription record is
// shared with the subscribe thread, under a lock of its own.
class WCRedisConnection : public WUValidatable {
public:
    static constexpr int kDefaultPort = 63179;
    static constexpr const char *kDefaultHost = "localhost";
    // How long a connection attempt, and then each reply, may take.
    static constexpr int kTimeoutSeconds = 10;
    // The same for the subscription's own connection while it is being set up.
    static constexpr int kSubscriptionTimeoutSeconds = 1;

    WCRedisConnection();
    ~WCRedisConnection() override;
    WCRedisConnection(WCRedisConnection const &) = delete;
    WCRedisConnection &operator=(WCRedisConnection const &) = delete;

    bool IsValidSelf() const override { return true; }
    // Connects to the stored host and port; answers the error code afterwards. A connection that
    // is already up is kept.
    virtual int connect();
    // Ends the subscription, commits, deletes the remembered keys and closes the socket.
    virtual void disconnect();
    // True while the socket is open and has seen no error.
    virtual bool is_connected() const;

    // Writes, immediate and pending.
    void add_set_item_now(const char *key, const char *member);
    void add_set_item_pending(const char *key, const char *member);
    void remove_value_from_set_now(const char *key, const char *member);
    void remove_value_from_set_pending(const char *key, const char *member);
    void move_value_from_set_to_set_now(const char *from, const char *to, const char *member);
    void move_value_from_set_to_set_pending(const char *from, const char *to, const char *member);
    void set_value_now(const char *key, const char *value);
    void set_value_pending(const char *key, const char *value);
    void set_hash_item_now(const char *key, const char *field, const char *value);
    void set_hash_item_pending(const char *key, const char *field, const char *value);
    void del_hash_item_now(const char *key, const char *field);
    void del_hash_item_pending(const char *key, const char *field);
    void del_key_now(const char *key);
    void del_key_pending(const char *key);
    void left_push_to_list_now(const char *key, const char *value);
    void left_push_to_list_pending(const char *key, const char *value);
    void right_push_to_list_now(const char *key, const char *value);
    void right_push_to_list_pending(const char *key, const char *value);
    void publish_now(const char *channel, const char *message);
    void publish_pending(const char *channel, const char *message);
    // "HMSET" of the connection's own stack, which is emptied afterwards. An empty stack sends
    // nothing.
    void set_hash_from_stack_now(const char *key);
    void set_hash_from_stack_pending(const char *key);
    // "HMSET" of a stack the caller owns and keeps.
    void set_hash_from_stack_now(const char *key, WTRedisStack const &stack);
    // "MSET" of the own stack (emptied afterwards) or of the caller's.
    void set_values_from_stack_now();
    void set_values_from_stack_now(WTRedisStack const &stack);

    // Reads and other immediate commands. Replies still pending are read first, so each
    // command gets its own reply.
    WTRedisValue get_value(const char *key);
    WTRedisValue get_hash_value(const char *key, const char *field);
    void get_hash(const char *key, WTRedisHash &outHash);
    void get_list(const char *key, WTRedisValueList &outList);
    WTRedisValue get_list_value_by_index(const char *key, const char *index);
    void get_set(const char *key, WTRedisValueList &outMembers);
    void get_all_keys(WTRedisKeySet &outKeys, const char *pattern);
    // The type name, or "no reply" when none came (also when not connected).
    WTRedisTypeName get_type(const char *key);
    bool is_type(const char *key, const char *type);
    bool is_hash_key(const char *key, const char *field);
    WTRedisValue left_pop_list_value(const char *key);
    WTRedisValue right_pop_list_value(const char *key);
    // The new value, or -1 when not connected or no number came back.
    std::int64_t increment_value(const char *key, std::int64_t delta);
    std::int64_t increment_hash_value(const char *key, const char *field, std::int64_t delta);
    // "SET" key value "NX" (and "PX" ttl when ttl is not 0); true when the key was set.
    bool set_value_if_not_exist(const char *key, const char *value, std::int64_t ttlMs = 0);
    // "HSET" only into a hash, or a field, that is already there; the hash is not remembered for
    // deletion, since this connection did not create it.
    void set_hash_item_now_if_hash_exists(const char *key, const char *field, const char *value);
    void set_hash_item_now_if_key_exists(const char *key, const char *field, const char *value);
    void remove_from_list_by_value_now(const char *key, const char *value, std::int64_t count);
    void remove_from_keys_to_delete(const char *key);
    // Deletes every key that matches the glob pattern, in one script on the server.
    void del_keys_pattern_now(const char *pattern);
    void run_lua_1_params(const char *script, const char *key);
    void run_lua_2_params(const char *script, const char *key1, const char *key2);
    void multi();
    void exec();
    // Empties the whole current database of the server.
    void erase_everything();
    void set_client_name(const char *name);

    void set_connection_details(const char *host, int port);
    void get_connection_details(WCFixedStringBase &outHost, int &outPort) const;
    void set_should_delete_current_keys(bool shouldDelete) noexcept {
        m_shouldDeleteCurrentKeys = shouldDelete;
    }
    bool get_should_delete_current_keys() const noexcept { return m_shouldDeleteCurrentKeys; }
    WTRedisKeysToDelete const &get_keys_to_delete() const noexcept { return m_keysToDelete; }

    // Starts the subscribe thread on `channel` and returns once it listens or has given up. Does
    // nothing while a subscription listens, when not connected, or for a null channel; one that
    // has stopped listening is waited for, and then replaced.
    void subscribe(const char *channel, WTSubscriptionCallback callback, void *user);
    // Publishes "quit" on the channel and waits for the subscribe thread to end. Called from the
    // subscribe thread itself (inside the callback) it only publishes "quit".
    void unsubscribe();
    bool is_listening() const noexcept { return m_listening.load(); }

    // Reads the replies of all pending commands, then empties argv and the stack.
    void commit_pending_commands();
    std::uint64_t get_pending_replies() const noexcept { return m_pendingReplies; }
    void clear_argv() noexcept;
    void clear_stack_and_argv() noexcept;

    // The key/value stack. The forms with a `stack` argument push on the caller's stack.
    void append_key_value_to_stack(const char *key, const char *value);
    void append_key_value_to_stack(const char *key, WCFixedStringBase const &value);
    void append_key_value_to_stack(const char *key, double value);
    void append_key_value_to_stack(const char *key, std::int64_t value);
    void append_key_value_to_stack(const char *key, bool value);
    static void append_key_value_to_stack(const char *key, const char *value, WTRedisStack &stack);
    static void append_key_value_to_stack(const char *key, WCFixedStringBase const &value,
                                          WTRedisStack &stack);
    static void append_key_value_to_stack(const char *key, double value, WTRedisStack &stack);
    static void append_key_value_to_stack(const char *key, std::int64_t value, WTRedisStack &stack);
    static void append_key_value_to_stack(const char *key, bool value, WTRedisStack &stack);
    // "0x" and sixteen upper-case hexadecimal digits.
    void append_key_hex_value_to_stack(const char *key, std::uint64_t value);
    static void append_key_hex_value_to_stack(const char *key, std::uint64_t value,
                                              WTRedisStack &stack);
    WTRedisStack const &get_stack() const noexcept { return m_stack; }
    // argv = command, key (when not null), then key and value of every pair.
    void prepare_argv_from_stack(WTRedisStack const &stack, const char *command, const char *key);

    // For an owner that guards the connection with a lock of its own.
    std::int64_t get_lock_depth() const noexcept { return m_lockDepth; }
    void add_to_lock_depth(std::int64_t delta) noexcept { m_lockDepth += delta; }
    miThread::ThreadMutexInited &get_mutex() noexcept { return m_mutex; }

protected:
    // One command from texts that may hold any bytes. `remember` is a key to keep for deletion.
    WTRedisReply run_now(std::initializer_list<std::string_view> args,
                         std::string_view remember = {});
    void run_pending(std::initializer_list<std::string_view> args, std::string_view remember = {});
    void remember_key(std::string_view key);
    void forget_key(std::string_view key);
    // The low-layer disconnect, for a derived class that overrides disconnect.
    void disconnect_connection();

private:
    WTRedisReply run_argv_now(int argc, const char **argv, const std::size_t *lengths);
    bool run_argv_pending(int argc, const char **argv, const std::size_t *lengths);
    void read_pending_replies();
    void del_all_keys();
    void set_hash_from_stack(const char *key, WTRedisStack const &stack, bool now);
    void free_context() noexcept;

    static int subscribe_thread_entry(void *connection);
    void subscribe_thread_implementation();
    void finish_subscription() noexcept;
    bool is_subscribe_thread() const noexcept;

    std::int64_t m_lockDepth;
    WCFixedString<127> m_host;
    redisContext *m_context;
    std::uint64_t m_pendingReplies;
    bool m_shouldDeleteCurrentKeys;
    int m_port;
    WTRedisKeysToDelete m_keysToDelete;
    WTRedisStack m_stack;
    std::vector<const char *> m_argv;
    std::vector<std::size_t> m_argvLengths;

    // The subscription record. The thread writes it, unsubscribe reads it; both under
    // m_subscriptionLock, which also guards the subscription socket while it is shut down.
    redisContext *m_subscriptionContext;
    WCFixedString<511> m_subscriptionChannel;
    WTSubscriptionCallback m_subscriptionCallback;
    void *m_subscriptionUserData;
    std::atomic<bool> m_listening;
    miThread::ThreadHandle m_subscriptionThread;
    // Set by subscribe until the thread listens or gives up.
    bool m_subscriptionStarting;
    std::atomic<std::uint64_t> m_subscriptionThreadId;
    mutable std::mutex m_subscriptionLock;
    std::condition_variable m_subscriptionChanged;

    miThread::ThreadMutexInited m_mutex;
    WCFixedString<1023> m_spareText;
};

} // namespace Redis
MIREL_NAMESPACE_END
