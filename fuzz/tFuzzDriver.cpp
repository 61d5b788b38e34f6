// SPDX-License-Identifier: MIT
// Stands in for libFuzzer where the compiler has none: replays every file of the corpus, then
// runs mutations of them, now and then with a piece repeated up to a megabyte. Understands -runs=N,
// -max_total_time=SECONDS, -seed=N. The input that kills the process, or takes more time or memory
// than a megabyte may, is written to crash-input.
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sanitizer/common_interface_defs.h>
#include <string>
#include <sys/time.h>
#include <unistd.h>
#include <vector>

extern "C" {
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

// Of the sanitizer's allocator; not every compiler brings the header.
size_t __sanitizer_get_allocated_size(const volatile void* block);
int __sanitizer_install_malloc_and_free_hooks(void (*allocated)(const volatile void*, size_t),
                                              void (*released)(const volatile void*));
}

using cInput = std::vector<uint8_t>;

static constexpr size_t LONGEST_INPUT = 1 << 20;
static constexpr size_t LONGEST_MUTATION = 1 << 16; // without repetition
// What the longest input may take. Sanitizers make a program about five times as slow.
static constexpr unsigned SECONDS_PER_INPUT = 1 * 5; // of the processor, whatever else runs
static constexpr size_t BYTES_PER_INPUT = 256u << 20;

static cInput g_input;
static std::atomic<size_t> g_bytes{0};
static std::atomic<size_t> g_bytesAtStart{0};

static void keepInput() {
    FILE* file = fopen("crash-input", "wb");
    if (!file)
        return;
    fwrite(g_input.data(), 1, g_input.size(), file);
    fclose(file);
    fprintf(stderr, "the input is in crash-input\n");
}

static void tooSlow(int) {
    fprintf(stderr, "an input took more than %u seconds\n", SECONDS_PER_INPUT);
    keepInput();
    _exit(1);
}

static void countAllocation(const volatile void*, size_t size) {
    if ((g_bytes += size) < g_bytesAtStart + BYTES_PER_INPUT)
        return;
    fprintf(stderr, "an input took more than %zu megabytes\n", BYTES_PER_INPUT >> 20);
    g_bytesAtStart = g_bytes.load(); // keeping it takes some more
    keepInput();
    _exit(1);
}

static void countRelease(const volatile void* block) {
    g_bytes -= __sanitizer_get_allocated_size(block);
}

static void setTimer(unsigned seconds) {
    const itimerval timer = {{0, 0}, {time_t(seconds), 0}};
    setitimer(ITIMER_PROF, &timer, nullptr);
}

static void aborted(int) {
    keepInput();
    _exit(1);
}

static void run(const cInput& input) {
    g_input = input;
    // A copy of exactly that size, so that reading past its end is seen.
    const cInput copy(input);
    g_bytesAtStart = g_bytes.load();
    setTimer(SECONDS_PER_INPUT);
    LLVMFuzzerTestOneInput(copy.data(), copy.size());
    setTimer(0);
}

static cInput read(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return cInput(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

static std::vector<cInput> readCorpus(const std::vector<std::string>& paths) {
    std::vector<cInput> corpus;
    for (const std::string& path : paths) {
        if (!std::filesystem::is_directory(path)) {
            corpus.push_back(read(path));
            continue;
        }
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path)) {
            if (entry.is_regular_file())
                corpus.push_back(read(entry.path()));
        }
    }
    if (corpus.empty())
        corpus.push_back({});
    return corpus;
}

class cMutator {
    static constexpr size_t REPETITION_EVERY = 50;

public:
    cMutator(const std::vector<cInput>& corpus, unsigned seed) : m_corpus(corpus), m_random(seed) {}

    cInput next() {
        cInput input = any();
        for (size_t i = 0, count = 1 + below(8); i < count; ++i)
            mutate(input);
        if (input.size() > LONGEST_MUTATION)
            input.resize(LONGEST_MUTATION);
        if (below(REPETITION_EVERY) == 0)
            repeat(input);
        return input;
    }

private:
    size_t below(size_t n) { return n ? m_random() % n : 0; }

