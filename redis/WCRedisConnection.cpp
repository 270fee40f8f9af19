#include "redis/WCRedisConnection.h"

#include <string>

#include <hiredis/hiredis.h>

#include "core/WUAssert.h"
#include "redis/linux/WURedisPlatform.h"

MIREL_NAMESPACE_BEGIN
namespace Redis {

namespace {

// The longest fixed-arity command of the layer has six words ("SET" key value "NX" "PX" ttl).
constexpr int kMaxFixedArguments = 8;

// Deletes every key that matches KEYS[1]; sent as it stands, blanks included.
constexpr const char *kDelKeysPatternScript =
    "local key_list = redis.call('KEYS', KEYS[1])                                 if "
    "#key_list == 0 then                                     return 0                          "
    "       else                                     return redis.call('DEL', "
    "unpack(key_list))                                 end";

timeval Seconds(int seconds) noexcept {
    timeval value{};
    value.tv_sec = seconds;
    return value;
}

bool IsText(redisReply const *reply) noexcept {
    return reply != nullptr &&
           (reply->type == REDIS_REPLY_STRING || reply->type == REDIS_REPLY_STATUS);
}

std::string_view TextOf(redisReply const *reply) noexcept {
    return IsText(reply) ? std::string_view(reply->str, reply->len) : std::string_view();
}

WTRedisValue ValueOf(redisReply const *reply) noexcept {
    return WTRedisValue(TextOf(reply));
}

WCFixedString<31> Decimal(std::int64_t value) noexcept {
    WCFixedString<31> text;
    text << static_cast<long long>(value);
    return text;
}

} // namespace

void WSRedisReplyDeleter::operator()(redisReply *reply) const noexcept {
    if (reply != nullptr)
        freeReplyObject(reply);
}

WCRedisConnection::WCRedisConnection()
    : WUValidatable(eRedisNotConnected), m_lockDepth(0), m_host(kDefaultHost), m_context(nullptr),
      m_pendingReplies(0), m_shouldDeleteCurrentKeys(true), m_port(kDefaultPort),
      m_subscriptionContext(nullptr), m_subscriptionCallback(nullptr),
      m_subscriptionUserData(nullptr), m_listening(false), m_subscriptionStarting(false),
      m_subscriptionThreadId(0) {
    m_mutex.init();
}

WCRedisConnection::~WCRedisConnection() {
    // Not the virtual disconnect: a derived part is already gone here.
    disconnect_connection();
    m_mutex.uninit();
}

// --- connecting -----------------------------------------------------------------------------

int WCRedisConnection::connect() {
    if (m_context != nullptr) {
        // A connection that died stays dead for the life of the object.
        if (!is_connected() && GetError() == eNoErr)
            SetError(eRedisConnectFailed);
        return GetError();
    }
    SetError(eNoErr);
    if (!IsValid())
        return GetError();
    // A larger number reaches another port (cut to five digits, or wrapped to 16 bits), so a
    // port no server can have fails like an absent server instead.
    if (m_port <= 0 || m_port > 65535) {
        SetError(eRedisConnectFailed);
        return GetError();
    }
    redisContext *context = nullptr;
    {
        Platform::WCStSigPipeBlocker blocker;
        context = redisConnectWithTimeout(m_host.c_str(), m_port, Seconds(kTimeoutSeconds));
    }
    if (context != nullptr && context->err == 0) {
        // Replies are bounded too, so a server that accepts and never answers cannot hang us.
        redisSetTimeout(context, Seconds(kTimeoutSeconds));
        m_context = context;
        m_pendingReplies = 0;
        return eNoErr;
    }
    if (context != nullptr)
        redisFree(context);
    SetError(eRedisConnectFailed);
    return GetError();
}

bool WCRedisConnection::is_connected() const {
    return m_context != nullptr && m_context->err == 0 && IsValid();
}

void WCRedisConnection::disconnect() {
    disconnect_connection();
}

void WCRedisConnection::disconnect_connection() {
    if (m_context == nullptr) {
        SetError(eRedisNotConnected);
        // A subscription that ended on its own may still have its thread to be joined.
        unsubscribe();
        return;
    }
    unsubscribe();
    commit_pending_commands();
    del_all_keys();
    free_context();
    SetError(eRedisNotConnected);
}

void WCRedisConnection::free_context() noexcept {
    if (m_context != nullptr)
        redisFree(m_context);
    m_context = nullptr;
    m_pendingReplies = 0;
}

void WCRedisConnection::set_connection_details(const char *host, int port) {
    MIREL_ASSERT_RETURN(host != nullptr, );
    m_host = host;
    m_port = port;
}

void WCRedisConnection::get_connection_details(WCFixedStringBase &outHost, int &outPort) const {
    outHost = m_host;
    outPort = m_port;
}

// --- sending --------------------------------------------------------------------------------

WTRedisReply WCRedisConnection::run_argv_now(int argc, const char **argv,
                                             const std::size_t *lengths) {
    if (!is_connected())
        return {};
    read_pending_replies();
    if (!is_connected())
        return {};
    Platform::WCStSigPipeBlocker blocker;
    return WTRedisReply(
        static_cast<redisReply *>(redisCommandArgv(m_context, argc, argv, lengths)));
}

bool WCRedisConnection::run_argv_pending(int argc, const char **argv, const std::size_t *lengths) {
    if (!is_connected())
        return false;
    if (redisAppendCommandArgv(m_context, argc, argv, lengths) != REDIS_OK)
        return false;
    ++m_pendingReplies;
    return true;
}

WTRedisReply WCRedisConnection::run_now(std::initializer_list<std::string_view> args,
                                        std::string_view remember) {
    const char *argv[kMaxFixedArguments];
    std::size_t lengths[kMaxFixedArguments];
    int argc = 0;
    for (std::string_view arg : args) {
        if (argc == kMaxFixedArguments)
            break;
        argv[argc] = arg.data() != nullptr ? arg.data() : "";
        lengths[argc] = arg.size();
        ++argc;
    }
    WTRedisReply reply = run_argv_now(argc, argv, lengths);
    if (reply != nullptr)
        remember_key(remember);
    return reply;
}

void WCRedisConnection::run_pending(std::initializer_list<std::string_view> args,
                                    std::string_view remember) {
    const char *argv[kMaxFixedArguments];
    std::size_t lengths[kMaxFixedArguments];
    int argc = 0;
    for (std::string_view arg : args) {
        if (argc == kMaxFixedArguments)
            break;
        argv[argc] = arg.data() != nullptr ? arg.data() : "";
        lengths[argc] = arg.size();
        ++argc;
    }
    if (run_argv_pending(argc, argv, lengths))
        remember_key(remember);
}

void WCRedisConnection::read_pending_replies() {
    if (m_pendingReplies == 0)
        return;
    Platform::WCStSigPipeBlocker blocker;
    while (m_pendingReplies != 0 && is_connected()) {
        void *reply = nullptr;
        if (redisGetReply(m_context, &reply) != REDIS_OK)
            break;
        freeReplyObject(reply);
        --m_pendingReplies;
    }
    // Replies of a dead socket will never come.
    if (!is_connected())
        m_pendingReplies = 0;
}

void WCRedisConnection::commit_pending_commands() {
    read_pending_replies();
    m_pendingReplies = 0;
    clear_stack_and_argv();
}

void WCRedisConnection::clear_argv() noexcept {
    m_argv.clear();
    m_argvLengths.clear();
}

void WCRedisConnection::clear_stack_and_argv() noexcept {
    m_stack.clear();
    clear_argv();
}

void WCRedisConnection::remember_key(std::string_view key) {
    if (!m_shouldDeleteCurrentKeys || key.empty())
        return;
    if (m_keysToDelete.find(key) == m_keysToDelete.end())
        m_keysToDelete.emplace(key);
}

void WCRedisConnection::forget_key(std::string_view key) {
    auto const found = m_keysToDelete.find(key);
    if (found != m_keysToDelete.end())
        m_keysToDelete.erase(found);
}

void WCRedisConnection::del_all_keys() {
    if (m_keysToDelete.empty() || !is_connected())
        return;
    clear_argv();
    m_argv.push_back("DEL");
    m_argvLengths.push_back(3);
    for (std::string const &key : m_keysToDelete) {
        m_argv.push_back(key.c_str());
        m_argvLengths.push_back(key.size());
    }
    run_argv_now(static_cast<int>(m_argv.size()), m_argv.data(), m_argvLengths.data());
    clear_argv();
}

// --- writes ---------------------------------------------------------------------------------

void WCRedisConnection::add_set_item_now(const char *key, const char *member) {
    MIREL_ASSERT_RETURN(key != nullptr && member != nullptr, );
    run_now({"SADD", key, member}, key);
}

void WCRedisConnection::add_set_item_pending(const char *key, const char *member) {
    MIREL_ASSERT_RETURN(key != nullptr && member != nullptr, );
    run_pending({"SADD", key, member}, key);
}

void WCRedisConnection::remove_value_from_set_now(const char *key, const char *member) {
    MIREL_ASSERT_RETURN(key != nullptr && member != nullptr, );
    run_now({"SREM", key, member});
}

void WCRedisConnection::remove_value_from_set_pending(const char *key, const char *member) {
    MIREL_ASSERT_RETURN(key != nullptr && member != nullptr, );
    run_pending({"SREM", key, member});
}

void WCRedisConnection::move_value_from_set_to_set_now(const char *from, const char *to,
                                                       const char *member) {
    MIREL_ASSERT_RETURN(from != nullptr && to != nullptr && member != nullptr, );
    run_now({"SMOVE", from, to, member});
}

void WCRedisConnection::move_value_from_set_to_set_pending(const char *from, const char *to,
                                                           const char *member) {
    MIREL_ASSERT_RETURN(from != nullptr && to != nullptr && member != nullptr, );
    run_pending({"SMOVE", from, to, member});
}

void WCRedisConnection::set_value_now(const char *key, const char *value) {
    MIREL_ASSERT_RETURN(key != nullptr && value != nullptr, );
    run_now({"SET", key, value}, key);
}

void WCRedisConnection::set_value_pending(const char *key, const char *value) {
    MIREL_ASSERT_RETURN(key != nullptr && value != nullptr, );
    run_pending({"SET", key, value}, key);
}

void WCRedisConnection::set_hash_item_now(const char *key, const char *field, const char *value) {
    MIREL_ASSERT_RETURN(key != nullptr && field != nullptr && value != nullptr, );
    run_now({"HSET", key, field, value}, key);
}

void WCRedisConnection::set_hash_item_pending(const char *key, const char *field,
                                              const char *value) {
    MIREL_ASSERT_RETURN(key != nullptr && field != nullptr && value != nullptr, );
    run_pending({"HSET", key, field, value}, key);
}

void WCRedisConnection::del_hash_item_now(const char *key, const char *field) {
    MIREL_ASSERT_RETURN(key != nullptr && field != nullptr, );
    run_now({"HDEL", key, field});
}

void WCRedisConnection::del_hash_item_pending(const char *key, const char *field) {
    MIREL_ASSERT_RETURN(key != nullptr && field != nullptr, );
    run_pending({"HDEL", key, field});
}

void WCRedisConnection::del_key_now(const char *key) {
    MIREL_ASSERT_RETURN(key != nullptr, );
    forget_key(key);
    run_now({"DEL", key});
}

void WCRedisConnection::del_key_pending(const char *key) {
    MIREL_ASSERT_RETURN(key != nullptr, );
    forget_key(key);
    run_pending({"DEL", key});
}

void WCRedisConnection::left_push_to_list_now(const char *key, const char *value) {
    MIREL_ASSERT_RETURN(key != nullptr && value != nullptr, );
    run_now({"LPUSH", key, value});
}

void WCRedisConnection::left_push_to_list_pending(const char *key, const char *value) {
    MIREL_ASSERT_RETURN(key != nullptr && value != nullptr, );
    run_pending({"LPUSH", key, value});
}

void WCRedisConnection::right_push_to_list_now(const char *key, const char *value) {
    MIREL_ASSERT_RETURN(key != nullptr && value != nullptr, );
    run_now({"RPUSH", key, value});
}

void WCRedisConnection::right_push_to_list_pending(const char *key, const char *value) {
    MIREL_ASSERT_RETURN(key != nullptr && value != nullptr, );
    run_pending({"RPUSH", key, value});
}

void WCRedisConnection::publish_now(const char *channel, const char *message) {
    MIREL_ASSERT_RETURN(channel != nullptr && message != nullptr, );
    run_now({"PUBLISH", channel, message});
}

void WCRedisConnection::publish_pending(const char *channel, const char *message) {
    MIREL_ASSERT_RETURN(channel != nullptr && message != nullptr, );
    run_pending({"PUBLISH", channel, message});
}

void WCRedisConnection::set_hash_from_stack(const char *key, WTRedisStack const &stack, bool now) {
    MIREL_ASSERT_RETURN(key != nullptr, );
    // "HMSET" with no field is a syntax error on the server; there is nothing to write anyway.
    if (stack.empty() || !is_connected())
        return;
    prepare_argv_from_stack(stack, "HMSET", key);
    int const argc = static_cast<int>(m_argv.size());
    bool const sent = now ? run_argv_now(argc, m_argv.data(), m_argvLengths.data()) != nullptr
                          : run_argv_pending(argc, m_argv.data(), m_argvLengths.data());
    clear_argv();
    if (sent)
        remember_key(key);
}

void WCRedisConnection::set_hash_from_stack_now(const char *key) {
    set_hash_from_stack(key, m_stack, true);
    m_stack.clear();
}

void WCRedisConnection::set_hash_from_stack_pending(const char *key) {
    // The command is copied into the send buffer at once, so the stack can go.
    set_hash_from_stack(key, m_stack, false);
    m_stack.clear();
}

void WCRedisConnection::set_hash_from_stack_now(const char *key, WTRedisStack const &stack) {
    set_hash_from_stack(key, stack, true);
}

void WCRedisConnection::set_values_from_stack_now(WTRedisStack const &stack) {
    if (stack.empty() || !is_connected())
        return;
    prepare_argv_from_stack(stack, "MSET", nullptr);
    bool const sent = run_argv_now(static_cast<int>(m_argv.size()), m_argv.data(),
                                   m_argvLengths.data()) != nullptr;
    clear_argv();
    if (sent) {
        for (WTRedisKeyValue const &pair : stack)
            remember_key(pair.first.view());
    }
}

void WCRedisConnection::set_values_from_stack_now() {
    set_values_from_stack_now(m_stack);
    m_stack.clear();
}

// --- reads and other immediate commands -----------------------------------------------------

WTRedisValue WCRedisConnection::get_value(const char *key) {
    MIREL_ASSERT_RETURN(key != nullptr, {});
    return ValueOf(run_now({"GET", key}).get());
}

WTRedisValue WCRedisConnection::get_hash_value(const char *key, const char *field) {
    MIREL_ASSERT_RETURN(key != nullptr && field != nullptr, {});
    return ValueOf(run_now({"HGET", key, field}).get());
}

void WCRedisConnection::get_hash(const char *key, WTRedisHash &outHash) {
    MIREL_ASSERT_RETURN(key != nullptr, );
    WTRedisReply const reply = run_now({"HGETALL", key});
    if (reply == nullptr || reply->type != REDIS_REPLY_ARRAY)
        return;
    for (std::size_t i = 0; i + 1 < reply->elements; i += 2) {
        redisReply const *field = reply->element[i];
        redisReply const *value = reply->element[i + 1];
        if (IsText(field))
            outHash[WTRedisKey(TextOf(field))] = TextOf(value);
    }
}

namespace {

void FillList(redisReply const *reply, WTRedisValueList &outList) {
    if (reply == nullptr || reply->type != REDIS_REPLY_ARRAY)
        return;
    outList.reserve(reply->elements);
    for (std::size_t i = 0; i < reply->elements; ++i) {
        if (IsText(reply->element[i]))
            outList.emplace_back(TextOf(reply->element[i]));
    }
}

} // namespace

void WCRedisConnection::get_list(const char *key, WTRedisValueList &outList) {
    MIREL_ASSERT_RETURN(key != nullptr, );
    outList.clear();
    FillList(run_now({"LRANGE", key, "0", "-1"}).get(), outList);
}

WTRedisValue WCRedisConnection::get_list_value_by_index(const char *key, const char *index) {
    MIREL_ASSERT_RETURN(key != nullptr && index != nullptr, {});
    return ValueOf(run_now({"LINDEX", key, index}).get());
}

void WCRedisConnection::get_set(const char *key, WTRedisValueList &outMembers) {
    MIREL_ASSERT_RETURN(key != nullptr, );
    outMembers.clear();
    FillList(run_now({"SMEMBERS", key}).get(), outMembers);
}

void WCRedisConnection::get_all_keys(WTRedisKeySet &outKeys, const char *pattern) {
    MIREL_ASSERT_RETURN(pattern != nullptr, );
    WTRedisReply const reply = run_now({"KEYS", pattern});
    if (reply == nullptr || reply->type != REDIS_REPLY_ARRAY)
        return;
    for (std::size_t i = 0; i < reply->elements; ++i) {
        if (IsText(reply->element[i]))
            outKeys.emplace(TextOf(reply->element[i]));
    }
}

WTRedisTypeName WCRedisConnection::get_type(const char *key) {
    MIREL_ASSERT_RETURN(key != nullptr, WTRedisTypeName("no reply"));
    WTRedisReply const reply = run_now({"TYPE", key});
    if (reply == nullptr)
        return WTRedisTypeName("no reply");
    return WTRedisTypeName(TextOf(reply.get()));
}

bool WCRedisConnection::is_type(const char *key, const char *type) {
    if (type == nullptr || key == nullptr)
        return false;
    return get_type(key) == type;
}

bool WCRedisConnection::is_hash_key(const char *key, const char *field) {
    MIREL_ASSERT_RETURN(key != nullptr && field != nullptr, false);
    WTRedisReply const reply = run_now({"HEXISTS", key, field});
    return reply != nullptr && reply->type == REDIS_REPLY_INTEGER && reply->integer != 0;
}

WTRedisValue WCRedisConnection::left_pop_list_value(const char *key) {
    MIREL_ASSERT_RETURN(key != nullptr, {});
    return ValueOf(run_now({"LPOP", key}).get());
}

WTRedisValue WCRedisConnection::right_pop_list_value(const char *key) {
    MIREL_ASSERT_RETURN(key != nullptr, {});
    return ValueOf(run_now({"RPOP", key}).get());
}

std::int64_t WCRedisConnection::increment_value(const char *key, std::int64_t delta) {
    MIREL_ASSERT_RETURN(key != nullptr, -1);
    WTRedisReply const reply = run_now({"INCRBY", key, Decimal(delta).view()});
    if (reply == nullptr || reply->type != REDIS_REPLY_INTEGER)
        return -1;
    return reply->integer;
}

std::int64_t WCRedisConnection::increment_hash_value(const char *key, const char *field,
                                                     std::int64_t delta) {
    MIREL_ASSERT_RETURN(key != nullptr && field != nullptr, -1);
    WTRedisReply const reply = run_now({"HINCRBY", key, field, Decimal(delta).view()});
    if (reply == nullptr || reply->type != REDIS_REPLY_INTEGER)
        return -1;
    return reply->integer;
}

bool WCRedisConnection::set_value_if_not_exist(const char *key, const char *value,
                                               std::int64_t ttlMs) {
    MIREL_ASSERT_RETURN(key != nullptr && value != nullptr, false);
    WTRedisReply const reply = ttlMs != 0
                                   ? run_now({"SET", key, value, "NX", "PX", Decimal(ttlMs).view()})
                                   : run_now({"SET", key, value, "NX"});
    if (reply == nullptr || reply->type == REDIS_REPLY_NIL || reply->type == REDIS_REPLY_ERROR)
        return false;
    remember_key(key);
    return true;
}

void WCRedisConnection::set_hash_item_now_if_hash_exists(const char *key, const char *field,
                                                         const char *value) {
    MIREL_ASSERT_RETURN(key != nullptr && field != nullptr && value != nullptr, );
    // Writing into a hash that is already there does not make it ours to delete at the end.
    if (get_type(key) == "hash")
        run_now({"HSET", key, field, value});
}

void WCRedisConnection::set_hash_item_now_if_key_exists(const char *key, const char *field,
                                                        const char *value) {
    MIREL_ASSERT_RETURN(key != nullptr && field != nullptr && value != nullptr, );
    if (is_hash_key(key, field))
        run_now({"HSET", key, field, value});
}

void WCRedisConnection::remove_from_list_by_value_now(const char *key, const char *value,
                                                      std::int64_t count) {
    MIREL_ASSERT_RETURN(key != nullptr && value != nullptr, );
    run_now({"LREM", key, Decimal(count).view(), value});
}

void WCRedisConnection::remove_from_keys_to_delete(const char *key) {
    MIREL_ASSERT_RETURN(key != nullptr, );
    forget_key(key);
}

void WCRedisConnection::del_keys_pattern_now(const char *pattern) {
    MIREL_ASSERT_RETURN(pattern != nullptr, );
    run_now({"EVAL", kDelKeysPatternScript, "1", pattern});
}

void WCRedisConnection::run_lua_1_params(const char *script, const char *key) {
    MIREL_ASSERT_RETURN(script != nullptr && key != nullptr, );
    run_now({"EVAL", script, "1", key});
}

void WCRedisConnection::run_lua_2_params(const char *script, const char *key1, const char *key2) {
    MIREL_ASSERT_RETURN(script != nullptr && key1 != nullptr && key2 != nullptr, );
    run_now({"EVAL", script, "2", key1, key2});
}

void WCRedisConnection::multi() {
    run_now({"MULTI"});
}

void WCRedisConnection::exec() {
    run_now({"EXEC"});
}

void WCRedisConnection::erase_everything() {
    run_now({"FLUSHDB"});
}

void WCRedisConnection::set_client_name(const char *name) {
    MIREL_ASSERT_RETURN(name != nullptr, );
    run_now({"CLIENT", "SETNAME", name});
}

// --- the key/value stack --------------------------------------------------------------------

void WCRedisConnection::append_key_value_to_stack(const char *key, const char *value,
                                                  WTRedisStack &stack) {
    MIREL_ASSERT_RETURN(key != nullptr, );
    stack.emplace_back();
    stack.back().first = key;
    stack.back().second = value; // null leaves the value empty
}

void WCRedisConnection::append_key_value_to_stack(const char *key, WCFixedStringBase const &value,
                                                  WTRedisStack &stack) {
    MIREL_ASSERT_RETURN(key != nullptr, );
    stack.emplace_back();
    stack.back().first = key;
    stack.back().second = value;
}

void WCRedisConnection::append_key_value_to_stack(const char *key, double value,
                                                  WTRedisStack &stack) {
    WCFixedString<31> text;
    text.append_double_with_precision(value, 10);
    append_key_value_to_stack(key, text, stack);
}

void WCRedisConnection::append_key_value_to_stack(const char *key, std::int64_t value,
                                                  WTRedisStack &stack) {
    append_key_value_to_stack(key, Decimal(value), stack);
}

void WCRedisConnection::append_key_value_to_stack(const char *key, bool value,
                                                  WTRedisStack &stack) {
    append_key_value_to_stack(key, value ? "true" : "false", stack);
}

void WCRedisConnection::append_key_hex_value_to_stack(const char *key, std::uint64_t value,
                                                      WTRedisStack &stack) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    char text[19] = {'0', 'x'};
    for (int i = 0; i < 16; ++i)
        text[2 + i] = kDigits[(value >> (60 - 4 * i)) & 0xF];
    text[18] = 0;
    append_key_value_to_stack(key, static_cast<const char *>(text), stack);
}

