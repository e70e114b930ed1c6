#pragma once

#include "CheckBox.h"
#include "NSGeometry.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

#include <memory>
#include <optional>

namespace quillbox {

class NSButton;
class NSPopUpButton;
class NSTextField;

// Tells how large the style makes controls, for the layout; presenters show the same controls. It measures one control
// of each kind that is never shown. These are made when they are first needed, and forget() deletes them.
class ControlSizes {
public:
    NSSize of(const NSTextField& field, double widthLimit);
    NSSize of(const NSButton& button, double widthLimit);
    NSSize of(const NSPopUpButton& button);
    double tableRowHeight();
    double scrollerWidth(bool isSmall);
    double scrollViewBorder();
    NSEdgeInsets tabViewInsets();

    // Must be called when the style or the fonts have changed, and when no window is open any more.
    void forget();

private:
    struct Samples {
        QLineEdit lineEdit;
        QPushButton pushButton;
        CheckBox checkBox;
        QComboBox comboBox;
    };
    Samples& samples();

    std::unique_ptr<Samples> samples_;
    std::optional<double> rowHeight_;
    std::optional<double> border_;
    std::optional<NSEdgeInsets> insets_;
};

} // namespace quillbox