    // What takes the square of something shows where there is much of it.
    void repeat(cInput& input) {
        const size_t at = below(input.size());
        const size_t length = 1 + below(std::min<size_t>(input.size() - at, 512));
        if (at + length > input.size())
            return;
        const cInput piece(input.begin() + std::ptrdiff_t(at),
                           input.begin() + std::ptrdiff_t(at + length));
        cInput many;
        for (const size_t size = below(LONGEST_INPUT - input.size()); many.size() < size;)
            many.insert(many.end(), piece.begin(), piece.end());
        input.insert(input.begin() + std::ptrdiff_t(at), many.begin(), many.end());
    }

    const cInput& any() { return m_corpus[below(m_corpus.size())]; }

    void mutate(cInput& input) {
        static const int64_t NUMBERS[] = {0, 1, -1, 127, 255, 0x7FFFFFFF, INT64_MIN, 65536};
        const size_t at = below(input.size() + 1);
        const size_t length = below(std::min<size_t>(input.size() - at, 64) + 1);
        const auto place = input.begin() + std::ptrdiff_t(at);
        const auto end = place + std::ptrdiff_t(length);
        switch (below(7)) {
        case 0: // flip
            if (at < input.size())
                input[at] ^= uint8_t(1u << below(8));
            break;
        case 1: // any byte
            if (at < input.size())
                input[at] = uint8_t(m_random());
            break;
        case 2: // cut out
            input.erase(place, end);
            break;
        case 3: { // double
            const cInput piece(place, end);
            input.insert(place, piece.begin(), piece.end());
            break;
        }
        case 4: { // a piece of another
            const cInput& other = any();
            const size_t from = below(other.size() + 1);
            const size_t count = below(std::min<size_t>(other.size() - from, 64) + 1);
            input.insert(place, other.begin() + std::ptrdiff_t(from),
                         other.begin() + std::ptrdiff_t(from + count));
            break;
        }
        case 5: // an awkward number
            if (input.size() - at >= 4)
                memcpy(input.data() + at, &NUMBERS[below(std::size(NUMBERS))], 4);
            break;
        default: // cut off
            input.resize(at);
        }
    }

    const std::vector<cInput>& m_corpus;
    std::mt19937 m_random;
};

static long option(const char* argument, const char* name, long value) {
    const size_t length = strlen(name);
    return strncmp(argument, name, length) == 0 ? atol(argument + length) : value;
}

int main(int argc, char** argv) {
    long runs = 100000, seconds = 0, seed = 1;
    std::vector<std::string> paths;
    for (int i = 1; i < argc; ++i) {
        runs = option(argv[i], "-runs=", runs);
        seconds = option(argv[i], "-max_total_time=", seconds);
        seed = option(argv[i], "-seed=", seed);
        if (argv[i][0] != '-')
            paths.push_back(argv[i]);
    }
    // The console's echo of millions of messages is of no interest.
    if (!freopen("/dev/null", "w", stdout))
        return 1;
    __sanitizer_set_death_callback(keepInput);
    __sanitizer_install_malloc_and_free_hooks(countAllocation, countRelease);
    signal(SIGPROF, tooSlow);
    signal(SIGABRT, aborted);
    const std::vector<cInput> corpus = readCorpus(paths);
    for (const cInput& input : corpus)
        run(input);
    cMutator mutator(corpus, unsigned(seed));
    const auto start = std::chrono::steady_clock::now();
    const auto running = [&](long done) {
        return seconds > 0
                   ? std::chrono::steady_clock::now() - start < std::chrono::seconds(seconds)
                   : done < runs;
    };
    long done = 0;
    for (; running(done); ++done)
        run(mutator.next());
    fprintf(stderr, "%zu seeds, %ld mutations, seed %ld\n", corpus.size(), done, seed);
    return 0;
}