void WCRedisConnection::append_key_value_to_stack(const char *key, const char *value) {
    append_key_value_to_stack(key, value, m_stack);
}

void WCRedisConnection::append_key_value_to_stack(const char *key, WCFixedStringBase const &value) {
    append_key_value_to_stack(key, value, m_stack);
}

void WCRedisConnection::append_key_value_to_stack(const char *key, double value) {
    append_key_value_to_stack(key, value, m_stack);
}

void WCRedisConnection::append_key_value_to_stack(const char *key, std::int64_t value) {
    append_key_value_to_stack(key, value, m_stack);
}

void WCRedisConnection::append_key_value_to_stack(const char *key, bool value) {
    append_key_value_to_stack(key, value, m_stack);
}

void WCRedisConnection::append_key_hex_value_to_stack(const char *key, std::uint64_t value) {
    append_key_hex_value_to_stack(key, value, m_stack);
}

void WCRedisConnection::prepare_argv_from_stack(WTRedisStack const &stack, const char *command,
                                                const char *key) {
    MIREL_ASSERT_RETURN(command != nullptr, );
    clear_argv();
    m_argv.push_back(command);
    m_argvLengths.push_back(std::char_traits<char>::length(command));
    if (key != nullptr) {
        m_argv.push_back(key);
        m_argvLengths.push_back(std::char_traits<char>::length(key));
    }
    for (WTRedisKeyValue const &pair : stack) {
        m_argv.push_back(pair.first.c_str());
        m_argvLengths.push_back(pair.first.size());
        m_argv.push_back(pair.second.c_str());
        m_argvLengths.push_back(pair.second.size());
    }
}

