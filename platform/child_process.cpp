#include "platform/child_process.h"

#include "keeper/process_end.h"

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#ifndef __linux__ // glibc declares it
extern char** environ;
#endif

namespace oxlade {

namespace {

// Keeps the error of the first call that failed.
class FirstError final {
  public:
    void operator()(int error) {
        if (value_ == 0) value_ = error;
    }
    int value() const { return value_; }

  private:
    int value_ = 0;
};

class Attributes final {
  public:
    Attributes() { error_(posix_spawnattr_init(&attributes_)); }
    ~Attributes() { posix_spawnattr_destroy(&attributes_); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    int prepare() {
        sigset_t none;
        sigemptyset(&none);
        error_(posix_spawnattr_setsigmask(&attributes_, &none));
        const sigset_t signals = defaultSignals();
        error_(posix_spawnattr_setsigdefault(&attributes_, &signals));
        error_(posix_spawnattr_setflags(&attributes_, flags));
        return error_.value();
    }
    const posix_spawnattr_t* get() const { return &attributes_; }

  private:
#ifdef __APPLE__
    static constexpr short flags = POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK |
                                   POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_CLOEXEC_DEFAULT;
#else
    static constexpr short flags =
        POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF;
#endif
    // All but SIGPIPE, which a helper must survive, and those that cannot be ignored.
    static sigset_t defaultSignals() {
        sigset_t signals;
        sigfillset(&signals);
        for (const int signal : {SIGPIPE, SIGKILL, SIGSTOP}) sigdelset(&signals, signal);
        return signals;
    }

    posix_spawnattr_t attributes_;
    FirstError error_;
};

class FileActions final {
  public:
    FileActions() { error_(posix_spawn_file_actions_init(&actions_)); }
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    int prepare(const SpawnRequest& request) {
        stream(request.input, STDIN_FILENO);
        stream(request.output, STDOUT_FILENO);
        stream(request.error, STDERR_FILENO);
#ifndef __APPLE__
        error_(posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
#endif
        return error_.value();
    }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

  private:
    void stream(const Descriptor* descriptor, int number) {
        if (descriptor != nullptr)
            error_(posix_spawn_file_actions_adddup2(&actions_, descriptor->get(), number));
#ifdef __APPLE__
        else if (fcntl(number, F_GETFD) >= 0)
            error_(posix_spawn_file_actions_addinherit_np(&actions_, number));
#endif
    }

    posix_spawn_file_actions_t actions_;
    FirstError error_;
};

std::vector<char*> argumentVector(const SpawnRequest& request) {
    std::vector<char*> vector;
    vector.push_back(const_cast<char*>(request.executablePath.c_str()));
    for (const auto& argument : request.arguments)
        vector.push_back(const_cast<char*>(argument.c_str()));
    vector.push_back(nullptr);
    return vector;
}

} // namespace

ChildProcess::ChildProcess(pid_t number) : number_(number), end_(openProcessEnd(number)) {}

bool ChildProcess::reapIfEnded() { return isRunning() && reap(WNOHANG); }

void ChildProcess::kill() {
    if (!isRunning()) return;
    ::kill(number_, SIGKILL); // not reaped: the number is still its own
    reap(0);
}

bool ChildProcess::reap(int options) {
    int status = 0;
    const pid_t found = uninterrupted([&] { return waitpid(number_, &status, options); });
    if (found == 0) return false;
    exitStatus_ = found != number_      ? -1
                  : WIFSIGNALED(status) ? WTERMSIG(status)
                                        : WEXITSTATUS(status);
    number_ = 0;
    end_.reset();
    return true;
}

int spawn(const SpawnRequest& request, ChildProcess& process) {
    Attributes attributes;
    FileActions actions;
    if (const int error = attributes.prepare()) return error;
    if (const int error = actions.prepare(request)) return error;
    pid_t number = 0;
    const int error = posix_spawn(&number, request.executablePath.c_str(), actions.get(),
                                  attributes.get(), argumentVector(request).data(), environ);
    if (error == 0) process = ChildProcess(number);
    return error;
}

} // namespace oxlade
