#include "RatioReporter.h"

#include "Check.h"

namespace quillbox {

void RatioReporter::ReportRuns(const std::vector<Run>& runs)
{
    std::vector<Run> shown;
    for (const Run& run : runs) {
        if (run.aggregate_name != "median")
            continue;
        shown.push_back(run);
        // Both times are in the unit the benchmark reports in.
        medians_[run.run_name.str()] = run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
    }
    ConsoleReporter::ReportRuns(shown);
}

double RatioReporter::median(const std::string& name) const
{
    const auto found = medians_.find(name);
    if (found == medians_.end())
        std::fprintf(stderr, "no figure for %s\n", name.c_str());
    QB_CHECK(found != medians_.end());
    return found->second;
}

} // namespace quillbox