// --- the subscription -----------------------------------------------------------------------

bool WCRedisConnection::is_subscribe_thread() const noexcept {
    std::uint64_t const id = m_subscriptionThreadId.load();
    return id != 0 && id == miThread::GetCurrentThreadRef().GetID();
}

void WCRedisConnection::subscribe(const char *channel, WTSubscriptionCallback callback,
                                  void *user) {
    MIREL_ASSERT_RETURN(channel != nullptr, );
    if (!is_connected() || is_subscribe_thread())
        return;
    {
        std::lock_guard<std::mutex> guard(m_subscriptionLock);
        if (m_listening.load() || m_subscriptionStarting)
            return;
    }
    // A subscription that ended on its own leaves its thread to be joined, and may still be
    // closing its socket; waiting for it lets a caller subscribe again as soon as the old one
    // stopped listening, instead of being ignored for that moment.
    unsubscribe();

    std::unique_lock<std::mutex> lock(m_subscriptionLock);
    m_subscriptionChannel = channel;
    m_subscriptionCallback = callback;
    m_subscriptionUserData = user;
    m_subscriptionStarting = true;
    miThread::ThreadHandle handle;
    lock.unlock();
    WTErr const started = miThread::StartThread(&subscribe_thread_entry, this,
                                                miThread::kThreadPriorityHighest, handle);
    lock.lock();
    if (started != eNoErr) {
        m_subscriptionChannel.clear();
        m_subscriptionCallback = nullptr;
        m_subscriptionUserData = nullptr;
        m_subscriptionStarting = false;
        return;
    }
    m_subscriptionThread = handle;
    // Returning before the thread listens would let an early unsubscribe publish "quit" to
    // nobody and then wait for ever; the wait is bounded by the subscription's time-outs.
    m_subscriptionChanged.wait(lock, [this] { return !m_subscriptionStarting; });
}

