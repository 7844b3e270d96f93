#pragma once

#include <QLabel>
#include <string_view>

namespace velmorindal {

/// What a text is on its page; the font follows from it.
enum class TextRole {
    Title,
    Body,
    Plain,    ///< body text on one line
    Callout,  ///< heads a section of a page
    Label,    ///< names the text beside it, on one line
};

/// A text of a page: plain, wrapped, in a font that follows the application's.
class TextLabel final : public QLabel {
    Q_OBJECT

  public:
    explicit TextLabel(TextRole role, QWidget* parent = nullptr);
    TextLabel(TextRole role, std::string_view utf8, QWidget* parent = nullptr);

    /// Shows `utf8`; a text that already stands there is left alone, so that a screen reader hears it once.
    void showText(std::string_view utf8);

  protected:
    bool event(QEvent* event) override;

  private:
    void followApplicationFont();

    const TextRole role_;
};

}  // namespace velmorindal
