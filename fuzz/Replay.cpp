// SPDX-License-Identifier: MIT
// Replay CORPUS RUNS: runs a fuzz target over the files of a folder, then over RUNS mutations of them. The mutations
// are the same each time. The input that ended a run is left in "<program>.input" in the working folder.
#include "Fuzz.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

// There when the program is built with a sanitizer.
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

namespace {

using Input = std::string;

class Mutator {
public:
    explicit Mutator(const std::vector<Input> &seeds)
        : m_seeds(seeds)
    {
    }

    Input next()
    {
        Input input = any();
        for (std::size_t step = 0, steps = 1 + below(6); step < steps; ++step)
            mutate(input);
        return input;
    }

private:
    std::size_t below(std::size_t limit) { return limit > 0 ? m_random() % limit : 0; }
    const Input &any() { return m_seeds[below(m_seeds.size())]; }

    void mutate(Input &input)
    {
        static const Input telling = {'\0', '\1', '\n', '\r', ' ', '"', '%', '/', '0', '=', 'A', '\\', '\x7F', '\x80',
            '\xC3', '\xED', '\xFE', '\xFF'};
        const std::size_t at = below(input.size() + 1);
        const std::size_t length = below(std::min<std::size_t>(input.size() - at, 16) + 1);
        const char byte = below(2) == 0 ? telling[below(telling.size())] : static_cast<char>(m_random());
        switch (below(7)) {
        case 0: input.insert(at, 1, byte); break;
        case 1: input.replace(at, std::min<std::size_t>(1, input.size() - at), 1, byte); break;
        case 2: input.erase(at, length); break;
        case 3: input.insert(at, input.substr(at, length)); break;
        case 4: input.resize(at); break;
        case 5: input.insert(at, any()); break;
        default:
            if (at < input.size())
                input[at] = static_cast<char>(input[at] ^ (1 << below(8)));
        }
        input.resize(std::min<std::size_t>(input.size(), 4096));
    }

    const std::vector<Input> &m_seeds;
    std::mt19937 m_random{1}; // a fixed seed, so that a failure repeats
};

std::string recordName;
std::vector<std::uint8_t> current;

// What the run that ends the process was given. Nothing is left to spoil by then, so a signal handler may call it.
void saveInput()
{
    std::ofstream(recordName, std::ios::binary)
        .write(reinterpret_cast<const char *>(current.data()), std::streamsize(current.size()));
    std::fprintf(stderr, "the input is in %s\n", recordName.c_str());
}

void dieWithInput(int signal)
{
    std::signal(signal, SIG_DFL);
    saveInput();
    std::raise(signal);
}

void run(const Input &input)
{
    // Memory of its own and of the exact size, so that a sanitizer sees what is read past the end.
    current = std::vector<std::uint8_t>(input.begin(), input.end());
    LLVMFuzzerTestOneInput(current.data(), current.size());
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s CORPUS RUNS\n", argv[0]);
        return 2;
    }
    recordName = std::filesystem::path(argv[0]).filename().string() + ".input";
    for (const int signal : {SIGABRT, SIGSEGV, SIGFPE, SIGILL})
        std::signal(signal, dieWithInput);
    if (__sanitizer_set_death_callback)
        __sanitizer_set_death_callback(saveInput);
    std::vector<Input> seeds = {{}};
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::directory_iterator(argv[1]))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end()); // the order of a folder is anyone's guess
    for (const std::filesystem::path &file : files) {
        std::ifstream in(file, std::ios::binary);
        seeds.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    if (files.empty()) {
        std::fprintf(stderr, "no seeds in %s\n", argv[1]);
        return 2;
    }

    for (const Input &seed : seeds)
        run(seed);
    Mutator mutator(seeds);
    const long runs = std::strtol(argv[2], nullptr, 10);
    for (long i = 0; i < runs; ++i)
        run(mutator.next());
    std::printf("%zu seeds and %ld mutations\n", files.size(), runs);
    return 0;
}
