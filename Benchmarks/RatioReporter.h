#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>

namespace quillbox {

// Shows the medians of a run as they come and keeps them, so that the program can put them in relation.
class RatioReporter final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;

    // Seconds an iteration took, by the benchmark's name with its arguments; stops the program where
    // there is none.
    double median(const std::string& name) const;

private:
    std::map<std::string, double> medians_;
};

} // namespace quillbox
