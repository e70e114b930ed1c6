#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

namespace quillbox {

// Shows the medians of a run as they arrive, and keeps them so that the program can compare them.
class RatioReporter final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;

    // Returns the seconds that an iteration took, by the benchmark's name with its arguments. The program stops if
    // there is no such benchmark.
    double median(const std::string& name) const;

private:
    std::map<std::string, double> medians_;
};

} // namespace quillbox
