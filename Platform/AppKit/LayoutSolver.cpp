#include "LayoutSolver.h"

#include "Check.h"

#include <array>
#include <limits>

namespace quillbox {

namespace {

    constexpr double kNoLimit = std::numeric_limits<double>::infinity();

    // A stretch on one axis, of which any two of these give the others.
    struct Extent {
        enum Line { low, high, middle, length };
        std::array<std::optional<double>, 4> known;

        bool isWhole() const { return known[low] && known[length]; }
        int count() const
        {
            int result = 0;
            for (const auto& value : known)
                result += value ? 1 : 0;
            return result;
        }

        // False where it was known, or follows from what is known, already.
        bool set(Line line, double value)
        {
            if (known[line])
                return false;
            known[line] = value;
            if (count() >= 2)
                complete();
            return true;
        }

    private:
        void complete()
        {
            if (!known[length]) {
                if (known[low] && known[high])
                    known[length] = *known[high] - *known[low];
                else if (known[low] && known[middle])
                    known[length] = 2 * (*known[middle] - *known[low]);
                else
                    known[length] = 2 * (*known[high] - *known[middle]);
            }
            if (!known[low])
                known[low] = known[high] ? *known[high] - *known[length] : *known[middle] - *known[length] / 2;
            known[high] = *known[low] + *known[length];
            known[middle] = *known[low] + *known[length] / 2;
        }
    };

    Extent::Line lineOf(LayoutAttribute attribute)
    {
        switch (attribute) {
        case LayoutAttribute::left:
        case LayoutAttribute::top:
            return Extent::low;
        case LayoutAttribute::right:
        case LayoutAttribute::bottom:
            return Extent::high;
        case LayoutAttribute::centerX:
        case LayoutAttribute::centerY:
            return Extent::middle;
        case LayoutAttribute::width:
        case LayoutAttribute::height:
            break;
        }
        return Extent::length;
    }

    // One axis of the problem; the container is the last extent.
    class Axis {
    public:
        Axis(const LayoutProblem& problem, bool horizontal) : problem_(problem), horizontal_(horizontal)
        {
            extents_.resize(problem.items.size() + 1);
            for (std::size_t index = 0; index < problem.items.size(); ++index) {
                const auto& frame = problem.items[index].fixedFrame;
                if (!frame)
                    continue;
                extents_[index].set(Extent::low, horizontal ? frame->minX() : frame->minY());
                extents_[index].set(Extent::length, horizontal ? frame->size.width : frame->size.height);
            }
            extents_.back().set(Extent::low, 0);
            if (const auto& size = horizontal ? problem.containerWidth : problem.containerHeight)
                extents_.back().set(Extent::length, *size);
        }

        // `naturalLength` gives an item's length by its content; below zero: it has none.
        void solve(const std::function<double(std::size_t item)>& naturalLength)
        {
            followEquations();
            while (takeNaturalLength(naturalLength) || placeAtOrigin())
                followEquations();
        }

        const Extent& extent(std::size_t item) const { return extents_[item]; }
        const Extent& container() const { return extents_.back(); }

        // How long an item may be at most by its inequalities, as far as their other side is known.
        double limit(std::size_t item) const
        {
            double result = kNoLimit;
            for (const NSLayoutConstraint& constraint : problem_.constraints) {
                if (constraint.relation() != NSLayoutConstraint::Relation::lessThanOrEqual || !isMine(constraint)
                    || indexOf(constraint.first().view) != item)
                    continue;
                const auto other = valueOf(constraint.second());
                const auto& low = extents_[item].known[Extent::low];
                if (other && low && lineOf(constraint.first().attribute) == Extent::high)
                    result = std::min(result, *other + constraint.constant() - *low);
            }
            return result;
        }

    private:
        bool isMine(const NSLayoutConstraint& constraint) const
        {
            return isHorizontal(constraint.first().attribute) == horizontal_;
        }

        std::size_t indexOf(const NSView* view) const
        {
            if (view == problem_.container)
                return problem_.items.size();
            for (std::size_t index = 0; index < problem_.items.size(); ++index) {
                if (problem_.items[index].view == view)
                    return index;
            }
            QB_CHECK(false);
            return 0;
        }

        std::optional<double> valueOf(NSLayoutAnchor anchor) const
        {
            return extents_[indexOf(anchor.view)].known[lineOf(anchor.attribute)];
        }

        bool set(NSLayoutAnchor anchor, double value)
        {
            return extents_[indexOf(anchor.view)].set(lineOf(anchor.attribute), value);
        }

        void followEquations()
        {
            for (bool isChanged = true; isChanged;) {
                isChanged = false;
                for (const NSLayoutConstraint& constraint : problem_.constraints) {
                    if (constraint.relation() != NSLayoutConstraint::Relation::equal || !isMine(constraint))
                        continue;
                    if (!constraint.second().view) {
                        isChanged |= set(constraint.first(), constraint.constant());
                        continue;
                    }
                    const auto first = valueOf(constraint.first());
                    const auto second = valueOf(constraint.second());
                    if (second && !first)
                        isChanged |= set(constraint.first(), *second + constraint.constant());
                    else if (first && !second)
                        isChanged |= set(constraint.second(), *first - constraint.constant());
                }
            }
        }

        bool takeNaturalLength(const std::function<double(std::size_t)>& naturalLength)
        {
            // Those with a place first: what they may take depends on it.
            for (const bool withPlace : { true, false }) {
                for (std::size_t index = 0; index < problem_.items.size(); ++index) {
                    if (extents_[index].known[Extent::length] || (extents_[index].count() > 0) != withPlace)
                        continue;
                    const double length = naturalLength(index);
                    if (length >= 0 && extents_[index].set(Extent::length, std::min(length, limit(index))))
                        return true;
                }
            }
            return false;
        }

        bool placeAtOrigin()
        {
            for (Extent& extent : extents_) {
                if (!extent.isWhole())
                    return extent.count() == 0 || extent.known[Extent::length] ? extent.set(Extent::low, 0)
                                                                               : extent.set(Extent::length, 0);
            }
            return false;
        }

        const LayoutProblem& problem_;
        bool horizontal_;
        std::vector<Extent> extents_;
    };

} // namespace

LayoutSolution solveLayout(const LayoutProblem& problem)
{
    Axis across(problem, true);
    across.solve([&](std::size_t item) {
        const auto& naturalSize = problem.items[item].naturalSize;
        return naturalSize ? naturalSize(across.limit(item)).width : -1;
    });
    Axis down(problem, false);
    down.solve([&](std::size_t item) {
        const auto& naturalSize = problem.items[item].naturalSize;
        return naturalSize ? naturalSize(*across.extent(item).known[Extent::length]).height : -1;
    });

    LayoutSolution solution;
    solution.containerSize = { *across.container().known[Extent::length], *down.container().known[Extent::length] };
    solution.frames.reserve(problem.items.size());
    for (std::size_t item = 0; item < problem.items.size(); ++item) {
        const auto& x = across.extent(item).known;
        const auto& y = down.extent(item).known;
        solution.frames.push_back({ { *x[Extent::low], *y[Extent::low] }, { *x[Extent::length], *y[Extent::length] } });
    }
    return solution;
}

} // namespace quillbox
