#include "LayoutSolver.h"

#include "Check.h"
#include "LayoutExtent.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace quillbox {

namespace {

    constexpr double kNoLimit = std::numeric_limits<double>::infinity();

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

    // One axis of the problem. The last extent is the container's.
    class Axis {
    public:
        Axis(const LayoutProblem& problem, bool horizontal)
            : problem_(problem),
              horizontal_(horizontal),
              stretch_(problem.constraints.size(), 0)
        {
        }

        // How long the items want to be along this axis. A negative length means that an item has no wish.
        struct Wishes {
            std::function<double(std::size_t item)> natural;
            std::function<double(std::size_t item)> least;
        };

        void solve(const Wishes& wishes)
        {
            // Each turn stretches one equation as far as one inequality needs; views that push each other in a
            // circle would go on for ever.
            constexpr int kMostTurns = 50;
            for (int turn = 0; turn < kMostTurns; ++turn) {
                begin();
                followEquations(wishes);
                while (takeNaturalLength(wishes) || takeLeastLength(wishes) || placeAtOrigin())
                    followEquations(wishes);
                if (!stretchForInequality())
                    return;
            }
        }

        // How much room is missing for the inequality, or for the item, that lacks most.
        double missing(const Wishes& wishes) const
        {
            double most = 0;
            for (const NSLayoutConstraint& constraint : problem_.constraints)
                most = std::max(most, excess(constraint));
            for (std::size_t item = 0; item < problem_.items.size(); ++item)
                most = std::max(most, wishes.least(item) - extents_[item].known[Extent::length].value_or(0));
            return most;
        }

        const Extent& extent(std::size_t item) const { return extents_[item]; }
        const Extent& container() const { return extents_.back(); }

        // Returns how long an item may be by its inequalities, as far as their other side is known.
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
        // Says from which neighbour and by which equation a line of an extent became known.
        struct Cause {
            Extent::Line line;
            std::size_t constraint;
            NSLayoutAnchor from;
        };

        void begin()
        {
            extents_.assign(problem_.items.size() + 1, Extent());
            causes_.assign(extents_.size(), {});
            for (std::size_t index = 0; index < problem_.items.size(); ++index) {
                const auto& frame = problem_.items[index].fixedFrame;
                if (!frame)
                    continue;
                extents_[index].set(Extent::low, horizontal_ ? frame->minX() : frame->minY());
                extents_[index].set(Extent::length, horizontal_ ? frame->size.width : frame->size.height);
            }
            extents_.back().set(Extent::low, 0);
            if (const auto& size = horizontal_ ? problem_.containerWidth : problem_.containerHeight)
                extents_.back().set(Extent::length, *size);
        }

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

        bool set(NSLayoutAnchor anchor, double value, std::size_t constraint, NSLayoutAnchor from)
        {
            const std::size_t index = indexOf(anchor.view);
            const Extent::Line line = lineOf(anchor.attribute);
            if (!extents_[index].set(line, value))
                return false;
            if (from.view)
                causes_[index].push_back({ line, constraint, from });
            return true;
        }

        void followEquations(const Wishes& wishes)
        {
            for (bool isChanged = true; isChanged;) {
                isChanged = false;
                for (std::size_t index = 0; index < problem_.constraints.size(); ++index) {
                    const NSLayoutConstraint& constraint = problem_.constraints[index];
                    if (constraint.relation() != NSLayoutConstraint::Relation::equal || !isMine(constraint))
                        continue;
                    const double constant = constraint.constant() + stretch_[index];
                    if (!constraint.second().view) {
                        const bool needsMore = constraint.isStretchable() && !valueOf(constraint.first());
                        const double least = needsMore ? wishes.least(indexOf(constraint.first().view)) : 0;
                        isChanged |= set(constraint.first(), std::max(constant, least), index, {});
                        continue;
                    }
                    const auto first = valueOf(constraint.first());
                    const auto second = valueOf(constraint.second());
                    if (second && !first)
                        isChanged |= set(constraint.first(), *second + constant, index, constraint.second());
                    else if (first && !second)
                        isChanged |= set(constraint.second(), *first - constant, index, constraint.first());
                }
            }
        }

        bool takeNaturalLength(const Wishes& wishes)
        {
            // Those with a place first: what they may take depends on it.
            for (const auto& [isScrolling, withPlace] :
                 { std::pair(false, true), std::pair(false, false), std::pair(true, true), std::pair(true, false) }) {
                for (std::size_t index = 0; index < problem_.items.size(); ++index) {
                    if (extents_[index].known[Extent::length] || (extents_[index].count() > 0) != withPlace
                        || problem_.items[index].isScrolling != isScrolling)
                        continue;
                    const double length = wishes.natural(index);
                    if (length >= 0 && extents_[index].set(Extent::length, std::min(length, limit(index))))
                        return true;
                }
            }
            return false;
        }

        bool takeLeastLength(const Wishes& wishes)
        {
            for (std::size_t index = 0; index < problem_.items.size(); ++index) {
                const double length = extents_[index].known[Extent::length] ? 0 : wishes.least(index);
                if (length > 0 && extents_[index].set(Extent::length, length))
                    return true;
            }
            return false;
        }

