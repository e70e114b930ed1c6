#pragma once

#include <vector>

namespace quillbox {

class NSLayoutConstraint;
class NSView;

// One line of a view that constraints hold on to, or one of its lengths.
enum class LayoutAttribute { left, right, top, bottom, width, height, centerX, centerY };

// An attribute of a view, from which constraints are made. Valid as long as the view.
struct NSLayoutAnchor {
    NSView* view = nullptr;
    LayoutAttribute attribute = LayoutAttribute::left;

    // `constant` is in points, to the right and downwards.
    NSLayoutConstraint constraintEqualTo(NSLayoutAnchor other, double constant = 0) const;
    NSLayoutConstraint constraintLessThanOrEqualTo(NSLayoutAnchor other, double constant = 0) const;
    NSLayoutConstraint constraintGreaterThanOrEqualTo(NSLayoutAnchor other, double constant = 0) const;
    // Of a width or a height.
    NSLayoutConstraint constraintEqualToConstant(double constant) const;
};

// first = second + constant, or first <= second + constant, or first = constant where there is no second. Lines of
// one direction go together; so do lengths. A view's constraints name its neighbours in the same superview, the
// superview, or nothing but itself.
class NSLayoutConstraint {
public:
    enum class Relation { equal, lessThanOrEqual };

    NSLayoutConstraint(NSLayoutAnchor first, Relation relation, NSLayoutAnchor second, double constant)
        : first_(first),
          relation_(relation),
          second_(second),
          constant_(constant)
    {
    }

    NSLayoutAnchor first() const { return first_; }
    Relation relation() const { return relation_; }
    // Its view is null where the first anchor is a length of its own.
    NSLayoutAnchor second() const { return second_; }
    double constant() const { return constant_; }
    // Of an equation: it puts its lines further apart where inequalities need the room, never closer together. A length
    // becomes longer where its view needs more.
    bool isStretchable() const { return isStretchable_; }
    NSLayoutConstraint stretchable() const
    {
        NSLayoutConstraint copy = *this;
        copy.isStretchable_ = true;
        return copy;
    }

    // Takes effect at the next layout and holds as long as both views are in the same superview. The views are
    // in their places already.
    static void activate(const std::vector<NSLayoutConstraint>& constraints);

private:
    NSLayoutAnchor first_;
    Relation relation_;
    NSLayoutAnchor second_;
    double constant_;
    bool isStretchable_ = false;
};

constexpr bool isHorizontal(LayoutAttribute attribute)
{
    return attribute == LayoutAttribute::left || attribute == LayoutAttribute::right
        || attribute == LayoutAttribute::width || attribute == LayoutAttribute::centerX;
}

} // namespace quillbox
