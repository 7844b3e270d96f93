#pragma once

#include <QWidget>

#include "OutputPanelView.h"

namespace velmorindal {

class KeyList;

/// A label and the pop-up list of keys beside it.
class KeyChoiceWidget final : public QWidget {
    Q_OBJECT

  public:
    /// `view` must outlive the widget.
    KeyChoiceWidget(OutputPanelView& view, const OutputPanelView::KeyChoice& choice);

    const OutputPanelView::KeyChoice& choice() const { return choice_; }

    /// Shows the key that the model has now. To be called once before the widget is shown, and after
    /// each change.
    void refresh();

  private:
    OutputPanelView& view_;
    const OutputPanelView::KeyChoice choice_;
    KeyList* keys_;
};

}  // namespace velmorindal
