#pragma once

#include <atomic>
#include <filesystem>
#include <string>
#include <sys/types.h>
#include <thread>
#include <vector>

namespace mirel_test {

// A free TCP port on 127.0.0.1 at the time of the call (0 when none could be found).
int FindFreeLoopbackPort();

// A real redis-server on 127.0.0.1 for the life of the object: a free port, a configuration file
// written in `folder` (no persistence, its working folder inside `folder`), started as a child
// process and waited for until it answers PING (at most a few seconds). The destructor kills and
// reaps it. `running()` tells whether the start worked; the reason is in `error()`.
// Uses no test framework, so benchmarks can start a server too.
class WCRedisServer {
public:
    explicit WCRedisServer(std::filesystem::path const &folder);
    ~WCRedisServer();
    WCRedisServer(WCRedisServer const &) = delete;
    WCRedisServer &operator=(WCRedisServer const &) = delete;

    bool running() const { return m_pid > 0; }
    std::string const &error() const { return m_error; }
    int port() const { return m_port; }
    // The server's configuration file: it holds "port <port>" and "bind 127.0.0.1" lines.
    std::filesystem::path const &config_path() const { return m_configPath; }
    // Ends the server at once (SIGKILL) and reaps it, as a crash would.
    void kill_now();

private:
    bool start_once(std::filesystem::path const &folder);
    bool wait_until_answering();

    pid_t m_pid = -1;
    int m_port = 0;
    std::filesystem::path m_configPath;
    std::string m_error;
};

// A listening socket on 127.0.0.1 that accepts every connection and never writes a byte.
// Stands for a server that hangs. Connections are closed when the object goes.
class WCSilentServer {
public:
    WCSilentServer();
    ~WCSilentServer();
    WCSilentServer(WCSilentServer const &) = delete;
    WCSilentServer &operator=(WCSilentServer const &) = delete;

    bool running() const { return m_listenFd >= 0; }
    int port() const { return m_port; }

private:
    void accept_loop();

    int m_listenFd = -1;
    int m_port = 0;
    std::atomic<bool> m_stop{false};
    std::vector<int> m_accepted;
    std::thread m_thread;
};

// Runs a program with arguments, waits for it (bounded by `timeoutSeconds`, then killed) and
// returns its standard output; `outExitCode` gets its exit status, -1 on failure.
std::string RunAndCapture(std::vector<std::string> const &argv, int timeoutSeconds,
                          int &outExitCode);

} // namespace mirel_test
