// SPDX-License-Identifier: MIT
// What the tests run as a child process. It carries out its arguments, pairs of a verb and a value, one after the
// other. Problems make it exit with 99.
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include <csignal>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

namespace {

void check(bool done)
{
    if (!done)
        _exit(99);
}

void write(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t length = ::write(descriptor, text.data(), text.size());
        check(length > 0);
        text.remove_prefix(size_t(length));
    }
}

void out(std::string_view text)
{
    write(STDOUT_FILENO, text);
}

std::string fromHex(const char *text)
{
    std::string bytes;
    for (; text[0] && text[1]; text += 2)
        bytes += char(std::stoi(std::string(text, 2), nullptr, 16));
    return bytes;
}

// Waits until a byte comes through the named pipe.
void await(const char *path)
{
    const int pipe = ::open(path, O_RDONLY);
    char byte = 0;
    ssize_t length = 0;
    do {
        length = ::read(pipe, &byte, 1);
    } while (length < 0 && errno == EINTR);
    check(length == 1);
    ::close(pipe);
}

void tell(const char *path)
{
    const int pipe = ::open(path, O_WRONLY);
    write(pipe, "!");
    ::close(pipe);
}

// Mebibytes of lines numbered from 0 on, 16 bytes each.
void flood(int mebibytes)
{
    std::string line = "000000000000000\n";
    std::string block;
    block.reserve(65536);
    for (int number = 0; number < mebibytes * 65536; ++number) {
        block += line;
        if (block.size() == 65536) {
            out(block);
            block.clear();
        }
        size_t digit = 14;
        for (; line[digit] == '9'; --digit)
            line[digit] = '0';
        ++line[digit];
    }
}

// Everything open but the directory that tells so.
std::string descriptors()
{
    std::string list;
    DIR *directory = ::opendir("/proc/self/fd");
    check(directory);
    for (int number = 0; number < 4096; ++number) {
        if (number != ::dirfd(directory) && ::fcntl(number, F_GETFD) >= 0)
            list += std::to_string(number) + ' ';
    }
    ::closedir(directory);
    return list;
}

// The numbers of blocked and of ignored signals.
std::string signals()
{
    std::string list = "blocked:";
    sigset_t mask;
    check(::sigprocmask(SIG_SETMASK, nullptr, &mask) == 0);
    std::string ignored = " ignored:";
    for (int number = 1; number < 32; ++number) {
        if (sigismember(&mask, number) == 1)
            list += ' ' + std::to_string(number);
        struct sigaction action { };
        check(::sigaction(number, nullptr, &action) == 0);
        if (action.sa_handler == SIG_IGN)
            ignored += ' ' + std::to_string(number);
    }
    return list + ignored;
}

void note(int number)
{
    const char digit = char('0' + number / 10);
    const char text[] = {'<', digit, char('0' + number % 10), '>'};
    if (::write(STDOUT_FILENO, text, sizeof text) < 0)
        _exit(99);
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc > 1 && std::strcmp(argv[1], "arguments") == 0) { // prints what follows, and its own name
        out(std::string(argv[0]) + '\n');
        for (int i = 2; i < argc; ++i)
            out('[' + std::string(argv[i]) + ']');
        return 0;
    }
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string verb = argv[i];
        const char *value = argv[i + 1];
        if (verb == "out")
            out(value);
        else if (verb == "err")
            write(STDERR_FILENO, value);
        else if (verb == "hex")
            out(fromHex(value));
        else if (verb == "exit")
            return std::atoi(value);
        else if (verb == "variable")
            out(std::getenv(value) ? std::getenv(value) : "(none)");
        else if (verb == "variables") {
            for (char **variable = environ; *variable; ++variable)
                out(*variable);
        } else if (verb == "await")
            await(value);
        else if (verb == "tell")
            tell(value);
        else if (verb == "flood")
            flood(std::atoi(value));
        else if (verb == "close") {
            ::close(STDOUT_FILENO);
            ::close(STDERR_FILENO);
        } else if (verb == "leave") { // a process that holds the output until it is told
            if (::fork() == 0) {
                await(value);
                return 0;
            }
        } else if (verb == "leaveflooding") { // a process that writes until it cannot, and then tells
            if (::fork() == 0) {
                ::signal(SIGPIPE, SIG_IGN);
                while (::write(STDOUT_FILENO, "more\n", 5) > 0) { }
                tell(value);
                return 0;
            }
        } else if (verb == "descriptors")
            out(descriptors());
        else if (verb == "signals")
            out(signals());
        else if (verb == "ignore")
            ::signal(std::atoi(value), SIG_IGN);
        else if (verb == "note")
            ::signal(std::atoi(value), note);
        else if (verb == "raise")
            ::raise(std::atoi(value));
        else
            return 98;
    }
    return 0;
}
