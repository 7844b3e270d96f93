#pragma once

#include <QLabel>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velmorindal {

/// What a text is for; the font follows from it.
enum class TextRole {
    Title,
    DialogTitle,  ///< drawn as a title; a screen reader takes it from the dialog's window instead
    Body,
    Plain,    ///< body text on one line
    Callout,  ///< heads a section of a page
    Label,    ///< names the text beside it, on one line
};

/// A plain text on a page, wrapped except for Plain and Label, in a font that follows that of
/// the application.
class TextLabel final : public QLabel {
    Q_OBJECT

  public:
    explicit TextLabel(TextRole role, QWidget* parent = nullptr);
    TextLabel(TextRole role, std::string_view utf8, QWidget* parent = nullptr);

    /// Shows `utf8`. Does nothing if it is shown already, so that a screen reader announces it once.
    void showText(std::string_view utf8);

    TextRole role() const { return role_; }

    /// Makes it the place for the focus on a page that is mainly read. Call it before the first text is set.
    void makeHeading() { isHeading_ = true; }
    bool isHeading() const { return isHeading_; }

    /// Keeps at least the width of `text`, so that the layout does not move when a number appears
    /// or disappears.
    void keepRoomFor(const QString& text);
    /// Sets the texts that the label may show at other times.
    void mayShow(std::vector<QString> texts);
    /// While `count` is set, the sizes have room for every text of mayShow().
    void countEveryText(bool count);

    /// For a wrapped text, its usual and its smallest width; only heightForWidth() gives its height. The
    /// toolkit's implementation breaks the text into lines several times in each call.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    /// Breaks the text into lines only once for each width.
    int heightForWidth(int width) const override;

  protected:
    bool event(QEvent* event) override;

  private:
    void followApplicationFont();
    QSize wrappedHint(int width) const;

    QSize whole(const QSize& size) const;

    const TextRole role_;
    bool isHeading_ = false;
    bool countsEveryText_ = false;
    QString roomFor_;
    std::vector<QString> otherTexts_;
    /// The heights known for a width, until the text, the font or the style changes.
    mutable std::map<int, int> heights_;
};

}  // namespace velmorindal
