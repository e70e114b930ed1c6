#include "FuzzTarget.h"

#include "Check.h"
#include "Installed.h"
#include "MDQuery.h"

#include <cmath>

namespace quillbox {

namespace {

    class Index final : public MetadataIndex {
    public:
        std::vector<std::string> pathsLastUsed(Date from, Date until) override
        {
            QB_CHECK(std::isfinite(from.secondsSinceReferenceDate) && std::isfinite(until.secondsSinceReferenceDate));
            asked = from;
            return { "/a" };
        }
        Date asked;
    };

    void askQuery(const Data& bytes)
    {
        Index index;
        const Installed<MetadataIndex> installed(index);
        const std::string text = textOf(bytes);
        MDQuery query(text, { kMDItemLastUsedDate });
        const bool isUnderstood = query.execute();
        QB_CHECK(query.resultCount() == (isUnderstood ? 1U : 0U));
        // A query made of the moment that was understood must ask for the same moment.
        const std::string date = index.asked.description();
        constexpr std::string_view kBefore = "( InRange (kMDItemLastUsedDate ,          $time.iso(";
        constexpr std::size_t kDateLength = 25;
        if (!isUnderstood || date.size() != kDateLength)
            return;
        const Date first = index.asked;
        MDQuery same(std::string(kBefore) + date + text.substr(kBefore.size() + kDateLength), { kMDItemLastUsedDate });
        QB_CHECK(same.execute() && index.asked == first);
    }

    const FuzzTarget kTarget("query", askQuery);

} // namespace

} // namespace quillbox