        // By how much the inequality does not hold; 0 where it does.
        double excess(const NSLayoutConstraint& constraint) const
        {
            constexpr double kUnseen = 0.01;
            if (constraint.relation() != NSLayoutConstraint::Relation::lessThanOrEqual || !isMine(constraint))
                return 0;
            const auto first = valueOf(constraint.first());
            const auto second = valueOf(constraint.second());
            const double over = first && second ? *first - *second - constraint.constant() : 0;
            return over > kUnseen ? over : 0;
        }

        bool stretchForInequality()
        {
            for (const NSLayoutConstraint& constraint : problem_.constraints) {
                const double over = excess(constraint);
                if (over > 0 && (move(constraint.first(), -over) || move(constraint.second(), over)))
                    return true;
            }
            return false;
        }

        // Moves the line by stretching the nearest equation through which it is where it is; false where there is none.
        bool move(NSLayoutAnchor anchor, double by)
        {
            std::vector<bool> isVisited(extents_.size(), false);
            std::vector<NSLayoutAnchor> waiting { anchor };
            for (std::size_t next = 0; next < waiting.size(); ++next) {
                const NSLayoutAnchor line = waiting[next];
                const std::size_t index = indexOf(line.view);
                if (isVisited[index])
                    continue;
                isVisited[index] = true;
                // Where two of its lines are held, moving the other one would make it longer or shorter.
                const auto places = std::count_if(causes_[index].begin(), causes_[index].end(),
                                                  [](const Cause& c) { return c.line != Extent::length; });
                for (const Cause& cause : causes_[index]) {
                    if (cause.line == Extent::length || (places > 1 && cause.line != lineOf(line.attribute)))
                        continue;
                    const NSLayoutConstraint& equation = problem_.constraints[cause.constraint];
                    const bool isForward = equation.second().view == cause.from.view
                        && equation.second().attribute == cause.from.attribute;
                    const double change = isForward ? by : -by;
                    if (equation.isStretchable() && equation.constant() * change >= 0) {
                        stretch_[cause.constraint] += change;
                        return true;
                    }
                    waiting.push_back(cause.from);
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
        // One list for each extent.
        std::vector<std::vector<Cause>> causes_;
        // How much further apart each equation puts its lines than it says.
        std::vector<double> stretch_;
    };

    // Remembers what the items want, so that each is asked once for the same width.
    class Sizes {
    public:
        explicit Sizes(const LayoutProblem& problem)
            : problem_(problem),
              natural_(problem.items.size()),
              least_(problem.items.size())
        {
        }

        NSSize natural(std::size_t item, double widthLimit)
        {
            auto& known = natural_[item];
            if (!known || known->first != widthLimit) {
                const auto& ask = problem_.items[item].naturalSize;
                known = { widthLimit, ask ? ask(widthLimit) : NSSize { -1, -1 } };
            }
            return known->second;
        }
        NSSize least(std::size_t item)
        {
            if (!least_[item]) {
                const auto& ask = problem_.items[item].leastSize;
                least_[item] = ask ? ask() : NSSize();
            }
            return *least_[item];
        }

    private:
        const LayoutProblem& problem_;
        std::vector<std::optional<std::pair<double, NSSize>>> natural_;
        std::vector<std::optional<NSSize>> least_;
    };

} // namespace

LayoutSolution solveLayout(const LayoutProblem& problem)
{
    Sizes sizes(problem);
    Axis across(problem, true);
    across.solve({ [&](std::size_t item) { return sizes.natural(item, across.limit(item)).width; },
                   [&](std::size_t item) { return sizes.least(item).width; } });
    Axis down(problem, false);
    const Axis::Wishes wishes { [&](std::size_t item) {
                                   return sizes.natural(item, *across.extent(item).known[Extent::length]).height;
                               },
                                [&](std::size_t item) { return sizes.least(item).height; } };
    down.solve(wishes);

    LayoutSolution solution;
    solution.containerSize = { *across.container().known[Extent::length], *down.container().known[Extent::length] };
    // What only has to lie above the bottom pushes it down.
    if (!problem.containerHeight)
        solution.containerSize.height += down.missing(wishes);
    solution.frames.reserve(problem.items.size());
    for (std::size_t item = 0; item < problem.items.size(); ++item) {
        const auto& x = across.extent(item).known;
        const auto& y = down.extent(item).known;
        solution.frames.push_back({ { *x[Extent::low], *y[Extent::low] }, { *x[Extent::length], *y[Extent::length] } });
    }
    return solution;
}

double leastContainerWidth(LayoutProblem problem, double from)
{
    // What is held to the middle gets half of each point that the container grows by.
    constexpr int kMostTurns = 30;
    Sizes sizes(problem);
    const Axis::Wishes wishes { [&](std::size_t item) { return sizes.natural(item, kNoLimit).width; },
                                [&](std::size_t item) { return sizes.least(item).width; } };
    double width = from;
    for (int turn = 0; turn < kMostTurns; ++turn) {
        problem.containerWidth = width;
        Axis across(problem, true);
        across.solve(wishes);
        const double missing = across.missing(wishes);
        if (missing <= 0)
            break;
        width = std::ceil(width + missing);
    }
    return width;
}

} // namespace quillbox
