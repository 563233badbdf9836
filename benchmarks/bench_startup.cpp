#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char **environ;

namespace
{
constexpr int rounds = 41;

std::string folderOf(const std::string &program)
{
    return program.substr(0, program.rfind('/') + 1);
}

/// Milliseconds from the start of @p program to its end, which is in the first turn of its event loop.
double millisecondsOf(const std::string &program)
{
    char *arguments[] = {const_cast<char *>(program.c_str()), nullptr};
    const auto start = std::chrono::steady_clock::now();
    pid_t child = -1;
    int status = -1;
    if (posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments, environ) != 0 ||
        waitpid(child, &status, 0) != child || status != 0) {
        std::fprintf(stderr, "%s failed\n", program.c_str());
        std::exit(1);
    }
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

/// Megabytes that @p program tells of itself.
double megabytesOf(const std::string &program)
{
    std::FILE *pipe = popen(("QW_PROBE_MEMORY=1 '" + program + "'").c_str(), "r");
    long kilobytes = 0;
    if (!pipe || std::fscanf(pipe, "%ld", &kilobytes) != 1)
        std::exit(1);
    pclose(pipe);
    return static_cast<double>(kilobytes) / 1024;
}

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

/// Medians of the host and of the bare application, run in turn so that both see the same machine.
std::array<double, 2> compare(const std::array<std::string, 2> &programs, double (*measure)(const std::string &),
                              int count)
{
    std::array<std::vector<double>, 2> values;
    for (int round = 0; round < count; ++round)
        for (std::size_t i = 0; i < programs.size(); ++i)
            values[i].push_back(measure(programs[i]));
    return {median(values[0]), median(values[1])};
}

/// As the benchmark library would: times with their unit, other figures as a value.
void print(const char *name, const char *figure, const std::array<double, 2> &values, const char *end)
{
    constexpr const char *sides[] = {"ours", "baseline"};
    for (std::size_t i = 0; i < values.size(); ++i)
        std::printf("{\"name\": \"%s/%s\", %s: %f}%s\n", name, sides[i], figure, values[i], i == 0 ? "," : end);
}
} // namespace

int main(int, char **argv)
{
    const std::string folder = folderOf(argv[0]);
    const std::array<std::string, 2> programs{folder + "startup_host", folder + "startup_bare"};
    compare(programs, millisecondsOf, 3); // warms the file cache
    std::printf("{\"benchmarks\": [\n");
    print("startup-time", "\"time_unit\": \"ms\", \"real_time\"", compare(programs, millisecondsOf, rounds), ",");
    print("startup-memory", "\"value\"", compare(programs, megabytesOf, 5), "]}");
}
