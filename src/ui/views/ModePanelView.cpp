#include "ModePanelView.h"

namespace velmorindal {

ModePanelView::ModePanelView(VelmorindalSwitch& model) : velmorindal{model} {}

bool ModePanelView::showsCheckBoxes() const {
    return velmorindal.outputMode.get() == OutputMode::LongShort;
}

ButtonOptions ModePanelView::buttons(const VelmorindalSwitch& velmorindal) {
    const bool lacksAnOutput = velmorindal.outputMode.get() == OutputMode::LongShort &&
                               !velmorindal.shortEnabled.get() && !velmorindal.longEnabled.get();
    if (lacksAnOutput) {
        return ButtonOptions::Cancel | ButtonOptions::Back;
    }
    return ButtonOptions::Cancel | ButtonOptions::Back | ButtonOptions::Next;
}

}  // namespace velmorindal