void WCRedisConnection::unsubscribe() {
    if (is_subscribe_thread()) {
        // Joining would wait for ourselves; the "quit" ends the loop once we return to it.
        if (m_listening.load()) {
            WCFixedString<511> channel;
            {
                std::lock_guard<std::mutex> guard(m_subscriptionLock);
                channel = m_subscriptionChannel;
            }
            publish_now(channel.c_str(), "quit");
        }
        return;
    }
    miThread::ThreadHandle handle;
    bool active = false;
    WCFixedString<511> channel;
    {
        std::lock_guard<std::mutex> guard(m_subscriptionLock);
        handle = m_subscriptionThread;
        active = m_subscriptionContext != nullptr || m_listening.load();
        channel = m_subscriptionChannel;
    }
    if (handle.IsEmpty())
        return;
    if (active) {
        bool delivered = false;
        if (is_connected()) {
            WTRedisReply const reply = run_now({"PUBLISH", channel.view(), "quit"});
            delivered =
                reply != nullptr && reply->type == REDIS_REPLY_INTEGER && reply->integer > 0;
        }
        if (!delivered) {
            // Nobody can tell the thread to stop through the server: wake its read directly.
            std::lock_guard<std::mutex> guard(m_subscriptionLock);
            if (m_subscriptionContext != nullptr)
                Platform::ShutdownSocket(m_subscriptionContext->fd);
        }
    }
    miThread::JoinThread(handle, nullptr, miThread::kInfiniteTimeout);
    std::lock_guard<std::mutex> guard(m_subscriptionLock);
    if (m_subscriptionThread == handle)
        miThread::Close(m_subscriptionThread);
}

