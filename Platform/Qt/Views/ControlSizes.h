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

// How large the style makes controls. The layout asks it; presenters show the same controls. It asks one control
// of each kind that is never shown, made when it is first needed; forget() lets go of them.
class ControlSizes {
public:
    NSSize of(const NSTextField& field, double widthLimit);
    NSSize of(const NSButton& button, double widthLimit);
    NSSize of(const NSPopUpButton& button);
    double tableRowHeight();
    double scrollerWidth(bool isSmall);
    double scrollViewBorder();
    NSEdgeInsets tabViewInsets();

    // The style or the fonts have changed, or no window is open.
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
