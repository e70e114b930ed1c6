#include "NSLayoutConstraint.h"

#include "NSView.h"

namespace quillbox {

NSLayoutConstraint NSLayoutAnchor::constraintEqualTo(NSLayoutAnchor other, double constant) const
{
    return { *this, NSLayoutConstraint::Relation::equal, other, constant };
}

NSLayoutConstraint NSLayoutAnchor::constraintLessThanOrEqualTo(NSLayoutAnchor other, double constant) const
{
    return { *this, NSLayoutConstraint::Relation::lessThanOrEqual, other, constant };
}

NSLayoutConstraint NSLayoutAnchor::constraintGreaterThanOrEqualTo(NSLayoutAnchor other, double constant) const
{
    return other.constraintLessThanOrEqualTo(*this, -constant);
}

NSLayoutConstraint NSLayoutAnchor::constraintEqualToConstant(double constant) const
{
    QB_CHECK(attribute == LayoutAttribute::width || attribute == LayoutAttribute::height);
    return { *this, NSLayoutConstraint::Relation::equal, {}, constant };
}

void NSLayoutConstraint::activate(const std::vector<NSLayoutConstraint>& constraints)
{
    for (const NSLayoutConstraint& constraint : constraints) {
        NSView* first = constraint.first().view;
        NSView* second = constraint.second().view;
        QB_CHECK(first);
        QB_CHECK(!second || isHorizontal(constraint.first().attribute) == isHorizontal(constraint.second().attribute));
        NSView* holder = first;
        if (second && second != first && first->superview().get() != nullptr && second->superview().get() != first)
            holder = first->superview().get();
        QB_CHECK(!second || second == holder || second->superview().get() == holder);
        holder->addConstraint(constraint);
    }
}

} // namespace quillbox