int WCRedisConnection::subscribe_thread_entry(void *connection) {
    auto *self = static_cast<WCRedisConnection *>(connection);
    try {
        self->subscribe_thread_implementation();
    } catch (...) {
        // Out of memory for a message: end the subscription cleanly, since subscribe and
        // unsubscribe wait for the record to be reset.
        redisContext *context = nullptr;
        {
            std::lock_guard<std::mutex> guard(self->m_subscriptionLock);
            context = self->m_subscriptionContext;
            self->m_subscriptionContext = nullptr;
        }
        if (context != nullptr)
            redisFree(context);
        self->finish_subscription();
        return eExceptionErr;
    }
    return eNoErr;
}

void WCRedisConnection::finish_subscription() noexcept {
    {
        std::lock_guard<std::mutex> guard(m_subscriptionLock);
        m_subscriptionContext = nullptr;
        m_subscriptionChannel.clear();
        m_subscriptionCallback = nullptr;
        m_subscriptionUserData = nullptr;
        m_listening = false;
        m_subscriptionStarting = false;
        m_subscriptionThreadId = 0;
    }
    m_subscriptionChanged.notify_all();
}

void WCRedisConnection::subscribe_thread_implementation() {
    m_subscriptionThreadId = miThread::GetCurrentThreadRef().GetID();
    WCFixedString<511> channel;
    WTSubscriptionCallback callback = nullptr;
    void *user = nullptr;
    {
        std::lock_guard<std::mutex> guard(m_subscriptionLock);
        channel = m_subscriptionChannel;
        callback = m_subscriptionCallback;
        user = m_subscriptionUserData;
    }
    miThread::SetThreadName(channel.c_str());
    Platform::WCStSigPipeBlocker blocker;

    redisContext *context =
        redisConnectWithTimeout(m_host.c_str(), m_port, Seconds(kSubscriptionTimeoutSeconds));
    if (context == nullptr || context->err != 0) {
        if (context != nullptr)
            redisFree(context);
        finish_subscription();
        return;
    }
    // Bounded while setting up; the loop below then waits for messages without limit.
    redisSetTimeout(context, Seconds(kSubscriptionTimeoutSeconds));
    {
        std::lock_guard<std::mutex> guard(m_subscriptionLock);
        m_subscriptionContext = context;
    }
    auto command = [context](std::initializer_list<std::string_view> args) {
        const char *argv[4];
        std::size_t lengths[4];
        int argc = 0;
        for (std::string_view arg : args) {
            argv[argc] = arg.data();
            lengths[argc] = arg.size();
            ++argc;
        }
        return WTRedisReply(
            static_cast<redisReply *>(redisCommandArgv(context, argc, argv, lengths)));
    };
    auto closeContext = [this, context] {
        {
            std::lock_guard<std::mutex> guard(m_subscriptionLock);
            m_subscriptionContext = nullptr;
        }
        redisFree(context);
    };

    command({"CLIENT", "SETNAME", channel.view()});
    if (command({"SUBSCRIBE", channel.view()}) == nullptr) {
        closeContext();
        finish_subscription();
        return;
    }
    redisSetTimeout(context, Seconds(0));
    {
        std::lock_guard<std::mutex> guard(m_subscriptionLock);
        m_listening = true;
        m_subscriptionStarting = false;
    }
    m_subscriptionChanged.notify_all();

    for (;;) {
        void *raw = nullptr;
        if (redisGetReply(context, &raw) != REDIS_OK)
            break;
        WTRedisReply const reply(static_cast<redisReply *>(raw));
        if (m_listening.load() && reply != nullptr && reply->type == REDIS_REPLY_ARRAY &&
            reply->elements >= 3 && reply->element[1]->type == REDIS_REPLY_STRING &&
            reply->element[2]->type == REDIS_REPLY_STRING) {
            std::string_view const fullChannel = TextOf(reply->element[1]);
            WCFixedString<255> const from(fullChannel);
            std::string const message(TextOf(reply->element[2]));
            if (message == "quit") {
                // Only our own channel may stop us; a pattern subscriber could see others. The
                // whole name is compared, since a channel cut to what the callback sees would
                // never match a long one and unsubscribe would wait for ever.
                if (fullChannel == channel.view())
                    m_listening = false;
            } else if (callback != nullptr) {
                try {
                    m_listening = callback(from.c_str(), message.c_str(), user);
                } catch (...) {
                    // A callback that throws has no way to go on; treat it as a false answer.
                    m_listening = false;
                }
            }
        }
        if (!m_listening.load())
            break;
    }
    redisSetTimeout(context, Seconds(kSubscriptionTimeoutSeconds));
    command({"UNSUBSCRIBE", channel.view()});
    closeContext();
    finish_subscription();
}

} // namespace Redis
MIREL_NAMESPACE_END
