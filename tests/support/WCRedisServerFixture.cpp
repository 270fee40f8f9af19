#include "tests/support/WCRedisServerFixture.h"

#include <arpa/inet.h>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <netinet/in.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace mirel_test {

namespace {

using Clock = std::chrono::steady_clock;

sockaddr_in Loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

// One PING over a fresh socket, each step bounded by a short time-out.
bool Ping(int port) {
    int const fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return false;
    timeval timeout{0, 200 * 1000};
    setsockopt(fd, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof(timeout));
    setsockopt(fd, SOL_SOCKET, SO_SNDTIMEO, &timeout, sizeof(timeout));
    sockaddr_in const address = Loopback(port);
    bool answered = false;
    if (connect(fd, reinterpret_cast<sockaddr const *>(&address), sizeof(address)) == 0) {
        static char const request[] = "PING\r\n";
        if (send(fd, request, sizeof(request) - 1, MSG_NOSIGNAL) ==
            static_cast<ssize_t>(sizeof(request) - 1)) {
            char reply[16] = {};
            ssize_t const got = recv(fd, reply, sizeof(reply) - 1, 0);
            answered = got >= 5 && std::strncmp(reply, "+PONG", 5) == 0;
        }
    }
    close(fd);
    return answered;
}

std::vector<char *> ArgvOf(std::vector<std::string> const &args) {
    std::vector<char *> argv;
    for (auto const &arg : args)
        argv.push_back(const_cast<char *>(arg.c_str()));
    argv.push_back(nullptr);
    return argv;
}

} // namespace

int FindFreeLoopbackPort() {
    int const fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return 0;
    sockaddr_in address = Loopback(0);
    socklen_t length = sizeof(address);
    int port = 0;
    if (bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof(address)) == 0 &&
        getsockname(fd, reinterpret_cast<sockaddr *>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    close(fd);
    return port;
}

// --- WCRedisServer ----------------------------------------------------------------------------

WCRedisServer::WCRedisServer(std::filesystem::path const &folder) {
    // The port may be taken between finding it and the server binding it; try a few.
    for (int attempt = 0; attempt < 3 && !running(); ++attempt)
        start_once(folder);
}

WCRedisServer::~WCRedisServer() {
    kill_now();
}

void WCRedisServer::kill_now() {
    if (m_pid <= 0)
        return;
    ::kill(m_pid, SIGKILL);
    int status = 0;
    while (waitpid(m_pid, &status, 0) < 0 && errno == EINTR) {
    }
    m_pid = -1;
}

bool WCRedisServer::start_once(std::filesystem::path const &folder) {
    m_port = FindFreeLoopbackPort();
    if (m_port == 0) {
        m_error = "no free port";
        return false;
    }
    std::filesystem::path const dataFolder = folder / "redis-data";
    std::error_code ignored;
    std::filesystem::create_directories(dataFolder, ignored);
    m_configPath = folder / "redis.conf";
    {
        std::ofstream config(m_configPath);
        config << "port " << m_port << "\n"
               << "bind 127.0.0.1\n"
               << "save \"\"\n"
               << "appendonly no\n"
               << "daemonize no\n"
               << "dir \"" << dataFolder.string() << "\"\n"
               << "logfile \"\"\n";
        if (!config) {
            m_error = "cannot write " + m_configPath.string();
            return false;
        }
    }
    std::string const logPath = (folder / "redis.log").string();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, logPath.c_str(),
                                     O_WRONLY | O_CREAT | O_APPEND, 0644);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    std::vector<std::string> const args{"redis-server", m_configPath.string()};
    auto argv = ArgvOf(args);
    pid_t pid = -1;
    int const spawned = posix_spawnp(&pid, "redis-server", &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (spawned != 0) {
        m_error = std::string("cannot start redis-server: ") + std::strerror(spawned);
        return false;
    }
    m_pid = pid;
    if (wait_until_answering())
        return true;
    kill_now();
    m_error = "redis-server did not answer PING on port " + std::to_string(m_port);
    return false;
}

bool WCRedisServer::wait_until_answering() {
    auto const deadline = Clock::now() + std::chrono::seconds(5);
    while (Clock::now() < deadline) {
        int status = 0;
        if (waitpid(m_pid, &status, WNOHANG) == m_pid) {
            m_pid = -1; // it ended by itself, most likely on a taken port
            return false;
        }
        if (Ping(m_port))
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return false;
}

// --- WCSilentServer ---------------------------------------------------------------------------

WCSilentServer::WCSilentServer() {
    int const fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return;
    sockaddr_in address = Loopback(0);
    socklen_t length = sizeof(address);
    if (bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof(address)) != 0 ||
        listen(fd, 16) != 0 ||
        getsockname(fd, reinterpret_cast<sockaddr *>(&address), &length) != 0) {
        close(fd);
        return;
    }
    m_listenFd = fd;
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { accept_loop(); });
}

WCSilentServer::~WCSilentServer() {
    m_stop = true;
    if (m_thread.joinable())
        m_thread.join();
    for (int fd : m_accepted)
        close(fd);
    if (m_listenFd >= 0)
        close(m_listenFd);
}

void WCSilentServer::accept_loop() {
    while (!m_stop.load()) {
        pollfd waiting{m_listenFd, POLLIN, 0};
        if (poll(&waiting, 1, 50) > 0) {
            int const fd = accept4(m_listenFd, nullptr, nullptr, SOCK_CLOEXEC);
            if (fd >= 0)
                m_accepted.push_back(fd);
        }
    }
}

// --- RunAndCapture ----------------------------------------------------------------------------

std::string RunAndCapture(std::vector<std::string> const &args, int timeoutSeconds,
                          int &outExitCode) {
    outExitCode = -1;
    int pipeFds[2];
    if (pipe2(pipeFds, O_CLOEXEC) != 0)
        return {};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeFds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    auto argv = ArgvOf(args);
    pid_t pid = -1;
    int const spawned = posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(pipeFds[1]);
    if (spawned != 0) {
        close(pipeFds[0]);
        return {};
    }
    std::string output;
    auto const deadline = Clock::now() + std::chrono::seconds(timeoutSeconds);
    bool timedOut = false;
    for (;;) {
        auto const left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) {
            timedOut = true;
            break;
        }
        pollfd waiting{pipeFds[0], POLLIN, 0};
        int const ready = poll(&waiting, 1, static_cast<int>(left));
        if (ready < 0 && errno == EINTR)
            continue;
        if (ready <= 0) {
            timedOut = ready == 0;
            break;
        }
        char buffer[4096];
        ssize_t const got = read(pipeFds[0], buffer, sizeof(buffer));
        if (got <= 0)
            break;
        output.append(buffer, static_cast<std::size_t>(got));
    }
    close(pipeFds[0]);
    if (timedOut)
        ::kill(pid, SIGKILL);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {
    }
    if (!timedOut && WIFEXITED(status))
        outExitCode = WEXITSTATUS(status);
    return output;
}

} // namespace mirel_test
