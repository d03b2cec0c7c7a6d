// Runs the benchmarks of one program and prints each figure as one line of the table that
// scripts/bench gathers:
//
//     NAME  VALUE UNIT  ref=REFERENCE_VALUE UNIT  ratio=R  target=TARGET  ok|MISS
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace bench {

struct Figure {
    enum class Measure {
        NanosecondsPerIteration,
        ItemsPerSecond,
        MegapixelsPerSecond,
        MegabytesPerSecond
    };

    std::string name;
    std::string measured;   // the benchmark's name
    std::string reference;  // the reference benchmark's name, run in the same process
    Measure measure;
    std::string target;  // in words, for the table
    // Whether the figure meets its target, given both values.
    std::function<bool(double value, double reference)> meets;
    // When not empty, the figure is the pair of (measured, reference) benchmarks among these
    // whose ratio is lowest, and `measured` and `reference` are not used.
    std::vector<std::pair<std::string, std::string>> slowest_of = {};
};

// Runs every benchmark the command line selects, then prints the figures whose benchmarks
// ran. Answers the process's exit code.
int RunTable(int argc, char** argv, const std::vector<Figure>& figures);

}  // namespace bench
