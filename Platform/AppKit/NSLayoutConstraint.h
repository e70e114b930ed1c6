#pragma once

#include <vector>

namespace quillbox {

class NSLayoutConstraint;
class NSView;

// A line or a length of a view, to which constraints can refer.
enum class LayoutAttribute { left, right, top, bottom, width, height, centerX, centerY };

// An attribute of one view, from which constraints are made. It is valid as long as the view.
struct NSLayoutAnchor {
    NSView* view = nullptr;
    LayoutAttribute attribute = LayoutAttribute::left;

    // `constant` is in points, and positive to the right and downwards.
    NSLayoutConstraint constraintEqualTo(NSLayoutAnchor other, double constant = 0) const;
    NSLayoutConstraint constraintLessThanOrEqualTo(NSLayoutAnchor other, double constant = 0) const;
    NSLayoutConstraint constraintGreaterThanOrEqualTo(NSLayoutAnchor other, double constant = 0) const;
    // May be called only for a width or a height.
    NSLayoutConstraint constraintEqualToConstant(double constant) const;
};

// States first = second + constant, or first <= second + constant, or first = constant if there is no second. Both
// anchors are lines of the same direction, or both are lengths. A constraint of a view refers to its neighbours in the
// same superview, to the superview, or to nothing but the view itself.
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
    // Its view is null if the constraint sets the first anchor, a length, to the constant.
    NSLayoutAnchor second() const { return second_; }
    double constant() const { return constant_; }
    // A stretchable equation puts its lines further apart if inequalities need the room, but never closer together. A
    // length becomes longer if its view needs more.
    bool isStretchable() const { return isStretchable_; }
    NSLayoutConstraint stretchable() const
    {
        NSLayoutConstraint copy = *this;
        copy.isStretchable_ = true;
        return copy;
    }

    // The constraints take effect at the next layout and hold as long as both views are in the same superview. The
    // views must be in the hierarchy already.
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
